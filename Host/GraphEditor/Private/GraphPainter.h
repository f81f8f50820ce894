#pragma once

#include "CoreMinimal.h"
#include "GraphLayout.h"
#include "GraphViewport.h"
#include "Layout/Geometry.h"

class FSlateFontMeasure;
class FSlateWindowElementList;
struct FSlateBrush;

/** Draws what a viewport shows of a graph, and nothing that lies beside it. From afar it leaves details out. */
class FGraphPainter
{
public:
	FGraphPainter(const FGraphLayout& InLayout, const FGraphViewport& InViewport, const FSlateFontMeasure& InMeasure,
		const FGeometry& InPanel, const FSlateRect& InCullingRect, FSlateWindowElementList& InElements, int32 InLayer);

	/** @param SelectedNode  its index in the layout, or INDEX_NONE */
	void Paint(int32 SelectedNode) const;

private:
	void PaintGrid() const;
	void PaintLinesOfGrid(double Step, const FLinearColor& Color) const;
	void PaintWire(const FGraphWireLayout& Wire) const;
	void PaintNode(const FGraphNodeLayout& Node, bool bSelected) const;
	void PaintComment(const FGraphNodeLayout& Node, const FGeometry& Geometry) const;
	void PaintBody(const FGraphNodeLayout& Node, const FGeometry& Geometry) const;
	void PaintTitle(const FGraphNodeLayout& Node, const FGeometry& Geometry) const;
	void PaintPin(const FGraphNodeLayout& Node, const FGraphPinLayout& Pin, const FGeometry& Geometry) const;
	void PaintConnector(const FGraphPinLayout& Pin, const FGeometry& Geometry, float Opacity) const;
	void PaintValue(const FGraphPinLayout& Pin, const FGeometry& Geometry, float Opacity) const;
	void PaintMessage(const FGraphNodeLayout& Node, const FGeometry& Geometry) const;
	void PaintBubble(const FGraphNodeLayout& Node, const FGeometry& Geometry) const;

	void Box(const FGeometry& Geometry, const FVector2D& Place, const FVector2D& Size, const FSlateBrush& Brush,
		const FLinearColor& Color) const;
	/** A line of text whose middle is at a height. */
	void Text(const FGeometry& Geometry, const FVector2D& LeftMiddle, const FString& String, const FSlateFontInfo& Font,
		const FLinearColor& Color) const;
	bool ShowsTitles() const;
	bool ShowsPins() const;

	const FGraphLayout& Layout;
	const FGraphViewport& Viewport;
	const FSlateFontMeasure& Measure;
	const FGeometry& Panel;
	const FSlateRect CullingRect;
	FSlateWindowElementList& Elements;
	const int32 Layer;
	const FSlateRect Visible; // in units of the graph
	FGeometry GraphSpace;
};
