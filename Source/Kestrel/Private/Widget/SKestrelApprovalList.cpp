#include "Widget/SKestrelApprovalList.h"

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

FText DescribeKind(EKestrelToolKind Kind)
{
	switch (Kind)
	{
	case EKestrelToolKind::Read:
		return LOCTEXT("Read", "Read");
	case EKestrelToolKind::Search:
		return LOCTEXT("Search", "Search");
	case EKestrelToolKind::Create:
		return LOCTEXT("Create", "Create");
	case EKestrelToolKind::Change:
		return LOCTEXT("Change", "Change");
	case EKestrelToolKind::Delete:
		return LOCTEXT("Delete", "Delete");
	case EKestrelToolKind::Script:
		return LOCTEXT("Script", "Run a script");
	case EKestrelToolKind::Compile:
		return LOCTEXT("Compile", "Compile the game");
	case EKestrelToolKind::ReadBlueprint:
		return LOCTEXT("ReadBlueprint", "Read the asset");
	case EKestrelToolKind::CreateBlueprint:
		return LOCTEXT("CreateBlueprint", "Create the Blueprint");
	case EKestrelToolKind::ModifyBlueprint:
		return LOCTEXT("ModifyBlueprint", "Change the Blueprint");
	case EKestrelToolKind::SaveBlueprints:
		return LOCTEXT("SaveBlueprints", "Save and compile all changed Blueprints");
	case EKestrelToolKind::Other:
		break;
	}
	return LOCTEXT("Other", "Use the tool");
}

/** One line that says all: "Change Source/A.h: 3 places". */
FText Describe(const FKestrelToolPreview& Preview)
{
	FString Text = DescribeKind(Preview.Kind).ToString();
	if (!Preview.Target.IsEmpty())
	{
		Text += TEXT(" ") + Preview.Target;
	}
	if (Preview.NumPlaces.IsSet() && Preview.Problem.IsEmpty())
	{
		Text += TEXT(": ") +
				FText::Format(LOCTEXT("Places", "{0} {0}|plural(one=place,other=places)"), Preview.NumPlaces.GetValue())
					.ToString();
	}
	if (Preview.bOutsideProject)
	{
		Text += TEXT(" ") + LOCTEXT("Outside", "(outside of the project)").ToString();
	}
	if (!Preview.Problem.IsEmpty())
	{
		Text += TEXT("\n") + Preview.Problem;
	}
	return FText::FromString(Text);
}

/** What stands out may be out of view. */
FText DescribeAll(const TArray<FKestrelToolPreview>& Previews)
{
	const int32 NumStandingOut =
		Previews.FilterByPredicate([](const FKestrelToolPreview& Preview) { return Preview.StandsOut(); }).Num();
	if (Previews.Num() <= 1)
	{
		return LOCTEXT("Heading", "Waiting for your approval:");
	}
	return NumStandingOut == 0
			   ? FText::Format(LOCTEXT("HeadingOfMany", "Waiting for your approval: {0} tools"), Previews.Num())
			   : FText::Format(LOCTEXT("HeadingWithWarning",
								   "Waiting for your approval: {0} tools, {1} of them worth a second look"),
					 Previews.Num(), NumStandingOut);
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

void SKestrelApprovalList::SetPreviews(const TArray<FKestrelToolPreview>& Previews)
{
	Heading->SetText(KestrelApprovalList::DescribeAll(Previews));
	Rows->ClearChildren();
	for (const FKestrelToolPreview& Preview : Previews)
	{
		// clang-format off
		Rows->AddSlot()
		.AutoHeight()
		.Padding(0.0f, KestrelApprovalList::RowGap)
		[
			MakeRow(Preview)
		];
		// clang-format on
	}
}

TSharedRef<SWidget> SKestrelApprovalList::MakeRow(const FKestrelToolPreview& Preview)
{
	FTextBlockStyle TextStyle = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	TextStyle.SetFont(FCoreStyle::GetDefaultFontStyle(
		Preview.StandsOut() ? FName("Bold") : FName("Regular"), KestrelApprovalList::FontSize));
	TextStyle.SetColorAndOpacity(
		Preview.StandsOut() ? KestrelApprovalList::WarningColor : KestrelApprovalList::PlainColor);

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
			.Text(KestrelApprovalList::Describe(Preview))
			.TextStyle(&TextStyle)
			.IsReadOnly(true)
			.AutoWrapText(true)
			.AccessibleText(LOCTEXT("Waiting", "Waits for approval"))
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		[
			MakeUnfoldButton(Preview, Row)
		]
	];
	// clang-format on
	return Row;
}

TSharedRef<SWidget> SKestrelApprovalList::MakeUnfoldButton(
	const FKestrelToolPreview& Preview, const TSharedRef<SVerticalBox>& Row)
{
	const TWeakPtr<SVerticalBox> WeakRow = Row;
	const TSharedRef<TSharedPtr<SWidget>> Unfolded = MakeShared<TSharedPtr<SWidget>>();
	const auto OnClicked = [this, WeakRow, Unfolded, Before = Preview.Before, After = Preview.After]() {
		const TSharedPtr<SVerticalBox> PinnedRow = WeakRow.Pin();
		if (PinnedRow.IsValid() && Unfolded->IsValid())
		{
			PinnedRow->RemoveSlot(Unfolded->ToSharedRef());
			Unfolded->Reset();
		}
		else if (PinnedRow.IsValid() && OnMakeChangeView.IsBound())
		{
			*Unfolded = OnMakeChangeView.Execute(Before, After);
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
	const bool bScript = Preview.Kind == EKestrelToolKind::Script;
	return SNew(SButton)
		.Text_Lambda([Unfolded, bScript]() {
			if (bScript)
			{
				return Unfolded->IsValid() ? LOCTEXT("HideScript", "Hide the script")
										   : LOCTEXT("ShowScript", "Show the script");
			}
			return Unfolded->IsValid() ? LOCTEXT("Hide", "Hide the change") : LOCTEXT("Show", "Show the change");
		})
		.Visibility(Preview.bHasTexts ? EVisibility::Visible : EVisibility::Collapsed)
		.OnClicked_Lambda(OnClicked);
}

#undef LOCTEXT_NAMESPACE
