#include "BlueprintEditor.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Engine/SimpleConstructionScript.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/SDockingArea.h"
#include "Framework/Docking/TabManager.h"
#include "GameFramework/Actor.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Modules/ModuleManager.h"
#include "SBlueprintEditor.h"
#include "SGraphPanel.h"
#include "SMyBlueprint.h"
#include "ScopedTransaction.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>

namespace BlueprintEditorTest
{
/** An editor with a Blueprint in it and the main window's tabs. */
class FBlueprintEditorTest : public testing::Test
{
protected:
	FBlueprintEditorTest()
	{
		FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject"));
		for (const TCHAR* Module : { TEXT("AssetRegistry"), TEXT("UnrealEd"), TEXT("Kismet") })
		{
			FModuleManager::Get().LoadModuleChecked(Module);
		}
		FSlateApplication::Create();
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(900.0, 600.0)));
		Window->SetContent(FGlobalTabmanager::Get()->GetMainArea());
		Blueprint = FKismetEditorUtilities::CreateBlueprint(
			AActor::StaticClass(), CreatePackage(TEXT("/Game/BP_Gate")), "BP_Gate", BPTYPE_Normal);
		FAssetRegistryModule::AssetCreated(Blueprint);
	}
	~FBlueprintEditorTest() override
	{
		FGlobalTabmanager::Get()->CloseAllTabs();
		Window.Reset();
		FSlateApplication::Shutdown();
		GEditor->ResetTransaction(FText());
		Blueprint->ClearFlags(RF_Standalone);
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
		FModuleManager::Get().UnloadModule("UnrealEd");
		FModuleManager::Get().UnloadModule("AssetRegistry");
		FPaths::SetProjectFilePath(FString());
	}

	static UAssetEditorSubsystem& GetEditors() { return *GEditor->GetEditorSubsystem<UAssetEditorSubsystem>(); }
	static TArray<TSharedRef<SDockTab>> GetTabs() { return FGlobalTabmanager::Get()->GetMainArea()->GetTabs(); }
	static void Tick() { FSlateApplication::Get().Tick(); }
	SBlueprintEditor& Open() const
	{
		EXPECT_TRUE(GetEditors().OpenEditorForAsset(Blueprint));
		Tick();
		return *static_cast<FBlueprintEditor*>(GetEditors().FindEditorForAsset(Blueprint, false))->GetWidget();
	}
	static std::string GetParts(const SBlueprintEditor& Editor)
	{
		FString Text;
		for (const SMyBlueprint::FPart& Part : Editor.GetMyBlueprint()->GetParts())
		{
			const bool bHeading = Part->Kind == EBlueprintPart::Heading;
			Text += bHeading ? Part->Name + TEXT(": ") : Part->Name + TEXT(" ");
		}
		return TCHAR_TO_UTF8(*Text);
	}

	const FScratchDirectory Folder;
	TSharedPtr<SWindow> Window;
	UBlueprint* Blueprint = nullptr;
};

const char* const FreshParts = "Graphs: EventGraph Functions: UserConstructionScript Components: DefaultSceneRoot ";

TEST_F(FBlueprintEditorTest, OpensABlueprintOnceAndMarksWhatIsNotSaved)
{
	Blueprint->GetPackage()->SetDirtyFlag(false);
	const SBlueprintEditor& Editor = Open();
	EXPECT_EQ(&Open(), &Editor);
	ASSERT_EQ(GetTabs().Num(), 1);
	EXPECT_TRUE(GetTabs()[0]->GetTabLabel().ToString().Equals(TEXT("BP_Gate")));
	Blueprint->MarkPackageDirty();
	EXPECT_TRUE(GetTabs()[0]->GetTabLabel().ToString().Equals(TEXT("BP_Gate*")));
	EXPECT_EQ(GetEditors().CloseAllEditorsForAsset(Blueprint), 1);
	EXPECT_EQ(GetTabs().Num(), 0);
	EXPECT_EQ(GetEditors().FindEditorForAsset(Blueprint, false), nullptr);
}

TEST_F(FBlueprintEditorTest, FollowsTheBlueprintThroughUndoAndRedo)
{
	const SBlueprintEditor& Editor = Open();
	EXPECT_EQ(GetParts(Editor), FreshParts);
	{
		const FScopedTransaction Transaction(FText::FromString(TEXT("Add")));
		FEdGraphPinType Type;
		Type.PinCategory = UEdGraphSchema_K2::PC_Int;
		FBlueprintEditorUtils::AddMemberVariable(Blueprint, "Turns", Type);
		UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(
			Blueprint, "Close", UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
		FBlueprintEditorUtils::AddFunctionGraph<UClass>(Blueprint, Graph, true, nullptr);
	}
	Tick();
	const char* const MoreParts = "Graphs: EventGraph Functions: UserConstructionScript Close "
								  "Components: DefaultSceneRoot Variables: Turns ";
	EXPECT_EQ(GetParts(Editor), MoreParts);
	GEditor->UndoTransaction();
	Tick();
	EXPECT_EQ(GetParts(Editor), FreshParts);
	GEditor->RedoTransaction();
	Tick();
	EXPECT_EQ(GetParts(Editor), MoreParts);
}

TEST_F(FBlueprintEditorTest, AGraphThatIsTakenOutGivesWayToAnother)
{
	SBlueprintEditor& Editor = Open();
	EXPECT_EQ(Editor.GetGraphPanel()->GetGraph(), Blueprint->UbergraphPages[0]);
	UEdGraph* const Script = Blueprint->FunctionGraphs[0];
	Editor.ShowGraph(*Script);
	Tick();
	EXPECT_EQ(Editor.GetGraphPanel()->GetGraph(), Script);
	FBlueprintEditorUtils::RemoveGraph(Blueprint, Script);
	Tick();
	EXPECT_EQ(Editor.GetGraphPanel()->GetGraph(), Blueprint->UbergraphPages[0]);
}

TEST_F(FBlueprintEditorTest, ADeletedBlueprintTakesItsTabAlong)
{
	Open();
	FAssetRegistryModule::AssetDeleted(Blueprint);
	EXPECT_EQ(GetTabs().Num(), 0);
	EXPECT_TRUE(GetEditors().GetAllEditedAssets().IsEmpty());
}

TEST_F(FBlueprintEditorTest, SaysThatThereIsNoEditor)
{
	UObject* const Graph = NewObject<UEdGraph>(CreatePackage(TEXT("/Game/Thing")), "Thing", RF_Public);
	EXPECT_FALSE(GetEditors().OpenEditorForAsset(Graph));
	EXPECT_FALSE(GetEditors().OpenEditorForAsset(FString(TEXT("/Game/Nothing.Nothing"))));
	EXPECT_EQ(GetTabs().Num(), 0);
}
}
