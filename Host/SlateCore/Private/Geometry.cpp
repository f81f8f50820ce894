#include "Layout/Geometry.h"

#include "Layout/ArrangedChildren.h"
#include "Layout/Visibility.h"
#include "Widgets/SWidget.h"

FSlateRect FSlateRect::IntersectionWith(const FSlateRect& Other) const
{
	FSlateRect Result(FMath::Max(Left, Other.Left), FMath::Max(Top, Other.Top), FMath::Min(Right, Other.Right),
		FMath::Min(Bottom, Other.Bottom));
	Result.Right = FMath::Max(Result.Right, Result.Left);
	Result.Bottom = FMath::Max(Result.Bottom, Result.Top);
	return Result;
}

FGeometry FGeometry::MakeRoot(const FVector2D& InLocalSize, const FSlateLayoutTransform& LayoutTransform)
{
	FGeometry Root;
	Root.Size = InLocalSize;
	Root.AbsolutePosition = LayoutTransform.GetTranslation();
	Root.Scale = LayoutTransform.GetScale();
	return Root;
}

FGeometry FGeometry::MakeChild(const FVector2D& InLocalSize, const FSlateLayoutTransform& LayoutTransform) const
{
	FGeometry Child;
	Child.Size = InLocalSize;
	Child.AbsolutePosition = AbsolutePosition + LayoutTransform.GetTranslation() * Scale;
	Child.Scale = Scale * LayoutTransform.GetScale();
	return Child;
}

UE::Slate::FDeprecateVector2DResult FGeometry::GetAbsolutePosition() const
{
	return UE::Slate::FDeprecateVector2DResult(AbsolutePosition);
}

UE::Slate::FDeprecateVector2DResult FGeometry::AbsoluteToLocal(
	const UE::Slate::FDeprecateVector2DParameter& AbsoluteCoordinate) const
{
	return UE::Slate::FDeprecateVector2DResult((FVector2D(AbsoluteCoordinate) - AbsolutePosition) / Scale);
}

UE::Slate::FDeprecateVector2DResult FGeometry::LocalToAbsolute(
	const UE::Slate::FDeprecateVector2DParameter& LocalCoordinate) const
{
	return UE::Slate::FDeprecateVector2DResult(AbsolutePosition + FVector2D(LocalCoordinate) * Scale);
}

bool FGeometry::IsUnderLocation(const UE::Slate::FDeprecateVector2DParameter& AbsoluteCoordinate) const
{
	return GetLayoutBoundingRect().ContainsPoint(AbsoluteCoordinate);
}

FSlateRect FGeometry::GetLayoutBoundingRect() const
{
	return FSlateRect(AbsolutePosition, AbsolutePosition + Size * Scale);
}

bool FGeometry::operator==(const FGeometry& Other) const
{
	return Size == Other.Size && AbsolutePosition == Other.AbsolutePosition && Scale == Other.Scale;
}

void FArrangedChildren::AddWidget(const FArrangedWidget& InWidget)
{
	AddWidget(InWidget.Widget->GetVisibility(), InWidget);
}

FString EVisibility::ToString() const
{
	if (*this == Visible)
	{
		return TEXT("Visible");
	}
	if (*this == Collapsed)
	{
		return TEXT("Collapsed");
	}
	if (*this == Hidden)
	{
		return TEXT("Hidden");
	}
	return *this == HitTestInvisible ? TEXT("HitTestInvisible") : TEXT("SelfHitTestInvisible");
}
