#include "Widget/SKestrelApprovalList.h"

#include "Agent/Text/DisplayText.h"
#include "Framework/Text/TextLayout.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
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
/** Slate units; more rows, and unfolded changes, scroll. */
constexpr float MaxHeight = 240.0f;

const FLinearColor PlainColor(0.55f, 0.55f, 0.55f);
const FLinearColor FailingColor(0.32f, 0.32f, 0.32f);
const FLinearColor WarningColor(1.0f, 0.55f, 0.15f);

/** What the plugin has to say about a tool, on a line of its own: no name can pass for it. */
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

/** A name of any length leaves room for what is said about it. */
FString Elide(const FString& Text)
{
	constexpr int32 MaxLength = 400;
	return Text.Len() <= MaxLength ? Text : Text.Left(MaxLength / 2) + TEXT(" \u2026 ") + Text.Right(MaxLength / 2);
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

/** "Change Source/A.h: 3 replacements", behind its number when there are several. */
FText DescribeTool(const FKestrelToolPlan& Plan, int32 Number)
{
	FString Text = (Number > 0 ? FString::Printf(TEXT("%d. "), Number) : FString()) + Plan.Verb.ToString();
	if (!Plan.Target.IsEmpty())
	{
		Text += TEXT(" ") + Elide(KestrelDisplayText::EscapeLine(Plan.Target));
	}
	if (Plan.NumReplacements.IsSet())
	{
		Text +=
			TEXT(": ") + FText::Format(LOCTEXT("Replacements", "{0} {0}|plural(one=replacement,other=replacements)"),
							 Plan.NumReplacements.GetValue())
							 .ToString();
	}
	return FText::FromString(Text);
}

TArray<FText> CollectCautions(const FKestrelToolPlan& Plan)
{
	TArray<FText> Cautions = Plan.Cautions;
	const FString LookAlikes = KestrelDisplayText::FindLookAlikes(Plan.Target);
	if (!LookAlikes.IsEmpty())
	{
		Cautions.Add(FText::Format(
			LOCTEXT("LookAlikes", "characters that look like others: {0}"), FText::FromString(Elide(LookAlikes))));
	}
	return Cautions;
}

TArray<FRemark> MakeRemarks(const FKestrelToolPlan& Plan)
{
	TArray<FRemark> Remarks;
	const auto Add = [&Remarks](const FText& Format, const FString& What, const FLinearColor& Color) {
		if (!What.IsEmpty())
		{
			Remarks.Add({ FText::Format(Format, FText::FromString(What)), Color });
		}
	};
	Add(LOCTEXT("WillFail", "Will fail: {0}"),
		Elide(KestrelDisplayText::EscapeLine(
			Plan.Refusal.Replace(TEXT("Error: "), TEXT(""), ESearchCase::CaseSensitive))),
		PlainColor);
	Add(LOCTEXT("LeadsTo", "Link, leads to: {0}"), Elide(KestrelDisplayText::EscapeLine(Plan.LinkTarget)),
		WarningColor);
	Add(LOCTEXT("Caution", "Caution: {0}"), JoinTexts(CollectCautions(Plan)),
		WillFail(Plan) ? PlainColor : WarningColor);
	Add(LOCTEXT("Note", "Note: {0}"), JoinTexts(Plan.Notes), Plan.bCannotBeShown ? WarningColor : PlainColor);
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
			]
		]
	];
	// clang-format on
}

void SKestrelApprovalList::SetPlans(const TArray<TSharedRef<FKestrelToolPlan>>& Plans, bool bPaused)
{
	Rows->ClearChildren();
	constexpr int32 NumRanks = 3;
	int32 Counts[NumRanks] = {};
	for (int32 Rank = 0; Rank < NumRanks; ++Rank)
	{
		for (int32 Index = 0; Index < Plans.Num(); ++Index)
		{
			if (KestrelApprovalList::GetRank(*Plans[Index]) != Rank)
			{
				continue;
			}
			++Counts[Rank];
			// clang-format off
			Rows->AddSlot()
			.AutoHeight()
			.Padding(0.0f, KestrelApprovalList::RowGap)
			[
				MakeRow(Plans[Index], Plans.Num() > 1 ? Index + 1 : 0)
			];
			// clang-format on
		}
	}
	Heading->SetContent(Plans.IsEmpty() ? SNullWidget::NullWidget
										: KestrelApprovalList::MakeHeading(Plans.Num(), Counts[0], Counts[2], bPaused));
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRow(const TSharedRef<FKestrelToolPlan>& Plan, int32 Number)
{
	const bool bRisky = KestrelApprovalList::IsRisky(*Plan);
	const FTextBlockStyle Style = KestrelApprovalList::MakeTextStyle(bRisky ? FName("Bold") : FName("Regular"),
		KestrelApprovalList::WillFail(*Plan) ? KestrelApprovalList::FailingColor : KestrelApprovalList::PlainColor);

	const TSharedRef<SVerticalBox> Row = SNew(SVerticalBox);
	// clang-format off
	Row->AddSlot()
	.AutoHeight()
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			KestrelApprovalList::MakeText(
				KestrelApprovalList::DescribeTool(*Plan, Number), Style, LOCTEXT("Waiting", "Waits for approval"))
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		[
			MakeUnfoldButton(Plan, Number, Row)
		]
	];
	for (const KestrelApprovalList::FRemark& Remark : KestrelApprovalList::MakeRemarks(*Plan))
	{
		const FTextBlockStyle RemarkStyle = KestrelApprovalList::MakeTextStyle("Regular", Remark.Color);
		Row->AddSlot()
		.AutoHeight()
		.Padding(KestrelApprovalList::RemarkIndent, 0.0f, 0.0f, 0.0f)
		[
			KestrelApprovalList::MakeText(Remark.Text, RemarkStyle, LOCTEXT("Remark", "Remark"))
		];
	}
	// clang-format on
	return Row;
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

TSharedRef<SWidget> SKestrelApprovalList::MakeUnfoldButton(
	const TSharedRef<FKestrelToolPlan>& Plan, int32 Number, const TSharedRef<SVerticalBox>& Row)
{
	const TWeakPtr<SVerticalBox> WeakRow = Row;
	const TSharedRef<TSharedPtr<SWidget>> Unfolded = MakeShared<TSharedPtr<SWidget>>();
	const auto OnClicked = [this, WeakRow, Unfolded, Plan, Number]() {
		const TSharedPtr<SVerticalBox> PinnedRow = WeakRow.Pin();
		if (PinnedRow.IsValid() && Unfolded->IsValid())
		{
			PinnedRow->RemoveSlot(Unfolded->ToSharedRef());
			Unfolded->Reset();
		}
		else if (PinnedRow.IsValid() && OnMakeChangeView.IsBound())
		{
			*Unfolded = MakeUnfolded(*Plan, Number);
			// clang-format off
			PinnedRow->AddSlot()
			.AutoHeight()
			[
				Unfolded->ToSharedRef()
			];
			// clang-format on
		}
		return FReply::Handled();
	};
	const bool bScript = Plan->Kind == EKestrelToolKind::Run;
	return SNew(SButton)
		.Text_Lambda([Unfolded, bScript, Number]() {
			return KestrelApprovalList::LabelUnfoldButton(bScript, Unfolded->IsValid(), Number);
		})
		.Visibility(Plan->Change.IsSet() ? EVisibility::Visible : EVisibility::Collapsed)
		.OnClicked_Lambda(OnClicked);
}

#undef LOCTEXT_NAMESPACE
