#include "ReflectedTestTypes.h"
#include "UObject/EnumProperty.h"
#include "UObject/Package.h"
#include "UObject/TextProperty.h"
#include "UObject/UObjectIterator.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <string>

int32 UTestKinds::AddUp(int32 A, const TArray<int32>& Others, FString& OutText)
{
	OutText = TEXT("added");
	for (const int32 Other : Others)
	{
		A += Other;
	}
	return A;
}

int32 UTestKinds::Ask_Implementation(int32 Question) const
{
	return Question + 1;
}

namespace ReflectionTest
{
template <typename FieldType>
std::string ListNames(const UStruct* Struct, EFieldIterationFlags Flags = EFieldIterationFlags::Default)
{
	FString Names;
	for (const FieldType* Field : TFieldRange<FieldType>(Struct, Flags))
	{
		Names += (Names.IsEmpty() ? TEXT("") : TEXT(" ")) + Field->GetName();
	}
	return ToUtf8(Names);
}
}

using ReflectionTest::ListNames;

TEST(FieldIterator, GivesOwnFieldsInOrderThenTheParents)
{
	EXPECT_EQ(ListNames<FProperty>(FTestNamedPoint::StaticStruct()), "Name Object X Label");
	EXPECT_EQ(ListNames<FProperty>(FTestNamedPoint::StaticStruct(), EFieldIterationFlags::None), "Name Object");
	EXPECT_EQ(ListNames<FNameProperty>(FTestNamedPoint::StaticStruct()), "Name");
	EXPECT_EQ(ListNames<FProperty>(UTestKindsChild::StaticClass(), EFieldIterationFlags::IncludeDeprecated), "Own Old");
	EXPECT_EQ(ListNames<FProperty>(UTestKindsChild::StaticClass(), EFieldIterationFlags::None), "Own");
	EXPECT_EQ(ListNames<UFunction>(UTestKinds::StaticClass()), "AddUp Shout Count Weigh Ask Tell");
	EXPECT_TRUE(ListNames<FProperty>(UTestKindsChild::StaticClass()).starts_with("Own Old Int bFlag bFirstBit"));
}

TEST(Reflection, KnowsTheClassesOfProperties)
{
	struct FKindCase
	{
		const TCHAR* Property;
		const char* FieldClass;
		const char* CppType;
	};
	const FKindCase Cases[] = {
		{ TEXT("Int"), "IntProperty", "int32" },
		{ TEXT("bFlag"), "BoolProperty", "bool" },
		{ TEXT("bSecondBit"), "BoolProperty", "uint8" },
		{ TEXT("Byte"), "ByteProperty", "uint8" },
		{ TEXT("Int8"), "Int8Property", "int8" },
		{ TEXT("Int16"), "Int16Property", "int16" },
		{ TEXT("Int64"), "Int64Property", "int64" },
		{ TEXT("UInt16"), "UInt16Property", "uint16" },
		{ TEXT("UInt32"), "UInt32Property", "uint32" },
		{ TEXT("UInt64"), "UInt64Property", "uint64" },
		{ TEXT("Float"), "FloatProperty", "float" },
		{ TEXT("Double"), "DoubleProperty", "double" },
		{ TEXT("Text"), "StrProperty", "FString" },
		{ TEXT("Name"), "NameProperty", "FName" },
		{ TEXT("Caption"), "TextProperty", "FText" },
		{ TEXT("State"), "EnumProperty", "ETestState" },
		{ TEXT("OldState"), "ByteProperty", "TEnumAsByte<ETestOldEnum>" },
		{ TEXT("RawObject"), "ObjectProperty", "UObject*" },
		{ TEXT("Object"), "ObjectProperty", "TObjectPtr<UTestKinds>" },
		{ TEXT("Class"), "ClassProperty", "TSubclassOf<UTestKinds>" },
		{ TEXT("SoftObject"), "SoftObjectProperty", "TSoftObjectPtr<UObject>" },
		{ TEXT("SoftClass"), "SoftClassProperty", "TSoftClassPtr<UObject>" },
		{ TEXT("WeakObject"), "WeakObjectProperty", "TWeakObjectPtr<UObject>" },
		{ TEXT("Point"), "StructProperty", "FTestPoint" },
		{ TEXT("Vector"), "StructProperty", "FVector2D" },
		{ TEXT("Texts"), "ArrayProperty", "TArray<FString>" },
		{ TEXT("Names"), "SetProperty", "TSet<FName>" },
		{ TEXT("Counts"), "MapProperty", "TMap<FString,int32>" },
		{ TEXT("PointsByState"), "MapProperty", "TMap<ETestState,FTestNamedPoint>" },
	};
	for (const FKindCase& Case : Cases)
	{
		const FProperty* Property = UTestKinds::StaticClass()->FindPropertyByName(Case.Property);
		ASSERT_TRUE(Property) << Case.FieldClass;
		FString Extended;
		const FString Type = Property->GetCPPType(&Extended) + Extended;
		EXPECT_EQ(ToUtf8(Property->GetClass()->GetName()), Case.FieldClass);
		EXPECT_EQ(ToUtf8(Type), Case.CppType);
		EXPECT_EQ(Property->GetOwnerClass(), UTestKinds::StaticClass());
	}
	const FClassProperty* Class = FindFProperty<FClassProperty>(UTestKinds::StaticClass(), TEXT("Class"));
	EXPECT_EQ(Class->MetaClass, UTestKinds::StaticClass());
	EXPECT_TRUE(CastField<FObjectProperty>(Class));
	EXPECT_EQ(FindFProperty<FIntProperty>(UTestKinds::StaticClass(), TEXT("Text")), nullptr);
	EXPECT_EQ(FTestPoint::StaticStruct()->FindPropertyByName(TEXT("X"))->GetOwnerClass(), nullptr);
	EXPECT_EQ(FTestPoint::StaticStruct()->FindPropertyByName(TEXT("NotReflected")), nullptr);
}

TEST(Reflection, KeepsMetadata)
{
	const UClass* Class = UTestKinds::StaticClass();
	const FProperty* Text = Class->FindPropertyByName(TEXT("Text"));
	EXPECT_EQ(ToUtf8(Text->GetDisplayNameText().ToString()), "Given Name");
	EXPECT_EQ(ToUtf8(Text->GetToolTipText().ToString()), "What the object is called.");
	EXPECT_EQ(ToUtf8(Text->GetMetaData(TEXT("category"))), "Texts");
	EXPECT_EQ(ToUtf8(Class->FindPropertyByName(TEXT("Int"))->GetMetaData(TEXT("Category"))), "Numbers|Whole");
	EXPECT_EQ(ToUtf8(Class->FindPropertyByName(TEXT("bFirstBit"))->GetDisplayNameText().ToString()), "First Bit");
	EXPECT_EQ(ToUtf8(Class->GetDisplayNameText().ToString()), "Every Kind");
	EXPECT_EQ(ToUtf8(Class->GetToolTipText().ToString()), "One variable of each kind.");
	EXPECT_TRUE(Text->HasAllPropertyFlags(CPF_Edit | CPF_NativeAccessSpecifierPublic));
	EXPECT_TRUE(Class->FindPropertyByName(TEXT("Hidden"))->HasAnyPropertyFlags(CPF_NativeAccessSpecifierPrivate));
	EXPECT_FALSE(Text->HasMetaData(TEXT("Nothing")));
	EXPECT_TRUE(Class->HasAnyClassFlags(CLASS_Native));
	EXPECT_FALSE(Class->HasAnyClassFlags(CLASS_Abstract | CLASS_Config));
	EXPECT_TRUE(UTestSettingsChild::StaticClass()->HasAnyClassFlags(CLASS_Config));
}

TEST(DisplayNames, AreSplitAtCapitals)
{
	struct FNameCase
	{
		const TCHAR* Name;
		bool bIsBool;
		const char* Expected;
	};
	const FNameCase Cases[] = {
		{ TEXT("SupportedFileExtensions"), false, "Supported File Extensions" },
		{ TEXT("bDisplayFileChangesInChat"), true, "Display File Changes in Chat" },
		{ TEXT("bNoBool"), false, "B No Bool" },
		{ TEXT("snake_case_name"), false, "Snake Case Name" },
		{ TEXT("HTTPPort"), false, "HTTPPort" },
		{ TEXT("Texture2D"), false, "Texture 2D" },
		{ TEXT("Interior"), false, "Interior" },
	};
	for (const FNameCase& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(FName::NameToDisplayString(Case.Name, Case.bIsBool)), Case.Expected);
	}
}

TEST(Enum, ConvertsBetweenNamesAndValues)
{
	const UEnum* Enum = StaticEnum<ETestState>();
	EXPECT_EQ(Enum->NumEnums(), 4); // with the generated _MAX
	EXPECT_EQ(ToUtf8(Enum->GetNameStringByValue(1)), "Running");
	EXPECT_EQ(ToUtf8(Enum->GetNameByValue(1).ToString()), "ETestState::Running");
	EXPECT_EQ(ToUtf8(Enum->GetNameStringByIndex(3)), "ETestState_MAX");
	EXPECT_EQ(Enum->GetValueByIndex(3), 8);
	EXPECT_EQ(ToUtf8(Enum->GetDisplayNameTextByValue(1).ToString()), "In Progress");
	EXPECT_EQ(ToUtf8(Enum->GetDisplayNameTextByValue(7).ToString()), "Keep Last 30Days");
	EXPECT_EQ(ToUtf8(Enum->GetToolTipTextByIndex(0).ToString()), "nothing yet");
	EXPECT_EQ(ToUtf8(Enum->GetToolTipTextByIndex(1).ToString()), "The test is running.");
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("KeepLast30Days")), 7);
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("ETestState::running")), 1);
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("Missing")), INDEX_NONE);
	EXPECT_EQ(ToUtf8(Enum->GetNameStringByValue(99)), "");

	const UEnum* Old = StaticEnum<ETestOldEnum>();
	EXPECT_EQ(Old->NumEnums(), 3);
	EXPECT_EQ(ToUtf8(Old->GetNameByIndex(1).ToString()), "TOE_Second");
}

TEST(Function, IsCalledByReflection)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	const auto IsPure = [Object](const TCHAR* Name) {
		return Object->FindFunction(Name)->HasAnyFunctionFlags(FUNC_BlueprintPure);
	};
	EXPECT_TRUE(IsPure(TEXT("Shout")));
	EXPECT_TRUE(IsPure(TEXT("Count"))) << "it is const and answers something";
	EXPECT_FALSE(IsPure(TEXT("Weigh"))) << "it says that it is not";
	EXPECT_FALSE(IsPure(TEXT("Ask"))) << "Blueprints do not call it";
	UFunction* AddUp = Object->FindFunction(TEXT("addup"));
	ASSERT_TRUE(AddUp);
	EXPECT_EQ(ListNames<FProperty>(AddUp), "A Others OutText ReturnValue");
	EXPECT_EQ(AddUp->NumParms, 4);
	EXPECT_TRUE(AddUp->HasAllFunctionFlags(FUNC_Native | FUNC_Public | FUNC_BlueprintCallable | FUNC_HasOutParms));
	EXPECT_TRUE(AddUp->FindPropertyByName(TEXT("Others"))
					->HasAllPropertyFlags(CPF_Parm | CPF_OutParm | CPF_ReferenceParm | CPF_ConstParm));
	EXPECT_EQ(AddUp->GetReturnProperty(), AddUp->FindPropertyByName(TEXT("ReturnValue")));
	EXPECT_EQ(AddUp->GetOwnerClass(), UTestKinds::StaticClass());
	EXPECT_EQ(Object->FindFunction(TEXT("Tell"))->GetReturnProperty(), nullptr);

	struct
	{
		int32 A = 1;
		TArray<int32> Others{ 20, 300 };
		FString OutText;
		int32 ReturnValue = 0;
	} Parms;
	ASSERT_EQ(static_cast<int32>(sizeof(Parms)), AddUp->GetStructureSize());
	Object->ProcessEvent(AddUp, &Parms);
	EXPECT_EQ(Parms.ReturnValue, 321);
	EXPECT_EQ(ToUtf8(Parms.OutText), "added");

	EXPECT_EQ(NewObject<UTestKinds>()->Ask(1), 2);
	EXPECT_EQ(NewObject<UTestKindsChild>()->Ask(1), 100);
	Object->Tell(TEXT("a Blueprint that is not there"));
	EXPECT_EQ(UTestKindsChild::StaticClass()->FindFunctionByName(TEXT("Ask")),
		UTestKinds::StaticClass()->FindFunctionByName(TEXT("Ask")));
}

TEST(BaseStructure, DescribesStructsWithoutReflection)
{
	EXPECT_EQ(ToUtf8(TBaseStructure<FVector2D>::Get()->GetPathName()), "/Script/CoreUObject.Vector2D");
	EXPECT_EQ(ListNames<FProperty>(TBaseStructure<FColor>::Get()), "B G R A");
	EXPECT_EQ(TBaseStructure<FLinearColor>::Get()->GetStructureSize(), static_cast<int32>(sizeof(FLinearColor)));
	EXPECT_EQ(TBaseStructure<FTestPoint>::Get(), FTestPoint::StaticStruct());
}

TEST(RuntimeClass, LaysOutItsOwnPropertiesBehindTheParents)
{
	UClass* Class = NewObject<UClass>(GetTransientPackage(), TEXT("RuntimeTestClass_C"));
	Class->SetSuperStruct(UTestKinds::StaticClass());
	FIntProperty* Health = new FIntProperty(Class, TEXT("Health"), RF_Public);
	FArrayProperty* Tags = new FArrayProperty(Class, TEXT("Tags"), RF_Public);
	Tags->Inner = new FStrProperty(Tags, TEXT("Tags"), RF_Public);
	Class->AddCppProperty(Health);
	Class->AddCppProperty(Tags);
	Class->StaticLink(true);
	EXPECT_GE(Health->GetOffset_ForInternal(), static_cast<int32>(sizeof(UTestKinds)));
	EXPECT_EQ(Class->PropertyLink, Health);

	UObject* Defaults = Class->GetDefaultObject();
	Health->SetPropertyValue_InContainer(Defaults, 70);
	Tags->ImportText_InContainer(TEXT("(\"a\",\"b\")"), Defaults, nullptr, PPF_None);
	GetMutableDefault<UTestKinds>(Class)->Text = TEXT("inherited");
	UTestKinds* Object = NewObject<UTestKinds>(GetTransientPackage(), Class);
	EXPECT_EQ(Health->GetPropertyValue_InContainer(Object), 70);
	EXPECT_EQ(FScriptArrayHelper_InContainer(Tags, Object).Num(), 2);
	EXPECT_EQ(ToUtf8(Object->Text), "inherited");
	EXPECT_EQ(ToUtf8(Defaults->GetName()), "Default__RuntimeTestClass_C");
	EXPECT_DEATH(Health->ContainerPtrToValuePtr<int32>(NewObject<UTestKinds>()), "belongs to class");
}
