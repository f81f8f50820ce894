#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/EngineTypes.h"
#include "GameFramework/Actor.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/UnrealType.h"

namespace PinTypeTest
{
using FSchema = UEdGraphSchema_K2;
using KestrelTest::MakePinType;

TArray<FEdGraphPinType> MakeElements()
{
	return {
		MakePinType(FSchema::PC_Boolean),
		MakePinType(FSchema::PC_Byte),
		MakePinType(FSchema::PC_Byte, NAME_None, StaticEnum<EAttachmentRule>()),
		MakePinType(FSchema::PC_Int),
		MakePinType(FSchema::PC_Int64),
		MakePinType(FSchema::PC_Real, FSchema::PC_Double),
		MakePinType(FSchema::PC_Real, FSchema::PC_Float),
		MakePinType(FSchema::PC_Name),
		MakePinType(FSchema::PC_String),
		MakePinType(FSchema::PC_Text),
		MakePinType(FSchema::PC_Struct, NAME_None, TBaseStructure<FVector>::Get()),
		MakePinType(FSchema::PC_Object, NAME_None, AActor::StaticClass()),
		MakePinType(FSchema::PC_Class, NAME_None, AActor::StaticClass()),
		MakePinType(FSchema::PC_SoftObject, NAME_None, AActor::StaticClass()),
		MakePinType(FSchema::PC_SoftClass, NAME_None, AActor::StaticClass()),
		MakePinType(FSchema::PC_Object, FSchema::PSC_Self),
		MakePinType(NAME_None),
	};
}

/** There and back; empty, or what came back instead. */
FString RoundTrip(const FEdGraphPinType& PinType)
{
	const TSharedPtr<FJsonObject> Document = FKestrelBlueprintUtils::ConvertEdGraphPinTypeToJson(PinType);
	const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
	Entry->SetObjectField(TEXT("Type"), Document);
	const FEdGraphPinType Back = FKestrelBlueprintUtils::ConvertJsonToEdGraphPinType(Entry);
	return Back == PinType ? FString() : FKestrelBlueprintUtils::SerializeJson(Document);
}

FString ReadAndWrite(const TCHAR* Entry)
{
	return FKestrelBlueprintUtils::SerializeJson(FKestrelBlueprintUtils::ConvertEdGraphPinTypeToJson(
		FKestrelBlueprintUtils::ConvertJsonToEdGraphPinType(KestrelJson::ParseObject(Entry))));
}

FString Describe(const TCHAR* Description)
{
	const TSharedPtr<FJsonObject> Object = KestrelJson::ParseObject(Description);
	return FKestrelBlueprintUtils::SerializeJson(FKestrelBlueprintUtils::ConvertEdGraphPinTypeToJson(
		FKestrelBlueprintUtils::GetVarEdGraphPinTypeFromJSonObject(&Object)));
}

struct FCase
{
	const TCHAR* Json;
	const TCHAR* Expected; // the document of the type that is read, without the braces
};

const FCase EntryCases[] = {
	{ TEXT("{}"), TEXT("'Category':'','SubCategory':'','Container':'None','Flags':[]") },
	{ TEXT("{'Type':{'Category':'int','Container':'array'}}"),
		TEXT("'Category':'int','SubCategory':'','Container':'Array','Flags':[]") },
	{ TEXT("{'Type':{'Category':'int','Container':'List','ValueType':{'Category':'name'}}}"),
		TEXT("'Category':'int','SubCategory':'','Container':'None','Flags':[]") },
	{ TEXT("{'Type':{'Category':'name','Container':'MAP','ValueType':{'Category':'real','SubCategory':'double'}}}"),
		TEXT(
			"'Category':'name','SubCategory':'','Container':'Map','ValueType':{'Category':'real','SubCategory':'double'},"
			"'Flags':[]") },
	{ TEXT("{'Type':{'Category':'object','Flags':['const','Weak','Volatile',7,{}]}}"),
		TEXT("'Category':'object','SubCategory':'','Container':'None','Flags':['Const','Weak']") },
	{ TEXT("{'Type':{'Category':'struct','SubCategoryObject':'/Script/No.Where','Container':'Set'}}"),
		TEXT("'Category':'struct','SubCategory':'','Container':'Set','Flags':[]") },
	{ TEXT("{'Type':{'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'}}"),
		TEXT("'Category':'struct','SubCategory':'','SubCategoryObject':'/Script/CoreUObject.Vector','Container':'None',"
			 "'Flags':[]") },
	{ TEXT("{'Type':{'Category':'struct','SubCategoryObject':'linearcolor'}}"),
		TEXT("'Category':'struct','SubCategory':'','SubCategoryObject':'/Script/CoreUObject.LinearColor','Container':"
			 "'None','Flags':[]") },
	{ TEXT("{'Type':{'Category':'class','SubCategoryObject':'Actor'}}"),
		TEXT("'Category':'class','SubCategory':'','SubCategoryObject':'/Script/Engine.Actor','Container':'None',"
			 "'Flags':[]") },
	{ TEXT("{'Type':{'Category':'byte','SubCategoryObject':'EAttachmentRule'}}"),
		TEXT("'Category':'byte','SubCategory':'','SubCategoryObject':'/Script/Engine.EAttachmentRule','Container':"
			 "'None','Flags':[]") },
	{ TEXT("{'Type':{'Category':'name','Container':'Map','ValueType':{'Category':'real'}}}"),
		TEXT(
			"'Category':'name','SubCategory':'','Container':'Map','ValueType':{'Category':'real','SubCategory':'double'},"
			"'Flags':[]") },
	{ TEXT("{'Type':'int'}"), TEXT("'Category':'','SubCategory':'','Container':'None','Flags':[]") },
};

#define KESTREL_PLAIN(Category, SubCategory)                                                                           \
	TEXT("'Category':'" Category "','SubCategory':'" SubCategory "','Container':'None','Flags':[]")
#define KESTREL_OBJECT(Category, Object)                                                                               \
	TEXT("'Category':'" Category "','SubCategory':'','SubCategoryObject':'" Object "','Container':'None','Flags':[]")

const FCase DescriptionCases[] = {
	{ TEXT("{'Type':'BoolProperty'}"), KESTREL_PLAIN("bool", "") },
	{ TEXT("{'Type':'ByteProperty'}"), KESTREL_PLAIN("byte", "") },
	{ TEXT("{'Type':'IntProperty'}"), KESTREL_PLAIN("int", "") },
	{ TEXT("{'Type':'Int64Property'}"), KESTREL_PLAIN("int64", "") },
	{ TEXT("{'Type':'floatproperty'}"), KESTREL_PLAIN("real", "double") },
	{ TEXT("{'Type':'DoubleProperty'}"), KESTREL_PLAIN("real", "double") },
	{ TEXT("{'Type':'NameProperty'}"), KESTREL_PLAIN("name", "") },
	{ TEXT("{'Type':'StrProperty'}"), KESTREL_PLAIN("string", "") },
	{ TEXT("{'Type':'TextProperty'}"), KESTREL_PLAIN("text", "") },
	{ TEXT("{'Type':'EnumProperty','EnumType':'/Script/Engine.EAttachmentRule'}"),
		KESTREL_OBJECT("byte", "/Script/Engine.EAttachmentRule") },
	{ TEXT("{'Type':'EnumProperty'}"), KESTREL_PLAIN("byte", "") },
	{ TEXT("{'Type':'StructProperty','StructType':'VECTOR'}"), KESTREL_OBJECT("struct", "/Script/CoreUObject.Vector") },
	{ TEXT("{'Type':'StructProperty','StructType':'Rotator'}"),
		KESTREL_OBJECT("struct", "/Script/CoreUObject.Rotator") },
	{ TEXT("{'Type':'StructProperty','StructType':'Transform'}"),
		KESTREL_OBJECT("struct", "/Script/CoreUObject.Transform") },
	{ TEXT("{'Type':'StructProperty','StructType':'/Script/CoreUObject.LinearColor'}"),
		KESTREL_OBJECT("struct", "/Script/CoreUObject.LinearColor") },
	{ TEXT("{'Type':'StructProperty','StructType':'LinearColor'}"),
		KESTREL_OBJECT("struct", "/Script/CoreUObject.LinearColor") },
	{ TEXT("{'Type':'StructProperty','StructType':'NoSuch'}"), KESTREL_PLAIN("struct", "") },
	{ TEXT("{'Type':'StructProperty','StructType':'Actor'}"), KESTREL_PLAIN("struct", "") },
	{ TEXT("{'Type':'ObjectProperty','PropertyClass':'Actor'}"), KESTREL_OBJECT("object", "/Script/Engine.Actor") },
	{ TEXT("{'Type':'EnumProperty','EnumType':'EAttachmentRule'}"),
		KESTREL_OBJECT("byte", "/Script/Engine.EAttachmentRule") },
	{ TEXT("{'Type':'ObjectProperty','PropertyClass':'/Script/Engine.Actor'}"),
		KESTREL_OBJECT("object", "/Script/Engine.Actor") },
	{ TEXT("{'Type':'ObjectProperty','PropertyClass':'/Script/CoreUObject.Interface'}"),
		KESTREL_OBJECT("interface", "/Script/CoreUObject.Interface") },
	{ TEXT("{'Type':'SoftObjectProperty','PropertyClass':'/Script/Engine.Actor'}"),
		KESTREL_OBJECT("softobject", "/Script/Engine.Actor") },
	{ TEXT("{'Type':'ClassProperty','PropertyClass':'/Script/Engine.Actor'}"),
		KESTREL_OBJECT("class", "/Script/Engine.Actor") },
	{ TEXT("{'Type':'SoftClassProperty','PropertyClass':'/Script/Engine.Actor'}"),
		KESTREL_OBJECT("softclass", "/Script/Engine.Actor") },
	{ TEXT("{'Type':'ArrayProperty','InnerType':{'Type':'IntProperty'}}"),
		TEXT("'Category':'int','SubCategory':'','Container':'Array','Flags':[]") },
	{ TEXT("{'Type':'ArrayProperty'}"), KESTREL_PLAIN("", "") },
	{ TEXT("{'Type':'MapProperty'}"), KESTREL_PLAIN("", "") },
	{ TEXT("{}"), KESTREL_PLAIN("", "") },
};

#undef KESTREL_PLAIN
#undef KESTREL_OBJECT

FString Unquote(const TCHAR* Text)
{
	return FString(Text).Replace(TEXT("'"), TEXT("\""));
}
}

DEFINE_SPEC(FKestrelPinTypesSpec, "Kestrel.PinTypes", KestrelTest::Flags)
void FKestrelPinTypesSpec::Define()
{
	It("go to JSON and back unchanged, in every container and with every flag", [this]() {
		const TArray<FEdGraphPinType> Elements = PinTypeTest::MakeElements();
		for (const FEdGraphPinType& Element : Elements)
		{
			for (int32 Bits = 0; Bits < 64; ++Bits)
			{
				FEdGraphPinType PinType = Element;
				PinType.ContainerType = static_cast<EPinContainerType>(Bits & 3);
				PinType.bIsReference = (Bits >> 2) & 1;
				PinType.bIsConst = (Bits >> 3) & 1;
				PinType.bIsWeakPointer = (Bits >> 4) & 1;
				PinType.bIsUObjectWrapper = (Bits >> 5) & 1;
				const FEdGraphPinType& ValueType = Elements[(Bits * 7 + 3) % Elements.Num()];
				if (PinType.IsMap())
				{
					PinType.PinValueType.TerminalCategory = ValueType.PinCategory;
					PinType.PinValueType.TerminalSubCategory = ValueType.PinSubCategory;
					PinType.PinValueType.TerminalSubCategoryObject = ValueType.PinSubCategoryObject;
				}
				KestrelTest::TestSameText(
					*this, TEXT("came back otherwise"), PinTypeTest::RoundTrip(PinType), FString());
			}
		}
	});

	It("read what a document says and pass over the rest", [this]() {
		for (const PinTypeTest::FCase& Case : PinTypeTest::EntryCases)
		{
			KestrelTest::TestSameText(*this, Case.Json, PinTypeTest::ReadAndWrite(*PinTypeTest::Unquote(Case.Json)),
				TEXT("{") + PinTypeTest::Unquote(Case.Expected) + TEXT("}"));
		}
		// A name that is too long would end the process.
		const FString Long = FString::ChrN(5000, u'x');
		PinTypeTest::ReadAndWrite(*FString::Printf(
			TEXT("{\"Type\":{\"Category\":\"%s\",\"SubCategoryObject\":\"/Game/%s\"}}"), *Long, *Long));
	});

	It("are made from names of properties", [this]() {
		for (const PinTypeTest::FCase& Case : PinTypeTest::DescriptionCases)
		{
			KestrelTest::TestSameText(*this, Case.Json, PinTypeTest::Describe(*PinTypeTest::Unquote(Case.Json)),
				TEXT("{") + PinTypeTest::Unquote(Case.Expected) + TEXT("}"));
		}
	});

	It("have values that read as text, also where the engine writes none", [this]() {
		const AActor* Actor = GetDefault<AActor>();
		const auto Value = [Actor](const TCHAR* Name) {
			return FKestrelBlueprintUtils::GetPropertyValueAsString(
				Actor, AActor::StaticClass()->FindPropertyByName(Name));
		};
		KestrelTest::TestSameText(*this, TEXT("number"), Value(TEXT("InitialLifeSpan")), TEXT("0"));
		KestrelTest::TestSameText(*this, TEXT("boolean"), Value(TEXT("bHidden")), TEXT("False"));
		KestrelTest::TestSameText(*this, TEXT("reference"), Value(TEXT("Instigator")), TEXT("None"));
		KestrelTest::TestSameText(*this, TEXT("array"), Value(TEXT("Tags")), FString());
		KestrelTest::TestSameText(*this, TEXT("no property"), Value(TEXT("NoSuch")), TEXT("Invalid"));
		KestrelTest::TestSameText(*this, TEXT("no container"),
			FKestrelBlueprintUtils::GetPropertyValueAsString(
				nullptr, AActor::StaticClass()->FindPropertyByName(TEXT("Tags"))),
			TEXT("Invalid"));
	});
}
