#pragma once

#include "CoreMinimal.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SGraphPanel;
class SMyBlueprint;
class UBlueprint;
class UEdGraph;

DECLARE_DELEGATE(FOnBlueprintGone);

/** A Blueprint to look at: its parts, and the graph that is chosen among them. */
class SBlueprintEditor : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SBlueprintEditor) {}
	/** There is no such Blueprint any more. */
	SLATE_EVENT(FOnBlueprintGone, OnBlueprintGone)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, UBlueprint* InBlueprint);

	void ShowGraph(UEdGraph& Graph);
	const TSharedPtr<SGraphPanel>& GetGraphPanel() const { return Panel; }
	const TSharedPtr<SMyBlueprint>& GetMyBlueprint() const { return MyBlueprint; }

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

private:
	void OnBlueprintChanged(UBlueprint* Changed);
	/** One that was taken out of the Blueprint gives way to the first that is left. */
	void ReplaceLostGraph(const UBlueprint& Shown);
	TSharedRef<SWidget> MakeGraphSide();
	FText GetGraphTitle() const;
	FText GetStatus() const;
	FSlateColor GetStatusColor() const;

	TWeakObjectPtr<UBlueprint> Blueprint;
	FOnBlueprintGone OnBlueprintGone;
	TSharedPtr<SMyBlueprint> MyBlueprint;
	TSharedPtr<SGraphPanel> Panel;
};
