#include "BlueprintEditor.h"

#include "Editor.h"
#include "Engine/Blueprint.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "SBlueprintEditor.h"
#include "SGraphPanel.h"
#include "UObject/Package.h"
#include "Widgets/Docking/SDockTab.h"

void FBlueprintEditor::Open(UBlueprint& Blueprint)
{
	MakeShared<FBlueprintEditor>()->Init(Blueprint);
}

void FBlueprintEditor::Init(UBlueprint& InBlueprint)
{
	const TSharedRef<FBlueprintEditor> This = AsShared();
	Blueprint = &InBlueprint;
	SAssignNew(Widget, SBlueprintEditor, &InBlueprint).OnBlueprintGone_Lambda([this] {
		CloseWindow(EAssetEditorCloseReason::AssetUnloadingOrInvalid);
	});
	// clang-format off
	const TSharedRef<SDockTab> NewTab = SNew(SDockTab)
		.TabRole(ETabRole::MajorTab)
		.Label(TAttribute<FText>::Create(TAttribute<FText>::FGetter::CreateRaw(this, &FBlueprintEditor::GetTitle)))
		// The tab keeps its editor.
		.OnTabClosed_Lambda([This](TSharedRef<SDockTab>) { This->OnTabClosed(); })
		[
			Widget.ToSharedRef()
		];
	// clang-format on
	Tab = NewTab;
	FGlobalTabmanager::Get()->InsertNewDocumentTab(GetEditorName(), FLiveTabSearch(), NewTab);
	GEditor->GetEditorSubsystem<UAssetEditorSubsystem>()->NotifyAssetOpened(&InBlueprint, this);
	FocusWindow(nullptr);
}

void FBlueprintEditor::FocusWindow(UObject*)
{
	const TSharedPtr<SDockTab> Open = Tab.Pin();
	if (Open.IsValid())
	{
		Open->ActivateInParent(ETabActivationCause::SetDirectly);
		FSlateApplication::Get().SetKeyboardFocus(Widget->GetGraphPanel(), EFocusCause::SetDirectly);
	}
}

bool FBlueprintEditor::CloseWindow(EAssetEditorCloseReason)
{
	const TSharedPtr<SDockTab> Open = Tab.Pin();
	if (Open.IsValid())
	{
		Open->CloseWithoutAsking();
	}
	return Open.IsValid();
}

void FBlueprintEditor::OnTabClosed()
{
	Widget.Reset();
	if (GEditor)
	{
		GEditor->GetEditorSubsystem<UAssetEditorSubsystem>()->NotifyEditorClosed(this);
	}
}

FText FBlueprintEditor::GetTitle() const
{
	const UBlueprint* const Shown = Blueprint.Get();
	const FString Name = Shown ? Shown->GetName() : FString();
	return FText::FromString(Shown && Shown->GetPackage()->IsDirty() ? Name + TEXT("*") : Name);
}
