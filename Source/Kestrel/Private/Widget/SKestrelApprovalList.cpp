#include "Widget/SKestrelApprovalList.h"

#include "Agent/Tools/DisplayText.h"
#include "Styling/CoreStyle.h"
#include "Styling/SlateTypes.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelApprovalList"

namespace KestrelApprovalList
{
constexpr float RowGap = 2.0f;
constexpr float ColumnGap = 8.0f;
constexpr float FontSize = 9.0f;
/** Slate units; more rows, and unfolded changes, scroll. */
constexpr float MaxHeight = 240.0f;

const FLinearColor PlainColor(0.55f, 0.55f, 0.55f);
const FLinearColor WarningColor(1.0f, 0.55f, 0.15f);

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

/** One line that says all, "Change Source/A.h: 3 replacements (build file)", and a second for a tool that will fail. */
FText Describe(const FKestrelToolPlan& Plan)
{
	FString Text = Plan.Verb.ToString();
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
	TArray<FText> Remarks = Plan.Cautions;
	Remarks.Append(Plan.Notes);
	if (!Remarks.IsEmpty())
	{
		Text += TEXT(" (") + JoinTexts(Remarks) + TEXT(")");
	}
	if (!Plan.Refusal.IsEmpty())
	{
		Text += TEXT("\n") + Elide(KestrelDisplayText::EscapeLine(Plan.Refusal));
	}
	return FText::FromString(Text);
}

/** What stands out may be out of view. */
FText DescribeAll(const TArray<TSharedRef<FKestrelToolPlan>>& Plans)
{
	const int32 NumStandingOut =
		Plans.FilterByPredicate([](const TSharedRef<FKestrelToolPlan>& Plan) { return Plan->StandsOut(); }).Num();
	if (Plans.Num() <= 1)
	{
		return LOCTEXT("Heading", "Waiting for your approval:");
	}
	return NumStandingOut == 0
			   ? FText::Format(LOCTEXT("HeadingOfMany", "Waiting for your approval: {0} tools"), Plans.Num())
			   : FText::Format(LOCTEXT("HeadingWithWarning",
								   "Waiting for your approval: {0} tools, {1} of them worth a second look"),
					 Plans.Num(), NumStandingOut);
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
					SAssignNew(Heading, STextBlock)
					.AutoWrapText(true)
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

void SKestrelApprovalList::SetPlans(const TArray<TSharedRef<FKestrelToolPlan>>& Plans)
{
	Heading->SetText(KestrelApprovalList::DescribeAll(Plans));
	Rows->ClearChildren();
	for (const TSharedRef<FKestrelToolPlan>& Plan : Plans)
	{
		// clang-format off
		Rows->AddSlot()
		.AutoHeight()
		.Padding(0.0f, KestrelApprovalList::RowGap)
		[
			MakeRow(Plan)
		];
		// clang-format on
	}
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRow(const TSharedRef<FKestrelToolPlan>& Plan)
{
	FTextBlockStyle TextStyle = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	TextStyle.SetFont(FCoreStyle::GetDefaultFontStyle(
		Plan->StandsOut() ? FName("Bold") : FName("Regular"), KestrelApprovalList::FontSize));
	TextStyle.SetColorAndOpacity(
		Plan->StandsOut() ? KestrelApprovalList::WarningColor : KestrelApprovalList::PlainColor);

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
			SNew(SMultiLineEditableText)
			.Text(KestrelApprovalList::Describe(*Plan))
			.TextStyle(&TextStyle)
			.IsReadOnly(true)
			.AutoWrapText(true)
			.AccessibleText(LOCTEXT("Waiting", "Waits for approval"))
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		[
			MakeUnfoldButton(Plan, Row)
		]
	];
	// clang-format on
	return Row;
}

TSharedRef<SWidget> SKestrelApprovalList::MakeUnfoldButton(
	const TSharedRef<FKestrelToolPlan>& Plan, const TSharedRef<SVerticalBox>& Row)
{
	const TWeakPtr<SVerticalBox> WeakRow = Row;
	const TSharedRef<TSharedPtr<SWidget>> Unfolded = MakeShared<TSharedPtr<SWidget>>();
	const auto OnClicked = [this, WeakRow, Unfolded, Plan]() {
		const TSharedPtr<SVerticalBox> PinnedRow = WeakRow.Pin();
		if (PinnedRow.IsValid() && Unfolded->IsValid())
		{
			PinnedRow->RemoveSlot(Unfolded->ToSharedRef());
			Unfolded->Reset();
		}
		else if (PinnedRow.IsValid() && OnMakeChangeView.IsBound())
		{
			*Unfolded = OnMakeChangeView.Execute(Plan->Change->Before, Plan->Change->After);
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
		.Text_Lambda([Unfolded, bScript]() {
			if (bScript)
			{
				return Unfolded->IsValid() ? LOCTEXT("HideScript", "Hide the script")
										   : LOCTEXT("ShowScript", "Show the script");
			}
			return Unfolded->IsValid() ? LOCTEXT("Hide", "Hide the change") : LOCTEXT("Show", "Show the change");
		})
		.Visibility(Plan->Change.IsSet() ? EVisibility::Visible : EVisibility::Collapsed)
		.OnClicked_Lambda(OnClicked);
}

#undef LOCTEXT_NAMESPACE
