#pragma once

#include "CoreMinimal.h"
#include "Layout/ChildrenBase.h"
#include "Widgets/InvalidateWidgetReason.h"

/** A place for one widget in another. An empty one holds SNullWidget, so there is always a widget. */
class FSlotBase
{
public:
	FSlotBase();
	virtual ~FSlotBase();
	UE_NONCOPYABLE(FSlotBase)

	/** What is said about a slot in a declaration, before there is a panel to put it in. Can be moved, not copied. */
	struct FSlotArguments
	{
		FSlotArguments() = default;
		FSlotArguments(FSlotArguments&&) = default;
		FSlotArguments& operator=(FSlotArguments&&) = default;
		FSlotArguments(const FSlotArguments&) = delete;
		FSlotArguments& operator=(const FSlotArguments&) = delete;

		void AttachWidget(const TSharedRef<SWidget>& InWidget) { Widget = InWidget; }
		const TSharedPtr<SWidget>& GetAttachedWidget() const { return Widget; }

	private:
		TSharedPtr<SWidget> Widget;
	};

	const TSharedRef<SWidget>& GetWidget() const { return Widget; }
	/** Puts InWidget in the place of the present one and makes it a child of the slot's owner. */
	void AttachWidget(const TSharedRef<SWidget>& InWidget);
	/** Leaves the slot empty. */
	void DetachWidget();

	/** Called once, when the slot comes to stand in a widget. */
	virtual void SetOwner(SWidget& InOwner);
	SWidget* GetOwnerWidget() const { return Owner; }

protected:
	void Invalidate(EInvalidateWidgetReason Reason);

private:
	void ForgetParentOfWidget();

	SWidget* Owner = nullptr;
	TSharedRef<SWidget> Widget;
};

/** A slot that can be written in a declaration. SlotType is the panel's own slot class. */
template <typename SlotType>
class TSlotBase : public FSlotBase
{
public:
	struct FSlotArguments : public FSlotBase::FSlotArguments
	{
		explicit FSlotArguments(TUniquePtr<SlotType> InSlot)
			: Slot(MoveTemp(InSlot))
		{
		}
		FSlotArguments(FSlotArguments&&) = default;
		FSlotArguments& operator=(FSlotArguments&&) = default;

		typename SlotType::FSlotArguments& operator[](const TSharedRef<SWidget>& InChild)
		{
			this->AttachWidget(InChild);
			return Me();
		}
		/** Hands out the slot itself, which lives as long as it stands in the panel. */
		typename SlotType::FSlotArguments& Expose(SlotType*& OutVarToInit)
		{
			OutVarToInit = Slot.Get();
			return Me();
		}

		SlotType* GetSlot() const { return Slot.Get(); }
		TUniquePtr<SlotType> StealSlot() { return MoveTemp(Slot); }

	protected:
		typename SlotType::FSlotArguments& Me() { return static_cast<typename SlotType::FSlotArguments&>(*this); }

	private:
		TUniquePtr<SlotType> Slot;
	};

	void Construct(FSlotArguments&& InArgs)
	{
		if (InArgs.GetAttachedWidget().IsValid())
		{
			AttachWidget(InArgs.GetAttachedWidget().ToSharedRef());
		}
	}
};

/** Opens the arguments of a panel's slot; each argument's function ends with `return Me();`. */
#define SLATE_SLOT_BEGIN_ARGS(SlotType, SlotParentType)                                                                \
public:                                                                                                                \
	struct FSlotArguments : public SlotParentType::FSlotArguments                                                      \
	{                                                                                                                  \
		using SlotParentType::FSlotArguments::FSlotArguments;

#define SLATE_SLOT_END_ARGS()                                                                                          \
	}                                                                                                                  \
	;
