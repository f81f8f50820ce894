#include "AssetRegistry/AssetData.h"
#include "DelegateTestTypes.h"
#include "ReflectedTestTypes.h"
#include "UObject/Package.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>
#include <string>

namespace SoftPathTest
{
std::string ToStd(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}

TEST(SoftObjectPath, TellsThePackageAndTheAsset)
{
	const struct
	{
		const TCHAR* Given;
		const char* Path;
		const char* Package;
		const char* Asset;
	} Cases[] = {
		{ TEXT("/Game/Doors/BP_Door.BP_Door"), "/Game/Doors/BP_Door.BP_Door", "/Game/Doors/BP_Door", "BP_Door" },
		{ TEXT("/Game/A.A:Inner"), "/Game/A.A:Inner", "/Game/A", "A" },
		{ TEXT("/Game/A"), "/Game/A", "/Game/A", "" },
		{ TEXT("/Script/Engine.Blueprint'/Game/A.A'"), "/Game/A.A", "/Game/A", "A" },
		{ TEXT("None"), "", "", "" },
		{ TEXT(""), "", "", "" },
	};
	for (const auto& Case : Cases)
	{
		const FSoftObjectPath Path(Case.Given);
		EXPECT_EQ(ToStd(Path.ToString()), Case.Path);
		EXPECT_EQ(ToStd(Path.GetLongPackageName()), Case.Package) << ToStd(Case.Given);
		EXPECT_EQ(ToStd(Path.GetAssetName()), Case.Asset) << ToStd(Case.Given);
		EXPECT_EQ(Path.IsValid(), !std::string(Case.Path).empty()) << ToStd(Case.Given);
		EXPECT_EQ(Path.ResolveObject(), nullptr) << "nothing of this is in memory";
	}
	FSoftObjectPath Path(UTestKinds::StaticClass());
	EXPECT_EQ(Path.ResolveObject(), UTestKinds::StaticClass());
	EXPECT_EQ(FSoftClassPath(Path.ToString()).ResolveClass(), UTestKinds::StaticClass());
	EXPECT_EQ(FSoftClassPath(GetTransientPackage()->GetPathName()).ResolveClass(), nullptr) << "an object, no class";
	EXPECT_EQ(GetTypeHash(Path), GetTypeHash(FSoftObjectPath(UTestKinds::StaticClass())));
	Path.Reset();
	EXPECT_TRUE(Path.IsNull());
}

TEST(SoftObjectPtr, FindsItsObjectWhileItIsInMemoryAndIsPendingOtherwise)
{
	TSoftObjectPtr<UTestKinds> Soft;
	EXPECT_TRUE(Soft.IsNull() && !Soft.IsPending() && !Soft);
	EXPECT_EQ(Soft.LoadSynchronous(), nullptr);
	{
		const TStrongObjectPtr<UTestKinds> Object(NewObject<UTestKinds>(GetTransientPackage(), TEXT("SoftThing")));
		Soft = Object.Get();
		EXPECT_EQ(Soft.Get(), Object.Get());
		EXPECT_EQ(Soft->Int, 0);
		EXPECT_EQ(ToStd(Soft.ToString()), "/Engine/Transient.SoftThing");
		EXPECT_EQ(ToStd(Soft.GetAssetName()), "SoftThing");
		EXPECT_EQ(ToStd(Soft.GetLongPackageName()), "/Engine/Transient");
		EXPECT_FALSE(TSoftObjectPtr<UTestBell>(Soft.ToSoftObjectPath())) << "an object of another class";
	}
	CollectGarbage(RF_NoFlags);
	EXPECT_TRUE(Soft.IsPending()) << "it does not keep its object";
	EXPECT_EQ(Soft.Get(), nullptr);
	const TStrongObjectPtr<UTestKinds> Again(NewObject<UTestKinds>(GetTransientPackage(), TEXT("SoftThing")));
	EXPECT_EQ(Soft.Get(), Again.Get()) << "found by its path";
	EXPECT_EQ(GetTypeHash(Soft), GetTypeHash(TSoftObjectPtr<UTestKinds>(Again.Get())));
	Soft.Reset();
	EXPECT_TRUE(Soft == nullptr);
}

TEST(DelegateProperty, TellsItsSignatureAndReadsBoundFunctions)
{
	const TStrongObjectPtr<UTestBell> Bell(NewObject<UTestBell>());
	const TStrongObjectPtr<UTestListener> Listener(NewObject<UTestListener>(GetTransientPackage(), TEXT("SoftEar")));
	const FDelegateProperty* const Count =
		FindFProperty<FDelegateProperty>(UTestBell::StaticClass(), TEXT("CountPeals"));
	const FProperty* const Rung = UTestBell::StaticClass()->FindPropertyByName(TEXT("OnRung"));
	ASSERT_TRUE(Count && Rung);
	EXPECT_EQ(ToStd(Count->GetCPPType()), "FCountPeals");
	EXPECT_TRUE(Count->SameType(Count));
	EXPECT_FALSE(Count->SameType(Rung));
	const auto Import = [&](const FString& Text) {
		const TCHAR* const End = Count->ImportText_Direct(*Text, &Bell->CountPeals, Bell.Get(), PPF_None);
		return End && *End == u'\0';
	};
	EXPECT_TRUE(Import(Listener->GetPathName() + TEXT(".Count")));
	FString Note;
	EXPECT_EQ(Bell->CountPeals.Execute(3, Note), 6);
	EXPECT_FALSE(Import(Listener->GetPathName() + TEXT(".NoSuchFunction")));
	EXPECT_FALSE(Import(TEXT("/No/Such/Object.Count")));
	EXPECT_TRUE(Bell->CountPeals.IsBound()) << "what cannot be read changes nothing";
}

TEST(AssetData, KnowsItsNamesAndTags)
{
	FAssetData Asset(UTestKinds::StaticClass());
	EXPECT_TRUE(Asset.IsValid());
	EXPECT_EQ(ToStd(Asset.GetObjectPathString()), "/Script/CoreUObjectTests.TestKinds");
	EXPECT_EQ(ToStd(Asset.GetFullName()), "/Script/CoreUObject.Class /Script/CoreUObjectTests.TestKinds");
	EXPECT_EQ(GetTypeHash(Asset), GetTypeHash(FAssetData(UTestKinds::StaticClass())));
	EXPECT_FALSE(Asset.TagsAndValues.Contains(TEXT("NoSuchTag")));
	EXPECT_FALSE(FAssetData().IsValid());
	FString Value = TEXT("before");
	EXPECT_FALSE(Asset.GetTagValue(FName(TEXT("NoSuchTag")), Value));
	EXPECT_EQ(ToStd(Value), "before");
}
}
