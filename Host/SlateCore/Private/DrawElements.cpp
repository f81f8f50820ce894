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
