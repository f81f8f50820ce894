#pragma once

#include "BlueprintParts.h"
#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/Views/SListView.h"

class UBlueprint;

DECLARE_DELEGATE_OneParam(FOnGraphChosen, UEdGraph&);

/** The parts of a Blueprint. What has a graph and is selected is chosen. It follows the Blueprint. */
class SMyBlueprint : public SCompoundWidget
{
public:
	using FPart = TSharedPtr<FBlueprintPart>;

	SLATE_BEGIN_ARGS(SMyBlueprint) {}
	SLATE_EVENT(FOnGraphChosen, OnGraphChosen)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, UBlueprint* InBlueprint);

	const TArray<FPart>& GetParts() const { return Parts; }
	/** Selects the line of the graph, if there is one. */
	void SelectGraph(const UEdGraph* Graph);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

private:
	/** Rebuilds the list when the parts have changed. */
	void Refresh();
	TSharedRef<ITableRow> MakeRow(FPart Part, const TSharedRef<STableViewBase>& Owner);
	void OnSelectionChanged(FPart Part, ESelectInfo::Type SelectInfo);

	TWeakObjectPtr<UBlueprint> Blueprint;
	FOnGraphChosen OnGraphChosen;
	TArray<FPart> Parts;
	TSharedPtr<SListView<FPart>> List;
};
