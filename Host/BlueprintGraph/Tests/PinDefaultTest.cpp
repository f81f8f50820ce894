#include "BlueprintGraphTestTypes.h"
#include "BlueprintTestSupport.h"

namespace PinDefaultTest
{
using K2 = UEdGraphSchema_K2;

/** A node with one input pin, which each case gives another type. */
class FPinDefaultTest : public testing::Test
{
protected:
	FPinDefaultTest()
		: Graph(NewObject<UEdGraph>(GetTransientPackage()))
	{
		Graph->AddToRoot();
		Graph->Schema = K2::StaticClass();
		Node = NewObject<UEdGraphNode>(Graph);
		Graph->AddNode(Node);
		Pin = Node->CreatePin(EGPD_Input, K2::PC_Int, TEXT("Value"));
	}
	~FPinDefaultTest() override
	{
		Graph->RemoveFromRoot();
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	}

	void SetType(FName Category, UObject* Object = nullptr, EPinContainerType Container = EPinContainerType::None) const
	{
		Pin->PinType = FEdGraphPinType(Category, NAME_None, Object, Container, false, FEdGraphTerminalType());
		Pin->DefaultValue.Empty();
		Pin->DefaultObject = nullptr;
		Pin->DefaultTextValue = FText();
	}
	bool IsValid(const TCHAR* Text) const { return Schema.IsPinDefaultValid(Pin, Text, nullptr, FText()).IsEmpty(); }

	const K2& Schema = *GetDefault<K2>();
	UEdGraph* const Graph;
	UEdGraphNode* Node = nullptr;
	UEdGraphPin* Pin = nullptr;
};

TEST_F(FPinDefaultTest, AreCheckedAgainstTheTypeOfThePin)
{
	UObject* const Mood = StaticEnum<EGraphTestMood>();
	UObject* const Vector = TBaseStructure<FVector>::Get();
	UObject* const Color = TBaseStructure<FLinearColor>::Get();
	const struct
	{
		FName Category;
		UObject* Object;
		TArray<const TCHAR*> Valid;
		TArray<const TCHAR*> Invalid;
	} Cases[] = {
		{ K2::PC_Boolean, nullptr, { TEXT("true"), TEXT("false"), TEXT("") }, { TEXT("1"), TEXT("yes"), TEXT("tru") } },
		{ K2::PC_Int, nullptr, { TEXT("0"), TEXT("-2147483648"), TEXT("2147483647"), TEXT("+5") },
			{ TEXT("2147483648"), TEXT("-2147483649"), TEXT("1.0"), TEXT("1e3"), TEXT("seven"), TEXT("-"),
				TEXT("99999999999999999999") } },
		{ K2::PC_Int64, nullptr, { TEXT("9223372036854775807"), TEXT("-9223372036854775808"), TEXT("0012") },
			{ TEXT("9223372036854775808"), TEXT("9999999999999999999"), TEXT("-9223372036854775809"), TEXT("0x10") } },
		{ K2::PC_Byte, nullptr, { TEXT("0"), TEXT("255") }, { TEXT("256"), TEXT("-1"), TEXT("Calm") } },
		{ K2::PC_Byte, Mood, { TEXT("Calm"), TEXT("Wild") }, { TEXT("Angry"), TEXT("0") } },
		{ K2::PC_Real, nullptr, { TEXT("1"), TEXT("-0.5"), TEXT(".5") },
			{ TEXT("one"), TEXT("1.2.3"), TEXT("1,5"), TEXT("-") } },
		{ K2::PC_Struct, Vector, { TEXT("1,2,3"), TEXT("1.5, -2, 0"), TEXT("(X=1,Y=2,Z=3)") },
			{ TEXT("1,2"), TEXT("1,2,3,4"), TEXT("a,b,c"), TEXT("up") } },
		{ K2::PC_Struct, Color, { TEXT("(R=1,G=0,B=0,A=1)") }, { TEXT("1,0,0"), TEXT("red") } },
		{ K2::PC_String, nullptr, { TEXT("anything"), TEXT("") }, {} },
		{ K2::PC_Name, nullptr, { TEXT("Anything"), TEXT("None") }, {} },
		{ K2::PC_Exec, nullptr, {}, { TEXT(""), TEXT("1") } },
		{ K2::PC_Object, AActor::StaticClass(), { TEXT("") }, { TEXT("/Game/Thing.Thing") } },
	};
	for (const auto& Case : Cases)
	{
		SetType(Case.Category, Case.Object);
		for (const TCHAR* const Text : Case.Valid)
		{
			EXPECT_TRUE(IsValid(Text)) << ToUtf8(Case.Category.ToString()) << ": " << ToUtf8(Text);
		}
		for (const TCHAR* const Text : Case.Invalid)
		{
			EXPECT_FALSE(IsValid(Text)) << ToUtf8(Case.Category.ToString()) << ": " << ToUtf8(Text);
		}
	}
	SetType(K2::PC_Int, nullptr, EPinContainerType::Array);
	EXPECT_TRUE(IsValid(TEXT("")));
	EXPECT_FALSE(IsValid(TEXT("(1,2)")));
}

TEST_F(FPinDefaultTest, GoWhereTheTypeKeepsThem)
{
	SetType(K2::PC_Text);
	Schema.TrySetDefaultValue(*Pin, TEXT("Hello"));
	EXPECT_EQ(ToUtf8(Pin->DefaultTextValue.ToString()), "Hello");
	EXPECT_TRUE(Pin->DefaultValue.IsEmpty());

	SetType(K2::PC_Class, AActor::StaticClass());
	Schema.TrySetDefaultValue(*Pin, TEXT("/Script/Engine.Character"));
	EXPECT_EQ(Pin->DefaultObject, ACharacter::StaticClass());
	EXPECT_TRUE(Pin->DefaultValue.IsEmpty());
	Schema.TrySetDefaultValue(*Pin, TEXT("/Script/Engine.NoSuchClass"));
	EXPECT_EQ(Pin->DefaultObject, ACharacter::StaticClass()) << "an object that does not exist changes nothing";
	Schema.TrySetDefaultValue(*Pin, TEXT("None"));
	EXPECT_FALSE(Pin->DefaultObject);

	SetType(K2::PC_Int);
	Schema.TrySetDefaultValue(*Pin, TEXT("12"));
	Schema.TrySetDefaultValue(*Pin, TEXT("twelve"));
	EXPECT_EQ(ToUtf8(Pin->DefaultValue), "12") << "an invalid value changes nothing";
}

TEST_F(FPinDefaultTest, AreObjectsOfThePinsClassOnly)
{
	UObject* const Character = GetMutableDefault<ACharacter>();
	const struct
	{
		FName Category;
		UClass* Class;
		const UObject* Value;
		bool bAccepted;
	} Cases[] = {
		{ K2::PC_Object, AActor::StaticClass(), Character, true },
		{ K2::PC_Object, APawn::StaticClass(), Character, true },
		{ K2::PC_Object, UEdGraphNode::StaticClass(), Character, false },
		{ K2::PC_Class, AActor::StaticClass(), ACharacter::StaticClass(), true },
		{ K2::PC_Class, ACharacter::StaticClass(), AActor::StaticClass(), false },
		{ K2::PC_Class, AActor::StaticClass(), Character, false },
		{ K2::PC_Object, AActor::StaticClass(), ACharacter::StaticClass(), false },
	};
	for (const auto& Case : Cases)
	{
		SetType(Case.Category, Case.Class);
		Schema.TrySetDefaultValue(*Pin, Case.Value->GetPathName());
		EXPECT_EQ(Pin->DefaultObject.Get() == Case.Value, Case.bAccepted)
			<< ToUtf8(Case.Category.ToString()) << " of " << ToUtf8(Case.Class->GetName()) << ": "
			<< ToUtf8(Case.Value->GetPathName());
		EXPECT_EQ(Schema.IsPinDefaultValid(Pin, FString(), const_cast<UObject*>(Case.Value), FText()).IsEmpty(),
			Case.bAccepted);
	}
}

TEST_F(FPinDefaultTest, StartAsTheTypesEmptyValue)
{
	const struct
	{
		FName Category;
		UObject* Object;
		const char* Value;
	} Cases[] = {
		{ K2::PC_Int, nullptr, "0" },
		{ K2::PC_Int64, nullptr, "0" },
		{ K2::PC_Byte, nullptr, "0" },
		{ K2::PC_Byte, StaticEnum<EGraphTestMood>(), "Calm" },
		{ K2::PC_Real, nullptr, "0.0" },
		{ K2::PC_Boolean, nullptr, "false" },
		{ K2::PC_Name, nullptr, "None" },
		{ K2::PC_String, nullptr, "" },
		{ K2::PC_Object, AActor::StaticClass(), "" },
		{ K2::PC_Struct, TBaseStructure<FVector>::Get(), "0, 0, 0" },
		{ K2::PC_Struct, TBaseStructure<FRotator>::Get(), "0, 0, 0" },
		{ K2::PC_Struct, TBaseStructure<FLinearColor>::Get(), "" },
	};
	for (const auto& Case : Cases)
	{
		SetType(Case.Category, Case.Object);
		Pin->AutogeneratedDefaultValue.Empty();
		Schema.SetPinAutogeneratedDefaultValueBasedOnType(Pin);
		EXPECT_EQ(ToUtf8(Pin->DefaultValue), Case.Value) << ToUtf8(Case.Category.ToString());
		EXPECT_EQ(ToUtf8(Pin->AutogeneratedDefaultValue), Case.Value) << ToUtf8(Case.Category.ToString());
		EXPECT_TRUE(IsValid(*Pin->DefaultValue)) << "what a pin starts as compiles";
	}
	SetType(K2::PC_Int, nullptr, EPinContainerType::Set);
	Schema.SetPinAutogeneratedDefaultValueBasedOnType(Pin);
	EXPECT_TRUE(Pin->DefaultValue.IsEmpty()) << "containers have no value on a pin";
}
}
