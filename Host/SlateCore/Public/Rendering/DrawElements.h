#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Layout/Geometry.h"
#include "Layout/SlateRect.h"
#include "Styling/SlateBrush.h"

class FSlateWindowElementList;

/** One thing to draw: a brush, or a line of text. */
struct FSlateDrawElement
{
	int32 LayerId = 0;
	FGeometry Geometry;
	/** In absolute space. */
	FSlateRect ClippingRect;
	FLinearColor Tint;
	/** Null for text. It need not outlive the frame. */
	const FSlateBrush* Brush = nullptr;
	FString Text;
	FSlateFontInfo Font;

	static void MakeBox(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const FSlateBrush* InBrush, const FLinearColor& InTint);
	static void MakeText(FSlateWindowElementList& ElementList, int32 InLayer, const FGeometry& InGeometry,
		const FSlateRect& InClippingRect, const FString& InText, const FSlateFontInfo& InFontInfo,
		const FLinearColor& InTint);
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
