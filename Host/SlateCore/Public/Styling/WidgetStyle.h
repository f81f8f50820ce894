#pragma once

#include "CoreMinimal.h"

/** The colours that a widget takes over from its parents. */
class FWidgetStyle
{
public:
	FWidgetStyle& BlendColorAndOpacityTint(const FLinearColor& InTint)
	{
		ColorAndOpacityTint = ColorAndOpacityTint * InTint;
		return *this;
	}
	FWidgetStyle& BlendOpacity(float InOpacity)
	{
		ColorAndOpacityTint.A *= InOpacity;
		return *this;
	}
	FWidgetStyle& SetForegroundColor(const FLinearColor& InForeground)
	{
		Foreground = InForeground;
		SubduedForeground = InForeground;
		SubduedForeground.A *= SubdueAmount;
		return *this;
	}

	const FLinearColor& GetColorAndOpacityTint() const { return ColorAndOpacityTint; }
	const FLinearColor& GetForegroundColor() const { return Foreground; }
	const FLinearColor& GetSubduedForeground() const { return SubduedForeground; }

private:
	static constexpr float SubdueAmount = 0.6f;

	FLinearColor ColorAndOpacityTint = FLinearColor::White;
	FLinearColor Foreground = FLinearColor::White;
	FLinearColor SubduedForeground = FLinearColor(1.0f, 1.0f, 1.0f, SubdueAmount);
};
