#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

/** How a slot of a box gets its length along the box. */
enum class ESlotSizeRule : uint8
{
	/** As long as the child would like. */
	Auto,
	/** A share of what the others leave. */
	Stretch,
};

/** What the slots of all boxes have: a size rule, Stretch with the weight 1 when nothing is said. */
template <typename SlotType>
class TBoxPanelSlot : public TBasicLayoutWidgetSlot<SlotType>
{
public:
	struct FSlotArguments : public TBasicLayoutWidgetSlot<SlotType>::FSlotArguments
	{
		using TBasicLayoutWidgetSlot<SlotType>::FSlotArguments::FSlotArguments;

	protected:
		typename SlotType::FSlotArguments& MakeAuto()
		{
			RuleArgument = ESlotSizeRule::Auto;
			return this->Me();
		}
		typename SlotType::FSlotArguments& MakeStretch(TAttribute<float> InWeight)
		{
			RuleArgument = ESlotSizeRule::Stretch;
			WeightArgument = MoveTemp(InWeight);
			return this->Me();
		}
		typename SlotType::FSlotArguments& SetMax(TAttribute<float> InMaxSize)
		{
			MaxSizeArgument = MoveTemp(InMaxSize);
			return this->Me();
		}

	private:
		friend TBoxPanelSlot;
		ESlotSizeRule RuleArgument = ESlotSizeRule::Stretch;
		TAttribute<float> WeightArgument;
		TAttribute<float> MaxSizeArgument;
	};

	void Construct(FSlotArguments&& InArgs)
	{
		Rule = InArgs.RuleArgument;
		Weight.Assign(this->GetOwnerWidget(), InArgs.WeightArgument);
		MaxSize.Assign(this->GetOwnerWidget(), InArgs.MaxSizeArgument);
		TBasicLayoutWidgetSlot<SlotType>::Construct(MoveTemp(InArgs));
	}
	virtual void SetOwner(SWidget& InOwner) override
	{
		TBasicLayoutWidgetSlot<SlotType>::SetOwner(InOwner);
		Weight.SetOwner(&InOwner);
		MaxSize.SetOwner(&InOwner);
	}

	ESlotSizeRule GetSizeRule() const { return Rule; }
	float GetWeight() const { return Weight.Get(); }
	/** 0: no limit. */
	float GetMaxSize() const { return MaxSize.Get(); }

protected:
	void MakeAuto()
	{
		Rule = ESlotSizeRule::Auto;
		this->Invalidate(EInvalidateWidgetReason::Layout);
	}
	void MakeStretch(TAttribute<float> InWeight)
	{
		Rule = ESlotSizeRule::Stretch;
		Weight.Assign(this->GetOwnerWidget(), InWeight);
		this->Invalidate(EInvalidateWidgetReason::Layout);
	}
	void SetMax(TAttribute<float> InMaxSize) { MaxSize.Assign(this->GetOwnerWidget(), InMaxSize); }

private:
	ESlotSizeRule Rule = ESlotSizeRule::Stretch;
	TCachedAttribute<float> Weight{ EInvalidateWidgetReason::Layout, 1.0f };
	TCachedAttribute<float> MaxSize{ EInvalidateWidgetReason::Layout, 0.0f };
};

/** The lengths that a box gave its slots, from first to last, in Slate units. */
struct FBoxPanelSpans
{
	/** Size of a slot in the panel: what it would like, padding included, and what rules it. */
	struct FSlotRequest
	{
		float DesiredSize = 0.0f;
		float MaxSize = 0.0f;
		float Weight = 0.0f;
		bool bStretches = false;
	};
	static TArray<float> Distribute(const TArray<FSlotRequest>& Requests, float AllottedSize);
};

/** A row or a column of widgets. Collapsed children take no part. */
template <typename SlotType, EOrientation Orientation>
class TBoxPanel : public SPanel
{
public:
	using FSlot = SlotType;
	using FScopedWidgetSlotArguments = TScopedWidgetSlotArguments<SlotType>;

	static typename SlotType::FSlotArguments Slot()
	{
		return typename SlotType::FSlotArguments(MakeUnique<SlotType>());
	}
	/** The slot is added at the end of the statement, see TScopedWidgetSlotArguments. */
	FScopedWidgetSlotArguments AddSlot() { return InsertSlot(INDEX_NONE); }
	FScopedWidgetSlotArguments InsertSlot(int32 Index)
	{
		return FScopedWidgetSlotArguments(MakeUnique<SlotType>(), Children, Index);
	}
	/** The index the slot had, INDEX_NONE if there was none with this widget. */
	int32 RemoveSlot(const TSharedRef<SWidget>& SlotWidget) { return Children.Remove(SlotWidget); }
	void ClearChildren() { Children.Empty(); }
	int32 NumSlots() const { return Children.Num(); }
	SlotType& GetSlot(int32 SlotIndex) { return Children[SlotIndex]; }
	const SlotType& GetSlot(int32 SlotIndex) const { return Children[SlotIndex]; }

	virtual FChildren* GetChildren() override { return &Children; }

protected:
	TBoxPanel() { SetCanTick(false); }

	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override;

	TPanelChildren<SlotType> Children{ this };

private:
	static float Along(const FVector2D& Size)
	{
		return static_cast<float>(Orientation == Orient_Horizontal ? Size.X : Size.Y);
	}
	static float Across(const FVector2D& Size)
	{
		return static_cast<float>(Orientation == Orient_Horizontal ? Size.Y : Size.X);
	}
	static FVector2D Join(float InAlong, float InAcross)
	{
		return Orientation == Orient_Horizontal ? FVector2D(InAlong, InAcross) : FVector2D(InAcross, InAlong);
	}
	static float PaddingAlong(const FMargin& Padding) { return Padding.GetTotalSpaceAlong<Orientation>(); }
	TArray<FBoxPanelSpans::FSlotRequest> MakeRequests() const;
	FArrangedWidget ArrangeSlot(
		const FGeometry& AllottedGeometry, const SlotType& Slot, float SlotOffset, float SlotLength) const;
};

class SVerticalBoxSlot;
class SHorizontalBoxSlot;
using SVerticalBoxBase = TBoxPanel<SVerticalBoxSlot, Orient_Vertical>;
using SHorizontalBoxBase = TBoxPanel<SHorizontalBoxSlot, Orient_Horizontal>;

class SVerticalBoxSlot : public TBoxPanelSlot<SVerticalBoxSlot>
{
public:
	SLATE_SLOT_BEGIN_ARGS(SVerticalBoxSlot, TBoxPanelSlot<SVerticalBoxSlot>)
	FSlotArguments& AutoHeight() { return MakeAuto(); }
	FSlotArguments& FillHeight(TAttribute<float> InStretchCoefficient) { return MakeStretch(InStretchCoefficient); }
	FSlotArguments& MaxHeight(TAttribute<float> InMaxHeight) { return SetMax(InMaxHeight); }
	SLATE_SLOT_END_ARGS()
};

class SHorizontalBoxSlot : public TBoxPanelSlot<SHorizontalBoxSlot>
{
public:
	SLATE_SLOT_BEGIN_ARGS(SHorizontalBoxSlot, TBoxPanelSlot<SHorizontalBoxSlot>)
	FSlotArguments& AutoWidth() { return MakeAuto(); }
	FSlotArguments& FillWidth(TAttribute<float> InStretchCoefficient) { return MakeStretch(InStretchCoefficient); }
	FSlotArguments& MaxWidth(TAttribute<float> InMaxWidth) { return SetMax(InMaxWidth); }
	SLATE_SLOT_END_ARGS()
};

class SVerticalBox : public SVerticalBoxBase
{
public:
	SLATE_BEGIN_ARGS(SVerticalBox) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_SLOT_ARGUMENT(SVerticalBox::FSlot, Slots)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
};

class SHorizontalBox : public SHorizontalBoxBase
{
public:
	SLATE_BEGIN_ARGS(SHorizontalBox) { _Visibility = EVisibility::SelfHitTestInvisible; }
	SLATE_SLOT_ARGUMENT(SHorizontalBox::FSlot, Slots)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
};
