#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetToolsModule.h"
#include "AssetToolsTestTypes.h"
#include "Engine/Blueprint.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "Factories/BlueprintFactory.h"
#include "GameFramework/Actor.h"
#include "Misc/FeedbackContext.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"

#include <gtest/gtest.h>

namespace
{
class AssetToolsTest : public testing::Test
{
protected:
	AssetToolsTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject")); }
	~AssetToolsTest() override
	{
		FModuleManager::Get().UnloadModule("AssetRegistry");
		FPaths::SetProjectFilePath(FString());
	}

	static UToolsTestAsset* Create(const TCHAR* Name, const TCHAR* Path)
	{
		return static_cast<UToolsTestAsset*>(
			IAssetTools::Get().CreateAsset(Name, Path, nullptr, NewObject<UToolsTestFactory>()));
	}

	static bool Save(const UObject* Object)
	{
		FSavePackageArgs Args;
		Args.TopLevelFlags = RF_Public | RF_Standalone;
		Args.Error = GWarn;
		const FString Name = Object->GetPackage()->GetName();
		return UPackage::SavePackage(
			Object->GetPackage(), nullptr, *FPackageName::LongPackageNameToFilename(Name, TEXT(".uasset")), Args);
	}

	const FScratchDirectory Folder;
};
}

TEST_F(AssetToolsTest, MakesAnAssetOnlyWhereNoneIs)
{
	const UToolsTestAsset* const Asset = Create(TEXT("A"), TEXT("/Game//Made/"));
	ASSERT_NE(Asset, nullptr);
	EXPECT_EQ(Asset->GetPathName(), TEXT("/Game/Made/A.A"));
	EXPECT_TRUE(Asset->HasAllFlags(RF_Public | RF_Standalone | RF_Transactional));
	EXPECT_TRUE(Asset->GetPackage()->IsDirty());
	EXPECT_FALSE(FPackageName::DoesPackageExist(TEXT("/Game/Made/A"))) << "nothing is saved";
	EXPECT_TRUE(FAssetRegistryModule::GetRegistry().GetAssetByObjectPath(FSoftObjectPath(Asset)).IsValid());

	EXPECT_EQ(Create(TEXT("a"), TEXT("/Game/Made")), nullptr) << "taken, whatever the letter case";
	FFileHelper::SaveStringToFile(TEXT("{}"), *(Folder.Path / TEXT("Content/Foreign.uasset")));
	EXPECT_EQ(Create(TEXT("Foreign"), TEXT("/Game")), nullptr) << "taken by a file";
	for (const TCHAR* Name : { TEXT(""), TEXT("a b"), TEXT("a.b"), TEXT("a/b"), TEXT("a'"), TEXT("a:b") })
	{
		EXPECT_EQ(Create(Name, TEXT("/Game")), nullptr);
	}
	for (const TCHAR* Path : { TEXT("Blueprints"), TEXT("/Nowhere"), TEXT(""), TEXT("/Script/Engine") })
	{
		EXPECT_EQ(Create(TEXT("B"), Path), nullptr);
	}
	FString PackageName;
	FString AssetName;
	IAssetTools::Get().CreateUniqueAssetName(TEXT("/Game/Made/A"), TEXT(""), PackageName, AssetName);
	EXPECT_EQ(PackageName, TEXT("/Game/Made/A1"));
	EXPECT_EQ(AssetName, TEXT("A1"));
}

TEST_F(AssetToolsTest, MovesAnAssetWithItsFileAndWhatRefersToIt)
{
	UToolsTestAsset* const Asset = Create(TEXT("Moving"), TEXT("/Game"));
	UToolsTestAsset* const User = Create(TEXT("User"), TEXT("/Game"));
	User->Other = Asset;
	ASSERT_TRUE(Save(Asset) && Save(User));
	UObject* const Copy = IAssetTools::Get().DuplicateAsset(TEXT("Copy"), TEXT("/Game/Sub"), User);
	ASSERT_NE(Copy, nullptr);
	EXPECT_EQ(static_cast<UToolsTestAsset*>(Copy)->Other, Asset);

	EXPECT_TRUE(IAssetTools::Get().RenameAssets({ FAssetRenameData(Asset, TEXT("/Game/New"), TEXT("Moved")) }));
	EXPECT_EQ(Asset->GetPathName(), TEXT("/Game/New/Moved.Moved"));
	EXPECT_FALSE(FPackageName::DoesPackageExist(TEXT("/Game/Moving")));
	FString Text;
	FFileHelper::LoadFileToString(Text, *(Folder.Path / TEXT("Content/User.uasset")));
	EXPECT_TRUE(Text.Contains(TEXT("\"Needs\":[\"/Game/New/Moved\"]")));
	EXPECT_TRUE(Text.Contains(TEXT("'/Game/New/Moved.Moved'")));
	TArray<FAssetData> Assets;
	EXPECT_FALSE(FAssetRegistryModule::GetRegistry().GetAssetsByPackageName(TEXT("/Game/Moving"), Assets));
	EXPECT_TRUE(FAssetRegistryModule::GetRegistry().GetAssetsByPackageName(TEXT("/Game/New/Moved"), Assets, true));
	EXPECT_FALSE(IAssetTools::Get().RenameAssets({ FAssetRenameData(User, TEXT("/Game/New"), TEXT("Moved")) }));
}

TEST_F(AssetToolsTest, CopiesAndMovesABlueprintWithItsClass)
{
	FModuleManager::Get().LoadModuleChecked("UnrealEd");
	UBlueprintFactory* const Factory = NewObject<UBlueprintFactory>();
	Factory->ParentClass = AActor::StaticClass();
	UBlueprint* const Blueprint = Cast<UBlueprint>(
		IAssetTools::Get().CreateAsset(TEXT("BP_A"), TEXT("/Game"), UBlueprint::StaticClass(), Factory));
	ASSERT_NE(Blueprint, nullptr);
	GetMutableDefault<AActor>(Blueprint->GeneratedClass)->InitialLifeSpan = 4.0f;
	ASSERT_TRUE(Save(Blueprint));
	ASSERT_TRUE(Save(Blueprint));
	const UBlueprint* const Copy =
		Cast<UBlueprint>(IAssetTools::Get().DuplicateAsset(TEXT("BP_B"), TEXT("/Game/Sub"), Blueprint));
	ASSERT_NE(Copy, nullptr);
	ASSERT_NE(Copy->GeneratedClass, nullptr);
	EXPECT_EQ(Copy->GeneratedClass->GetPathName(), TEXT("/Game/Sub/BP_B.BP_B_C"));
	EXPECT_EQ(GetDefault<AActor>(Copy->GeneratedClass)->InitialLifeSpan, 4.0f);
	EXPECT_TRUE(Copy->SimpleConstructionScript->IsIn(Copy->GetPackage()));
	EXPECT_TRUE(Copy->GetPackage()->IsDirty());
	EXPECT_FALSE(Blueprint->GetPackage()->IsDirty());

	EXPECT_TRUE(IAssetTools::Get().RenameAssets({ FAssetRenameData(Blueprint, TEXT("/Game/New"), TEXT("BP_C")) }));
	EXPECT_EQ(Blueprint->GeneratedClass->GetPathName(), TEXT("/Game/New/BP_C.BP_C_C"));
	FString Text;
	FFileHelper::LoadFileToString(Text, *(Folder.Path / TEXT("Content/New/BP_C.uasset")));
	EXPECT_TRUE(Text.Contains(TEXT("Class=/Game/New/BP_C.BP_C_C Name=\"Default__BP_C_C\"")));
	EXPECT_FALSE(Text.Contains(TEXT("BP_A")));
}
