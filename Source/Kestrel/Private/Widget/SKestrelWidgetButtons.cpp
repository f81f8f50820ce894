#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/RunStatus.h"
#include "Framework/Application/SlateApplication.h"
#include "KestrelSettings.h"
#include "Layout/Visibility.h"
#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "UObject/Class.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widget/SKestrelApproveButton.h"
#include "Widget/SKestrelUndoButton.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SWrapBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#define LOCTEXT_NAMESPACE "SKestrelWidget"

namespace KestrelButtons
{
constexpr float ButtonGap = 4.0f;

FText NoPrompt()
{
	return LOCTEXT("NoPrompt", "Type a prompt first.");
}

FText NoConversation()
{
	return LOCTEXT("NoConversation", "No conversation is open.");
}

EAgentState GetState()
{
	return FAgent::Get().GetAgentState();
}
}

TSharedRef<SWidget> SKestrelWidget::MakeButtonRow()
{
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		[
			MakeButtonsOfRow()
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		.Padding(KestrelButtons::ButtonGap, 0.0f, 0.0f, 0.0f)
		[
			SAssignNew(EndButton, SButton)
			.Text(LOCTEXT("End", "[ End ]"))
			.ToolTipText(this, &SKestrelWidget::GetEndToolTip)
			.IsEnabled(this, &SKestrelWidget::IsEndButtonEnabled)
			.OnClicked(this, &SKestrelWidget::OnRequestEndButtonClicked)
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelWidget::MakeButtonsOfRow()
{
	// clang-format off
	// A panel at the side of the editor may have no room for all of them in one row.
	return SNew(SWrapBox)
		.UseAllottedSize(true)
		.InnerSlotPadding(FVector2D(KestrelButtons::ButtonGap, KestrelButtons::ButtonGap))
		+ SWrapBox::Slot()
		[
			SAssignNew(StartButton, SButton)
			.Text(LOCTEXT("Start", "[ Start ]"))
			.ToolTipText(this, &SKestrelWidget::GetStartToolTip)
			.IsEnabled(this, &SKestrelWidget::UpdateStartButton)
			.OnClicked(this, &SKestrelWidget::OnRequestStartButtonClicked)
		]
		+ SWrapBox::Slot()
		[
			SAssignNew(ContinueButton, SButton)
			.Text(LOCTEXT("Continue", "Continue"))
			.ToolTipText(this, &SKestrelWidget::GetContinueToolTip)
			.IsEnabled(this, &SKestrelWidget::UpdateContinueButtonEnability)
			.Visibility(this, &SKestrelWidget::UpdateContinueButtonVisibility)
			.OnClicked(this, &SKestrelWidget::OnContinueButtonClicked)
		]
		+ SWrapBox::Slot()
		[
			SAssignNew(PauseButton, SButton)
			.Text(LOCTEXT("Pause", "Pause"))
			.ToolTipText(LOCTEXT("PauseToolTip", "Pause before the next tool runs"))
			.IsEnabled(this, &SKestrelWidget::IsPauseButtonEnabled)
			.Visibility(this, &SKestrelWidget::UpdatePauseButtonVisibility)
			.OnClicked(this, &SKestrelWidget::OnPauseButtonClicked)
		]
		+ SWrapBox::Slot()
		[
			SAssignNew(ApproveButton, SKestrelApproveButton)
			.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("PrimaryButton"))
			.Text(LOCTEXT("Approve", "Approve"))
			.ToolTipText(this, &SKestrelWidget::GetApproveToolTip)
			.IsEnabled(this, &SKestrelWidget::IsApproveButtonEnabled)
			.Visibility(this, &SKestrelWidget::UpdateApproveButton)
			.OnClicked(this, &SKestrelWidget::OnApproveButtonClicked)
		]
		+ SWrapBox::Slot()
		[
			SAssignNew(UndoButton, SKestrelUndoButton)
			.Text(LOCTEXT("Undo", "Undo"))
			.ToolTipText(this, &SKestrelWidget::GetUndoToolTip)
			.IsEnabled(this, &SKestrelWidget::IsUndoButtonEnabled)
			.OnClicked(this, &SKestrelWidget::OnUndoClicked)
		]
		+ SWrapBox::Slot()
		[
			SAssignNew(RedoButton, SKestrelUndoButton)
			.Text(LOCTEXT("Redo", "Redo"))
			.ToolTipText(this, &SKestrelWidget::GetRedoToolTip)
			.IsEnabled(this, &SKestrelWidget::IsRedoButtonEnabled)
			.OnClicked(this, &SKestrelWidget::OnRedoClicked)
		];
	// clang-format on
}

FText SKestrelWidget::GetStartToolTip() const
{
	if (KestrelButtons::GetState() != EAgentState::Idle)
	{
		return LOCTEXT("AlreadyStarted", "A conversation is already open.");
	}
	return IsPromptEmpty() ? KestrelButtons::NoPrompt()
						   : LOCTEXT("StartToolTip", "Start a conversation with this prompt (Enter)");
}

FText SKestrelWidget::GetContinueToolTip() const
{
	if (KestrelButtons::GetState() == EAgentState::Idle)
	{
		return KestrelButtons::NoConversation();
	}
	return UpdateContinueButtonEnability()
			   ? LOCTEXT("ContinueToolTip", "Continue the conversation with this prompt (Enter)")
			   : KestrelButtons::NoPrompt();
}

FText SKestrelWidget::GetEndToolTip() const
{
	return IsEndButtonEnabled() ? LOCTEXT("EndToolTip", "End the conversation") : KestrelButtons::NoConversation();
}

FText SKestrelWidget::GetApproveToolTip() const
{
	return IsApproveButtonEnabled() ? LOCTEXT("ApproveToolTip", "Run the tools that the assistant has asked for")
									: LOCTEXT("NothingToApprove", "Nothing waits for approval.");
}

void SKestrelWidget::BindUndoButtons()
{
	UndoButton->SetTexts(LOCTEXT("Undo", "Undo"), LOCTEXT("UndoToolTip", "Undo the last conversation's changes"),
		LOCTEXT("NothingToUndo", "There is nothing to undo."));
	UndoButton->SetPreview(
		FOnPreviewUndo::CreateLambda([](int32 MaxFiles) { return FKestrelInterface::Get().PreviewUndo(MaxFiles); }));
	RedoButton->SetTexts(LOCTEXT("Redo", "Redo"), LOCTEXT("RedoToolTip", "Restore the file changes that Undo reverted"),
		LOCTEXT("NothingToRedo", "There is nothing to redo."));
	RedoButton->SetPreview(
		FOnPreviewUndo::CreateLambda([](int32 MaxFiles) { return FKestrelInterface::Get().PreviewRedo(MaxFiles); }));
}

FText SKestrelWidget::GetUndoToolTip() const
{
	return UndoButton->Describe();
}

FText SKestrelWidget::GetRedoToolTip() const
{
	return RedoButton->Describe();
}

bool SKestrelWidget::UpdateStartButton() const
{
	return !IsPromptEmpty() && KestrelButtons::GetState() == EAgentState::Idle;
}

bool SKestrelWidget::UpdateContinueButtonEnability() const
{
	const EAgentState State = KestrelButtons::GetState();
	if (IsPromptEmpty())
	{
		return State == EAgentState::Pause;
	}
	return State == EAgentState::Pause || State == EAgentState::AwaitingUpdate ||
		   State == EAgentState::AwaitingApproval;
}

EVisibility SKestrelWidget::UpdateContinueButtonVisibility() const
{
	return IsWorking() ? EVisibility::Collapsed : EVisibility::Visible;
}

bool SKestrelWidget::IsWorking() const
{
	return FKestrelRunStatus::IsWorking();
}

EVisibility SKestrelWidget::UpdatePauseButtonVisibility() const
{
	return IsWorking() ? EVisibility::Visible : EVisibility::Collapsed;
}

EVisibility SKestrelWidget::UpdateApproveButton() const
{
	return GetDefault<UKestrelSettings>()->bAutoApprove ? EVisibility::Collapsed : EVisibility::Visible;
}

bool SKestrelWidget::IsApproveButtonEnabled() const
{
	return KestrelButtons::GetState() == EAgentState::AwaitingApproval;
}

bool SKestrelWidget::IsPauseButtonEnabled() const
{
	return !FAgent::Get().WasPaused();
}

bool SKestrelWidget::IsEndButtonEnabled() const
{
	return KestrelButtons::GetState() != EAgentState::Idle;
}

bool SKestrelWidget::IsUndoButtonEnabled() const
{
	return FKestrelInterface::Get().CanUndo();
}

bool SKestrelWidget::IsRedoButtonEnabled() const
{
	return FKestrelInterface::Get().CanRedo();
}

FReply SKestrelWidget::OnRequestStartButtonClicked()
{
	if (IsPromptEmpty())
	{
		return HandledWithFocusOnPrompt();
	}
	const EAgentState State = KestrelButtons::GetState();
	const FString Prompt = TakePrompt();
	if (State == EAgentState::Idle)
	{
		FKestrelInterface::Get().InitialRequest(Prompt);
	}
	else if (State == EAgentState::AwaitingUpdate)
	{
		FKestrelInterface::Get().RegularRequest(Prompt);
	}
	return HandledWithFocusOnPrompt();
}

FReply SKestrelWidget::OnContinueButtonClicked()
{
	FKestrelInterface::Get().Continue(TakePrompt());
	return HandledWithFocusOnPrompt();
}

FReply SKestrelWidget::OnPauseButtonClicked()
{
	FKestrelInterface::Get().PauseRequest();
	return HandledWithFocusOnPrompt();
}

FReply SKestrelWidget::OnApproveButtonClicked()
{
	FKestrelInterface::Get().Approve();
	FKestrelInterface::Get().Continue(FString());
	return HandledWithFocusOnPrompt();
}

void SKestrelWidget::OnAnswerTool(int32 Index, EKestrelAnswer Answer)
{
	FKestrelInterface::Get().AnswerTool(Index, Answer);
	FSlateApplication::Get().SetKeyboardFocus(PromptBox->GetFocusTarget());
}

void SKestrelWidget::OnAllowReading()
{
	FKestrelInterface::Get().AlwaysAllowReading();
	FSlateApplication::Get().SetKeyboardFocus(PromptBox->GetFocusTarget());
}

FReply SKestrelWidget::OnUndoClicked()
{
	FText Question;
	if (UndoButton->MayGoOn(Question))
	{
		FKestrelInterface::Get().UndoLastOperation();
		return HandledWithFocusOnPrompt();
	}
	OnAddHint(Question);
	return FReply::Handled();
}

FReply SKestrelWidget::OnRedoClicked()
{
	FText Question;
	if (RedoButton->MayGoOn(Question))
	{
		FKestrelInterface::Get().RedoLastOperation();
		return HandledWithFocusOnPrompt();
	}
	OnAddHint(Question);
	return FReply::Handled();
}

FReply SKestrelWidget::OnRequestEndButtonClicked()
{
	if (IsEndButtonEnabled())
	{
		FKestrelInterface::Get().EndRequest(FString());
	}
	return HandledWithFocusOnPrompt();
}

#undef LOCTEXT_NAMESPACE
