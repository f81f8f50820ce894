#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Types/SlateEnums.h"

/** Where a child begins and how long it is along one axis, in its parent's space. */
struct FAlignedSpan
{
	float Offset = 0.0f;
	float Size = 0.0f;
};

namespace SlateLayout
{
/** Aligns a child that would like DesiredSize in a slot from 0 to AllottedSize; never larger than the slot. */
FAlignedSpan AlignSpan(
	float AllottedSize, float DesiredSize, float PaddingBefore, float PaddingAfter, EHorizontalAlignment Alignment);
FAlignedSpan AlignSpan(
	float AllottedSize, float DesiredSize, float PaddingBefore, float PaddingAfter, EVerticalAlignment Alignment);
}

class FArrangedChildren;
struct FGeometry;
class SWidget;

/** Gives the one child of a widget its place in the whole of AllottedGeometry. */
void ArrangeSingleChild(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren,
	const TSharedRef<SWidget>& Child, EHorizontalAlignment HAlign, EVerticalAlignment VAlign, const FMargin& Padding);
