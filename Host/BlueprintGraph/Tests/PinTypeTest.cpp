#include "BlueprintGraphTestTypes.h"
#include "BlueprintTestSupport.h"

namespace PinTypeTest
{
using K2 = UEdGraphSchema_K2;

const K2& GetSchema()
{
	return *GetDefault<K2>();
}

/** "real/double of Actor [map]": category, sub-category, object and container in one string. */
std::string Describe(const FEdGraphPinType& Type)
{
	static const char* const Containers[] = { "", " [array]", " [set]", " [map]" };
	std::string Description = ToUtf8(Type.PinCategory.ToString());
	if (!Type.PinSubCategory.IsNone())
	{
		Description += "/" + ToUtf8(Type.PinSubCategory.ToString());
	}
	if (const UObject* const Object = Type.PinSubCategoryObject.Get())
	{
		Description += " of " + ToUtf8(Object->GetName());
	}
	return Description + Containers[static_cast<int32>(Type.ContainerType)];
}

FEdGraphPinType TypeOf(const TCHAR* Variable)
{
	FEdGraphPinType Type;
	GetSchema().ConvertPropertyToPinType(UGraphTestKinds::StaticClass()->FindPropertyByName(Variable), Type);
	return Type;
}

TEST(PinTypes, OfEachKindOfVariable)
{
	const struct
	{
		const TCHAR* Variable;
		bool bSupported;
		const char* Type;
		const char* Text;
	} Cases[] = {
		{ TEXT("bFlag"), true, "bool", "Boolean" },
		{ TEXT("bBit"), true, "bool", "Boolean" },
		{ TEXT("Byte"), true, "byte", "Byte" },
		{ TEXT("Mood"), true, "byte of EGraphTestMood", "EGraph Test Mood" },
		{ TEXT("Wide"), false, "unsupported_enum_type: EGraphTestWide", "unsupported_enum_type: EGraphTestWide" },
		{ TEXT("Int"), true, "int", "Integer" },
		{ TEXT("Mask"), true, "int/bitmask", "Integer" },
		{ TEXT("Int64"), true, "int64", "Integer64" },
		{ TEXT("UInt32"), false, "bad_type", "bad_type" },
		{ TEXT("Int16"), false, "bad_type", "bad_type" },
		{ TEXT("Float"), true, "real/float", "Float" },
		{ TEXT("Double"), true, "real/double", "Float" },
		{ TEXT("Name"), true, "name", "Name" },
		{ TEXT("String"), true, "string", "String" },
		{ TEXT("Text"), true, "text", "Text" },
		{ TEXT("Vector"), true, "struct of Vector", "Vector" },
		{ TEXT("Spot"), true, "struct of GraphTestSpot", "Graph Test Spot" },
		{ TEXT("Actor"), true, "object of Actor", "Actor Object Reference" },
		{ TEXT("WeakActor"), true, "object of Actor", "Actor Object Reference" },
		{ TEXT("SoftActor"), true, "softobject of Actor", "Actor Soft Object Reference" },
		{ TEXT("ActorClass"), true, "class of Actor", "Actor Class Reference" },
		{ TEXT("SoftActorClass"), true, "softclass of Actor", "Actor Soft Class Reference" },
		{ TEXT("Answer"), true, "delegate", "Delegate" },
		{ TEXT("Signal"), true, "mcdelegate", "Event Dispatcher" },
		{ TEXT("Ints"), true, "int [array]", "Array of Integers" },
		{ TEXT("Names"), true, "name [set]", "Set of Names" },
		{ TEXT("ActorsByName"), true, "name [map]", "Map of Names to Actor Object References" },
		{ TEXT("ActorClasses"), true, "class of Actor [array]", "Array of Actor Class References" },
		{ TEXT("UnsignedByName"), false, "name [map]", "Map of Names to bad_types" },
	};
	for (const auto& Case : Cases)
	{
		FEdGraphPinType Type;
		const FProperty* const Property = UGraphTestKinds::StaticClass()->FindPropertyByName(Case.Variable);
		ASSERT_TRUE(Property) << ToUtf8(Case.Variable);
		EXPECT_EQ(GetSchema().ConvertPropertyToPinType(Property, Type), Case.bSupported) << ToUtf8(Case.Variable);
		EXPECT_EQ(Describe(Type), Case.Type) << ToUtf8(Case.Variable);
		EXPECT_EQ(ToUtf8(K2::TypeToText(Type).ToString()), Case.Text) << ToUtf8(Case.Variable);
	}
	FEdGraphPinType Untouched = MakeType(K2::PC_Int);
	EXPECT_FALSE(GetSchema().ConvertPropertyToPinType(nullptr, Untouched));
	EXPECT_EQ(Describe(Untouched), "int");
}

TEST(PinTypes, TellWrappersWeakPointersReferencesAndSignaturesApart)
{
	EXPECT_TRUE(TypeOf(TEXT("WeakActor")).bIsWeakPointer);
	EXPECT_FALSE(TypeOf(TEXT("Actor")).bIsWeakPointer);
	EXPECT_TRUE(TypeOf(TEXT("ActorClass")).bIsUObjectWrapper);
	EXPECT_TRUE(TypeOf(TEXT("ActorClasses")).bIsUObjectWrapper) << "of the elements";
	EXPECT_FALSE(TypeOf(TEXT("Int")).bIsUObjectWrapper);

	const FEdGraphPinType Map = TypeOf(TEXT("ActorsByName"));
	EXPECT_EQ(Map.PinValueType.TerminalCategory, K2::PC_Object);
	EXPECT_EQ(Map.PinValueType.TerminalSubCategoryObject.Get(), AActor::StaticClass());
	const FEdGraphPinType Value = FEdGraphPinType::GetPinTypeForTerminalType(Map.PinValueType);
	EXPECT_EQ(Describe(Value), "object of Actor") << "a map's value is no container";

	const FSimpleMemberReference Signature = TypeOf(TEXT("Signal")).PinSubCategoryMemberReference;
	EXPECT_TRUE(Signature.MemberName.ToString().StartsWith(TEXT("GraphTestSignal")));
	EXPECT_TRUE(Signature.MemberParent);
	EXPECT_NE(Signature.MemberName, TypeOf(TEXT("Answer")).PinSubCategoryMemberReference.MemberName);

	const UFunction* const Split = AGraphTestActor::StaticClass()->FindFunctionByName(TEXT("Split"));
	const struct
	{
		const TCHAR* Parameter;
		bool bReference;
		bool bConst;
	} Parameters[] = {
		{ TEXT("Source"), true, true },
		{ TEXT("Numbers"), true, true },
		{ TEXT("Both"), true, false },
		{ TEXT("OutLeft"), false, false },
		{ TEXT("Count"), false, false },
	};
	for (const auto& Each : Parameters)
	{
		FEdGraphPinType Type;
		GetSchema().ConvertPropertyToPinType(Split->FindPropertyByName(Each.Parameter), Type);
		EXPECT_EQ(Type.bIsReference != 0, Each.bReference) << ToUtf8(Each.Parameter);
		EXPECT_EQ(Type.bIsConst != 0, Each.bConst) << ToUtf8(Each.Parameter);
	}
}

TEST(PinTypes, TextsOfTypesThatNoVariableHas)
{
	const struct
	{
		FEdGraphPinType Type;
		const char* Text;
	} Cases[] = {
		{ MakeType(K2::PC_Exec), "Exec" },
		{ MakeType(K2::PC_Wildcard), "Wildcard" },
		{ MakeType(K2::PC_Object, K2::PSC_Self, nullptr), "Self Object Reference" },
		{ MakeType(K2::PC_Object), "Unknown Object Reference" },
		{ MakeType(K2::PC_Interface, NAME_None, AActor::StaticClass()), "Actor Interface" },
		{ MakeType(K2::PC_Struct), "struct" },
		{ MakeType(TEXT("Teapot")), "Teapot" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(K2::TypeToText(Case.Type).ToString()), Case.Text);
	}
}

TEST(PinTypes, SayWhichValuesGoWhere)
{
	const FEdGraphPinType Object = MakeType(K2::PC_Object, NAME_None, UObject::StaticClass());
	const FEdGraphPinType Actor = TypeOf(TEXT("Actor"));
	const FEdGraphPinType Character = MakeType(K2::PC_Object, NAME_None, ACharacter::StaticClass());
	const FEdGraphPinType Self = MakeType(K2::PC_Object, K2::PSC_Self, nullptr);
	const FEdGraphPinType CharacterClass = MakeType(K2::PC_Class, NAME_None, ACharacter::StaticClass());
	const FEdGraphPinType Wildcard = MakeType(K2::PC_Wildcard);
	const FEdGraphPinType Exec = MakeType(K2::PC_Exec);
	const FEdGraphPinType Interface = MakeType(K2::PC_Interface, NAME_None, UInterface::StaticClass());
	FEdGraphPinType ActorMap = TypeOf(TEXT("ActorsByName"));
	FEdGraphPinType CountMap = ActorMap;
	CountMap.PinValueType = FEdGraphTerminalType::FromPinType(TypeOf(TEXT("Int")));
	FEdGraphPinType SpotMap = ActorMap;
	SpotMap.PinValueType = FEdGraphTerminalType::FromPinType(TypeOf(TEXT("Spot")));
	FEdGraphPinType VectorMap = ActorMap;
	VectorMap.PinValueType = FEdGraphTerminalType::FromPinType(TypeOf(TEXT("Vector")));
	const struct
	{
		FEdGraphPinType Output;
		FEdGraphPinType Input;
		bool bCompatible;
	} Cases[] = {
		{ Character, Actor, true },
		{ Actor, Character, false },
		{ Character, Object, true },
		{ Self, Actor, true },
		{ Self, Character, false },
		{ CharacterClass, TypeOf(TEXT("ActorClass")), true },
		{ TypeOf(TEXT("ActorClass")), CharacterClass, false },
		{ TypeOf(TEXT("ActorClass")), Actor, false },
		{ TypeOf(TEXT("SoftActor")), Actor, false },
		{ Interface, Object, true },
		{ Interface, Actor, false },
		{ Actor, Interface, false },
		{ TypeOf(TEXT("Float")), TypeOf(TEXT("Double")), true },
		{ TypeOf(TEXT("Double")), TypeOf(TEXT("Float")), true },
		{ TypeOf(TEXT("Int")), TypeOf(TEXT("Double")), false },
		{ TypeOf(TEXT("Int")), TypeOf(TEXT("Mask")), true },
		{ TypeOf(TEXT("Int")), TypeOf(TEXT("Int64")), false },
		{ TypeOf(TEXT("Mood")), TypeOf(TEXT("Byte")), true },
		{ TypeOf(TEXT("Byte")), TypeOf(TEXT("Mood")), false },
		{ TypeOf(TEXT("Mood")), TypeOf(TEXT("Mood")), true },
		{ TypeOf(TEXT("Vector")), TypeOf(TEXT("Spot")), false },
		{ TypeOf(TEXT("Spot")), TypeOf(TEXT("Spot")), true },
		{ TypeOf(TEXT("String")), TypeOf(TEXT("Text")), false },
		{ TypeOf(TEXT("Ints")), TypeOf(TEXT("Int")), false },
		{ TypeOf(TEXT("Int")), TypeOf(TEXT("Ints")), false },
		{ TypeOf(TEXT("Ints")), Wildcard, true },
		{ Wildcard, TypeOf(TEXT("Int")), true },
		{ Exec, Wildcard, false },
		{ Wildcard, Exec, false },
		{ Exec, Exec, true },
		{ Exec, TypeOf(TEXT("bFlag")), false },
		{ ActorMap, ActorMap, true },
		{ ActorMap, CountMap, false },
		{ VectorMap, SpotMap, false },
		{ SpotMap, SpotMap, true },
		{ TypeOf(TEXT("Answer")), TypeOf(TEXT("Signal")), false },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(GetSchema().ArePinTypesCompatible(Case.Output, Case.Input, AActor::StaticClass()), Case.bCompatible)
			<< Describe(Case.Output) << " to " << Describe(Case.Input);
	}
	EXPECT_TRUE(GetSchema().ArePinTypesCompatible(TypeOf(TEXT("Ints")), TypeOf(TEXT("Int")), nullptr, true))
		<< "when containers are ignored";
}

TEST(PinTypes, HaveColoursThatTellThemApart)
{
	const auto ColorOf = [](const TCHAR* Variable) { return GetSchema().GetPinTypeColor(TypeOf(Variable)); };
	const FLinearColor Unknown = GetSchema().GetPinTypeColor(MakeType(TEXT("Teapot")));
	TArray<FLinearColor> Seen = { Unknown };
	for (const TCHAR* const Variable : { TEXT("bFlag"), TEXT("Byte"), TEXT("Int"), TEXT("Int64"), TEXT("Double"),
			 TEXT("Name"), TEXT("String"), TEXT("Text"), TEXT("Spot"), TEXT("Vector"), TEXT("Actor"), TEXT("SoftActor"),
			 TEXT("ActorClass"), TEXT("SoftActorClass"), TEXT("Signal") })
	{
		EXPECT_FALSE(Seen.Contains(ColorOf(Variable))) << ToUtf8(Variable);
		Seen.Add(ColorOf(Variable));
	}
	EXPECT_EQ(ColorOf(TEXT("Float")), ColorOf(TEXT("Double")));
	EXPECT_EQ(ColorOf(TEXT("Mood")), ColorOf(TEXT("Byte")));
	EXPECT_EQ(ColorOf(TEXT("Ints")), ColorOf(TEXT("Int")));
	EXPECT_EQ(GetSchema().GetPinTypeColor(MakeType(K2::PC_Wildcard)), Unknown);
}
}
