#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Chat/Transcript.h"
#include "Agent/History/UndoPreview.h"
#include "Agent/Text/DisplayText.h"
#include "Framework/Application/SlateApplication.h"
#include "KestrelSettings.h"
#include "Layout/Clipping.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Types/SlateEnums.h"
#include "UObject/Class.h"
#include "Widget/KeyList.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widget/SKestrelConversationList.h"
#include "Widget/SKestrelConversationView.h"
#include "Widget/SKestrelWidget.h"
#include "Widget/Status/SKestrelStatusLine.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SWrapBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelWidget"

namespace KestrelWidgetHistory
{
constexpr float Gap = 4.0f;
// Slate units.
constexpr float MinListWidth = 240.0f;
constexpr float MaxListWidth = 420.0f;
constexpr float MinHeightWithApproval = 400.0f;
/** More blocks than anybody scrolls back to. */
constexpr int32 MaxBlocks = 5000;

/** A status that came again while the service worked; the formatted view shows it once. */
bool Repeats(const FKestrelTranscriptEntry& Entry, const FKestrelTranscriptEntry& Previous)
{
	return SKestrelConversationView::IsFormatted() && Entry.Kind == EKestrelTranscriptKind::Status &&
		   Previous.Kind == EKestrelTranscriptKind::Status && Entry.Text.EndsWith(TEXT("...")) &&
		   Entry.Text.Equals(Previous.Text, ESearchCase::CaseSensitive);
}
}

TSharedRef<SWidget> SKestrelWidget::MakeHistoryHeader()
{
	// clang-format off
	return SNew(SVerticalBox)
		.Visibility(this, &SKestrelWidget::GetHistoryVisibility)
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 0.0f, 0.0f, KestrelWidgetHistory::Gap)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			[
				MakeHistoryButton()
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.Padding(KestrelWidgetHistory::Gap, 0.0f, 0.0f, 0.0f)
			[
				SAssignNew(KeysButton, SComboButton)
				.HasDownArrow(false)
				.ToolTipText(LOCTEXT("KeysToolTip", "The keys of this panel (F1)"))
				.AccessibleText(LOCTEXT("Keys", "Keys"))
				.OnGetMenuContent_Static(&KestrelKeyList::Make)
				.ButtonContent()
				[
					SNew(STextBlock).Text(INVTEXT("?"))
				]
			]
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.HAlign(HAlign_Left)
		[
			SNew(SBox)
			.Visibility(this, &SKestrelWidget::GetEarlierVisibility)
			.Padding(FMargin(0.0f, 0.0f, 0.0f, KestrelWidgetHistory::Gap))
			[
				MakeEarlierButtons()
			]
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SKestrelStatusLine)
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelWidget::MakeEarlierButtons()
{
	// clang-format off
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SWrapBox)
			.UseAllottedSize(true)
			.InnerSlotPadding(FVector2D(KestrelWidgetHistory::Gap, KestrelWidgetHistory::Gap))
			+ SWrapBox::Slot()
			[
				SNew(SButton)
				.Text(LOCTEXT("BackToCurrent", "Back to the current conversation"))
				.ToolTipText(LOCTEXT("BackToCurrentToolTip", "Close the earlier conversation, which can only be read"))
				.OnClicked(this, &SKestrelWidget::OnBackToCurrentClicked)
			]
			+ SWrapBox::Slot()
			[
				SNew(SButton)
				.Text(LOCTEXT("UndoEarlier", "Undo this conversation's changes"))
				.ToolTipText(LOCTEXT("UndoEarlierToolTip", "Revert everything that this conversation has changed"))
				.Visibility(this, &SKestrelWidget::GetUndoEarlierVisibility)
				.OnClicked(this, &SKestrelWidget::OnUndoEarlierClicked)
			]
			+ SWrapBox::Slot()
			[
				SNew(SButton)
				.Text(LOCTEXT("RedoEarlier", "Redo this conversation's changes"))
				.ToolTipText(LOCTEXT("RedoEarlierToolTip", "Restore the file changes that were undone"))
				.Visibility(this, &SKestrelWidget::GetRedoEarlierVisibility)
				.OnClicked(this, &SKestrelWidget::OnRedoEarlierClicked)
			]
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.AutoWrapText(true)
			.Text(this, &SKestrelWidget::GetEarlierCaution)
			.Visibility(this, &SKestrelWidget::GetUndoEarlierVisibility)
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelWidget::MakeHistoryButton()
{
	// clang-format off
	return SAssignNew(HistoryButton, SComboButton)
		.ToolTipText(LOCTEXT("HistoryToolTip", "The conversations of this project"))
		.AccessibleText(LOCTEXT("History", "Conversations"))
		.OnGetMenuContent(this, &SKestrelWidget::MakeConversationList)
		.ButtonContent()
		[
			SNew(SBox)
			.Clipping(EWidgetClipping::ClipToBounds)
			[
				SNew(STextBlock).Text(this, &SKestrelWidget::GetConversationTitle)
			]
		];
	// clang-format on
}

EVisibility SKestrelWidget::GetUndoEarlierVisibility() const
{
	return FKestrelInterface::Get().CanUndoConversation(EarlierId) ? EVisibility::Visible : EVisibility::Collapsed;
}

EVisibility SKestrelWidget::GetRedoEarlierVisibility() const
{
	return FKestrelInterface::Get().CanRedoConversation(EarlierId) ? EVisibility::Visible : EVisibility::Collapsed;
}

FReply SKestrelWidget::OnUndoEarlierClicked()
{
	const FString Id = EarlierId;
	const FText Caution = FKestrelUndoPreview::OfUndo(Id).DescribeOthers();
	if (!Caution.IsEmpty() && !Caution.EqualTo(EarlierCaution))
	{
		EarlierCaution = Caution; // something has changed since the conversation was opened
		return FReply::Handled();
	}
	CloseEarlierConversation(); // what is said about it comes in the current one
	FKestrelInterface::Get().UndoConversation(Id);
	return HandledWithFocusOnPrompt();
}

FReply SKestrelWidget::OnRedoEarlierClicked()
{
	const FString Id = EarlierId;
	CloseEarlierConversation();
	FKestrelInterface::Get().RedoConversation(Id);
	return HandledWithFocusOnPrompt();
}

TSharedRef<SWidget> SKestrelWidget::MakeConversationList()
{
	return SNew(SKestrelConversationList)
		.Width(FMath::Clamp(GetWidth(), KestrelWidgetHistory::MinListWidth, KestrelWidgetHistory::MaxListWidth))
		.OnOpenConversation(this, &SKestrelWidget::OpenConversation)
		.OnUsePrompt(this, &SKestrelWidget::UsePromptAgain)
		.OnDeleted(this, &SKestrelWidget::OnConversationDeleted);
}

FText SKestrelWidget::GetConversationTitle() const
{
	if (!EarlierId.IsEmpty())
	{
		return FText::Format(LOCTEXT("Earlier", "Earlier: {0}"), FText::FromString(EarlierTitle));
	}
	const FString& Title = FKestrelInterface::Get().GetTranscript().GetTitle();
	return Title.IsEmpty() ? LOCTEXT("History", "Conversations") : FText::FromString(Title);
}

EVisibility SKestrelWidget::GetHistoryVisibility() const
{
	// In a low panel, what waits for approval and what it is about have the room.
	const bool bIsInTheWay = EarlierId.IsEmpty() && GetHeight() < KestrelWidgetHistory::MinHeightWithApproval &&
							 GetApprovalListVisibility() == EVisibility::Visible;
	return bIsInTheWay ? EVisibility::Collapsed : EVisibility::SelfHitTestInvisible;
}

EVisibility SKestrelWidget::GetEarlierVisibility() const
{
	return EarlierId.IsEmpty() ? EVisibility::Collapsed : EVisibility::Visible;
}

EVisibility SKestrelWidget::GetCurrentVisibility() const
{
	return EarlierId.IsEmpty() ? EVisibility::Visible : EVisibility::Collapsed;
}

FReply SKestrelWidget::OnBackToCurrentClicked()
{
	CloseEarlierConversation();
	return HandledWithFocusOnPrompt();
}

void SKestrelWidget::OpenConversation(const FString& Id)
{
	FKestrelTranscript& Transcript = FKestrelInterface::Get().GetTranscript();
	CloseEarlierConversation();
	HistoryButton->SetIsOpen(false);
	const TOptional<FKestrelConversationInfo> Info = Transcript.GetStore().Find(Id);
	TArray<FKestrelTranscriptEntry> Entries;
	const bool bRead = !Id.Equals(Transcript.GetId()) && Info.IsSet() &&
					   Transcript.GetStore().Read(Id, Entries) == EKestrelConversationRead::Done;
	FKestrelInterface::Get().ReportDamagedConversations();
	if (!bRead)
	{
		return;
	}
	EarlierId = Id;
	EarlierTitle = Info->Title;
	EarlierCaution = FKestrelUndoPreview::OfUndo(Id).DescribeOthers();
	// It begins at its top, and nothing is added to it.
	SAssignNew(EarlierConversation, SKestrelConversationView).IsUserScrolling(true);
	{
		const TGuardValue<TSharedPtr<SKestrelConversationView>> Target(Conversation, EarlierConversation);
		ShowEntries(Entries);
	}
	EarlierBox->SetContent(EarlierConversation.ToSharedRef());
}

void SKestrelWidget::CloseEarlierConversation()
{
	EarlierId.Empty();
	EarlierTitle.Empty();
	EarlierCaution = FText::GetEmpty();
	EarlierConversation.Reset();
	EarlierBox->SetContent(SNullWidget::NullWidget);
}

void SKestrelWidget::UsePromptAgain(const FString& Prompt)
{
	HistoryButton->SetIsOpen(false);
	PromptBox->PutBefore(Prompt);
	FSlateApplication::Get().SetKeyboardFocus(PromptBox->GetFocusTarget());
}

void SKestrelWidget::OnConversationDeleted()
{
	FKestrelTranscript& Transcript = FKestrelInterface::Get().GetTranscript();
	if (!EarlierId.IsEmpty() && !Transcript.GetStore().Find(EarlierId).IsSet())
	{
		CloseEarlierConversation();
	}
	// What was deleted is not to be read on the screen, either.
	ShowConversationAgain();
}

void SKestrelWidget::ShowConversationAgain()
{
	StopProgressAnimation();
	Conversation->ClearBlocks();
	PartialAnswer.Reset();
	ShowWelcome();
	RestoreConversation();
	ShowPartialAnswer();
	if (!EarlierId.IsEmpty())
	{
		OpenConversation(FString(EarlierId));
	}
}

void SKestrelWidget::RestoreConversation()
{
	FKestrelInterface& Interface = FKestrelInterface::Get();
	Interface.RestoreConversation();
	FKestrelTranscript& Transcript = Interface.GetTranscript();
	const TArray<FKestrelTranscriptEntry>& Entries = Transcript.GetEntries();
	const int32 NumRestored = Transcript.GetNumRestored();
	LogWhatWasMissed(Entries);
	Transcript.MarkLogged();
	ShowEntries(TConstArrayView<FKestrelTranscriptEntry>(Entries.GetData(), NumRestored));
	if (NumRestored > 0)
	{
		OnAddHint(LOCTEXT("EndOfEarlier", "This was the last conversation. The next prompt starts a new one."));
	}
	const SKestrelConversationView::FBlock LastBlock = ShowEntries(
		TConstArrayView<FKestrelTranscriptEntry>(Entries.GetData() + NumRestored, Entries.Num() - NumRestored));
	if (LastBlock.Text.IsValid())
	{
		StartProgressIfWorking(Entries.Last().Text, LastBlock);
	}
}

void SKestrelWidget::LogWhatWasMissed(TConstArrayView<FKestrelTranscriptEntry> Entries) const
{
	const FKestrelInterface& Interface = FKestrelInterface::Get();
	const bool bChangesShown = GetDefault<UKestrelSettings>()->bDisplayFileChangesInChat;
	const auto Log = [&Interface](const FString& Text) {
		Interface.KestrelInterfaceLogString(Text, Interface.GetPromptLogFilePath(), true);
	};
	for (const FKestrelTranscriptEntry& Entry : Entries)
	{
		if (!Entry.bIsLogged && Entry.Kind == EKestrelTranscriptKind::Status)
		{
			Log(Entry.Text);
		}
		else if (!Entry.bIsLogged && Entry.Kind == EKestrelTranscriptKind::Change && bChangesShown)
		{
			Log(Entry.Before);
			Log(Entry.After);
		}
	}
}

SKestrelConversationView::FBlock SKestrelWidget::ShowEntries(TConstArrayView<FKestrelTranscriptEntry> Entries)
{
	const int32 NumLeftOut = FMath::Max(Entries.Num() - KestrelWidgetHistory::MaxBlocks, 0);
	if (NumLeftOut > 0)
	{
		ShowHint(FText::Format(LOCTEXT("LeftOut", "The first {0} messages are not shown."), NumLeftOut));
	}
	SKestrelConversationView::FBlock LastBlock;
	for (int32 Index = NumLeftOut; Index < Entries.Num(); ++Index)
	{
		if (Index == NumLeftOut || !KestrelWidgetHistory::Repeats(Entries[Index], Entries[Index - 1]))
		{
			LastBlock = ShowEntry(Entries[Index]);
		}
	}
	return LastBlock;
}

SKestrelConversationView::FBlock SKestrelWidget::ShowEntry(const FKestrelTranscriptEntry& Entry)
{
	switch (Entry.Kind)
	{
	case EKestrelTranscriptKind::Status:
		return ShowStatusMessage(Entry.Text, Entry.Color, Entry.FontStyle, Entry.FontSize);
	case EKestrelTranscriptKind::Hint:
		ShowHint(FText::FromString(Entry.Text));
		break;
	case EKestrelTranscriptKind::Change:
		if (GetDefault<UKestrelSettings>()->bDisplayFileChangesInChat && Entry.bTextsLeftOut)
		{
			ShowHint(FText::Format(LOCTEXT("TooLargeToKeep", "{0} has changed. The change was too large to be kept."),
				FText::FromString(KestrelDisplayText::EscapeLine(Entry.Text))));
		}
		else if (GetDefault<UKestrelSettings>()->bDisplayFileChangesInChat)
		{
			ShowChange(Entry.Text, Entry.Before, Entry.After);
		}
		break;
	}
	return SKestrelConversationView::FBlock();
}

#undef LOCTEXT_NAMESPACE
