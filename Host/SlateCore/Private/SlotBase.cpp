#include "SlotBase.h"

#include "Widgets/SNullWidget.h"
#include "Widgets/SWidget.h"

FSlotBase::FSlotBase()
	: Widget(SNullWidget::NullWidget)
{
}

FSlotBase::~FSlotBase()
{
	ForgetParentOfWidget();
}

void FSlotBase::AttachWidget(const TSharedRef<SWidget>& InWidget)
{
	if (Widget == InWidget)
	{
		return;
	}
	ForgetParentOfWidget();
	// The old widget may be destroyed here; by then the slot holds the new one.
	const TSharedRef<SWidget> Replaced = Widget;
	Widget = InWidget;
	if (Owner != nullptr)
	{
		Widget->AssignParentWidget(Owner->AsShared());
	}
	Invalidate(EInvalidateWidgetReason::ChildOrder);
}

void FSlotBase::DetachWidget()
{
	AttachWidget(SNullWidget::NullWidget);
}

void FSlotBase::SetOwner(SWidget& InOwner)
{
	Owner = &InOwner;
	if (Widget != SNullWidget::NullWidget)
	{
		Widget->AssignParentWidget(Owner->AsShared());
	}
}

void FSlotBase::Invalidate(EInvalidateWidgetReason Reason)
{
	if (Owner != nullptr)
	{
		Owner->Invalidate(Reason);
	}
}

void FSlotBase::ForgetParentOfWidget()
{
	Widget->ConditionallyDetachParentWidget(Owner);
}
