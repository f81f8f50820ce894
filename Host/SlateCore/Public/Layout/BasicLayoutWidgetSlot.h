#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "SlotBase.h"
#include "Types/CachedAttribute.h"
#include "Types/SlateEnums.h"

/** A slot with padding and alignment, which every panel here has. */
template <typename SlotType>
class TBasicLayoutWidgetSlot : public TSlotBase<SlotType>
{
public:
	TBasicLayoutWidgetSlot() = default;
	TBasicLayoutWidgetSlot(EHorizontalAlignment InHAlign, EVerticalAlignment InVAlign)
		: HorizontalAlignment(InHAlign)
		, VerticalAlignment(InVAlign)
	{
	}

	struct FSlotArguments : public TSlotBase<SlotType>::FSlotArguments
	{
		using TSlotBase<SlotType>::FSlotArguments::FSlotArguments;

		typename SlotType::FSlotArguments& Padding(TAttribute<FMargin> InPadding)
		{
			PaddingArgument = MoveTemp(InPadding);
			return this->Me();
		}
		typename SlotType::FSlotArguments& Padding(float Uniform) { return SetPadding(FMargin(Uniform)); }
		typename SlotType::FSlotArguments& Padding(float Horizontal, float Vertical)
		{
			return SetPadding(FMargin(Horizontal, Vertical));
		}
		typename SlotType::FSlotArguments& Padding(float Left, float Top, float Right, float Bottom)
		{
			return SetPadding(FMargin(Left, Top, Right, Bottom));
		}
		typename SlotType::FSlotArguments& HAlign(EHorizontalAlignment InAlignment)
		{
			HAlignArgument = InAlignment;
			return this->Me();
		}
		typename SlotType::FSlotArguments& VAlign(EVerticalAlignment InAlignment)
		{
			VAlignArgument = InAlignment;
			return this->Me();
		}

	private:
		friend TBasicLayoutWidgetSlot;
		typename SlotType::FSlotArguments& SetPadding(const FMargin& InPadding)
		{
			PaddingArgument = TAttribute<FMargin>(InPadding);
			return this->Me();
		}

		TAttribute<FMargin> PaddingArgument;
		TOptional<EHorizontalAlignment> HAlignArgument;
		TOptional<EVerticalAlignment> VAlignArgument;
	};

	void Construct(FSlotArguments&& InArgs)
	{
		PaddingAttribute.Assign(this->GetOwnerWidget(), InArgs.PaddingArgument);
		HorizontalAlignment = InArgs.HAlignArgument.Get(HorizontalAlignment);
		VerticalAlignment = InArgs.VAlignArgument.Get(VerticalAlignment);
		TSlotBase<SlotType>::Construct(MoveTemp(InArgs));
	}

	virtual void SetOwner(SWidget& InOwner) override
	{
		TSlotBase<SlotType>::SetOwner(InOwner);
		PaddingAttribute.SetOwner(&InOwner);
	}

	void SetPadding(TAttribute<FMargin> InPadding) { PaddingAttribute.Assign(this->GetOwnerWidget(), InPadding); }
	void SetHorizontalAlignment(EHorizontalAlignment InAlignment)
	{
		HorizontalAlignment = InAlignment;
		this->Invalidate(EInvalidateWidgetReason::Layout);
	}
	void SetVerticalAlignment(EVerticalAlignment InAlignment)
	{
		VerticalAlignment = InAlignment;
		this->Invalidate(EInvalidateWidgetReason::Layout);
	}

	const FMargin& GetPadding() const { return PaddingAttribute.Get(); }
	EHorizontalAlignment GetHorizontalAlignment() const { return HorizontalAlignment; }
	EVerticalAlignment GetVerticalAlignment() const { return VerticalAlignment; }

private:
	TCachedAttribute<FMargin> PaddingAttribute{ EInvalidateWidgetReason::Layout };
	EHorizontalAlignment HorizontalAlignment = HAlign_Fill;
	EVerticalAlignment VerticalAlignment = VAlign_Fill;
};
