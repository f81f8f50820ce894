#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraph.h"
#include "Templates/UniquePtr.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

class FGraphViewport;
struct FGraphLayout;

/**
 * Shows a graph, to be looked at: nodes, pins, wires, comments and what the compiler says.
 *
 * The right or the middle button pans, the wheel zooms about the pointer, beyond true size with Ctrl. F and Home show
 * everything, the arrow keys pan, a click selects a node. Where things lie is worked out when the graph has changed,
 * and kept; what is painted is what is in view. Nothing of the graph but a weak pointer is held from frame to frame.
 */
class GRAPHEDITOR_API SGraphPanel : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SGraphPanel) { _Clipping = EWidgetClipping::ClipToBounds; }
	SLATE_END_ARGS()

	SGraphPanel();
	virtual ~SGraphPanel() override;

	void Construct(const FArguments& InArgs);

	/** Shows another graph, all of it; null for none. */
	void SetGraph(UEdGraph* InGraph);
	UEdGraph* GetGraph() const { return Graph.Get(); }
	/** For changes that are not in the graph itself, such as other titles: the view is rebuilt. */
	void NotifyGraphChanged() { bLayoutIsOld = true; }
	/** In the next frame. */
	void ZoomToFit() { bZoomsToFit = true; }
	FText GetZoomText() const;

	/** What is shown, and through which window. Good until the next frame. */
	const FGraphLayout& GetLayout() const { return *Layout; }
	const FGraphViewport& GetViewport() const { return *Viewport; }
	/** NAME_None without a selection. */
	FName GetSelectedNode() const { return SelectedNode; }
	/** How often the layout was made. */
	int32 GetNumLayouts() const { return NumLayouts; }

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual bool SupportsKeyboardFocus() const override { return true; }
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual TOptional<EMouseCursor::Type> GetCursor() const override;
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override { return FVector2D(0.0, 0.0); }
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }
	virtual FText GetDefaultAccessibleText() const override;

private:
	friend class FAccessibleGraphPanel;
	/** Makes the layout again when the graph is another one than it was made of. */
	void UpdateLayout();
	int32 FindSelectedNode() const;
	/** The nodes in view, a line each. */
	FString Describe() const;

	TWeakObjectPtr<UEdGraph> Graph;
	TUniquePtr<FGraphLayout> Layout;
	TUniquePtr<FGraphViewport> Viewport;
	uint64 Fingerprint = 0; // of the graph that the layout was made of
	FName SelectedNode;
	FVector2D LastPointer = FVector2D(0.0, 0.0); // while panning, in absolute space
	int32 NumLayouts = 0;
	bool bLayoutIsOld = true;
	bool bZoomsToFit = true;
};
