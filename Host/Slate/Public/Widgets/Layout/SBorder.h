#pragma once

#include "CoreMinimal.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** A brush with one widget on it. The brush is not copied and has to outlive the border. */
class SBorder : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SBorder)
		: _HAlign(HAlign_Fill)
		, _VAlign(VAlign_Fill)
		, _Padding(FMargin(2.0f))
		, _BorderImage(FAppStyle::GetBrush("Border"))
		, _BorderBackgroundColor(FSlateColor(FLinearColor::White))
		, _ColorAndOpacity(FLinearColor::White)
		, _ForegroundColor(FSlateColor::UseForeground())
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
	SLATE_ARGUMENT(EVerticalAlignment, VAlign)
	SLATE_ATTRIBUTE(FMargin, Padding)
	FArguments& Padding(float Uniform) { return Padding(TAttribute<FMargin>(FMargin(Uniform))); }
	FArguments& Padding(float Horizontal, float Vertical)
	{
		return Padding(TAttribute<FMargin>(FMargin(Horizontal, Vertical)));
	}
	FArguments& Padding(float Left, float Top, float Right, float Bottom)
	{
		return Padding(TAttribute<FMargin>(FMargin(Left, Top, Right, Bottom)));
	}
	SLATE_EVENT(FPointerEventHandler, OnMouseButtonDown)
	SLATE_EVENT(FPointerEventHandler, OnMouseButtonUp)
	SLATE_ATTRIBUTE(const FSlateBrush*, BorderImage)
	/** Tints the brush. */
	SLATE_ATTRIBUTE(FSlateColor, BorderBackgroundColor)
	/** Tints the content. */
	SLATE_ATTRIBUTE(FLinearColor, ColorAndOpacity)
	SLATE_ATTRIBUTE(FSlateColor, ForegroundColor)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	void SetContent(TSharedRef<SWidget> InContent) { ChildSlot[InContent]; }
	const TSharedRef<SWidget>& GetContent() const { return ChildSlot.GetWidget(); }
	void SetBorderBackgroundColor(TAttribute<FSlateColor> InColor) { BorderBackgroundColor.Assign(this, InColor); }
	void SetPadding(TAttribute<FMargin> InPadding) { ChildSlot.SetPadding(MoveTemp(InPadding)); }

	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;

protected:
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;
	/** What is drawn behind the content. */
	virtual const FSlateBrush* GetBrushToPaint(bool bEnabled) const { return BorderImage.Get(); }

private:
	TCachedAttribute<const FSlateBrush*> BorderImage{ EInvalidateWidgetReason::Paint, nullptr };
	TCachedAttribute<FSlateColor> BorderBackgroundColor{ EInvalidateWidgetReason::Paint,
		FSlateColor(FLinearColor::White) };
	FPointerEventHandler MouseButtonDownHandler;
	FPointerEventHandler MouseButtonUpHandler;
};
