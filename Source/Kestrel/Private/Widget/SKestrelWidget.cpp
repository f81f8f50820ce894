#include "Widget/SKestrelWidget.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/RunStatus.h"
#include "Agent/Tools/PendingTools.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformTime.h"
#include "Input/Events.h"
#include "InputCoreTypes.h"
#include "Kestrel.h"
#include "KestrelSettings.h"
#include "Layout/Geometry.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widget/Errors/FailureHelp.h"
#include "Widget/Errors/SKestrelFailureHelp.h"
#include "Widget/HiddenTexts.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widget/SKestrelApprovalList.h"
#include "Widget/SKestrelApproveButton.h"
#include "Widget/SKestrelClientCalls.h"
#include "Widget/SKestrelConversationView.h"
#include "Widget/SKestrelUndoButton.h"
#include "Widget/Start/SKestrelExamples.h"
#include "Widget/Status/SKestrelLoopWarning.h"
#include "Widget/Status/SKestrelPartialAnswer.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#define LOCTEXT_NAMESPACE "SKestrelWidget"

bool SKestrelWidget::bIsUserScrolling = false;
double SKestrelWidget::LastScrollTime = 0.0;

namespace KestrelWidget
{
constexpr float PanelPadding = 6.0f;
constexpr float PartGap = 6.0f;
// Of the panel's height, so that a low one still shows its buttons and some of the conversation.
constexpr float PromptMaxShare = 0.25f;
constexpr float ApprovalListMaxShare = 0.35f;
constexpr float ClientCallsMaxShare = 0.45f;
constexpr float DotPeriodSeconds = 0.5f;
constexpr int32 MaxDots = 3;

/** What a message has to end in for its dots to move. */
const TCHAR* const WorkingDots = TEXT("...");
}

void SKestrelWidget::Construct(const FArguments& InArgs)
{
	// clang-format off
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		.Padding(KestrelWidget::PanelPadding)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				MakeHistoryHeader()
			]
			+ SVerticalBox::Slot()
			.FillHeight(1.0f)
			[
				MakeConversationArea()
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, KestrelWidget::PartGap, 0.0f, 0.0f)
			[
				SNew(SKestrelLoopWarning)
				.OnPause_Static(&SKestrelWidget::PauseAgent)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.MaxHeight(MakeAttributeSP(this, &SKestrelWidget::GetPromptHeightLimit))
			.Padding(0.0f, KestrelWidget::PartGap, 0.0f, 0.0f)
			[
				SAssignNew(PromptBox, SKestrelPromptBox)
				.OnEnter(this, &SKestrelWidget::OnKeyDown)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.MaxHeight(MakeAttributeSP(this, &SKestrelWidget::GetApprovalListHeightLimit))
			.Padding(0.0f, KestrelWidget::PartGap, 0.0f, 0.0f)
			[
				MakeApprovalList()
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, KestrelWidget::PartGap, 0.0f, 0.0f)
			[
				MakeButtonRow()
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.MaxHeight(MakeAttributeSP(this, &SKestrelWidget::GetClientCallsHeightLimit))
			[
				SNew(SKestrelClientCalls)
				.OnMakeChangeView(this, &SKestrelWidget::MakeChangeView)
			]
		]
	];
	// clang-format on
	BindUndoButtons();
	Begin();
}

void SKestrelWidget::Begin()
{
	// A widget that is not shown yet cannot have the focus.
	RegisterActiveTimer(0.0f, FWidgetActiveTimerDelegate::CreateSP(this, &SKestrelWidget::SetFocusPostConstruct));
	BindToAgent();
	ShowWelcome();
	RestoreConversation();
	ShowNotices();
}

TSharedRef<SWidget> SKestrelWidget::MakeApprovalList()
{
	return SAssignNew(ApprovalList, SKestrelApprovalList)
		.Visibility(this, &SKestrelWidget::GetApprovalListVisibility)
		.OnMakeChangeView(this, &SKestrelWidget::MakeChangeView)
		.OnAnswer(this, &SKestrelWidget::OnAnswerTool)
		.OnAllowReading(this, &SKestrelWidget::OnAllowReading)
		.OnEditRules_Static(&FKestrelModule::OpenSettings);
}

TSharedRef<SWidget> SKestrelWidget::MakeConversationArea()
{
	// clang-format off
	return SNew(SOverlay)
		+ SOverlay::Slot()
		[
			SAssignNew(Conversation, SKestrelConversationView)
			.Visibility(this, &SKestrelWidget::GetCurrentVisibility)
			.IsUserScrolling_Static(&SKestrelWidget::IsUserScrolling)
			.OnScrolled_Static(&SKestrelWidget::OnScrolled)
			.OnEndReached_Static(&SKestrelWidget::OnEndReached)
		]
		+ SOverlay::Slot()
		[
			SAssignNew(EarlierBox, SBox)
			.Visibility(this, &SKestrelWidget::GetEarlierVisibility)
		];
	// clang-format on
}

void SKestrelWidget::BindToAgent()
{
	FKestrelInterface::Get().StatusMessageDelegate.BindSP(this, &SKestrelWidget::OnAddStatusMessage);
	FKestrelInterface::Get().DiffMessageDelegate.BindSP(this, &SKestrelWidget::OnAddDiffMessage);
	FKestrelInterface::Get().HintDelegate.BindSP(this, &SKestrelWidget::OnAddHint);
	StateChangedHandle = FAgent::Get().OnStateChanged().AddSP(this, &SKestrelWidget::OnAgentStateChanged);
	TextSizeHandle = UKestrelSettings::OnTextSizeChanged().AddSP(this, &SKestrelWidget::ShowConversationAgain);
	RunChangedHandle = FKestrelRunStatus::Get().OnChanged().AddSP(this, &SKestrelWidget::ShowPartialAnswer);
	OnAgentStateChanged();
	ShowPartialAnswer();
}

void SKestrelWidget::PauseAgent()
{
	FKestrelInterface::Get().PauseRequest();
}

void SKestrelWidget::ShowPartialAnswer()
{
	const FString& Partial = FKestrelRunStatus::Get().GetProgress().Partial;
	// A listener would hear the beginning again with each poll.
	if (Partial.IsEmpty() || SKestrelConversationView::IsReadOut())
	{
		Conversation->SetProvisional(nullptr);
		PartialAnswer.Reset();
		return;
	}
	if (!PartialAnswer.IsValid())
	{
		SAssignNew(PartialAnswer, SKestrelPartialAnswer).IsFormatted(SKestrelConversationView::IsFormatted());
		Conversation->SetProvisional(PartialAnswer);
	}
	PartialAnswer->SetSource(Partial);
}

void SKestrelWidget::ShowWelcome()
{
	const FText Welcome = LOCTEXT("Welcome",
		"I know the files and Blueprints of this project: I can read, search and change them, compile the game and run "
		"Python scripts. "
		"Type what you want below and press Enter, for instance:\n\n"
		"  - list the files in Source\n"
		"  - read Config/DefaultEngine.ini\n"
		"  - find Health\n"
		"  - create blueprint BP_Gate from Actor in /Game/Doors\n"
		"  - add an int variable Toll to BP_Gate with value 3\n\n"
		"Before I use a tool I ask: press Approve to let me, or write what I should do instead. "
		"Undo reverts what a conversation has changed, except for new Blueprints.");
	Conversation->AddText(FString(TEXT(" [ Kestrel ] \n\n")) + Welcome.ToString(), FKestrelInterface::AssistantColor,
		FKestrelInterface::RegularFontName, FKestrelInterface::AssistantFontSize);
	// In a terminal each button is a command.
	if (!SKestrelConversationView::IsReadOut())
	{
		Conversation->AddWidget(SNew(SKestrelExamples).OnChosen(this, &SKestrelWidget::UsePromptAgain));
	}
}

void SKestrelWidget::ShowNotices()
{
	// No part of the conversation: a panel that is opened later does not show them again.
	for (const FString& Notice : FKestrelInterface::Get().TakeNotices())
	{
		OnAddStatusMessage(Notice, FKestrelInterface::MessageColor, FKestrelInterface::ItalicFontName,
			FKestrelInterface::MessageFontSize);
	}
	for (const FText& Hint : FKestrelInterface::Get().TakeHints())
	{
		OnAddHint(Hint);
	}
}

SKestrelWidget::~SKestrelWidget()
{
	FAgent::Get().OnStateChanged().Remove(StateChangedHandle);
	FKestrelRunStatus::Get().OnChanged().Remove(RunChangedHandle);
	UKestrelSettings::OnTextSizeChanged().Remove(TextSizeHandle);
	FTSTicker::GetCoreTicker().RemoveTicker(QueueTicker);
}

void SKestrelWidget::OnAgentStateChanged()
{
	GiveBackUnansweredPrompt();
	UndoButton->ForgetQuestion();
	RedoButton->ForgetQuestion();
	const FKestrelPendingTools& Tools = FAgent::Get().GetPendingTools();
	if (GetApprovalListVisibility() == EVisibility::Visible)
	{
		ApprovalList->SetTools(Tools, FAgent::Get().GetAgentState() == EAgentState::Pause);
	}
	ApproveButton->SetButtonStyle(
		&FAppStyle::Get().GetWidgetStyle<FButtonStyle>(Tools.WillAllFail() ? FName("Button") : FName("PrimaryButton")));
}

EVisibility SKestrelWidget::GetApprovalListVisibility() const
{
	const EAgentState State = FAgent::Get().GetAgentState();
	const bool bWaits = State == EAgentState::AwaitingApproval || State == EAgentState::Pause;
	return bWaits && !FAgent::Get().GetPendingTools().IsEmpty() ? EVisibility::Visible : EVisibility::Collapsed;
}

EActiveTimerReturnType SKestrelWidget::SetFocusPostConstruct(double InCurrentTime, float InDeltaTime)
{
	FSlateApplication::Get().SetKeyboardFocus(PromptBox->GetFocusTarget());
	return EActiveTimerReturnType::Stop;
}

float SKestrelWidget::GetHeight() const
{
	return static_cast<float>(FVector2D(GetCachedGeometry().GetLocalSize()).Y);
}

float SKestrelWidget::GetWidth() const
{
	return static_cast<float>(FVector2D(GetCachedGeometry().GetLocalSize()).X);
}

float SKestrelWidget::GetPromptHeightLimit() const
{
	return GetHeight() * KestrelWidget::PromptMaxShare;
}

float SKestrelWidget::GetClientCallsHeightLimit() const
{
	return GetHeight() * KestrelWidget::ClientCallsMaxShare;
}

float SKestrelWidget::GetApprovalListHeightLimit() const
{
	return GetHeight() * KestrelWidget::ApprovalListMaxShare;
}

FReply SKestrelWidget::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	return FReply::Handled().SetUserFocus(PromptBox->GetFocusTarget(), InFocusEvent.GetCause());
}

void SKestrelWidget::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	SCompoundWidget::Tick(AllottedGeometry, InCurrentTime, InDeltaTime);
	Conversation->KeepEndInView();
}

void SKestrelWidget::OnScrolled(bool bAwayFromEnd)
{
	LastScrollTime = FPlatformTime::Seconds();
	bIsUserScrolling = bAwayFromEnd;
}

void SKestrelWidget::OnEndReached()
{
	bIsUserScrolling = false;
}

FReply SKestrelWidget::OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	SKestrelConversationView& Shown = EarlierConversation.IsValid() ? *EarlierConversation : *Conversation;
	if (InKeyEvent.IsAltDown() && (Key == EKeys::Up || Key == EKeys::Down))
	{
		// Behind the last turn is the prompt.
		const TSharedPtr<SWidget> Turn = Shown.GoToTurn(Key == EKeys::Down);
		return Turn.IsValid() ? FReply::Handled().SetUserFocus(Turn.ToSharedRef(), EFocusCause::Navigation)
							  : HandledWithFocusOnPrompt();
	}
	if (Key == EKeys::F1)
	{
		KeysButton->SetIsOpen(!KeysButton->IsOpen());
		return FReply::Handled();
	}
	if (InKeyEvent.GetKey() == EKeys::F8 && Conversation->GoToChange(!InKeyEvent.IsShiftDown()))
	{
		return FReply::Handled();
	}
	const bool bDown = InKeyEvent.GetKey() == EKeys::PageDown;
	if ((!bDown && InKeyEvent.GetKey() != EKeys::PageUp) || InKeyEvent.IsShiftDown())
	{
		return SCompoundWidget::OnPreviewKeyDown(MyGeometry, InKeyEvent);
	}
	Shown.TurnPage(bDown);
	return FReply::Handled();
}

FString SKestrelWidget::ReplaceStrings(const FString& Text, const TMap<FString, FString>& Replacements)
{
	return KestrelHiddenTexts::Replace(Text, Replacements);
}

void SKestrelWidget::OnAddStatusMessage(
	const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize)
{
	if (!RepeatProgress(Message))
	{
		StopProgressAnimation();
		StartProgressIfWorking(Message, ShowStatusMessage(Message, Color, FontStyle, FontSize));
	}
	const FKestrelInterface& Interface = FKestrelInterface::Get();
	Interface.KestrelInterfaceLogString(Message, Interface.GetPromptLogFilePath(), true);
}

SKestrelConversationView::FBlock SKestrelWidget::ShowStatusMessage(
	const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize)
{
	const SKestrelConversationView::FBlock Block = Conversation->AddMessage(Message, Color, FontStyle, FontSize);
	if (const TOptional<FKestrelFailureHelp> Help = KestrelFailureHelp::Find(Message))
	{
		Conversation->AddWidget(SNew(SKestrelFailureHelp).Help(Help.GetValue()));
	}
	return Block;
}

void SKestrelWidget::OnAddHint(const FText& Hint)
{
	StopProgressAnimation();
	ShowHint(Hint);
}

void SKestrelWidget::ShowHint(const FText& Hint)
{
	Conversation->AddText(Hint.ToString(), FKestrelInterface::MessageColor, FKestrelInterface::ItalicFontName,
		FKestrelInterface::MessageFontSize);
}

void SKestrelWidget::StartProgressIfWorking(const FString& Message, const SKestrelConversationView::FBlock& Block)
{
	if (Block.Text.IsValid() && Message.EndsWith(KestrelWidget::WorkingDots))
	{
		StartProgressAnimation(Block.Text.ToSharedRef(), Block.Border.ToSharedRef());
		ProgressMessage = Message;
	}
}

bool SKestrelWidget::RepeatProgress(const FString& Message)
{
	const bool bRepeats = SKestrelConversationView::IsFormatted() && AnimatedText.IsValid() && !Message.IsEmpty() &&
						  ProgressMessage.Equals(Message, ESearchCase::CaseSensitive);
	NumRepeats += bRepeats ? 1 : 0;
	return bRepeats;
}

FString SKestrelWidget::GetProgressNote() const
{
	constexpr int32 FirstSecondsShown = 5;
	const int32 Seconds = static_cast<int32>(FPlatformTime::Seconds() - ProgressStart);
	if (!SKestrelConversationView::IsFormatted())
	{
		return FString();
	}
	return (NumRepeats > 0 ? FString::Printf(TEXT(" \u00D7%d"), NumRepeats + 1) : FString()) +
		   (Seconds >= FirstSecondsShown ? FString::Printf(TEXT(" \u00B7 %d:%02d"), Seconds / 60, Seconds % 60)
										 : FString());
}

void SKestrelWidget::StartProgressAnimation(
	const TSharedRef<SMultiLineEditableText>& TextWidget, const TSharedRef<SBorder>& Border)
{
	AnimatedText = TextWidget;
	AnimatedBorder = Border;
	AnimatedBaseText = TextWidget->GetText().ToString();
	AnimatedBaseText.RemoveFromEnd(KestrelWidget::WorkingDots);
	NumDots = 0;
	NumRepeats = 0;
	ProgressStart = FPlatformTime::Seconds();
	AnimationTimer = RegisterActiveTimer(KestrelWidget::DotPeriodSeconds,
		FWidgetActiveTimerDelegate::CreateSP(this, &SKestrelWidget::UpdateProgressAnimation));
}

EActiveTimerReturnType SKestrelWidget::UpdateProgressAnimation(double InCurrentTime, float InDeltaTime)
{
	if (!AnimatedText.IsValid())
	{
		return EActiveTimerReturnType::Stop;
	}
	NumDots = (NumDots + 1) % (KestrelWidget::MaxDots + 1);
	// Set, not bound: a bound text would not refresh while the block has the keyboard focus.
	AnimatedText->SetText(FText::FromString(AnimatedBaseText + GetProgressNote() + FString::ChrN(NumDots, TEXT('.'))));
	return EActiveTimerReturnType::Continue;
}

void SKestrelWidget::StopProgressAnimation()
{
	if (const TSharedPtr<FActiveTimerHandle> Timer = AnimationTimer.Pin())
	{
		UnRegisterActiveTimer(Timer.ToSharedRef());
		// It stays as it came, and not with as many dots as it happened to have.
		AnimatedText->SetText(FText::FromString(AnimatedBaseText + GetProgressNote() + KestrelWidget::WorkingDots));
	}
	ProgressMessage.Reset();
	AnimationTimer.Reset();
	AnimatedText.Reset();
	AnimatedBorder.Reset();
}

bool SKestrelWidget::IsPromptEmpty() const
{
	return PromptBox->IsEmpty();
}

FString SKestrelWidget::TakePrompt()
{
	CloseEarlierConversation();
	Conversation->FollowEnd();
	UnansweredPrompt = PromptBox->Take();
	return UnansweredPrompt;
}

FReply SKestrelWidget::HandledWithFocusOnPrompt() const
{
	return FReply::Handled().SetUserFocus(PromptBox->GetFocusTarget(), EFocusCause::SetDirectly);
}

FReply SKestrelWidget::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	// What popped up has closed itself with it. In the prompt box it is somebody else's.
	if (InKeyEvent.GetKey() == EKeys::Escape && !PromptBox->GetFocusTarget()->HasKeyboardFocus())
	{
		return HandledWithFocusOnPrompt();
	}
	if (InKeyEvent.GetKey() != EKeys::Enter || InKeyEvent.IsShiftDown())
	{
		return SCompoundWidget::OnKeyDown(MyGeometry, InKeyEvent);
	}
	// A held key repeats: one press sends once.
	if (InKeyEvent.IsRepeat())
	{
		return FReply::Handled();
	}
	if (FAgent::Get().GetAgentState() == EAgentState::Idle)
	{
		OnRequestStartButtonClicked();
	}
	else if (UpdateContinueButtonEnability())
	{
		OnContinueButtonClicked();
	}
	else if (IsWorking() && !IsPromptEmpty())
	{
		QueuePrompt();
	}
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
