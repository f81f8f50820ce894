#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Layout/Geometry.h"
#include "Layout/SlateRect.h"
#include "Styling/SlateBrush.h"

class FSlateWindowElementList;

/** One thing to draw: a brush, a line of text, or a shape of points. */
struct FSlateDrawElement
{
	enum class EShape : uint8
	{
		Lines,   // from each point to the next
		Spline,  // a cubic curve: its beginning, two points that pull it, its end
		Polygon, // filled
	};

	int32 LayerId = 0;
	FGeometry Geometry;
	/** In absolute space. */
	FSlateRect ClippingRect;
	FLinearColor Tint;
	/** Null for text. It need not outlive the frame. */
	const FSlateBrush* Brush = nullptr;
	FString Text;
	FSlateFontInfo Font;
	/** Of a shape, in the space of the geometry; empty for brushes and texts. */
	TArray<FVector2D> Points;
	EShape Shape = EShape::Lines;
	float Thickness = 1.0f; // of lines, in Slate units

	static void MakeBox(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const FSlateBrush* InBrush, const FLinearColor& InTint);
	static void MakeText(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const FString& InText, const FSlateFontInfo& InFontInfo,
		const FLinearColor& InTint);
	static void MakeLines(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const TArray<FVector2D>& InPoints, const FLinearColor& InTint,
		float InThickness = 1.0f);
	static void MakeCubicBezierSpline(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const FVector2D& P0, const FVector2D& P1, const FVector2D& P2,
		const FVector2D& P3, float InThickness, const FLinearColor& InTint);
	static void MakePolygon(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const TArray<FVector2D>& InPoints, const FLinearColor& InTint);

	bool IsText() const { return !Brush && Points.IsEmpty(); }
	/** What may be drawn on, in absolute space. */
	FSlateRect GetBounds() const;

private:
	static void MakeShape(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, EShape InShape, const TArray<FVector2D>& InPoints, const FLinearColor& InTint,
		float InThickness);
};

/** What the widgets of a window have drawn in one frame, in the order in which it covers one another. */
class FSlateWindowElementList
{
public:
	void Add(FSlateDrawElement&& Element) { Elements.Add(MoveTemp(Element)); }
	const TArray<FSlateDrawElement>& GetElements() const { return Elements; }

private:
	TArray<FSlateDrawElement> Elements;
};
