#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"

/** Which part of a graph a panel shows. "Panel" is the panel's space in Slate units, "graph" that of node positions. */
class FGraphViewport
{
public:
	FVector2D ToPanel(const FVector2D& GraphPlace) const { return (GraphPlace - Offset) * GetZoom(); }
	FVector2D ToGraph(const FVector2D& PanelPlace) const { return Offset + PanelPlace / GetZoom(); }
	/** What is seen in a panel of the size. */
	FSlateRect GetVisible(const FVector2D& PanelSize) const { return FSlateRect(Offset, ToGraph(PanelSize)); }

	/** Slate units to a unit of the graph. */
	double GetZoom() const;
	/** "Zoom 1:1", or the steps from there: "Zoom -3". */
	FText GetZoomText() const;

	/** Moves what is seen along with the pointer. */
	void Pan(const FVector2D& PanelDistance) { Offset = Offset - PanelDistance / GetZoom(); }
	/**
	 * Takes so many steps nearer, or with a negative number farther away; the point of the graph below PanelPlace
	 * stays there.
	 *
	 * @param bBeyondTrueSize  may go to more than a unit for a unit
	 */
	void ZoomAbout(const FVector2D& PanelPlace, int32 NumSteps, bool bBeyondTrueSize);
	/** Shows all of a rectangle, in its middle, with some air around it; never larger than true size. */
	void Frame(const FSlateRect& GraphBounds, const FVector2D& PanelSize);

private:
	FVector2D Offset = FVector2D(0.0, 0.0); // the place in the graph of the panel's upper left corner
	int32 Level = TrueSizeLevel;

	static constexpr int32 TrueSizeLevel = 12;
};
