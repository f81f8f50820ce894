#include "Layout/LayoutUtils.h"

#include "Layout/ArrangedChildren.h"
#include "Widgets/SWidget.h"

namespace SlateLayout
{

enum class EPlace : uint8
{
	Fill,
	Start,
	Center,
	End,
};

static FAlignedSpan Align(float AllottedSize, float DesiredSize, float PaddingBefore, float PaddingAfter, EPlace Place)
{
	const float Available = FMath::Max(AllottedSize - PaddingBefore - PaddingAfter, 0.0f);
	const float Size = Place == EPlace::Fill ? Available : FMath::Min(DesiredSize, Available);
	switch (Place)
	{
	case EPlace::Center:
		return { PaddingBefore + (Available - Size) / 2.0f, Size };
	case EPlace::End:
		return { AllottedSize - PaddingAfter - Size, Size };
	case EPlace::Fill:
	case EPlace::Start:
		break;
	}
	return { PaddingBefore, Size };
}

FAlignedSpan AlignSpan(
	float AllottedSize, float DesiredSize, float PaddingBefore, float PaddingAfter, EHorizontalAlignment Alignment)
{
	static const EPlace Places[] = { EPlace::Fill, EPlace::Start, EPlace::Center, EPlace::End };
	return Align(AllottedSize, DesiredSize, PaddingBefore, PaddingAfter, Places[Alignment]);
}

FAlignedSpan AlignSpan(
	float AllottedSize, float DesiredSize, float PaddingBefore, float PaddingAfter, EVerticalAlignment Alignment)
{
	static const EPlace Places[] = { EPlace::Fill, EPlace::Start, EPlace::Center, EPlace::End };
	return Align(AllottedSize, DesiredSize, PaddingBefore, PaddingAfter, Places[Alignment]);
}

}

void ArrangeSingleChild(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren,
	const TSharedRef<SWidget>& Child, EHorizontalAlignment HAlign, EVerticalAlignment VAlign, const FMargin& Padding)
{
	const EVisibility ChildVisibility = Child->GetVisibility();
	if (!ArrangedChildren.Accepts(ChildVisibility))
	{
		return;
	}
	const FVector2D Allotted = AllottedGeometry.GetLocalSize();
	const FVector2D Desired = Child->GetDesiredSize();
	const FAlignedSpan X = SlateLayout::AlignSpan(
		static_cast<float>(Allotted.X), static_cast<float>(Desired.X), Padding.Left, Padding.Right, HAlign);
	const FAlignedSpan Y = SlateLayout::AlignSpan(
		static_cast<float>(Allotted.Y), static_cast<float>(Desired.Y), Padding.Top, Padding.Bottom, VAlign);
	ArrangedChildren.AddWidget(
		ChildVisibility, FArrangedWidget(Child, AllottedGeometry.MakeChild(FVector2D(X.Size, Y.Size),
													FSlateLayoutTransform(1.0f, FVector2D(X.Offset, Y.Offset)))));
}
