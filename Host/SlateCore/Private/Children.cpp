#include "Layout/Children.h"

#include "Widgets/SNullWidget.h"
#include "Widgets/SWidget.h"

TSharedRef<SWidget> FNoChildren::GetChildAt(int32 Index)
{
	checkf(false, TEXT("Child %d was asked of a widget that has no children"), Index);
	return SNullWidget::NullWidget;
}

TSharedRef<const SWidget> FNoChildren::GetChildAt(int32 Index) const
{
	return const_cast<FNoChildren*>(this)->GetChildAt(Index);
}

FSingleWidgetChildrenWithBasicLayoutSlot::FSingleWidgetChildrenWithBasicLayoutSlot(
	SWidget* InOwner, EHorizontalAlignment InHAlign, EVerticalAlignment InVAlign)
	: FChildren(InOwner)
	, Slot(InHAlign, InVAlign)
{
	Slot.SetOwner(*InOwner);
}

TSharedRef<SWidget> FSingleWidgetChildrenWithBasicLayoutSlot::GetChildAt(int32 Index)
{
	checkf(Index == 0, TEXT("Child %d was asked of a widget that has one child"), Index);
	return Slot.GetWidget();
}

TSharedRef<const SWidget> FSingleWidgetChildrenWithBasicLayoutSlot::GetChildAt(int32 Index) const
{
	return const_cast<FSingleWidgetChildrenWithBasicLayoutSlot*>(this)->GetChildAt(Index);
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::operator[](
	const TSharedRef<SWidget>& InChild)
{
	Slot.AttachWidget(InChild);
	return *this;
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::Padding(
	TAttribute<FMargin> InPadding)
{
	Slot.SetPadding(MoveTemp(InPadding));
	return *this;
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::Padding(
	float Horizontal, float Vertical)
{
	return Padding(FMargin(Horizontal, Vertical));
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::Padding(
	float Left, float Top, float Right, float Bottom)
{
	return Padding(FMargin(Left, Top, Right, Bottom));
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::HAlign(
	EHorizontalAlignment InAlignment)
{
	Slot.SetHorizontalAlignment(InAlignment);
	return *this;
}

FSingleWidgetChildrenWithBasicLayoutSlot& FSingleWidgetChildrenWithBasicLayoutSlot::VAlign(
	EVerticalAlignment InAlignment)
{
	Slot.SetVerticalAlignment(InAlignment);
	return *this;
}

void SlateChildren::NotifyOrderChanged(SWidget& Owner)
{
	Owner.Invalidate(EInvalidateWidgetReason::ChildOrder);
}
