#include "ReflectedTestTypes.h"
#include "UObject/EnumProperty.h"
#include "UObject/Package.h"
#include "UObject/TextProperty.h"

#include <gtest/gtest.h>
#include <string>

namespace PropertyTest
{
FProperty* Find(const TCHAR* Name)
{
	FProperty* Property = UTestKinds::StaticClass()->FindPropertyByName(Name);
	EXPECT_TRUE(Property) << TCHAR_TO_UTF8(Name);
	return Property;
}

std::string Export(UTestKinds* Object, const TCHAR* Name, int32 PortFlags = PPF_None)
{
	const FProperty* Property = Find(Name);
	const void* Value = Property->ContainerPtrToValuePtr<void>(Object);
	FString Text;
	EXPECT_TRUE(Property->ExportText_Direct(Text, Value, Value, nullptr, PortFlags));
	return TCHAR_TO_UTF8(*Text);
}

/** True when the whole text was read. */
bool Import(UTestKinds* Object, const TCHAR* Name, const FString& Text, int32 PortFlags = PPF_None)
{
	const FProperty* Property = Find(Name);
	const TCHAR* End =
		Property->ImportText_Direct(*Text, Property->ContainerPtrToValuePtr<void>(Object), Object, PortFlags);
	return End && *End == u'\0';
}
}

using namespace PropertyTest;

struct FTextCase
{
	const TCHAR* Property;
	const TCHAR* Text; // read and written back
};

TEST(PropertyText, IsReadAndWrittenBackTheSame)
{
	const FTextCase Cases[] = {
		{ TEXT("Int"), TEXT("-42") },
		{ TEXT("bFlag"), TEXT("True") },
		{ TEXT("bFirstBit"), TEXT("True") },
		{ TEXT("Byte"), TEXT("200") },
		{ TEXT("Int8"), TEXT("-5") },
		{ TEXT("Int16"), TEXT("-300") },
		{ TEXT("Int64"), TEXT("-9000000000000") },
		{ TEXT("UInt16"), TEXT("60000") },
		{ TEXT("UInt32"), TEXT("4000000000") },
		{ TEXT("UInt64"), TEXT("18000000000000000000") },
		{ TEXT("Float"), TEXT("1.500000") },
		{ TEXT("Double"), TEXT("-0.250000") },
		{ TEXT("Text"), TEXT("bare, with (anything) \"in\" it") },
		{ TEXT("Name"), TEXT("Some_7") },
		{ TEXT("Caption"), TEXT("bare text") },
		{ TEXT("Caption"), TEXT("NSLOCTEXT(\"Space\", \"Key\", \"Said \\\"so\\\"\")") },
		{ TEXT("State"), TEXT("Running") },
		{ TEXT("OldState"), TEXT("TOE_Second") },
		{ TEXT("RawObject"), TEXT("None") },
		{ TEXT("RawObject"), TEXT("/Script/CoreUObject.Class'/Script/CoreUObject.Package'") },
		{ TEXT("Class"), TEXT("/Script/CoreUObject.Class'/Script/CoreUObjectTests.TestKindsChild'") },
		{ TEXT("SoftObject"), TEXT("/Game/NotLoaded.NotLoaded") },
		{ TEXT("SoftObject"), TEXT("None") },
		{ TEXT("Point"), TEXT("(X=9,Label=\"a,b)\")") },
		{ TEXT("Vector"), TEXT("(X=0.000000,Y=2.000000)") },
		{ TEXT("Color"), TEXT("(R=1.000000,G=0.000000,B=0.500000,A=1.000000)") },
		{ TEXT("Texts"), TEXT("(\"one\",\"two\")") },
		{ TEXT("Texts"), TEXT("") },
		{ TEXT("Names"), TEXT("(\"A\",\"B\")") },
		{ TEXT("Names"), TEXT("()") },
		{ TEXT("Counts"), TEXT("((\"one\", 1),(\"two\", 2))") },
		{ TEXT("Counts"), TEXT("()") },
		{ TEXT("Objects"), TEXT("(/Script/CoreUObject.Class'\"/Script/CoreUObject.Enum\"',None)") },
	};
	for (const FTextCase& Case : Cases)
	{
		UTestKinds* Object = NewObject<UTestKinds>();
		ASSERT_TRUE(Import(Object, Case.Property, Case.Text)) << TCHAR_TO_UTF8(Case.Text);
		EXPECT_EQ(Export(Object, Case.Property), TCHAR_TO_UTF8(Case.Text)) << TCHAR_TO_UTF8(Case.Property);
	}
}

TEST(PropertyText, OfStructsInArraysLeavesOutWhatIsAsItStarts)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	Object->Points.SetNum(2);
	Object->Points[1].X = 8;
	EXPECT_EQ(Export(Object, TEXT("Points")), "((),(X=8))");
}

TEST(PropertyText, TakesOtherSpellings)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	EXPECT_TRUE(Import(Object, TEXT("bFlag"), TEXT("yes")) && Object->bFlag);
	EXPECT_TRUE(Import(Object, TEXT("bFlag"), TEXT("0")) && !Object->bFlag);
	EXPECT_TRUE(Import(Object, TEXT("State"), TEXT("ETestState::KeepLast30Days")));
	EXPECT_EQ(Object->State, ETestState::KeepLast30Days);
	EXPECT_TRUE(Import(Object, TEXT("State"), TEXT("1")));
	EXPECT_EQ(Object->State, ETestState::Running);
	EXPECT_TRUE(Import(Object, TEXT("Caption"), TEXT("INVTEXT(\"fixed\")")));
	EXPECT_EQ(Export(Object, TEXT("Caption")), "fixed");
	EXPECT_TRUE(Import(Object, TEXT("Point"), TEXT("( Label=\"b\", Unknown=(1,\")\"), X = 4 )")));
	EXPECT_EQ(Export(Object, TEXT("Point")), "(X=4,Label=\"b\")");
}

TEST(PropertyText, IsRefusedWhenItIsNoValue)
{
	const FTextCase Cases[] = {
		{ TEXT("Int"), TEXT("five") },
		{ TEXT("bFlag"), TEXT("maybe") },
		{ TEXT("State"), TEXT("Flying") },
		{ TEXT("RawObject"), TEXT("/Script/CoreUObject.Nothing") },
		{ TEXT("Object"), TEXT("/Script/CoreUObject.Class'/Script/CoreUObject.Enum'") },
		{ TEXT("Class"), TEXT("/Script/CoreUObject.Enum") },
		{ TEXT("Point"), TEXT("X=4") },
		{ TEXT("Texts"), TEXT("(\"open\"") },
		{ TEXT("Texts"), TEXT("(unquoted)") },
		{ TEXT("Counts"), TEXT("((\"no value\"))") },
	};
	for (const FTextCase& Case : Cases)
	{
		EXPECT_FALSE(Import(NewObject<UTestKinds>(), Case.Property, Case.Text)) << TCHAR_TO_UTF8(Case.Text);
	}
}

TEST(ExportTextDirect, WritesNothingForAValueEqualToTheDelta)
{
	const TCHAR* const EmptyOnes[] = { TEXT("Int"), TEXT("bFlag"), TEXT("bSecondBit"), TEXT("Double"), TEXT("Text"),
		TEXT("Name"), TEXT("Caption"), TEXT("State"), TEXT("OldState"), TEXT("Object"), TEXT("Class"),
		TEXT("SoftObject"), TEXT("Texts"), TEXT("Names"), TEXT("Counts") };
	UTestKinds* Object = NewObject<UTestKinds>();
	UTestKinds* Other = NewObject<UTestKinds>();
	for (const TCHAR* Name : EmptyOnes)
	{
		const FProperty* Property = Find(Name);
		const void* Value = Property->ContainerPtrToValuePtr<void>(Object);
		const void* Delta = Property->ContainerPtrToValuePtr<void>(Other);
		FString Text = TEXT("kept");
		EXPECT_FALSE(Property->ExportText_Direct(Text, Value, nullptr, nullptr, PPF_None)) << TCHAR_TO_UTF8(Name);
		EXPECT_FALSE(Property->ExportText_Direct(Text, Value, Delta, nullptr, PPF_None)) << TCHAR_TO_UTF8(Name);
		EXPECT_TRUE(Text.Equals(TEXT("kept")));
		EXPECT_TRUE(Property->ExportText_Direct(Text, Value, Value, nullptr, PPF_None)) << TCHAR_TO_UTF8(Name);
		EXPECT_TRUE(Text.StartsWith(TEXT("kept"))) << "the text is appended";
	}
}

TEST(ExportTextDirect, AlwaysWritesAStructWithoutDelta)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	const FProperty* Vector = Find(TEXT("Vector"));
	FString Text;
	EXPECT_TRUE(
		Vector->ExportText_Direct(Text, Vector->ContainerPtrToValuePtr<void>(Object), nullptr, nullptr, PPF_None));
	EXPECT_EQ(std::string(TCHAR_TO_UTF8(*Text)), "(X=0.000000,Y=0.000000)");
}

TEST(PropertyValue, OfABitLeavesItsNeighboursAlone)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	const FBoolProperty* First = CastField<FBoolProperty>(Find(TEXT("bFirstBit")));
	const FBoolProperty* Second = CastField<FBoolProperty>(Find(TEXT("bSecondBit")));
	EXPECT_FALSE(Second->IsNativeBool());
	Second->SetPropertyValue_InContainer(Object, true);
	EXPECT_TRUE(Object->bSecondBit);
	EXPECT_FALSE(Object->bFirstBit);
	First->SetPropertyValue_InContainer(Object, true);
	Second->SetPropertyValue_InContainer(Object, false);
	EXPECT_TRUE(Object->bFirstBit);
	EXPECT_FALSE(Object->bSecondBit);
}

TEST(PropertyValue, IsCopiedComparedAndCleared)
{
	UTestKinds* From = NewObject<UTestKinds>();
	From->Int = 3;
	From->Text = TEXT("Case");
	From->Texts = { TEXT("a"), TEXT("b") };
	From->Names = { TEXT("A"), TEXT("B") };
	From->Counts = { { TEXT("one"), 1 } };
	From->Points.SetNum(1);
	From->Numbers[2] = 9;
	UTestKinds* To = NewObject<UTestKinds>();
	for (TFieldIterator<FProperty> It(UTestKinds::StaticClass()); It; ++It)
	{
		It->CopyCompleteValue_InContainer(To, From);
		EXPECT_TRUE(It->Identical_InContainer(To, From) || It->IsA<FSoftObjectProperty>());
	}
	EXPECT_EQ(To->Counts.FindChecked(TEXT("ONE")), 1);
	EXPECT_TRUE(To->Names.Contains(TEXT("b")));
	EXPECT_EQ(To->Numbers[2], 9);

	To->Text = TEXT("case");
	EXPECT_FALSE(Find(TEXT("Text"))->Identical_InContainer(To, From)) << "letter case counts";
	To->Counts.Add(TEXT("two"), 2);
	EXPECT_FALSE(Find(TEXT("Counts"))->Identical_InContainer(To, From));
	Find(TEXT("Texts"))->ClearValue_InContainer(To);
	EXPECT_EQ(To->Texts.Num(), 0);
}

TEST(ScriptHelpers, WorkOnTheRealContainers)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	Object->Texts = { TEXT("a"), TEXT("b"), TEXT("c") };
	const FScriptArrayHelper_InContainer Array(CastField<FArrayProperty>(Find(TEXT("Texts"))), Object);
	Array.RemoveValues(1);
	Array.InsertValues(0);
	Array.SwapValues(0, 2);
	ASSERT_EQ(Object->Texts.Num(), 3);
	EXPECT_TRUE(Object->Texts[0].Equals(TEXT("c")));
	EXPECT_TRUE(Object->Texts[2].IsEmpty());
	Object->Texts.Add(TEXT("typed"));
	EXPECT_DEATH(Array.GetRawPtr(9), "out of bounds");

	const FMapProperty* MapProperty = CastField<FMapProperty>(Find(TEXT("Counts")));
	const FScriptMapHelper Map(MapProperty, MapProperty->ContainerPtrToValuePtr<void>(Object));
	const FString Key = TEXT("key");
	const int32 Value = 5;
	Map.AddPair(&Key, &Value);
	Map.AddPair(&Key, &Value);
	EXPECT_EQ(Object->Counts.Num(), 1);
	Object->Counts.Add(TEXT("other"), 6);
	EXPECT_TRUE(Map.RemovePair(&Key));
	EXPECT_FALSE(Object->Counts.Contains(Key));
	EXPECT_EQ(Object->Counts.FindRef(TEXT("other")), 6);
	const FString Other = TEXT("OTHER");
	ASSERT_TRUE(Map.FindValueFromHash(&Other)) << "keys ignore case, as in the typed map";

	const FSetProperty* SetProperty = CastField<FSetProperty>(Find(TEXT("Names")));
	const FScriptSetHelper Set(SetProperty, SetProperty->ContainerPtrToValuePtr<void>(Object));
	const FName Name(TEXT("InSet"));
	Set.AddElement(&Name);
	EXPECT_TRUE(Object->Names.Contains(Name));
	Object->Names.Remove(Name);
	EXPECT_EQ(Set.FindElementIndex(&Name), INDEX_NONE);
}

TEST(PropertyAccess, AssertsForAnObjectOfAnotherClass)
{
	EXPECT_DEATH(Find(TEXT("Int"))->ContainerPtrToValuePtr<void>(NewObject<UTestSettings>()), "belongs to class");
}

TEST(PropertyChangedEvent, HasNoNameWithoutProperty)
{
	const FPropertyChangedEvent Unknown(nullptr);
	EXPECT_EQ(Unknown.GetPropertyName(), NAME_None);
	EXPECT_EQ(Unknown.GetMemberPropertyName(), NAME_None);
	const FPropertyChangedEvent Known(Find(TEXT("Int")), EPropertyChangeType::ValueSet);
	EXPECT_EQ(Known.GetPropertyName(), GET_MEMBER_NAME_CHECKED(UTestKinds, Int));
}
