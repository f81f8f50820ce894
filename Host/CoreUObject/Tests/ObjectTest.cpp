#include "ReflectedTestTypes.h"
#include "Templates/Casts.h"
#include "UObject/Package.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

UTestLife::UTestLife(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	Part = ObjectInitializer.CreateDefaultSubobject<UTestKinds>(this, TEXT("Part"));
}

UTestLife::~UTestLife()
{
	++NumDestroyed;
}

void UTestLife::PostInitProperties()
{
	Super::PostInitProperties();
	++NumInits;
}

void UTestLife::BeginDestroy()
{
	Super::BeginDestroy();
	++NumBegun;
}

namespace ObjectTest
{
template <typename To, typename From>
concept CCanCast = requires(From* Source)
{
	Cast<To>(Source);
};
static_assert(CCanCast<UTestKinds, UObject>);
static_assert(!CCanCast<FIntProperty, FProperty>, "fields are cast with CastField");

template <typename T>
concept CCanNew = requires
{
	new T();
};
static_assert(!CCanNew<UTestKinds>, "objects are made by NewObject");

template <typename ArrayType>
concept CHoldsPointers = requires(ArrayType Array)
{
	[](auto*) {}(Array[0]);
};
static_assert(!CHoldsPointers<TArray<TObjectPtr<UObject>>>, "auto* does not take a TObjectPtr");
static_assert(std::is_convertible_v<TObjectPtr<UTestKinds>, UObject*>);
static_assert(!std::is_copy_constructible_v<UTestKinds>);

void ExpectText(const FString& Text, const TCHAR* Expected)
{
	EXPECT_TRUE(Text.Equals(Expected)) << TCHAR_TO_UTF8(*Text);
}
}

using ObjectTest::ExpectText;

TEST(NewObject, NamesAnObjectAfterItsClassWithANumber)
{
	const UTestKinds* First = NewObject<UTestKinds>();
	const UTestKinds* Second = NewObject<UTestKinds>();
	EXPECT_TRUE(First->GetName().StartsWith(TEXT("TestKinds_")));
	EXPECT_FALSE(First->GetFName() == Second->GetFName());
	EXPECT_EQ(First->GetOuter(), GetTransientPackage());
	ExpectText(GetTransientPackage()->GetPathName(), TEXT("/Engine/Transient"));
}

TEST(NewObject, TakesOverANameOfTheSameClassInPlace)
{
	UTestKinds* Old = NewObject<UTestKinds>(GetTransientPackage(), TEXT("InPlace"));
	Old->Int = 5;
	const TWeakObjectPtr<UTestKinds> Weak(Old);
	UTestKinds* New = NewObject<UTestKinds>(GetTransientPackage(), TEXT("InPlace"));
	EXPECT_EQ(New, Old);
	EXPECT_EQ(New->Int, 0);
	EXPECT_FALSE(Weak.IsValid());
}

TEST(NewObject, CopiesTheTemplate)
{
	UTestKinds* Template = NewObject<UTestKinds>();
	Template->Texts = { TEXT("a"), TEXT("b") };
	const UTestKinds* Copy = NewObject<UTestKinds>(GetTransientPackage(), NAME_None, RF_NoFlags, Template);
	ASSERT_EQ(Copy->Texts.Num(), 2);
	ExpectText(Copy->Texts[1], TEXT("b"));
}

TEST(NewObject, GivesNewObjectsTheConfigurationOfTheDefaultObjectAndNothingElse)
{
	UTestSettings* Defaults = GetMutableDefault<UTestSettings>();
	Defaults->ApiKey = TEXT("key");
	Defaults->bReset = true;
	const UTestSettings* Object = NewObject<UTestSettings>();
	ExpectText(Object->ApiKey, TEXT("key"));
	EXPECT_FALSE(Object->bReset);
	Defaults->ApiKey.Empty();
	Defaults->bReset = false;
}

TEST(NewObject, RunsTheConstructorThenPostInitProperties)
{
	const UTestLife* Life = NewObject<UTestLife>();
	EXPECT_EQ(Life->NumInits, 1);
	ASSERT_TRUE(Life->Part);
	EXPECT_EQ(Life->Part->GetOuter(), Life);
	EXPECT_TRUE(Life->Part->HasAnyFlags(RF_DefaultSubObject));
	EXPECT_NE(Life->Part, GetDefault<UTestLife>()->Part);
}

TEST(NewObjectDeath, RefusesMisuse)
{
	EXPECT_DEATH(NewObject<UTestAbstract>(), "abstract class");
	EXPECT_DEATH(NewObject<UTestSettings>(GetTransientPackage(), UTestKinds::StaticClass()), "not a child of");
	NewObject<UTestKinds>(GetTransientPackage(), TEXT("Taken"));
	EXPECT_DEATH(NewObject<UTestSettings>(GetTransientPackage(), TEXT("Taken")), "exists with another class");
	EXPECT_DEATH(UTestKinds OnTheStack, "made by NewObject");
	EXPECT_DEATH(CreatePackage(TEXT("NoSlash")), "long package name");
	EXPECT_DEATH(CreatePackage(TEXT("/Game/Folder/")), "long package name");
}

TEST(NewObjectDeath, RefusesAnUnnamedObjectInAConstructor)
{
	const auto MakeInConstructor = [] {
		const FObjectInitializer Initializer(GetTransientPackage(), nullptr);
		NewObject<UTestKinds>();
	};
	EXPECT_DEATH(MakeInConstructor(), "NewObject with empty name");
}

TEST(ObjectNames, TellPathAndFullName)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Names/Thing"));
	UTestKinds* Asset = NewObject<UTestKinds>(Package, TEXT("Thing"), RF_Public | RF_Standalone);
	UTestKinds* Inner = NewObject<UTestKinds>(Asset, TEXT("Inner"));
	UTestKinds* Deep = NewObject<UTestKinds>(Inner, TEXT("Deep_7"));

	ExpectText(Package->GetPathName(), TEXT("/Game/Names/Thing"));
	ExpectText(Asset->GetPathName(), TEXT("/Game/Names/Thing.Thing"));
	ExpectText(Inner->GetPathName(), TEXT("/Game/Names/Thing.Thing:Inner"));
	ExpectText(Deep->GetPathName(), TEXT("/Game/Names/Thing.Thing:Inner.Deep_7"));
	ExpectText(Deep->GetPathName(Package), TEXT("Thing:Inner.Deep_7"));
	ExpectText(Deep->GetPathName(Inner), TEXT("Deep_7"));
	ExpectText(Asset->GetFullName(), TEXT("TestKinds /Game/Names/Thing.Thing"));
	ExpectText(UTestKinds::StaticClass()->GetPathName(), TEXT("/Script/CoreUObjectTests.TestKinds"));
	ExpectText(UTestKinds::StaticClass()->GetFullName(), TEXT("Class /Script/CoreUObjectTests.TestKinds"));
	ExpectText(StaticEnum<ETestState>()->GetPathName(), TEXT("/Script/CoreUObjectTests.ETestState"));
	ExpectText(GetDefault<UTestKinds>()->GetName(), TEXT("Default__TestKinds"));

	EXPECT_EQ(Deep->GetPackage(), Package);
	EXPECT_EQ(Package->GetPackage(), Package);
	EXPECT_EQ(Deep->GetTypedOuter<UPackage>(), Package);
	EXPECT_TRUE(Deep->IsIn(Asset));
	EXPECT_FALSE(Asset->IsIn(Asset));
	EXPECT_TRUE(Asset->IsAsset());
	EXPECT_FALSE(Inner->IsAsset());
	EXPECT_EQ(Package->FindAssetInPackage(), Asset);
}

TEST(FindObject, NeedsAFullPathWithoutAnOuter)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Find/Me"));
	UTestKinds* Asset = NewObject<UTestKinds>(Package, TEXT("Me"));
	UTestKinds* Inner = NewObject<UTestKinds>(Asset, TEXT("OnlyOneOfThisName"));

	EXPECT_EQ(FindObject<UTestKinds>(nullptr, TEXT("/Game/Find/Me.Me")), Asset);
	EXPECT_EQ(FindObject<UTestKinds>(nullptr, TEXT("/game/find/ME.me:onlyoneofthisname")), Inner);
	EXPECT_EQ(FindObject<UTestKinds>(Asset, TEXT("OnlyOneOfThisName")), Inner);
	EXPECT_EQ(FindObject<UTestKinds>(nullptr, TEXT("OnlyOneOfThisName")), nullptr);
	EXPECT_EQ(FindObject<UTestSettings>(nullptr, TEXT("/Game/Find/Me.Me")), nullptr);
	EXPECT_EQ(FindObject<UTestKinds>(Package, TEXT("OnlyOneOfThisName")), nullptr);
	EXPECT_EQ(FindObject<UClass>(nullptr, TEXT("/Script/CoreUObjectTests.TestKinds")), UTestKinds::StaticClass());
	EXPECT_EQ(FindObject<UClass>(nullptr, TEXT("TestKinds")), nullptr);
	EXPECT_EQ(FindFirstObject<UTestKinds>(TEXT("OnlyOneOfThisName")), Inner);
	EXPECT_EQ(FindObject<UTestKinds>(nullptr, TEXT("")), nullptr);
}

TEST(FindType, TakesShortNamesWithoutPrefixAndFullPaths)
{
	EXPECT_EQ(UClass::TryFindTypeSlow<UClass>(TEXT("TestKinds")), UTestKinds::StaticClass());
	EXPECT_EQ(UClass::TryFindTypeSlow<UClass>(TEXT("UTestKinds")), nullptr);
	EXPECT_EQ(
		UClass::TryFindTypeSlowSafe<UClass>(TEXT("/Script/CoreUObjectTests.TestKinds")), UTestKinds::StaticClass());
	EXPECT_EQ(UClass::TryFindTypeSlow<UEnum>(TEXT("ETestState")), StaticEnum<ETestState>());
	EXPECT_EQ(UClass::TryFindTypeSlow<UScriptStruct>(TEXT("TestPoint")), FTestPoint::StaticStruct());
	EXPECT_EQ(UClass::TryFindTypeSlow<UEnum>(TEXT("TestKinds")), nullptr);
	EXPECT_EQ(UClass::TryFindTypeSlow<UClass>(FString()), nullptr);
}

TEST(Cast, KnowsParentsChildrenAndNull)
{
	UObject* Child = NewObject<UTestKindsChild>();
	EXPECT_EQ(Cast<UTestKinds>(Child), Child);
	EXPECT_EQ(Cast<UTestSettings>(Child), nullptr);
	EXPECT_EQ(Cast<UTestKinds>(static_cast<UObject*>(nullptr)), nullptr);
	EXPECT_EQ(ExactCast<UTestKinds>(Child), nullptr);
	EXPECT_EQ(ExactCast<UTestKindsChild>(Child), Child);
	EXPECT_TRUE(Child->IsA<UTestKinds>());
	EXPECT_TRUE(UTestKinds::StaticClass()->IsChildOf(UTestKinds::StaticClass()));
	EXPECT_DEATH(CastChecked<UTestSettings>(Child), "Cast of");
	EXPECT_DEATH(CastChecked<UTestKinds>(static_cast<UObject*>(nullptr)), "Cast of");

	TSubclassOf<UTestKinds> Subclass = UTestSettings::StaticClass();
	EXPECT_EQ(Subclass.Get(), nullptr);
	Subclass = UTestKindsChild::StaticClass();
	EXPECT_EQ(Subclass.Get(), UTestKindsChild::StaticClass());
}

TEST(Package, IsMarkedDirtyByItsObjects)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Dirty"));
	UTestKinds* Asset = NewObject<UTestKinds>(Package, TEXT("Dirty"));
	EXPECT_FALSE(Package->IsDirty());
	EXPECT_TRUE(Asset->MarkPackageDirty());
	EXPECT_TRUE(Package->IsDirty());
	Package->SetDirtyFlag(false);
	Asset->SetFlags(RF_Transient);
	EXPECT_FALSE(Asset->MarkPackageDirty());
	EXPECT_FALSE(NewObject<UTestKinds>()->MarkPackageDirty());
	EXPECT_FALSE(GetDefault<UTestKinds>()->MarkPackageDirty());
	EXPECT_EQ(CreatePackage(TEXT("/Game/Dirty")), Package);
}

TEST(NewObject, LeavesThePartsToAnObjectThatIsMadeAnew)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Anew"));
	UObject* Outer = NewObject<UTestKinds>(Package, TEXT("Outer"));
	UObject* Part = NewObject<UTestKinds>(Outer, TEXT("Part"));
	EXPECT_EQ(NewObject<UTestKinds>(Package, TEXT("Outer")), Outer);
	TArray<UObject*> Parts;
	GetObjectsWithOuter(Outer, Parts);
	EXPECT_EQ(Parts, TArray<UObject*>({ Part }));
	EXPECT_EQ(FindObject<UTestKinds>(Outer, TEXT("Part")), Part);
}

TEST(Rename, KeepsTheNamesOfAnOuterApart)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Renames"));
	UTestKinds* First = NewObject<UTestKinds>(Package, TEXT("First"));
	UTestKinds* Second = NewObject<UTestKinds>(Package, TEXT("Second"));
	EXPECT_FALSE(Second->Rename(TEXT("FIRST")));
	EXPECT_TRUE(Second->Rename(TEXT("Third")));
	EXPECT_EQ(FindObject<UTestKinds>(Package, TEXT("Third")), Second);
	EXPECT_EQ(FindObject<UTestKinds>(Package, TEXT("Second")), nullptr);
	EXPECT_TRUE(Second->Rename(TEXT("First"), First));
	ExpectText(Second->GetPathName(), TEXT("/Game/Renames.First:First"));

	TArray<UObject*> Objects;
	GetObjectsWithOuter(Package, Objects);
	EXPECT_EQ(Objects.Num(), 2);
}

TEST(WeakDelegate, DoesNotOutliveItsObject)
{
	UTestKinds* Object = NewObject<UTestKinds>();
	TDelegate<void()> Delegate;
	Delegate.BindWeakLambda(Object, [] {});
	EXPECT_TRUE(Delegate.IsBound());
	Object->MarkAsGarbage();
	EXPECT_FALSE(Delegate.IsBound());
	EXPECT_FALSE(IsValid(Object));
	EXPECT_EQ(FindObject<UTestKinds>(GetTransientPackage(), *Object->GetName()), nullptr);
}
