#pragma once

#include "Brushes/SlateNoResource.h"
#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Layout/Margin.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateWidgetStyle.h"
#include "Types/SlateEnums.h"

/** The name under which a style set knows what kind of style it holds, and a setter for each member. */
#define SLATE_STYLE_TYPE(StyleType)                                                                                    \
	static const FName TypeName;                                                                                       \
	virtual const FName GetTypeName() const override                                                                   \
	{                                                                                                                  \
		return TypeName;                                                                                               \
	}                                                                                                                  \
	static const StyleType& GetDefault();

#define SLATE_STYLE_MEMBER(StyleType, MemberType, MemberName)                                                          \
	StyleType& Set##MemberName(const MemberType& In##MemberName)                                                       \
	{                                                                                                                  \
		MemberName = In##MemberName;                                                                                   \
		return *this;                                                                                                  \
	}

enum class ECheckBoxState : uint8
{
	Unchecked,
	Checked,
	Undetermined,
};

struct FTextBlockStyle : public FSlateWidgetStyle
{
	SLATE_STYLE_TYPE(FTextBlockStyle)

	FSlateFontInfo Font;
	FSlateColor ColorAndOpacity = FSlateColor::UseForeground();
	FVector2D ShadowOffset = FVector2D(0.0, 0.0);
	FLinearColor ShadowColorAndOpacity = FLinearColor::Black;
	FSlateColor SelectedBackgroundColor = FSlateColor(FLinearColor(0.0f, 0.2f, 0.6f));
	FSlateColor HighlightColor = FSlateColor(FLinearColor::Black);
	/** For line highlighters: a run that has the style draws no lines by itself. */
	FSlateBrush StrikeBrush = FSlateNoResource();
	FSlateBrush UnderlineBrush = FSlateNoResource();

	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateFontInfo, Font)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateColor, ColorAndOpacity)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FVector2D, ShadowOffset)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FLinearColor, ShadowColorAndOpacity)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateColor, SelectedBackgroundColor)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateColor, HighlightColor)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateBrush, StrikeBrush)
	SLATE_STYLE_MEMBER(FTextBlockStyle, FSlateBrush, UnderlineBrush)
	FTextBlockStyle& SetFontSize(float InSize)
	{
		Font.Size = InSize;
		return *this;
	}
};

struct FButtonStyle : public FSlateWidgetStyle
{
	SLATE_STYLE_TYPE(FButtonStyle)

	FSlateBrush Normal;
	FSlateBrush Hovered;
	FSlateBrush Pressed;
	FSlateBrush Disabled;
	FSlateColor NormalForeground = FSlateColor::UseForeground();
	FSlateColor DisabledForeground = FSlateColor::UseSubduedForeground();
	FMargin NormalPadding;
	FMargin PressedPadding;

	SLATE_STYLE_MEMBER(FButtonStyle, FSlateBrush, Normal)
	SLATE_STYLE_MEMBER(FButtonStyle, FSlateBrush, Hovered)
	SLATE_STYLE_MEMBER(FButtonStyle, FSlateBrush, Pressed)
	SLATE_STYLE_MEMBER(FButtonStyle, FSlateBrush, Disabled)
	SLATE_STYLE_MEMBER(FButtonStyle, FSlateColor, NormalForeground)
	SLATE_STYLE_MEMBER(FButtonStyle, FSlateColor, DisabledForeground)
	SLATE_STYLE_MEMBER(FButtonStyle, FMargin, NormalPadding)
	SLATE_STYLE_MEMBER(FButtonStyle, FMargin, PressedPadding)
};

struct FScrollBarStyle : public FSlateWidgetStyle
{
	SLATE_STYLE_TYPE(FScrollBarStyle)

	FSlateBrush NormalThumbImage;
	FSlateBrush HoveredThumbImage;
	/** In Slate units, across the bar. */
	float Thickness = 9.0f;

	SLATE_STYLE_MEMBER(FScrollBarStyle, FSlateBrush, NormalThumbImage)
	SLATE_STYLE_MEMBER(FScrollBarStyle, FSlateBrush, HoveredThumbImage)
	SLATE_STYLE_MEMBER(FScrollBarStyle, float, Thickness)
};
