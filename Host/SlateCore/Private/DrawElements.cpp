#include "Rendering/DrawElements.h"

void FSlateDrawElement::MakeBox(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
	const FSlateRect& InClippingRect, const FSlateBrush* InBrush, const FLinearColor& InTint)
{
	if (InBrush == nullptr || InBrush->DrawAs == ESlateBrushDrawType::NoDrawType || InTint.A <= 0.0f)
	{
		return;
	}
	FSlateDrawElement Element;
	Element.LayerId = InLayer;
	Element.Geometry = InGeometry;
	Element.ClippingRect = InClippingRect;
	Element.Brush = InBrush;
	Element.Tint = InTint;
	ElementList.Add(MoveTemp(Element));
}

void FSlateDrawElement::MakeText(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
	const FSlateRect& InClippingRect, const FString& InText, const FSlateFontInfo& InFontInfo,
	const FLinearColor& InTint)
{
	if (InText.IsEmpty() || InTint.A <= 0.0f)
	{
		return;
	}
	FSlateDrawElement Element;
	Element.LayerId = InLayer;
	Element.Geometry = InGeometry;
	Element.ClippingRect = InClippingRect;
	Element.Text = InText;
	Element.Font = InFontInfo;
	Element.Tint = InTint;
	ElementList.Add(MoveTemp(Element));
}

void FSlateDrawElement::MakeShape(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
	const FSlateRect& InClippingRect, EShape InShape, const TArray<FVector2D>& InPoints, const FLinearColor& InTint,
	float InThickness)
{
	if (InPoints.Num() < 2 || InTint.A <= 0.0f)
	{
		return;
	}
	FSlateDrawElement Element;
	Element.LayerId = InLayer;
	Element.Geometry = InGeometry;
	Element.ClippingRect = InClippingRect;
	Element.Shape = InShape;
	Element.Points = InPoints;
	Element.Tint = InTint;
	Element.Thickness = InThickness;
	ElementList.Add(MoveTemp(Element));
}

void FSlateDrawElement::MakeLines(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
	const FSlateRect& InClippingRect, const TArray<FVector2D>& InPoints, const FLinearColor& InTint, float InThickness)
{
	MakeShape(ElementList, InLayer, InGeometry, InClippingRect, EShape::Lines, InPoints, InTint, InThickness);
}

void FSlateDrawElement::MakeCubicBezierSpline(FSlateWindowElementList& ElementList, int32 InLayer,
	const FGeometry& InGeometry, const FSlateRect& InClippingRect, const FVector2D& P0, const FVector2D& P1,
	const FVector2D& P2, const FVector2D& P3, float InThickness, const FLinearColor& InTint)
{
	MakeShape(
		ElementList, InLayer, InGeometry, InClippingRect, EShape::Spline, { P0, P1, P2, P3 }, InTint, InThickness);
}

void FSlateDrawElement::MakePolygon(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
	const FSlateRect& InClippingRect, const TArray<FVector2D>& InPoints, const FLinearColor& InTint)
{
	MakeShape(ElementList, InLayer, InGeometry, InClippingRect, EShape::Polygon, InPoints, InTint, 0.0f);
}

FSlateRect FSlateDrawElement::GetBounds() const
{
	FSlateRect Rect = Geometry.GetLayoutBoundingRect();
	if (!Points.IsEmpty())
	{
		FVector2D Least = Geometry.LocalToAbsolute(Points[0]);
		FVector2D Most = Least;
		for (const FVector2D& Point : Points)
		{
			// A curve stays within the points that pull it.
			const FVector2D Place = Geometry.LocalToAbsolute(Point);
			Least = FVector2D(FMath::Min(Least.X, Place.X), FMath::Min(Least.Y, Place.Y));
			Most = FVector2D(FMath::Max(Most.X, Place.X), FMath::Max(Most.Y, Place.Y));
		}
		const double Margin = (Thickness + 1.0) * Geometry.GetScale();
		Rect = FSlateRect(Least - FVector2D(Margin, Margin), Most + FVector2D(Margin, Margin));
	}
	else if (!Brush)
	{
		// A text may reach a little over its line: slanted letters, and those with marks above.
		const float Margin = 4.0f * Geometry.GetScale();
		Rect = FSlateRect(Rect.Left - Margin, Rect.Top - Margin, ClippingRect.Right, Rect.Bottom + Margin);
	}
	return Rect.IntersectionWith(ClippingRect);
}
