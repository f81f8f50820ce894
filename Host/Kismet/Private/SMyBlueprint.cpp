#include "SMyBlueprint.h"

#include "Engine/Blueprint.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "MyBlueprint"

namespace MyBlueprint
{
// Slate units.
constexpr float RowHeight = 22.0f;
constexpr float Indent = 12.0f;
constexpr float MarkWidth = 20.0f;

/** What the line is about: the colour of a type, or a sign for what has a graph. */
TSharedRef<SWidget> MakeMark(const FBlueprintPart& Part)
{
	if (Part.Kind == EBlueprintPart::Variable || Part.Kind == EBlueprintPart::Component)
	{
		// clang-format off
		return SNew(SBox).WidthOverride(12.0f).HeightOverride(6.0f)
			[
				SNew(SBorder)
				.BorderImage(FAppStyle::GetBrush("WhiteRoundedBrush"))
				.BorderBackgroundColor(FSlateColor(Part.Color))
			];
		// clang-format on
	}
	const FText Sign = Part.Kind == EBlueprintPart::Graph       ? INVTEXT("\u2263")
					   : Part.Kind == EBlueprintPart::Interface ? INVTEXT("\u25CB")
																: INVTEXT("\u0192");
	return SNew(STextBlock).Text(Sign).ColorAndOpacity(FSlateColor::UseSubduedForeground());
}

TSharedRef<SWidget> MakeHeading(const FBlueprintPart& Part)
{
	return SNew(STextBlock)
		.Text(FText::FromString(Part.Name.ToUpper()))
		.Font(FCoreStyle::GetDefaultFontStyle("Bold", 8.0f))
		.ColorAndOpacity(FSlateColor::UseSubduedForeground());
}

TSharedRef<SWidget> MakeLine(const FBlueprintPart& Part)
{
	const float Left = static_cast<float>(Part.Depth) * Indent;
	const float TypeShare = Part.Type.IsEmpty() ? 0.0f : 1.0f;
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(Left, 0.0f, 0.0f, 0.0f)
		[
			SNew(SBox).WidthOverride(MarkWidth).VAlign(VAlign_Center).HAlign(HAlign_Left)
			[
				MakeMark(Part)
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
		[
			SNew(STextBlock).Text(FText::FromString(Part.Name)).Clipping(EWidgetClipping::ClipToBounds)
		]
		+ SHorizontalBox::Slot().FillWidth(TypeShare).VAlign(VAlign_Center).Padding(6.0f, 0.0f, 0.0f, 0.0f)
		[
			SNew(STextBlock)
			.Text(FText::FromString(Part.Type))
			.ColorAndOpacity(FSlateColor::UseSubduedForeground())
			.Clipping(EWidgetClipping::ClipToBounds)
		];
	// clang-format on
}
}

void SMyBlueprint::Construct(const FArguments& InArgs, UBlueprint* InBlueprint)
{
	Blueprint = InBlueprint;
	OnGraphChosen = InArgs._OnGraphChosen;
	// clang-format off
	ChildSlot
	[
		SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Recessed")).Padding(4.0f)
		[
			SAssignNew(List, SListView<FPart>)
			.AccessibleText(LOCTEXT("MyBlueprint", "My Blueprint"))
			.ListItemsSource(&Parts)
			.ItemHeight(MyBlueprint::RowHeight)
			.OnGenerateRow(this, &SMyBlueprint::MakeRow)
			.OnSelectionChanged(this, &SMyBlueprint::OnSelectionChanged)
		]
	];
	// clang-format on
	Refresh();
}

void SMyBlueprint::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	Refresh();
}

void SMyBlueprint::Refresh()
{
	const UBlueprint* const Shown = Blueprint.Get();
	const TArray<FBlueprintPart> Now = Shown ? FBlueprintParts::Of(*Shown) : TArray<FBlueprintPart>();
	bool bSame = Now.Num() == Parts.Num();
	for (int32 Index = 0; Index < Now.Num() && bSame; ++Index)
	{
		bSame = Now[Index] == *Parts[Index];
	}
	if (bSame)
	{
		return;
	}
	const TArray<FPart> Before = MoveTemp(Parts);
	Parts.Empty();
	for (const FBlueprintPart& Part : Now)
	{
		// A line that stays keeps its identity, and so the selection.
		const FPart* const Known = Before.FindByPredicate([&Part](const FPart& Each) { return *Each == Part; });
		Parts.Add(Known ? *Known : FPart(MakeShared<FBlueprintPart>(Part)));
	}
	List->RequestListRefresh();
}

void SMyBlueprint::SelectGraph(const UEdGraph* Graph)
{
	const FPart* const Found =
		Parts.FindByPredicate([Graph](const FPart& Part) { return Graph && Part->Graph == Graph; });
	List->SetSelection(Found ? *Found : FPart());
}

TSharedRef<ITableRow> SMyBlueprint::MakeRow(FPart Part, const TSharedRef<STableViewBase>& Owner)
{
	const bool bHeading = Part->Kind == EBlueprintPart::Heading;
	return SNew(STableRow<FPart>, Owner)[bHeading ? MyBlueprint::MakeHeading(*Part) : MyBlueprint::MakeLine(*Part)];
}

void SMyBlueprint::OnSelectionChanged(FPart Part, ESelectInfo::Type SelectInfo)
{
	UEdGraph* const Graph = Part ? Part->Graph.Get() : nullptr;
	if (Graph && SelectInfo != ESelectInfo::Direct)
	{
		OnGraphChosen.ExecuteIfBound(*Graph);
	}
}

#undef LOCTEXT_NAMESPACE
