#include "Widget/Prompt/SKestrelPromptBox.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Containers/Ticker.h"
#include "Fonts/FontMeasure.h"
#include "Fonts/SlateFontInfo.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "InputCoreTypes.h"
#include "Layout/Clipping.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/KestrelStyle.h"
#include "Widget/Prompt/SKestrelCompletionList.h"
#include "Widget/TextSize.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SMenuAnchor.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelPromptBox"

namespace KestrelPromptBox
{
constexpr float BlockPadding = 8.0f;
constexpr float MinHeight = 60.0f;
constexpr float MaxHeight = 200.0f;
constexpr float QueueGap = 4.0f;

FSlateFontInfo GetFont()
{
	FSlateFontInfo Font = FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText").Font;
	Font.Size = KestrelTextSize::Scale(Font.Size);
	return Font;
}

/** Two prompts as one, with a blank line between. */
FString Join(const FString& First, const FString& Second)
{
	return First.IsEmpty() || Second.IsEmpty() ? First + Second : First + TEXT("\n\n") + Second;
}
}

void SKestrelPromptBox::Construct(const FArguments& InArgs)
{
	OnEnter = InArgs._OnEnter;
	SAssignNew(List, SKestrelCompletionList).OnChosen(this, &SKestrelPromptBox::Complete);
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			MakeQueueLine()
		]
		+ SVerticalBox::Slot()
		.FillHeight(1.0f)
		[
			SAssignNew(ListAnchor, SMenuAnchor)
			.Placement(MenuPlacement_AboveAnchor)
			.OnGetMenuContent(this, &SKestrelPromptBox::GetList)
			.OnMenuOpenChanged(this, &SKestrelPromptBox::OnListOpenChanged)
			[
				SNew(SBorder)
				.BorderImage(this, &SKestrelPromptBox::GetBrush)
				.Padding(KestrelPromptBox::BlockPadding)
				[
					SNew(SBox)
					.MinDesiredHeight(KestrelPromptBox::MinHeight)
					.MaxDesiredHeight(KestrelPromptBox::MaxHeight)
					[
						SNew(SHorizontalBox)
						+ SHorizontalBox::Slot()
						.FillWidth(1.0f)
						[
							MakeText()
						]
						+ SHorizontalBox::Slot()
						.AutoWidth()
						[
							MakeNameButtons()
						]
					]
				]
			]
		]
	];
	// clang-format on
}

TSharedRef<SWidget> SKestrelPromptBox::MakeText()
{
	// clang-format off
	return SAssignNew(Text, SMultiLineEditableText)
		.Text(FText::FromString(FKestrelInterface::Get().GetPromptStore().TakeDraft()))
		.TextStyle(&FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText"))
		.Font_Static(&KestrelPromptBox::GetFont)
		.HintText(LOCTEXT("PromptHint", "Enter your prompt here..."))
		.AutoWrapText(true)
		.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
		.OnTextChanged(this, &SKestrelPromptBox::OnTextChanged)
		.OnTextCommitted(this, &SKestrelPromptBox::OnTextCommitted)
		.OnCursorMoved(this, &SKestrelPromptBox::OnCursorMoved)
		// A focused text keeps Enter to itself unless it is asked first.
		.OnKeyDownHandler(this, &SKestrelPromptBox::OnTextKeyDown);
	// clang-format on
}

SKestrelPromptBox::~SKestrelPromptBox()
{
	FTSTicker::GetCoreTicker().RemoveTicker(ReadTicker);
	Withdraw();
	FKestrelInterface::Get().GetPromptStore().KeepDraft(GetText());
}

TSharedRef<SWidget> SKestrelPromptBox::MakeQueueLine()
{
	// clang-format off
	return SNew(SHorizontalBox)
		.Visibility(this, &SKestrelPromptBox::GetQueueVisibility)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		.Padding(KestrelPromptBox::BlockPadding, 0.0f)
		[
			SNew(STextBlock)
			.Text(this, &SKestrelPromptBox::GetQueueText)
			.ToolTipText(this, &SKestrelPromptBox::GetQueueToolTip)
			.ColorAndOpacity(FKestrelStyle::Get().GetSlateColor("Kestrel.Text.Quiet"))
			.Clipping(EWidgetClipping::ClipToBounds)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.Padding(0.0f, 0.0f, 0.0f, KestrelPromptBox::QueueGap)
		[
			SNew(SButton)
			.Text(LOCTEXT("Withdraw", "Withdraw"))
			.ToolTipText(LOCTEXT("WithdrawToolTip", "Put this prompt back into the prompt box"))
			.OnClicked(this, &SKestrelPromptBox::OnWithdrawClicked)
		];
	// clang-format on
}

EVisibility SKestrelPromptBox::GetQueueVisibility() const
{
	return HasQueued() ? EVisibility::Visible : EVisibility::Collapsed;
}

FText SKestrelPromptBox::GetQueueText() const
{
	constexpr int32 MaxLength = 100; // one line; the tooltip has all of it
	const FString Line = QueuedPrompt.Replace(TEXT("\r"), TEXT("")).Replace(TEXT("\n"), TEXT(" "));
	const FString Shown = Line.Len() > MaxLength ? Line.Left(MaxLength) + TEXT("\u2026") : Line;
	return FText::Format(LOCTEXT("Queued", "Sent next: {0}"), FText::FromString(Shown));
}

FText SKestrelPromptBox::GetQueueToolTip() const
{
	constexpr int32 MaxLength = 2000; // more has no room on a screen
	return FText::FromString(QueuedPrompt.Left(MaxLength));
}

FReply SKestrelPromptBox::OnWithdrawClicked()
{
	Withdraw();
	return FReply::Handled().SetUserFocus(GetFocusTarget(), EFocusCause::SetDirectly);
}

void SKestrelPromptBox::PutBefore(const FString& Prompt)
{
	if (!Prompt.IsEmpty())
	{
		SetTextWithoutList(KestrelPromptBox::Join(Prompt, GetText()));
		Text->GoTo(ETextLocation::EndOfDocument);
	}
}

void SKestrelPromptBox::Queue()
{
	QueuedPrompt = KestrelPromptBox::Join(QueuedPrompt, Take());
}

FString SKestrelPromptBox::TakeQueued()
{
	return MoveTemp(QueuedPrompt);
}

void SKestrelPromptBox::Withdraw()
{
	PutBefore(TakeQueued());
}

bool SKestrelPromptBox::IsEmpty() const
{
	return Text->GetText().IsEmpty();
}

FString SKestrelPromptBox::GetText() const
{
	return Text->GetText().ToString();
}

FString SKestrelPromptBox::Take()
{
	const FString Prompt = GetText();
	SetTextWithoutList(FString());
	Recall.Reset();
	FKestrelInterface::Get().GetPromptStore().Add(Prompt);
	return Prompt;
}

TSharedRef<SWidget> SKestrelPromptBox::GetFocusTarget() const
{
	return Text.ToSharedRef();
}

const FSlateBrush* SKestrelPromptBox::GetBrush() const
{
	const bool bFocused = bIsDropTarget || (Text.IsValid() && Text->HasKeyboardFocus());
	return FKestrelStyle::Get().GetBrush(bFocused ? FName("Kestrel.Prompt.Focused") : FName("Kestrel.Prompt"));
}

FReply SKestrelPromptBox::OnTextKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bPlain = !InKeyEvent.IsShiftDown() && !InKeyEvent.IsControlDown() && !InKeyEvent.IsAltDown() &&
						!InKeyEvent.IsCommandDown();
	if (bPlain && ListAnchor->IsOpen() && HandleListKey(Key))
	{
		return FReply::Handled();
	}
	if (Key == EKeys::Enter && !InKeyEvent.IsShiftDown())
	{
		return OnEnter.IsBound() ? OnEnter.Execute(MyGeometry, InKeyEvent) : FReply::Unhandled();
	}
	const bool bRecalled = bPlain && ((Key == EKeys::Up && IsCursorInFirstRow() && RecallOlder()) ||
										 (Key == EKeys::Down && IsCursorInLastRow() && RecallNewer()));
	return bRecalled ? FReply::Handled() : FReply::Unhandled();
}

bool SKestrelPromptBox::RecallOlder()
{
	const TOptional<FString> Recalled = Recall.Older(GetText(), FKestrelInterface::Get().GetPromptStore().GetPrompts());
	if (Recalled.IsSet())
	{
		SetTextWithoutList(Recalled.GetValue());
		// From there Up goes on at once.
		Text->GoTo(FTextLocation(0, GetLines()[0].Len()));
	}
	return Recalled.IsSet();
}

bool SKestrelPromptBox::RecallNewer()
{
	const TOptional<FString> Recalled = Recall.Newer(GetText());
	if (Recalled.IsSet())
	{
		SetTextWithoutList(Recalled.GetValue());
		Text->GoTo(ETextLocation::EndOfDocument);
	}
	return Recalled.IsSet();
}

TArray<FString> SKestrelPromptBox::GetLines() const
{
	TArray<FString> Lines;
	GetText().Replace(TEXT("\r\n"), TEXT("\n")).ParseIntoArray(Lines, TEXT("\n"), false);
	if (Lines.IsEmpty())
	{
		Lines.AddDefaulted();
	}
	return Lines;
}

bool SKestrelPromptBox::FitsInRow(const FString& Line) const
{
	constexpr int32 MaxMeasured = 1000; // no row has room for more
	const double Width = FVector2D(Text->GetCachedGeometry().GetLocalSize()).X;
	const TSharedRef<FSlateFontMeasure> Measure = FSlateApplication::Get().GetRenderer()->GetFontMeasureService();
	return Line.IsEmpty() ||
		   (Line.Len() <= MaxMeasured && FVector2D(Measure->Measure(Line, KestrelPromptBox::GetFont())).X < Width);
}

bool SKestrelPromptBox::IsCursorInFirstRow() const
{
	const FTextLocation Cursor = Text->GetCursorLocation();
	if (Cursor.GetLineIndex() > 0)
	{
		return false;
	}
	// A word that does not fit is wrapped as a whole, with the cursor in it.
	const FString Line = GetLines()[0];
	int32 End = Cursor.GetOffset();
	while (End < Line.Len() && !FChar::IsWhitespace(Line[End]))
	{
		++End;
	}
	return Cursor.GetOffset() == 0 || FitsInRow(Line.Left(End));
}

bool SKestrelPromptBox::IsCursorInLastRow() const
{
	const TArray<FString> Lines = GetLines();
	const FTextLocation Cursor = Text->GetCursorLocation();
	return Cursor.GetLineIndex() == Lines.Num() - 1 &&
		   (Cursor.GetOffset() >= Lines.Last().Len() || FitsInRow(Lines.Last()));
}

#undef LOCTEXT_NAMESPACE
