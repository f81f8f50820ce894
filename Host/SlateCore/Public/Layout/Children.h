#pragma once

#include "CoreMinimal.h"
#include "Layout/BasicLayoutWidgetSlot.h"
#include "Layout/ChildrenBase.h"
#include "SlotBase.h"
#include "Templates/UnrealTemplate.h"

#include <utility>

/** The one child of a widget such as SBorder, with its padding and alignment. Filling it again replaces the child. */
class FSingleWidgetChildrenWithBasicLayoutSlot : public FChildren
{
public:
	explicit FSingleWidgetChildrenWithBasicLayoutSlot(
		SWidget* InOwner, EHorizontalAlignment InHAlign = HAlign_Fill, EVerticalAlignment InVAlign = VAlign_Fill);

	virtual int32 Num() const override { return 1; }
	virtual TSharedRef<SWidget> GetChildAt(int32 Index) override;
	virtual TSharedRef<const SWidget> GetChildAt(int32 Index) const override;

	FSingleWidgetChildrenWithBasicLayoutSlot& operator[](const TSharedRef<SWidget>& InChild);
	FSingleWidgetChildrenWithBasicLayoutSlot& Padding(TAttribute<FMargin> InPadding);
	FSingleWidgetChildrenWithBasicLayoutSlot& Padding(float Uniform) { return Padding(FMargin(Uniform)); }
	FSingleWidgetChildrenWithBasicLayoutSlot& Padding(float Horizontal, float Vertical);
	FSingleWidgetChildrenWithBasicLayoutSlot& Padding(float Left, float Top, float Right, float Bottom);
	FSingleWidgetChildrenWithBasicLayoutSlot& HAlign(EHorizontalAlignment InAlignment);
	FSingleWidgetChildrenWithBasicLayoutSlot& VAlign(EVerticalAlignment InAlignment);

	const TSharedRef<SWidget>& GetWidget() const { return Slot.GetWidget(); }
	void AttachWidget(const TSharedRef<SWidget>& InWidget) { Slot.AttachWidget(InWidget); }
	void DetachWidget() { Slot.DetachWidget(); }
	void SetPadding(TAttribute<FMargin> InPadding) { Slot.SetPadding(MoveTemp(InPadding)); }
	void SetHorizontalAlignment(EHorizontalAlignment InAlignment) { Slot.SetHorizontalAlignment(InAlignment); }
	void SetVerticalAlignment(EVerticalAlignment InAlignment) { Slot.SetVerticalAlignment(InAlignment); }
	const FMargin& GetPadding() const { return Slot.GetPadding(); }
	EHorizontalAlignment GetHorizontalAlignment() const { return Slot.GetHorizontalAlignment(); }
	EVerticalAlignment GetVerticalAlignment() const { return Slot.GetVerticalAlignment(); }

private:
	class FSlot : public TBasicLayoutWidgetSlot<FSlot>
	{
	public:
		using TBasicLayoutWidgetSlot<FSlot>::TBasicLayoutWidgetSlot;
	};

	FSlot Slot;
};

using FCompoundWidgetOneChildSlot = FSingleWidgetChildrenWithBasicLayoutSlot;

/** The slots of a panel. */
template <typename SlotType>
class TPanelChildren final : public FChildren
{
public:
	explicit TPanelChildren(SWidget* InOwner)
		: FChildren(InOwner)
	{
	}

	virtual int32 Num() const override { return Slots.Num(); }
	virtual TSharedRef<SWidget> GetChildAt(int32 Index) override { return Slots[Index]->GetWidget(); }
	virtual TSharedRef<const SWidget> GetChildAt(int32 Index) const override { return Slots[Index]->GetWidget(); }

	SlotType& operator[](int32 Index) { return *Slots[Index]; }
	const SlotType& operator[](int32 Index) const { return *Slots[Index]; }

	void AddSlot(typename SlotType::FSlotArguments&& Arguments) { InsertSlot(MoveTemp(Arguments), Slots.Num()); }
	void InsertSlot(typename SlotType::FSlotArguments&& Arguments, int32 Index)
	{
		const TGuardValue<bool> Guard(bChangesOrder, true);
		FirstChange = FMath::Min(FirstChange, Index);
		TUniquePtr<SlotType> NewSlot = Arguments.StealSlot();
		SlotType& Slot = *NewSlot;
		Slots.Insert(MoveTemp(NewSlot), Index);
		Slot.SetOwner(GetOwner());
		Slot.Construct(MoveTemp(Arguments));
		NotifyOrderChanged();
	}
	void AddSlots(TArray<typename SlotType::FSlotArguments>&& AllArguments)
	{
		Slots.Reserve(Slots.Num() + AllArguments.Num());
		for (typename SlotType::FSlotArguments& Arguments : AllArguments)
		{
			AddSlot(MoveTemp(Arguments));
		}
	}
	/** The index at which the widget stood, INDEX_NONE if it was not there. */
	int32 Remove(const TSharedRef<SWidget>& Widget)
	{
		for (int32 Index = 0; Index < Slots.Num(); ++Index)
		{
			if (Slots[Index]->GetWidget() == Widget)
			{
				RemoveAt(Index);
				return Index;
			}
		}
		return INDEX_NONE;
	}
	void Empty()
	{
		FirstChange = 0;
		Slots.Empty();
		NotifyOrderChanged();
	}

	/** Whether what the owner hears now is that of a slot on its way in, and no change of one that was there. */
	bool ChangesOrder() const { return bChangesOrder; }
	/** The first index at which another slot may stand than at the last call; Num() if none does. */
	int32 TakeFirstChange() { return FMath::Min(std::exchange(FirstChange, MAX_int32), Slots.Num()); }

private:
	void RemoveAt(int32 Index)
	{
		FirstChange = FMath::Min(FirstChange, Index);
		// The slot is destroyed after it has left the array: that may run a widget's destructor, which may look here.
		const TUniquePtr<SlotType> Removed = MoveTemp(Slots[Index]);
		Slots.RemoveAt(Index);
		NotifyOrderChanged();
	}
	void NotifyOrderChanged();

	TArray<TUniquePtr<SlotType>> Slots;
	int32 FirstChange = 0;
	bool bChangesOrder = false;
};

namespace SlateChildren
{
void NotifyOrderChanged(SWidget& Owner);
}

template <typename SlotType>
void TPanelChildren<SlotType>::NotifyOrderChanged()
{
	SlateChildren::NotifyOrderChanged(GetOwner());
}

/**
 * What a panel's AddSlot returns: the arguments of a slot that joins the panel when they go out of scope, which for a
 * temporary is the end of the statement.
 */
template <typename SlotType>
struct TScopedWidgetSlotArguments final : public SlotType::FSlotArguments
{
	TScopedWidgetSlotArguments(TUniquePtr<SlotType> InSlot, TPanelChildren<SlotType>& InChildren, int32 InIndex)
		: SlotType::FSlotArguments(MoveTemp(InSlot))
		, Children(&InChildren)
		, Index(InIndex)
	{
	}
	TScopedWidgetSlotArguments(TScopedWidgetSlotArguments&&) = default;
	~TScopedWidgetSlotArguments()
	{
		if (this->GetSlot() != nullptr)
		{
			Children->InsertSlot(MoveTemp(*this), Index == INDEX_NONE ? Children->Num() : Index);
		}
	}

private:
	TPanelChildren<SlotType>* Children;
	int32 Index;
};
