#include "AssetRegistry/AssetData.h"
#include "ContentBrowserModule.h"
#include "Framework/Text/TextLayout.h"
#include "IContentBrowserSingleton.h"
#include "Input/DragAndDrop.h"
#include "Layout/Margin.h"
#include "Misc/Attribute.h"
#include "Modules/ModuleManager.h"
#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/Prompt/DroppedNames.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelPromptBox"

namespace KestrelPromptDrop
{
constexpr float ButtonGap = 2.0f;
const FMargin ButtonPadding(4.0f, 0.0f);

TArray<FString> FindSelection()
{
	TArray<FAssetData> Assets;
	// A browser that was never opened has nothing that could be selected.
	if (FContentBrowserModule* Module = FModuleManager::GetModulePtr<FContentBrowserModule>("ContentBrowser"))
	{
		Module->Get().GetSelectedAssets(Assets);
	}
	return KestrelDroppedNames::OfAssets(Assets);
}

TSharedRef<SButton> MakeButton(const FText& Sign, const FText& Name, const TAttribute<FText>& ToolTip, bool bFocusable,
	const FOnClicked& OnClicked)
{
	// clang-format off
	return SNew(SButton)
		.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton"))
		.ContentPadding(ButtonPadding)
		.IsFocusable(bFocusable)
		.AccessibleText(Name)
		.ToolTipText(ToolTip)
		.OnClicked(OnClicked)
		[
			SNew(STextBlock).Text(Sign)
		];
	// clang-format on
}
}

TSharedRef<SWidget> SKestrelPromptBox::MakeNameButtons()
{
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		[
			// Who has the keyboard at hand types the sign.
			KestrelPromptDrop::MakeButton(INVTEXT("@"), LOCTEXT("Name", "Name a file, asset or class"),
				LOCTEXT("NameToolTip", "Name a file, an asset or a class of this project; the same as typing @"), false,
				FOnClicked::CreateSP(this, &SKestrelPromptBox::OnNameClicked))
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		.Padding(KestrelPromptDrop::ButtonGap, 0.0f, 0.0f, 0.0f)
		[
			KestrelPromptDrop::MakeButton(INVTEXT("+"), LOCTEXT("Selection", "Insert selected assets"),
				MakeAttributeSP(this, &SKestrelPromptBox::GetSelectionToolTip), true,
				FOnClicked::CreateSP(this, &SKestrelPromptBox::OnSelectionClicked))
		];
	// clang-format on
}

FText SKestrelPromptBox::GetSelectionToolTip() const
{
	const TArray<FString> Selected = KestrelPromptDrop::FindSelection();
	return Selected.IsEmpty()
			   ? LOCTEXT("NoSelection", "Select assets in the Content Browser to insert their names here.")
			   : FText::Format(LOCTEXT("InsertSelection", "Insert what is selected in the Content Browser: {0}"),
					 FText::FromString(KestrelDroppedNames::Join(Selected)));
}

bool SKestrelPromptBox::IsCursorBehindWord() const
{
	const FTextLocation Cursor = Text->GetCursorLocation();
	const FString Before = GetLines()[Cursor.GetLineIndex()].Left(Cursor.GetOffset());
	return !Before.IsEmpty() && !FChar::IsWhitespace(Before[Before.Len() - 1]);
}

FReply SKestrelPromptBox::OnNameClicked()
{
	// As if it was typed: the list opens.
	Text->InsertTextAtCursor(FText::FromString(IsCursorBehindWord() ? TEXT(" @") : TEXT("@")));
	bIsCompleting = true;
	UpdateList();
	return FReply::Handled().SetUserFocus(GetFocusTarget(), EFocusCause::SetDirectly);
}

FReply SKestrelPromptBox::OnSelectionClicked()
{
	InsertNames(KestrelPromptDrop::FindSelection());
	return FReply::Handled().SetUserFocus(GetFocusTarget(), EFocusCause::SetDirectly);
}

void SKestrelPromptBox::InsertNames(const TArray<FString>& NewNames)
{
	if (NewNames.IsEmpty())
	{
		return;
	}
	const TCHAR* const Blank = IsCursorBehindWord() ? TEXT(" ") : TEXT("");
	Text->InsertTextAtCursor(FText::FromString(Blank + KestrelDroppedNames::Join(NewNames) + TEXT(" ")));
	StopCompleting();
}

FReply SKestrelPromptBox::OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	return KestrelDroppedNames::HasNames(DragDropEvent) ? FReply::Handled() : FReply::Unhandled();
}

void SKestrelPromptBox::OnDragEnter(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	bIsDropTarget = KestrelDroppedNames::HasNames(DragDropEvent);
}

void SKestrelPromptBox::OnDragLeave(const FDragDropEvent& DragDropEvent)
{
	bIsDropTarget = false;
}

FReply SKestrelPromptBox::OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	bIsDropTarget = false;
	if (!KestrelDroppedNames::HasNames(DragDropEvent))
	{
		return FReply::Unhandled();
	}
	InsertNames(KestrelDroppedNames::Find(DragDropEvent));
	return FReply::Handled().SetUserFocus(GetFocusTarget(), EFocusCause::SetDirectly);
}

#undef LOCTEXT_NAMESPACE
