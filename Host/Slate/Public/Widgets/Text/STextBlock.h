#pragma once

#include "../../../Internal/Framework/Text/WrappedText.h"
#include "CoreMinimal.h"
#include "Framework/Text/TextLayout.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

/** Text that is only read. Wrapped automatically it knows its height one frame after it was first painted. */
class STextBlock : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(STextBlock)
		: _TextStyle(nullptr)
	{
		_Visibility = EVisibility::SelfHitTestInvisible;
	}
	SLATE_ATTRIBUTE(FText, Text)
	SLATE_STYLE_ARGUMENT(FTextBlockStyle, TextStyle)
	SLATE_ATTRIBUTE(FSlateFontInfo, Font)
	SLATE_ATTRIBUTE(FSlateColor, ColorAndOpacity)
	/** A width in Slate units; 0: not there. */
	SLATE_ATTRIBUTE(float, WrapTextAt)
	SLATE_ATTRIBUTE(bool, AutoWrapText)
	SLATE_ATTRIBUTE(FMargin, Margin)
	SLATE_ATTRIBUTE(ETextJustify::Type, Justification)
	SLATE_ATTRIBUTE(float, MinDesiredWidth)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** A bound text as it was asked for this frame. */
	const FText& GetText() const { return Text.Get(); }
	void SetText(TAttribute<FText> InText) { Text.Assign(this, InText); }
	void SetFont(TAttribute<FSlateFontInfo> InFont) { Font.Assign(this, InFont); }
	FSlateFontInfo GetFont() const { return Font.Get(); }
	void SetColorAndOpacity(TAttribute<FSlateColor> InColor) { ColorAndOpacity.Assign(this, InColor); }
	FSlateColor GetColorAndOpacity() const { return ColorAndOpacity.Get(); }
	void SetTextStyle(const FTextBlockStyle* InTextStyle);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }
	virtual FText GetDefaultAccessibleText() const override { return GetText(); }

private:
	float GetWrapWidth() const;

	TCachedAttribute<FText> Text{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FSlateFontInfo> Font{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FSlateColor> ColorAndOpacity{ EInvalidateWidgetReason::Paint };
	TCachedAttribute<float> WrapTextAt{ EInvalidateWidgetReason::Layout, 0.0f };
	TCachedAttribute<bool> AutoWrapText{ EInvalidateWidgetReason::Layout, false };
	TCachedAttribute<FMargin> Margin{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<ETextJustify::Type> Justification{ EInvalidateWidgetReason::Paint, ETextJustify::Left };
	TCachedAttribute<float> MinDesiredWidth{ EInvalidateWidgetReason::Layout, 0.0f };

	float AllottedWidth = 0.0f; // when last painted
	mutable FString LaidOutText;
	mutable TArray<FString> Paragraphs;
	mutable FWrappedText Layout;
};
