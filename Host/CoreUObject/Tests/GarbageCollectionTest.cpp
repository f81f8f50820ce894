#include "ReflectedTestTypes.h"
#include "UObject/GCObject.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

namespace GarbageCollectionTest
{
/** Makes an object and hands out nothing but a weak pointer. */
TWeakObjectPtr<UTestKinds> MakeWeak(UObject* Outer = GetTransientPackage())
{
	return NewObject<UTestKinds>(Outer);
}

struct FKeeper : FGCObject
{
	void AddReferencedObjects(FReferenceCollector& Collector) override { Collector.AddReferencedObject(Object); }
	FString GetReferencerName() const override { return TEXT("FKeeper"); }
	TObjectPtr<UTestKinds> Object;
};

void Collect()
{
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
}
}

using namespace GarbageCollectionTest;

TEST(CollectGarbage, FreesWhatNothingRefersTo)
{
	const TWeakObjectPtr<UTestKinds> Lost = MakeWeak();
	TStrongObjectPtr<UTestKinds> Kept(NewObject<UTestKinds>());
	Kept->Unreflected = Lost.Get();
	Collect();
	EXPECT_FALSE(Lost.IsValid());
	EXPECT_TRUE(Lost.IsStale());
	Kept->Unreflected = nullptr;
	const TWeakObjectPtr<UTestKinds> Weak(Kept.Get());
	EXPECT_TRUE(Weak.IsValid());
	Kept.Reset();
	Collect();
	EXPECT_FALSE(Weak.IsValid());
}

TEST(CollectGarbage, FollowsEveryReflectedReference)
{
	using FMakeReference = void (*)(UTestKinds & Owner, UTestKinds * Object);
	const FMakeReference References[] = {
		[](UTestKinds& Owner, UTestKinds* Object) { Owner.RawObject = Object; },
		[](UTestKinds& Owner, UTestKinds* Object) { Owner.Object = Object; },
		[](UTestKinds& Owner, UTestKinds* Object) { Owner.Objects.Add(Object); },
		[](UTestKinds& Owner, UTestKinds* Object) {
			FTestNamedPoint Point;
			Point.Object = Object;
			Owner.PointsByState.Add(ETestState::Running, Point);
		},
	};
	for (const FMakeReference MakeReference : References)
	{
		TStrongObjectPtr<UTestKinds> Owner(NewObject<UTestKinds>());
		const TWeakObjectPtr<UTestKinds> Referenced = MakeWeak();
		MakeReference(*Owner, Referenced.Get());
		Collect();
		EXPECT_TRUE(Referenced.IsValid());
		Owner.Reset();
		Collect();
		EXPECT_FALSE(Referenced.IsValid());
	}
}

TEST(CollectGarbage, KeepsRootsFlagsOutersAndWhatIsReported)
{
	UPackage* Package = CreatePackage(TEXT("/Game/Collected"));
	UTestKinds* Rooted = NewObject<UTestKinds>(Package, TEXT("Rooted"));
	Rooted->AddToRoot();
	UTestKinds* Standalone = NewObject<UTestKinds>(Package, TEXT("Standalone"), RF_Public | RF_Standalone);
	const TWeakObjectPtr<UTestKinds> Inner = MakeWeak(Rooted);
	const TWeakObjectPtr<UObject> WeakStandalone(Standalone);
	const TWeakObjectPtr<UObject> WeakRooted(Rooted);
	const TWeakObjectPtr<UPackage> WeakPackage(Package);
	FKeeper Keeper;
	Keeper.Object = NewObject<UTestKinds>();
	const TWeakObjectPtr<UTestKinds> Reported(Keeper.Object.Get());

	Collect();
	EXPECT_TRUE(WeakRooted.IsValid());
	EXPECT_TRUE(WeakStandalone.IsValid());
	EXPECT_TRUE(WeakPackage.IsValid());
	EXPECT_TRUE(Reported.IsValid());
	EXPECT_FALSE(Inner.IsValid()) << "an outer does not keep what lies in it";

	CollectGarbage(RF_NoFlags);
	EXPECT_FALSE(WeakStandalone.IsValid());
	Rooted->RemoveFromRoot();
	Collect();
	EXPECT_FALSE(WeakPackage.IsValid());
}

TEST(CollectGarbage, DestroysEachObjectOnce)
{
	UTestLife::NumBegun = 0;
	UTestLife::NumDestroyed = 0;
	const TWeakObjectPtr<UTestKinds> Part(NewObject<UTestLife>()->Part.Get());
	Collect();
	EXPECT_EQ(UTestLife::NumBegun, 1);
	EXPECT_EQ(UTestLife::NumDestroyed, 1);
	EXPECT_FALSE(Part.IsValid());
	Collect();
	EXPECT_EQ(UTestLife::NumDestroyed, 1);
	EXPECT_TRUE(IsValid(GetDefault<UTestLife>()));
}

TEST(CollectGarbage, FreesAClassMadeAtRunTimeTogetherWithItsObjects)
{
	UClass* Class = NewObject<UClass>(GetTransientPackage(), TEXT("CollectedClass_C"));
	Class->SetSuperStruct(UTestKinds::StaticClass());
	FArrayProperty* Tags = new FArrayProperty(Class, TEXT("Tags"), RF_Public);
	Tags->Inner = new FStrProperty(Tags, TEXT("Tags"), RF_Public);
	Class->AddCppProperty(Tags);
	Class->StaticLink(true);
	UObject* Object = NewObject<UTestKinds>(GetTransientPackage(), Class);
	Tags->ImportText_InContainer(TEXT("(\"text that has to be freed\")"), Object, nullptr, PPF_None);

	const TWeakObjectPtr<UClass> WeakClass(Class);
	{
		const TStrongObjectPtr<UObject> Strong(Object);
		Collect();
		EXPECT_TRUE(WeakClass.IsValid()) << "an object keeps its class";
	}
	Collect();
	EXPECT_FALSE(WeakClass.IsValid());
}
