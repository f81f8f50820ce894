#include "EditorAssetLibrary.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "BlueprintTestSupport.h"

namespace EditorAssetLibraryTest
{
using FLibrary = UEditorAssetLibrary;

/** A project with the Blueprints /Game/Doors/BP_Door and, as its child, /Game/Doors/Iron/BP_Gate, both saved. */
class FEditorAssetLibraryTest : public BlueprintTest
{
protected:
	FEditorAssetLibraryTest()
	{
		Door = Make(TEXT("/Game/Doors/BP_Door"));
		UBlueprint* const Gate = Make(TEXT("/Game/Doors/Iron/BP_Gate"), Door->GeneratedClass);
		for (UBlueprint* const Each : { Door, Gate })
		{
			FAssetRegistryModule::AssetCreated(Each);
			EXPECT_TRUE(FLibrary::SaveLoadedAsset(Each, false));
		}
	}
	~FEditorAssetLibraryTest() override { FModuleManager::Get().UnloadModule("AssetRegistry"); }

	static bool IsFile(const TCHAR* PackageName) { return FPaths::FileExists(FileOf(PackageName)); }
	static std::string Join(const TArray<FString>& Texts) { return ToUtf8(FString::Join(Texts, TEXT(", "))); }

	UBlueprint* Door = nullptr;
};

TEST_F(FEditorAssetLibraryTest, TakesEveryFormOfAnAssetsPath)
{
	for (const TCHAR* const Path : { TEXT("/Game/Doors/BP_Door"), TEXT("/Game/Doors/BP_Door.BP_Door"),
			 TEXT("/Script/Engine.Blueprint'/Game/Doors/BP_Door.BP_Door'"),
			 TEXT("Blueprint'/Game/Doors/BP_Door.BP_Door'") })
	{
		EXPECT_TRUE(FLibrary::DoesAssetExist(Path)) << ToUtf8(Path);
		EXPECT_EQ(FLibrary::LoadAsset(Path), Door) << ToUtf8(Path);
		EXPECT_EQ(FLibrary::LoadBlueprintClass(Path), Door->GeneratedClass) << ToUtf8(Path);
		EXPECT_EQ(ToUtf8(FLibrary::FindAssetData(Path).PackageName.ToString()), "/Game/Doors/BP_Door");
	}
	EXPECT_EQ(ToUtf8(FLibrary::GetPathNameForLoadedAsset(Door)), "/Game/Doors/BP_Door.BP_Door");
}

TEST_F(FEditorAssetLibraryTest, RefusesWhatIsNoAssetWithoutTouchingAnything)
{
	const FString TooLong = TEXT("/Game/") + FString::ChrN(2000, TEXT('x'));
	for (const FString& Path : { FString(), FString(TEXT("BP_Door")), FString(TEXT("/")), FString(TEXT("/Game")),
			 FString(TEXT("/Game/Doors/")), FString(TEXT("/Game/../../etc/passwd")), FString(TEXT("/Nowhere/BP_Door")),
			 FString(TEXT("/Game/Doors/BP_Missing")), FString(TEXT("/Game/BP Door")),
			 FString(TEXT("Blueprint'/Game/Doors/BP_Missing'")), TooLong })
	{
		EXPECT_FALSE(FLibrary::DoesAssetExist(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::LoadAsset(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::LoadBlueprintClass(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::DeleteAsset(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::SaveAsset(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::DuplicateAsset(Path, TEXT("/Game/BP_Copy"))) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::RenameAsset(Path, TEXT("/Game/BP_Moved"))) << ToUtf8(Path);
		EXPECT_EQ(Join(FLibrary::FindPackageReferencersForAsset(Path)), "") << ToUtf8(Path);
	}
	EXPECT_EQ(ToUtf8(FLibrary::GetPathNameForLoadedAsset(nullptr)), "");
	EXPECT_FALSE(FLibrary::DeleteLoadedAsset(nullptr));
	EXPECT_FALSE(FLibrary::DeleteLoadedAsset(Door->GeneratedClass->GetDefaultObject()));
	EXPECT_FALSE(FLibrary::SaveLoadedAsset(nullptr));
	EXPECT_FALSE(FLibrary::SaveLoadedAsset(GetTransientPackage()));
	EXPECT_FALSE(FLibrary::DuplicateLoadedAsset(nullptr, TEXT("/Game/BP_Copy")));
	EXPECT_FALSE(FLibrary::RenameLoadedAsset(nullptr, TEXT("/Game/BP_Moved")));
	EXPECT_FALSE(IsFile(TEXT("/Game/BP_Copy")) || IsFile(TEXT("/Game/BP_Moved")));
	EXPECT_TRUE(IsFile(TEXT("/Game/Doors/BP_Door")));
}

TEST_F(FEditorAssetLibraryTest, RefusesDestinationsThatAreTakenOrNotAllowed)
{
	for (const TCHAR* const Path : { TEXT("/Game/Doors/Iron/BP_Gate"), TEXT("/Game/Doors/BP_Door"), TEXT(""),
			 TEXT("BP_Copy"), TEXT("/Nowhere/BP_Copy"), TEXT("/Game/../../BP_Copy"), TEXT("/Game/Doors/") })
	{
		EXPECT_FALSE(FLibrary::DuplicateLoadedAsset(Door, Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::RenameLoadedAsset(Door, Path)) << ToUtf8(Path);
		EXPECT_EQ(ToUtf8(Door->GetPathName()), "/Game/Doors/BP_Door.BP_Door") << ToUtf8(Path);
	}
}

TEST_F(FEditorAssetLibraryTest, CopiesMovesAndDeletesWithTheFile)
{
	UObject* const Copy = FLibrary::DuplicateAsset(TEXT("/Game/Doors/BP_Door"), TEXT("/Game/Copies/BP_Copy"));
	ASSERT_TRUE(Copy);
	EXPECT_FALSE(IsFile(TEXT("/Game/Copies/BP_Copy"))) << "a copy is not saved";
	EXPECT_TRUE(FLibrary::SaveAsset(TEXT("/Game/Copies/BP_Copy")));
	EXPECT_TRUE(IsFile(TEXT("/Game/Copies/BP_Copy")));

	EXPECT_TRUE(FLibrary::RenameAsset(TEXT("/Game/Copies/BP_Copy"), TEXT("/Game/Copies/BP_Other")));
	EXPECT_TRUE(FLibrary::DoesAssetExist(TEXT("/Game/Copies/BP_Other")));
	EXPECT_EQ(ToUtf8(Copy->GetName()), "BP_Other");

	EXPECT_TRUE(FLibrary::SaveAsset(TEXT("/Game/Copies/BP_Other"), false));
	EXPECT_TRUE(FLibrary::DeleteAsset(TEXT("/Game/Copies/BP_Other")));
	EXPECT_FALSE(FLibrary::DoesAssetExist(TEXT("/Game/Copies/BP_Other")));
	EXPECT_FALSE(IsFile(TEXT("/Game/Copies/BP_Other")));
	EXPECT_FALSE(FLibrary::LoadAsset(TEXT("/Game/Copies/BP_Other")));
}

TEST_F(FEditorAssetLibraryTest, SavesOnlyWhatHasChangedUnlessTold)
{
	const FString File = FileOf(TEXT("/Game/Doors/BP_Door"));
	IFileManager::Get().Delete(*File);
	EXPECT_TRUE(FLibrary::SaveLoadedAsset(Door)) << "nothing to save";
	EXPECT_FALSE(FPaths::FileExists(File));
	Door->MarkPackageDirty();
	EXPECT_TRUE(FLibrary::SaveLoadedAsset(Door));
	EXPECT_TRUE(FPaths::FileExists(File));
	EXPECT_FALSE(Door->GetPackage()->IsDirty());
}

TEST_F(FEditorAssetLibraryTest, ListsAFolderWithItsFoldersAndReferencers)
{
	const struct
	{
		const TCHAR* Folder;
		bool bRecursive;
		bool bFolders;
		const char* Paths;
	} Cases[] = {
		{ TEXT("/Game/Doors"), true, false, "/Game/Doors/BP_Door.BP_Door, /Game/Doors/Iron/BP_Gate.BP_Gate" },
		{ TEXT("/Game/Doors/"), true, true,
			"/Game/Doors/BP_Door.BP_Door, /Game/Doors/Iron/, /Game/Doors/Iron/BP_Gate.BP_Gate" },
		{ TEXT("/Game/Doors"), false, true, "/Game/Doors/BP_Door.BP_Door" },
		{ TEXT("/Game/Nothing"), true, true, "" },
		{ TEXT(""), true, true, "" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Join(FLibrary::ListAssets(Case.Folder, Case.bRecursive, Case.bFolders)), Case.Paths)
			<< ToUtf8(Case.Folder);
	}
	EXPECT_EQ(Join(FLibrary::ListAssets(FString::ChrN(5000, TEXT('x')))), "") << "too long for a name";
	EXPECT_TRUE(FLibrary::DoesDirectoryHaveAssets(TEXT("/Game")));
	EXPECT_FALSE(FLibrary::DoesDirectoryHaveAssets(TEXT("/Game"), false));
	EXPECT_EQ(Join(FLibrary::FindPackageReferencersForAsset(TEXT("/Game/Doors/BP_Door"))), "/Game/Doors/Iron/BP_Gate");
}

TEST_F(FEditorAssetLibraryTest, MakesFoldersWithinTheContentOnly)
{
	EXPECT_FALSE(FLibrary::DoesDirectoryExist(TEXT("/Game/New/Deep")));
	EXPECT_TRUE(FLibrary::MakeDirectory(TEXT("/Game/New/Deep")));
	EXPECT_TRUE(FLibrary::DoesDirectoryExist(TEXT("/Game/New/Deep/")));
	EXPECT_TRUE(FPaths::DirectoryExists(FPaths::ProjectContentDir() / TEXT("New/Deep")));
	for (const TCHAR* const Path :
		{ TEXT(""), TEXT("New"), TEXT("/Nowhere/New"), TEXT("/Game/../Escaped"), TEXT("/Game/New/../../../Escaped") })
	{
		EXPECT_FALSE(FLibrary::MakeDirectory(Path)) << ToUtf8(Path);
		EXPECT_FALSE(FLibrary::DoesDirectoryExist(Path)) << ToUtf8(Path);
	}
	EXPECT_FALSE(FPaths::DirectoryExists(FPaths::ProjectDir() / TEXT("Escaped")));
}
}
