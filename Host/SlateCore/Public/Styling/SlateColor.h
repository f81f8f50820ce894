#pragma once

#include "CoreMinimal.h"
#include "Styling/WidgetStyle.h"

/** A colour, or the wish to take over the one that the parents set. */
struct FSlateColor
{
	/** A loud pink, so that a colour which nobody set is seen. */
	FSlateColor()
		: SpecifiedColor(1.0f, 0.0f, 1.0f)
	{
	}
	FSlateColor(const FLinearColor& InColor)
		: SpecifiedColor(InColor)
	{
	}
	FSlateColor(const FColor& InColor)
		: SpecifiedColor(InColor)
	{
	}

	static FSlateColor UseForeground() { return FSlateColor(ERule::Foreground); }
	static FSlateColor UseSubduedForeground() { return FSlateColor(ERule::SubduedForeground); }

	bool IsColorSpecified() const { return Rule == ERule::Specified; }
	/** The colour itself; good only if IsColorSpecified. */
	FLinearColor GetSpecifiedColor() const { return SpecifiedColor; }
	FLinearColor GetColor(const FWidgetStyle& InWidgetStyle) const
	{
		switch (Rule)
		{
		case ERule::Foreground:
			return InWidgetStyle.GetForegroundColor();
		case ERule::SubduedForeground:
			return InWidgetStyle.GetSubduedForeground();
		case ERule::Specified:
			break;
		}
		return SpecifiedColor;
	}

	bool operator==(const FSlateColor& Other) const = default;

private:
	enum class ERule : uint8
	{
		Specified,
		Foreground,
		SubduedForeground,
	};
	explicit FSlateColor(ERule InRule)
		: SpecifiedColor(1.0f, 0.0f, 1.0f)
		, Rule(InRule)
	{
	}

	FLinearColor SpecifiedColor;
	ERule Rule = ERule::Specified;
};
