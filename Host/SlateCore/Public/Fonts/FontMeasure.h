#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"

/** Sizes of text, in Slate units. */
class FSlateFontMeasure
{
public:
	virtual ~FSlateFontMeasure() = default;

	/** The size of a text in one line. */
	virtual FVector2D Measure(FStringView Text, const FSlateFontInfo& FontInfo) const = 0;
	/** The height of a line. */
	virtual float GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const = 0;
	/** How many characters of a one-line text lie before HorizontalOffset, counting one from its middle on. */
	int32 FindCharacterIndexAtOffset(FStringView Text, const FSlateFontInfo& FontInfo, float HorizontalOffset) const;
	/** The most characters of Text, at least one, that are no wider than Width. */
	int32 FindLastWholeCharacterIndexBeforeOffset(FStringView Text, const FSlateFontInfo& FontInfo, float Width) const;
};

/**
 * Every character has the width of a cell that follows from the font's size. Layout, wrapping and scroll offsets are
 * real with it, and the same on every machine.
 */
class FFixedFontMeasure final : public FSlateFontMeasure
{
public:
	virtual FVector2D Measure(FStringView Text, const FSlateFontInfo& FontInfo) const override;
	virtual float GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const override;
};
