#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/HostForeignPackages.h"
#include "Containers/Ticker.h"
#include "HAL/FileManager.h"
#include "Misc/FeedbackContext.h"
#include "Misc/FileHelper.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/PackageName.h"
#include "MutateText.h"
#include "RegistryTestTypes.h"
#include "ScratchDirectory.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
/** Keeps warnings for as long as it lives. */
class FWarnings final : public FOutputDevice
{
public:
	FWarnings() { GLog->AddOutputDevice(this); }
	~FWarnings() override { GLog->RemoveOutputDevice(this); }
	UE_NONCOPYABLE(FWarnings)

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName&) override
	{
		if (Verbosity == ELogVerbosity::Warning)
		{
			Lines.Add(V);
		}
	}
	TArray<FString> Lines;
};

/** A project with some packages, and the registry that scans it. */
class AssetRegistryTest : public testing::Test
{
protected:
	AssetRegistryTest()
	{
		FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject"));
		Write(TEXT("Doors/BP_Gate.uasset"),
			TEXT(
				"{ \"Package\": \"/Game/Old/Name\", \"Needs\": [ \"/Game/Moor\" ], \"Later\": [ {} ], \"Assets\": [ { \"Name\": \"BP_Gate\", "
				"\"Class\": \"/Script/Engine.Blueprint\", \"Tags\": { \"Name\": \"no\" } } ] }\nBegin Object {{{\n"));
		Write(TEXT("Moor.umap"),
			TEXT(
				"{ \"Assets\": [ { \"Class\": \"/Script/Engine.World\", \"Name\": \"Moor\" }, { \"Name\": \"x\" } ] }"));
		FFileHelper::SaveArrayToFile(TArray<uint8>{ 0xC1, 0x83, 0x2A, 0x9E, 0, 1 }, *(Content() / TEXT("Real.uasset")));
		Write(TEXT("Empty.uasset"), TEXT(""));
		Write(TEXT("Cut.uasset"), TEXT("{ \"Assets\": [ { \"Name\": \"Cut\""));
		FModuleManager::Get().LoadModuleChecked("AssetRegistry");
	}
	~AssetRegistryTest() override
	{
		FModuleManager::Get().UnloadModule("AssetRegistry");
		FPaths::SetProjectFilePath(FString());
	}

	FString Content() const { return Folder.Path / TEXT("Content"); }
	void Write(const TCHAR* Name, const TCHAR* Text) const { FFileHelper::SaveStringToFile(Text, *(Content() / Name)); }
	static std::string ClassOf(const TCHAR* Package)
	{
		TArray<FAssetData> Assets;
		IAssetRegistry::Get()->GetAssetsByPackageName(Package, Assets);
		return Assets.IsEmpty() ? "" : TCHAR_TO_UTF8(*Assets[0].AssetClassPath.ToString());
	}

	const FScratchDirectory Folder;
};
}

TEST_F(AssetRegistryTest, PackagesOfUnrealEditorAreReportedInOneLine)
{
	for (int32 Index = 0; Index < 20; ++Index)
	{
		const FString Name = FString::Printf(TEXT("Binary/Package%02d.uasset"), Index);
		FFileHelper::SaveArrayToFile(TArray<uint8>{ 0xC1, 0x83, 0x2A, 0x9E, 0, 1 }, *(Content() / Name));
	}
	FModuleManager::Get().UnloadModule("AssetRegistry");
	EXPECT_TRUE(FHostForeignPackages::Get().GetNames().IsEmpty());
	FModuleManager::Get().LoadModuleChecked("AssetRegistry");
	const FWarnings Warnings;
	IAssetRegistry::Get()->WaitForCompletion();
	IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
	EXPECT_EQ(FHostForeignPackages::Get().GetNames().Num(), 21);
	const TArray<FString> Lines =
		Warnings.Lines.FilterByPredicate([](const FString& Line) { return Line.Contains(TEXT("Unreal Editor")); });
	ASSERT_EQ(Lines.Num(), 1);
	EXPECT_TRUE(Lines[0].Contains(TEXT(": 21 (/Game/"))) << TCHAR_TO_UTF8(*Lines[0]);
	EXPECT_TRUE(Lines[0].Contains(TEXT(" and 18 more)"))) << TCHAR_TO_UTF8(*Lines[0]);
}

TEST_F(AssetRegistryTest, ScansTheContentWhileTheEditorRuns)
{
	IAssetRegistry& Registry = *IAssetRegistry::Get();
	bool bTold = false;
	Registry.OnFilesLoaded().AddLambda([&bTold]() { bTold = true; });
	EXPECT_TRUE(Registry.IsLoadingAssets());
	EXPECT_EQ(ClassOf(TEXT("/Game/Doors/BP_Gate")), "") << "not looked at yet";
	FTSTicker::GetCoreTicker().Tick(0.1f);
	EXPECT_FALSE(Registry.IsLoadingAssets());
	EXPECT_TRUE(bTold);
	EXPECT_EQ(ClassOf(TEXT("/Game/Doors/BP_Gate")), "/Script/Engine.Blueprint");
	EXPECT_EQ(ClassOf(TEXT("/game/doors/bp_gate")), "/Script/Engine.Blueprint");
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "/Script/Engine.World");
	for (const TCHAR* Unreadable : { TEXT("/Game/Real"), TEXT("/Game/Empty"), TEXT("/Game/Cut"), TEXT("/Game/No") })
	{
		EXPECT_EQ(ClassOf(Unreadable), "");
	}
	TArray<FAssetData> Assets;
	Registry.GetAllAssets(Assets);
	EXPECT_EQ(Assets.Num(), 2);
	FString Tag;
	EXPECT_TRUE(Registry.GetAssetByObjectPath(FString(TEXT("/game/doors/BP_GATE.bp_gate"))).GetTagValue("name", Tag));
	EXPECT_EQ(Tag, TEXT("no"));
	TArray<FName> Packages;
	EXPECT_TRUE(Registry.GetReferencers(TEXT("/Game/Moor"), Packages));
	EXPECT_EQ(Packages, TArray<FName>({ FName(TEXT("/Game/Doors/BP_Gate")) }));
	Registry.GetAssetsByClass(FTopLevelAssetPath(TEXT("/Script/Engine.World")), Assets);
	ASSERT_EQ(Assets.Num(), 3) << "results are added";
	EXPECT_EQ(Assets[2].GetObjectPathString(), TEXT("/Game/Moor.Moor"));
	EXPECT_EQ(Assets[2].PackagePath, FName("/Game"));
}

TEST_F(AssetRegistryTest, SearchesAllContentAgain)
{
	IAssetRegistry& Registry = *IAssetRegistry::Get();
	Registry.WaitForCompletion();
	Write(TEXT("Late.uasset"), TEXT("{ \"Assets\": [ { \"Name\": \"Late\", \"Class\": \"/Script/Engine.World\" } ] }"));
	Registry.SearchAllAssets(false);
	EXPECT_TRUE(Registry.IsLoadingAssets());
	EXPECT_EQ(ClassOf(TEXT("/Game/Late")), "") << "not looked at yet";
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "/Script/Engine.World") << "known from before";
	Registry.WaitForCompletion();
	EXPECT_EQ(ClassOf(TEXT("/Game/Late")), "/Script/Engine.World");
	Registry.SearchAllAssets(true);
	EXPECT_FALSE(Registry.IsLoadingAssets());
}

TEST_F(AssetRegistryTest, FollowsAFileWhenTold)
{
	IAssetRegistry& Registry = *IAssetRegistry::Get();
	Registry.WaitForCompletion();
	const FString File = Content() / TEXT("Moor.umap");
	Write(TEXT("Moor.umap"), TEXT("{ \"Assets\": [ { \"Name\": \"Moor\", \"Class\": \"/Script/Engine.Level\" } ] }"));
	Registry.ScanFilesSynchronous({ File });
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "/Script/Engine.World") << "known, and not forced";
	Registry.ScanFilesSynchronous({ File }, true);
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "/Script/Engine.Level");
	IFileManager::Get().Delete(*File);
	Registry.ScanFilesSynchronous({ File, TEXT("/elsewhere/A.uasset") });
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "");
}

TEST_F(AssetRegistryTest, DamagedPackagesHideNoOthers)
{
	IAssetRegistry::Get()->SearchAllAssets(true);
	const std::string Good =
		"{\"Package\":\"/Game/A\",\"Assets\":[{\"Name\":\"A\",\"Class\":\"/Script/B.C\"}],\"O\":{}}";
	FTextMutator Mutator("{}[]\",:\\\x80\xC3");
	const FString File = Content() / TEXT("A.uasset");
	IAssetRegistry::Get()->SearchAllAssets(true);
	for (int32 Round = 0; Round < 300; ++Round)
	{
		const std::string Text = Mutator.Mutate(Good);
		FFileHelper::SaveArrayToFile(
			TArrayView<const uint8>(reinterpret_cast<const uint8*>(Text.data()), static_cast<int32>(Text.size())),
			*File);
		IAssetRegistry::Get()->ScanFilesSynchronous({ File }, true);
		TArray<FAssetData> Assets;
		IAssetRegistry::Get()->GetAssetsByPackageName(TEXT("/Game/A"), Assets);
		for (const FAssetData& Asset : Assets)
		{
			EXPECT_TRUE(Asset.IsValid()) << Text;
			EXPECT_EQ(Asset.PackageName, FName(TEXT("/Game/A"))) << "whatever the file says: " << Text;
		}
		EXPECT_EQ(ClassOf(TEXT("/Game/Doors/BP_Gate")), "/Script/Engine.Blueprint") << Text;
	}
	Write(TEXT("A.uasset"), *FString(Good.c_str()));
	IAssetRegistry::Get()->ScanFilesSynchronous({ File }, true);
	EXPECT_EQ(ClassOf(TEXT("/Game/A")), "/Script/B.C") << "the package is mended";
}

TEST_F(AssetRegistryTest, OpensNoPipe)
{
	ASSERT_EQ(mkfifo(TCHAR_TO_UTF8(*(Content() / TEXT("Pipe.uasset"))), 0600), 0);
	IAssetRegistry::Get()->SearchAllAssets(true);
	EXPECT_EQ(ClassOf(TEXT("/Game/Pipe")), "");
	EXPECT_EQ(ClassOf(TEXT("/Game/Doors/BP_Gate")), "/Script/Engine.Blueprint");
	EXPECT_EQ(LoadPackage(nullptr, TEXT("/Game/Pipe"), LOAD_None), nullptr);
}

TEST_F(AssetRegistryTest, NamesPackagesAfterTheirPlace)
{
	FString Name;
	EXPECT_TRUE(FPackageName::TryConvertFilenameToLongPackageName(Content() / TEXT("A/../B/C.uasset"), Name));
	EXPECT_EQ(Name, TEXT("/Game/B/C"));
	FString Reason;
	EXPECT_FALSE(FPackageName::TryConvertFilenameToLongPackageName(Folder.Path / TEXT("A.uasset"), Name, &Reason));
	EXPECT_FALSE(Reason.IsEmpty());
	FString File;
	EXPECT_TRUE(FPackageName::TryConvertLongPackageNameToFilename(TEXT("/Game/B/C"), File, TEXT(".uasset")));
	EXPECT_EQ(FPaths::ConvertRelativePathToFull(File), Content() / TEXT("B/C.uasset"));
	EXPECT_FALSE(FPackageName::TryConvertLongPackageNameToFilename(TEXT("/Script/Engine"), File));
	EXPECT_EQ(FPackageName::GetShortName(TEXT("/Game/B/C")), TEXT("C"));
}

TEST_F(AssetRegistryTest, KnowsWhatIsNotSavedYetAndFollowsSaves)
{
	IAssetRegistry& Registry = *IAssetRegistry::Get();
	Registry.WaitForCompletion();
	TArray<FString> Events;
	Registry.OnAssetAdded().AddLambda(
		[&Events](const FAssetData& Each) { Events.Add(TEXT("+") + Each.AssetName.ToString()); });
	Registry.OnAssetUpdated().AddLambda(
		[&Events](const FAssetData& Each) { Events.Add(TEXT("=") + Each.AssetName.ToString()); });
	Registry.OnAssetRemoved().AddLambda(
		[&Events](const FAssetData& Each) { Events.Add(TEXT("-") + Each.AssetName.ToString()); });
	UPackage* const Package = CreatePackage(TEXT("/Game/New/Asset"));
	UObject* const Asset = NewObject<USavedTestAsset>(Package, TEXT("Asset"), RF_Public | RF_Standalone);
	FAssetRegistryModule::AssetCreated(Asset);
	EXPECT_EQ(ClassOf(TEXT("/Game/New/Asset")), "/Script/AssetRegistryTests.SavedTestAsset");
	TArray<FAssetData> OnDisk;
	EXPECT_FALSE(Registry.GetAssetsByPackageName(TEXT("/Game/New/Asset"), OnDisk, true));

	FSavePackageArgs Args;
	Args.TopLevelFlags = RF_Public;
	Args.Error = GWarn;
	const FString File = Content() / TEXT("New/Asset.uasset");
	ASSERT_TRUE(UPackage::SavePackage(Package, Asset, *File, Args));
	EXPECT_TRUE(Registry.GetAssetsByPackageName(TEXT("/Game/New/Asset"), OnDisk, true));
	ASSERT_EQ(OnDisk.Num(), 1);
	EXPECT_EQ(OnDisk[0].GetTagValueRef<FString>("Flavour"), TEXT("sweet"));
	EXPECT_EQ(OnDisk[0].GetAsset(), Asset);
	EXPECT_EQ(OnDisk[0].GetClass(), USavedTestAsset::StaticClass());
	EXPECT_EQ(OnDisk[0].GetExportTextName(), TEXT("/Script/AssetRegistryTests.SavedTestAsset'/Game/New/Asset.Asset'"));

	FARFilter Filter;
	TArray<FAssetData> Found;
	EXPECT_FALSE(Registry.GetAssets(Filter, Found)) << "an empty filter is refused";
	Filter.PackagePaths.Add(TEXT("/Game"));
	Registry.GetAssets(Filter, Found);
	EXPECT_EQ(Found.Num(), 1) << "the folder alone";
	Filter.bRecursivePaths = true;
	Filter.ClassPaths.Add(UObject::StaticClass()->GetClassPathName());
	Registry.GetAssets(Filter, Found);
	EXPECT_EQ(Found.Num(), 1) << "the very class";
	Filter.bRecursiveClasses = true;
	Registry.GetAssets(Filter, Found);
	EXPECT_EQ(Found.Num(), 2) << "added to what was there; classes that are not loaded are nobody's children";

	IFileManager::Get().Delete(*File);
	Registry.ScanPathsSynchronous({ TEXT("/Game/New") });
	EXPECT_EQ(ClassOf(TEXT("/Game/New/Asset")), "");
	EXPECT_EQ(FString::Join(Events, TEXT(" ")), TEXT("+Asset =Asset -Asset"));
}

TEST_F(AssetRegistryTest, SeesFilesThatHaveChangedAtTheNextScan)
{
	IAssetRegistry& Registry = *IAssetRegistry::Get();
	Registry.WaitForCompletion();
	Write(TEXT("Moor.umap"), TEXT("{ \"Assets\": [ { \"Name\": \"Moor\", \"Class\": \"/Script/Engine.Changed\" } ] }"));
	Write(TEXT("More.uasset"), TEXT("{ \"Assets\": [ { \"Name\": \"More\", \"Class\": \"/Script/Engine.Level\" } ] }"));
	IFileManager::Get().Delete(*(Content() / TEXT("Doors/BP_Gate.uasset")));
	Registry.ScanPathsSynchronous({ TEXT("/Game") });
	EXPECT_EQ(ClassOf(TEXT("/Game/Moor")), "/Script/Engine.Changed");
	EXPECT_EQ(ClassOf(TEXT("/Game/More")), "/Script/Engine.Level");
	EXPECT_EQ(ClassOf(TEXT("/Game/Doors/BP_Gate")), "");
}
