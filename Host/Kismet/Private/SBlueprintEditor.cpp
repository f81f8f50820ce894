#include "SBlueprintEditor.h"

#include "Engine/Blueprint.h"
#include "SGraphPanel.h"
#include "SMyBlueprint.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "BlueprintEditor"

namespace BlueprintEditor
{
constexpr float PartsWidth = 300.0f; // Slate units
}

void SBlueprintEditor::Construct(const FArguments& InArgs, UBlueprint* InBlueprint)
{
	Blueprint = InBlueprint;
	OnBlueprintGone = InArgs._OnBlueprintGone;
	// clang-format off
	ChildSlot
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().Padding(0.0f, 0.0f, 3.0f, 0.0f)
		[
			SNew(SBox).WidthOverride(BlueprintEditor::PartsWidth)
			[
				SAssignNew(MyBlueprint, SMyBlueprint, InBlueprint)
				.OnGraphChosen_Lambda([this](UEdGraph& Graph) { Panel->SetGraph(&Graph); })
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f)
		[
			MakeGraphSide()
		]
	];
	// clang-format on
	InBlueprint->OnChanged().AddSP(this, &SBlueprintEditor::OnBlueprintChanged);
	InBlueprint->OnCompiled().AddSP(this, &SBlueprintEditor::OnBlueprintChanged);
	ReplaceLostGraph(*InBlueprint);
}

TSharedRef<SWidget> SBlueprintEditor::MakeGraphSide()
{
	// clang-format off
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Header")).Padding(10.0f, 5.0f)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
				[
					SNew(STextBlock)
					.Text(this, &SBlueprintEditor::GetGraphTitle)
					.Font(FAppStyle::GetFontStyle("BoldFont"))
				]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, 16.0f, 0.0f)
				[
					SNew(STextBlock)
					.Text(this, &SBlueprintEditor::GetStatus)
					.ColorAndOpacity(this, &SBlueprintEditor::GetStatusColor)
				]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
				[
					SNew(STextBlock)
					.Text_Lambda([this] { return Panel.IsValid() ? Panel->GetZoomText() : FText::GetEmpty(); })
					.ColorAndOpacity(FSlateColor::UseSubduedForeground())
				]
			]
		]
		+ SVerticalBox::Slot().FillHeight(1.0f)
		[
			SAssignNew(Panel, SGraphPanel)
		];
	// clang-format on
}

void SBlueprintEditor::ShowGraph(UEdGraph& Graph)
{
	Panel->SetGraph(&Graph);
	MyBlueprint->SelectGraph(&Graph);
}

void SBlueprintEditor::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	const UBlueprint* const Shown = Blueprint.Get();
	if (!Shown)
	{
		OnBlueprintGone.ExecuteIfBound();
		return;
	}
	ReplaceLostGraph(*Shown);
}

void SBlueprintEditor::ReplaceLostGraph(const UBlueprint& Shown)
{
	TArray<UEdGraph*> Graphs;
	Shown.GetAllGraphs(Graphs);
	if (Panel->GetGraph() && Graphs.Contains(Panel->GetGraph()))
	{
		return;
	}
	if (Graphs.IsEmpty())
	{
		Panel->SetGraph(nullptr);
		return;
	}
	ShowGraph(Shown.UbergraphPages.IsEmpty() ? *Graphs[0] : *Shown.UbergraphPages[0]);
}

void SBlueprintEditor::OnBlueprintChanged(UBlueprint*)
{
	Panel->NotifyGraphChanged();
}

FText SBlueprintEditor::GetGraphTitle() const
{
	const UBlueprint* const Shown = Blueprint.Get();
	const UEdGraph* const Graph = Panel.IsValid() ? Panel->GetGraph() : nullptr;
	if (!Shown || !Graph)
	{
		return FText::GetEmpty();
	}
	return FText::Format(
		INVTEXT("{0} \u203A {1}"), FText::FromString(Shown->GetName()), FText::FromString(Graph->GetName()));
}

FText SBlueprintEditor::GetStatus() const
{
	const UBlueprint* const Shown = Blueprint.Get();
	switch (Shown ? Shown->Status.GetValue() : BS_Unknown)
	{
	case BS_UpToDate:
		return LOCTEXT("UpToDate", "Compiled");
	case BS_UpToDateWithWarnings:
		return LOCTEXT("Warnings", "Compiled with warnings");
	case BS_Error:
		return LOCTEXT("Error", "Has errors");
	default:
		return LOCTEXT("Dirty", "Changed since the last compile");
	}
}

FSlateColor SBlueprintEditor::GetStatusColor() const
{
	const UBlueprint* const Shown = Blueprint.Get();
	switch (Shown ? Shown->Status.GetValue() : BS_Unknown)
	{
	case BS_UpToDate:
		return FSlateColor(FColor(120, 200, 100));
	case BS_Error:
		return FSlateColor(FColor(255, 100, 90));
	default:
		return FSlateColor(FColor(240, 200, 80));
	}
}

#undef LOCTEXT_NAMESPACE
