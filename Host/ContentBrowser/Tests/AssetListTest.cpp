#include "AssetList.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "EdGraph/EdGraph.h"
#include "Editor.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "SContentBrowser.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>

namespace AssetListTest
{
/** An empty project. Graphs serve as assets: any object that is public does. */
class FAssetListTest : public testing::Test
{
protected:
	FAssetListTest()
	{
		FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject"));
		FModuleManager::Get().LoadModuleChecked("AssetRegistry");
		FModuleManager::Get().LoadModuleChecked("UnrealEd");
	}
	~FAssetListTest() override
	{
		FModuleManager::Get().UnloadModule("UnrealEd");
		FModuleManager::Get().UnloadModule("AssetRegistry");
		FPaths::SetProjectFilePath(FString());
	}

	static UObject* Make(const TCHAR* PackageName, const TCHAR* Name)
	{
		UObject* const Asset = NewObject<UEdGraph>(CreatePackage(PackageName), Name, RF_Public | RF_Standalone);
		FAssetRegistryModule::AssetCreated(Asset);
		return Asset;
	}
	static std::string GetNames(FAssetList& List)
	{
		List.Update();
		FString Names;
		for (const FAssetList::FItem& Item : List.GetShown())
		{
			Names += Item->Data.AssetName.ToString() + TEXT(" ");
		}
		return TCHAR_TO_UTF8(*Names);
	}

	const FScratchDirectory Folder;
};

TEST_F(FAssetListTest, FollowsTheRegistryInTheOrderOfNames)
{
	Make(TEXT("/Game/Birds/Heron"), TEXT("Heron"));
	FAssetList List;
	EXPECT_EQ(GetNames(List), "Heron ");
	EXPECT_FALSE(List.Update()) << "nothing has changed";
	Make(TEXT("/Game/wren"), TEXT("wren"));
	UObject* const Crane = Make(TEXT("/Game/Birds/Crane"), TEXT("Crane"));
	Make(TEXT("/Engine/Eagle"), TEXT("Eagle"));
	EXPECT_EQ(GetNames(List), "Crane Heron wren ") << "the engine's assets are not the project's";
	FAssetRegistryModule::AssetCreated(Crane);
	EXPECT_EQ(GetNames(List), "Crane Heron wren ") << "told of twice";
	const FString OldPath = Crane->GetPathName();
	Crane->Rename(TEXT("Stork"), CreatePackage(TEXT("/Game/Birds/Stork")));
	FAssetRegistryModule::AssetRenamed(Crane, OldPath);
	EXPECT_EQ(GetNames(List), "Heron Stork wren ");
	FAssetRegistryModule::AssetDeleted(Crane);
	EXPECT_EQ(GetNames(List), "Heron wren ");
}

TEST_F(FAssetListTest, FindsByAllWordsOfNameClassAndFolder)
{
	Make(TEXT("/Game/Birds/Heron"), TEXT("Heron"));
	Make(TEXT("/Game/Fish/Herring"), TEXT("Herring"));
	FAssetList List;
	const struct
	{
		const TCHAR* Filter;
		const char* Found;
	} Cases[] = { { TEXT("HER"), "Heron Herring " }, { TEXT("her bird"), "Heron " },
		{ TEXT("ed graph"), "Heron Herring " }, { TEXT("fish heron"), "" }, { TEXT(""), "Heron Herring " } };
	for (const auto& Case : Cases)
	{
		List.SetFilter(Case.Filter);
		EXPECT_EQ(GetNames(List), Case.Found) << TCHAR_TO_UTF8(Case.Filter);
	}
	List.SetFilter(TEXT("bird"));
	Make(TEXT("/Game/Birds/Owl"), TEXT("Owl"));
	EXPECT_EQ(GetNames(List), "Heron Owl ") << "what comes later is searched, too";
}

TEST_F(FAssetListTest, ShowsWhatUnrealEditorSavedWithoutClaimingAssets)
{
	Make(TEXT("/Game/Birds/Heron"), TEXT("Heron"));
	FAssetList List;
	const FString File = Folder.Path / TEXT("Content/Birds/Crane.uasset");
	FFileHelper::SaveArrayToFile(TArray<uint8>{ 0xC1, 0x83, 0x2A, 0x9E, 0, 1 }, *File);
	IAssetRegistry& Registry = FAssetRegistryModule::GetRegistry();
	Registry.ScanFilesSynchronous({ File }, true);
	EXPECT_EQ(GetNames(List), "Crane Heron ");
	EXPECT_TRUE(List.GetShown()[0]->bForeign);
	FAssetList Later;
	EXPECT_EQ(GetNames(Later), "Crane Heron ");
	TArray<FAssetData> Assets;
	EXPECT_TRUE(Registry.GetAllAssets(Assets));
	EXPECT_EQ(Assets.Num(), 1) << "nobody could load it";
	IFileManager::Get().Delete(*File);
	Registry.ScanPathsSynchronous({ TEXT("/Game") }, true);
	EXPECT_EQ(GetNames(List), "Heron ");
}

/** All texts below a widget, in their order. */
void CollectTexts(const TSharedRef<IAccessibleWidget>& Widget, FString& OutTexts)
{
	OutTexts +=
		Widget->GetWidgetType() == EAccessibleWidgetType::Text ? Widget->GetWidgetName() + TEXT("|") : FString();
	for (int32 Index = 0; Index < Widget->GetNumberOfChildren(); ++Index)
	{
		CollectTexts(Widget->GetChildAt(Index).ToSharedRef(), OutTexts);
	}
}

TEST_F(FAssetListTest, WhatIsShownCanBeReadAndTellsWhatIsNotSaved)
{
	UObject* const Heron = Make(TEXT("/Game/Birds/Heron"), TEXT("Heron"));
	FSlateApplication::Create();
	TSharedPtr<SWindow> Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(400.0, 300.0)));
	Window->SetContent(SNew(SContentBrowser));
	const auto Read = [&Window] {
		FString Texts;
		FSlateApplication::Get().Tick();
		CollectTexts(FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window.ToSharedRef()), Texts);
		return std::string(TCHAR_TO_UTF8(*Texts));
	};
	Heron->GetPackage()->SetDirtyFlag(false);
	Read();
	EXPECT_NE(Read().find("Heron|Ed Graph|/Game/Birds|Assets: 1"), std::string::npos) << Read();
	Heron->MarkPackageDirty();
	EXPECT_NE(Read().find("Heron*|"), std::string::npos) << Read();
	Window.Reset();
	FSlateApplication::Shutdown();
}
}
