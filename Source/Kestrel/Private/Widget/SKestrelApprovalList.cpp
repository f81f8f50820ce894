#include "Widget/SKestrelApprovalList.h"

#include "Agent/Text/DisplayText.h"
#include "Framework/SlateDelegates.h"
#include "Framework/Text/TextLayout.h"
#include "Input/Reply.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/KestrelStyle.h"
#include "Widget/SKestrelApproveButton.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Layout/SWrapBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#define LOCTEXT_NAMESPACE "SKestrelApprovalList"

namespace KestrelApprovalList
{
constexpr float RowGap = 4.0f;
constexpr float ColumnGap = 8.0f;
constexpr float RemarkIndent = 16.0f;
constexpr float FontSize = 9.0f;
/** Rows are many: their buttons are lower than those of the panel. */
const FMargin ButtonPadding(6.0f, 0.0f);
/** Slate units; more rows, and unfolded changes, scroll. */
constexpr float MaxHeight = 480.0f;

const FLinearColor PlainColor(0.55f, 0.55f, 0.55f);
const FLinearColor FailingColor(0.32f, 0.32f, 0.32f);
const FLinearColor WarningColor(1.0f, 0.55f, 0.15f);
const FLinearColor AcceptedColor(0.35f, 0.75f, 0.4f);

/** What there is to say about a tool, on lines of its own: no name can pass for it. */
struct FRemark
{
	FText Text;
	FLinearColor Color;
};

FString JoinTexts(const TArray<FText>& Texts)
{
	TArray<FString> Strings;
	for (const FText& Text : Texts)
	{
		Strings.Add(Text.ToString());
	}
	return FString::Join(Strings, TEXT(", "));
}

bool WillFail(const FKestrelToolPlan& Plan)
{
	return !Plan.Refusal.IsEmpty();
}

/** To be looked at twice before it runs. */
bool IsRisky(const FKestrelToolPlan& Plan)
{
	return !WillFail(Plan) && (Plan.StandsOut() || !KestrelDisplayText::FindLookAlikes(Plan.Target).IsEmpty());
}

/** The plan in words, behind its number when there are several. */
FText DescribeTool(const FKestrelToolPlan& Plan, int32 Number)
{
	return Number > 0 ? FText::Format(INVTEXT("{0}. {1}"), Number, Plan.Describe()) : Plan.Describe();
}

TArray<FText> CollectCautions(const FKestrelToolPlan& Plan)
{
	TArray<FText> Cautions = Plan.Cautions;
	const FString LookAlikes = KestrelDisplayText::FindLookAlikes(Plan.Target);
	if (!LookAlikes.IsEmpty())
	{
		Cautions.Add(FText::Format(LOCTEXT("LookAlikes", "characters that look like others: {0}"),
			FText::FromString(KestrelDisplayText::Elide(LookAlikes))));
	}
	return Cautions;
}

/** The lines of a summary, as far as they are shown. */
void AddSummary(const FKestrelToolPlan& Plan, TArray<FRemark>& OutRemarks)
{
	constexpr int32 MaxLines = 12;
	constexpr int32 MaxLength = 300; // of a line
	TArray<FString> Lines;
	for (int32 Index = 0; Index < FMath::Min(Plan.Summary.Num(), MaxLines); ++Index)
	{
		Lines.Add(KestrelDisplayText::Elide(KestrelDisplayText::EscapeLine(Plan.Summary[Index]), MaxLength));
	}
	if (Plan.Summary.Num() > MaxLines)
	{
		Lines.Add(FText::Format(LOCTEXT("MoreLines", "and {0} more"), Plan.Summary.Num() - MaxLines).ToString());
	}
	if (!Lines.IsEmpty())
	{
		OutRemarks.Add({ FText::FromString(FString::Join(Lines, TEXT("\n"))), PlainColor });
	}
}

TArray<FRemark> MakeRemarks(const FKestrelToolPlan& Plan, EKestrelAnswer Answer)
{
	TArray<FRemark> Remarks;
	if (Answer != EKestrelAnswer::None)
	{
		Remarks.Add({ Answer == EKestrelAnswer::Accepted ? LOCTEXT("Accepted", "Accepted: runs when all are answered")
														 : LOCTEXT("Rejected", "Rejected: will not run"),
			Answer == EKestrelAnswer::Accepted ? AcceptedColor : WarningColor });
	}
	const auto Add = [&Remarks](const FText& Format, const FString& What, const FLinearColor& Color) {
		if (!What.IsEmpty())
		{
			Remarks.Add({ FText::Format(Format, FText::FromString(What)), Color });
		}
	};
	Add(LOCTEXT("WillFail", "Will fail: {0}"),
		KestrelDisplayText::Elide(KestrelDisplayText::EscapeLine(
			Plan.Refusal.Replace(TEXT("Error: "), TEXT(""), ESearchCase::CaseSensitive))),
		PlainColor);
	Add(LOCTEXT("LeadsTo", "Link, leads to: {0}"),
		KestrelDisplayText::Elide(KestrelDisplayText::EscapeLine(Plan.LinkTarget)), WarningColor);
	Add(LOCTEXT("Caution", "Caution: {0}"), JoinTexts(CollectCautions(Plan)),
		WillFail(Plan) ? PlainColor : WarningColor);
	Add(LOCTEXT("Note", "Note: {0}"), JoinTexts(Plan.Notes), Plan.bCannotBeShown ? WarningColor : PlainColor);
	AddSummary(Plan, Remarks);
	return Remarks;
}

/** What stands out may be out of view. */
FText DescribeAll(int32 NumTools, int32 NumRisky, int32 NumFailing, bool bPaused)
{
	if (NumTools <= 1)
	{
		if (bPaused)
		{
			return LOCTEXT("HeadingOfPause", "Paused. Continue runs this:");
		}
		return NumFailing == 0 ? LOCTEXT("Heading", "Waiting for your approval:")
							   : LOCTEXT("HeadingOfFailing", "Waiting for your approval, but it will fail:");
	}
	TArray<FString> Parts;
	Parts.Add(FText::Format(bPaused ? LOCTEXT("HeadingOfManyPaused", "Paused. Continue runs {0} tools")
									: LOCTEXT("HeadingOfMany", "Waiting for your approval: {0} tools"),
		NumTools)
				  .ToString());
	if (NumRisky > 0)
	{
		Parts.Add(FText::Format(LOCTEXT("NumRisky", "{0} worth a second look"), NumRisky).ToString());
	}
	if (NumFailing > 0)
	{
		Parts.Add(FText::Format(LOCTEXT("NumFailing", "{0} will fail"), NumFailing).ToString());
	}
	return FText::Format(LOCTEXT("HeadingWithOrder", "{0}. They run in the order of their numbers."),
		FText::FromString(FString::Join(Parts, TEXT(", "))));
}

FTextBlockStyle MakeTextStyle(const FName& Typeface, const FLinearColor& Color)
{
	FTextBlockStyle Style = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	Style.SetFont(FCoreStyle::GetDefaultFontStyle(Typeface, FontSize));
	Style.SetColorAndOpacity(Color);
	return Style;
}

TSharedRef<SWidget> MakeText(const FText& Text, const FTextBlockStyle& Style, const FText& AccessibleName)
{
	return SNew(SMultiLineEditableText)
		.Text(Text)
		.TextStyle(&Style)
		.IsReadOnly(true)
		.AutoWrapText(true)
		.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
		.AccessibleText(AccessibleName);
}

/** A text like the rows, new for each list: it is read out, and printed in a terminal, as they are. */
TSharedRef<SWidget> MakeHeading(int32 NumTools, int32 NumRisky, int32 NumFailing, bool bPaused)
{
	FTextBlockStyle Style = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	Style.SetColorAndOpacity(NumRisky > 0 ? FSlateColor(WarningColor) : FSlateColor::UseForeground());
	return MakeText(
		DescribeAll(NumTools, NumRisky, NumFailing, bPaused), Style, LOCTEXT("HeadingName", "What waits for approval"));
}

/** Each of several buttons has the number of its row: the terminal, for instance, presses them by their labels. */
FText LabelUnfoldButton(bool bScript, bool bUnfolded, int32 Number)
{
	if (Number == 0)
	{
		if (bScript)
		{
			return bUnfolded ? LOCTEXT("HideScript", "Hide the script") : LOCTEXT("ShowScript", "Show the script");
		}
		return bUnfolded ? LOCTEXT("Hide", "Hide the change") : LOCTEXT("Show", "Show the change");
	}
	if (bScript)
	{
		return FText::Format(
			bUnfolded ? LOCTEXT("HideScriptOf", "Hide script {0}") : LOCTEXT("ShowScriptOf", "Show script {0}"),
			Number);
	}
	return FText::Format(
		bUnfolded ? LOCTEXT("HideOf", "Hide change {0}") : LOCTEXT("ShowOf", "Show change {0}"), Number);
}

/** Where a row stands: what to look at twice comes first, what will do nothing comes last. */
int32 GetRank(const FKestrelToolPlan& Plan)
{
	return IsRisky(Plan) ? 0 : WillFail(Plan) ? 2 : 1;
}
}

void SKestrelApprovalList::Construct(const FArguments& InArgs)
{
	OnMakeChangeView = InArgs._OnMakeChangeView;
	OnAnswer = InArgs._OnAnswer;
	OnAllowReading = InArgs._OnAllowReading;
	OnEditRules = InArgs._OnEditRules;
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.MaxDesiredHeight(KestrelApprovalList::MaxHeight)
		[
			SNew(SBorder)
			.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Approval"))
			.Padding(KestrelApprovalList::ColumnGap)
			[
				SNew(SVerticalBox)
				+ SVerticalBox::Slot()
				.AutoHeight()
				.Padding(0.0f, 0.0f, 0.0f, KestrelApprovalList::RowGap)
				[
					SAssignNew(Heading, SBox)
				]
				+ SVerticalBox::Slot()
				.FillHeight(1.0f)
				[
					SNew(SScrollBox)
					+ SScrollBox::Slot()
					[
						SAssignNew(Rows, SVerticalBox)
					]
				]
				+ SVerticalBox::Slot()
				.AutoHeight()
				.Padding(0.0f, KestrelApprovalList::RowGap, 0.0f, 0.0f)
				[
					SAssignNew(RuleButtons, SBox)
				]
			]
		]
	];
	// clang-format on
}

void SKestrelApprovalList::SetTools(const FKestrelPendingTools& PendingTools, bool bPaused)
{
	const TArray<FKestrelPendingTools::FTool>& Tools = PendingTools.GetTools();
	TArray<FString> Ids;
	for (const FKestrelPendingTools::FTool& Tool : Tools)
	{
		Ids.Add(Tool.Plan->ToolUseId);
	}
	const TMap<int32, TSharedRef<SWidget>> UnfoldedBefore =
		Ids == ToolUseIds ? MoveTemp(Unfolded) : TMap<int32, TSharedRef<SWidget>>();
	ToolUseIds = MoveTemp(Ids);
	Unfolded.Empty();
	Rows->ClearChildren();
	constexpr int32 NumRanks = 3;
	int32 Counts[NumRanks] = {};
	for (int32 Rank = 0; Rank < NumRanks; ++Rank)
	{
		for (int32 Index = 0; Index < Tools.Num(); ++Index)
		{
			if (KestrelApprovalList::GetRank(*Tools[Index].Plan) != Rank)
			{
				continue;
			}
			++Counts[Rank];
			const int32 Number = Tools.Num() > 1 ? Index + 1 : 0;
			// clang-format off
			Rows->AddSlot()
			.AutoHeight()
			.Padding(0.0f, KestrelApprovalList::RowGap)
			[
				MakeRow(Tools[Index], Number, UnfoldedBefore.Contains(Number))
			];
			// clang-format on
		}
	}
	Heading->SetContent(Tools.IsEmpty() ? SNullWidget::NullWidget
										: KestrelApprovalList::MakeHeading(Tools.Num(), Counts[0], Counts[2], bPaused));
	RuleButtons->SetContent(MakeRuleButtons(PendingTools.OnlyRead()));
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRow(const FKestrelPendingTools::FTool& Tool, int32 Number, bool bUnfolded)
{
	const FKestrelToolPlan& Plan = *Tool.Plan;
	const bool bWillRun = Tool.Answer != EKestrelAnswer::Rejected;
	const bool bRisky = bWillRun && KestrelApprovalList::IsRisky(Plan);
	const FTextBlockStyle Style = KestrelApprovalList::MakeTextStyle(bRisky ? FName("Bold") : FName("Regular"),
		KestrelApprovalList::WillFail(Plan) || !bWillRun ? KestrelApprovalList::FailingColor
														 : KestrelApprovalList::PlainColor);

	const TSharedRef<SVerticalBox> Row = SNew(SVerticalBox);
	// clang-format off
	Row->AddSlot()
	.AutoHeight()
	[
		KestrelApprovalList::MakeText(
			KestrelApprovalList::DescribeTool(Plan, Number), Style, LOCTEXT("Waiting", "Waits for approval"))
	];
	for (const KestrelApprovalList::FRemark& Remark : KestrelApprovalList::MakeRemarks(Plan, Tool.Answer))
	{
		const FTextBlockStyle RemarkStyle = KestrelApprovalList::MakeTextStyle("Regular", Remark.Color);
		Row->AddSlot()
		.AutoHeight()
		.Padding(KestrelApprovalList::RemarkIndent, 0.0f, 0.0f, 0.0f)
		[
			KestrelApprovalList::MakeText(Remark.Text, RemarkStyle, LOCTEXT("Remark", "Remark"))
		];
	}
	Row->AddSlot()
	.AutoHeight()
	.Padding(KestrelApprovalList::RemarkIndent, 0.0f, 0.0f, 0.0f)
	[
		MakeRowButtons(Tool, Number, Row)
	];
	// clang-format on
	if (bUnfolded && Plan.Change.IsSet())
	{
		Unfold(Number, Tool.Plan, *Row);
	}
	return Row;
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRowButtons(
	const FKestrelPendingTools::FTool& Tool, int32 Number, const TSharedRef<SVerticalBox>& Row)
{
	const bool bIsOpen = Tool.Answer == EKestrelAnswer::None && OnAnswer.IsBound();
	const TSharedRef<SWidget> Accept = MakeAnswerButton(LOCTEXT("Accept", "Accept {0}"),
		LOCTEXT("AcceptTip", "Let this run, and decide on the others one by one"), Number, EKestrelAnswer::Accepted);
	const TSharedRef<SWidget> Reject =
		MakeAnswerButton(Number > 0 ? LOCTEXT("Reject", "Reject {0}") : LOCTEXT("RejectOnly", "Reject"),
			LOCTEXT("RejectTip", "Tell the assistant that this was not run"), Number, EKestrelAnswer::Rejected);
	const TSharedRef<SWidget> TakeBack = MakeAnswerButton(LOCTEXT("TakeBack", "Take back {0}"),
		LOCTEXT("TakeBackTip", "Leave it open again whether this runs"), Number, EKestrelAnswer::None);
	// The only tool is accepted with Approve.
	Accept->SetVisibility(bIsOpen && Number > 0 ? EVisibility::Visible : EVisibility::Collapsed);
	Reject->SetVisibility(bIsOpen ? EVisibility::Visible : EVisibility::Collapsed);
	TakeBack->SetVisibility(Tool.Answer == EKestrelAnswer::None ? EVisibility::Collapsed : EVisibility::Visible);
	// clang-format off
	return SNew(SWrapBox)
		.UseAllottedSize(true)
		.InnerSlotPadding(FVector2D(KestrelApprovalList::RowGap, KestrelApprovalList::RowGap))
		+ SWrapBox::Slot() [MakeUnfoldButton(Tool.Plan, Number, Row)]
		+ SWrapBox::Slot() [Accept]
		+ SWrapBox::Slot() [Reject]
		+ SWrapBox::Slot() [TakeBack];
	// clang-format on
}

TSharedRef<SWidget> SKestrelApprovalList::MakeAnswerButton(
	const FText& Label, const FText& ToolTip, int32 Number, EKestrelAnswer Given)
{
	const int32 Index = FMath::Max(Number - 1, 0);
	// clang-format off
	// The second press of a double click would answer for whatever has moved under the pointer.
	return SNew(SKestrelApproveButton)
		.ContentPadding(KestrelApprovalList::ButtonPadding)
		.Text(FText::Format(Label, Number))
		.ToolTipText(ToolTip)
		.OnClicked_Lambda([this, Index, Given]() {
			OnAnswer.ExecuteIfBound(Index, Given);
			return FReply::Handled();
		});
	// clang-format on
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRuleButtons(bool bOnlyRead)
{
	const auto Run = [](const FSimpleDelegate& Delegate) {
		return FOnClicked::CreateLambda([Delegate]() {
			Delegate.ExecuteIfBound();
			return FReply::Handled();
		});
	};
	// clang-format off
	return SNew(SWrapBox)
		.UseAllottedSize(true)
		.InnerSlotPadding(FVector2D(KestrelApprovalList::RowGap, KestrelApprovalList::RowGap))
		+ SWrapBox::Slot()
		[
			SNew(SButton)
			.ContentPadding(KestrelApprovalList::ButtonPadding)
			.Text(LOCTEXT("AllowReading", "Always allow reading in this project"))
			.ToolTipText(LOCTEXT("AllowReadingTip",
				"Adds a rule: what only reads the project's files and assets runs without asking"))
			.Visibility(bOnlyRead && OnAllowReading.IsBound() ? EVisibility::Visible : EVisibility::Collapsed)
			.OnClicked(Run(OnAllowReading))
		]
		+ SWrapBox::Slot()
		[
			SNew(SButton)
			.ContentPadding(KestrelApprovalList::ButtonPadding)
			.Text(LOCTEXT("Rules", "Rules..."))
			.ToolTipText(LOCTEXT("RulesTip", "Say what runs without asking, what asks, and what never runs"))
			.Visibility(OnEditRules.IsBound() ? EVisibility::Visible : EVisibility::Collapsed)
			.OnClicked(Run(OnEditRules))
		];
	// clang-format on
}

TSharedRef<SWidget> SKestrelApprovalList::MakeUnfolded(const FKestrelToolPlan& Plan, int32 Number) const
{
	const TSharedRef<SWidget> Change = OnMakeChangeView.Execute(Plan.Change->Before, Plan.Change->After);
	if (Number == 0)
	{
		return Change;
	}
	const FTextBlockStyle Style = KestrelApprovalList::MakeTextStyle("Italic", KestrelApprovalList::PlainColor);
	// clang-format off
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			KestrelApprovalList::MakeText(
				KestrelApprovalList::DescribeTool(Plan, Number), Style, LOCTEXT("Unfolded", "What the change is of"))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			Change
		];
	// clang-format on
}

void SKestrelApprovalList::Unfold(int32 Number, const TSharedRef<FKestrelToolPlan>& Plan, SVerticalBox& Row)
{
	const TSharedRef<SWidget> Change = MakeUnfolded(*Plan, Number);
	Unfolded.Emplace(Number, Change);
	// clang-format off
	Row.AddSlot()
	.AutoHeight()
	[
		Change
	];
	// clang-format on
}

TSharedRef<SWidget> SKestrelApprovalList::MakeUnfoldButton(
	const TSharedRef<FKestrelToolPlan>& Plan, int32 Number, const TSharedRef<SVerticalBox>& Row)
{
	const TWeakPtr<SVerticalBox> WeakRow = Row;
	const auto OnClicked = [this, WeakRow, Plan, Number]() {
		const TSharedPtr<SVerticalBox> PinnedRow = WeakRow.Pin();
		const TSharedRef<SWidget>* Change = Unfolded.Find(Number);
		if (PinnedRow.IsValid() && Change)
		{
			PinnedRow->RemoveSlot(*Change);
			Unfolded.Remove(Number);
		}
		else if (PinnedRow.IsValid() && OnMakeChangeView.IsBound())
		{
			Unfold(Number, Plan, *PinnedRow);
		}
		return FReply::Handled();
	};
	const bool bScript = Plan->Kind == EKestrelToolKind::Run;
	return SNew(SButton)
		.ContentPadding(KestrelApprovalList::ButtonPadding)
		.Text_Lambda([this, bScript, Number]() {
			return KestrelApprovalList::LabelUnfoldButton(bScript, Unfolded.Contains(Number), Number);
		})
		.Visibility(Plan->Change.IsSet() ? EVisibility::Visible : EVisibility::Collapsed)
		.OnClicked_Lambda(OnClicked);
}

#undef LOCTEXT_NAMESPACE
