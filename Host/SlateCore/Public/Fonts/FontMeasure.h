#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"

/** Sizes of text, in Slate units. */
class FSlateFontMeasure
{
public:
	struct FSpan
	{
		float Left;
		float Right;
	};

	/** What becomes of a word that is wider than a line. */
	enum class ELongWords : uint8
	{
		Break,
		Keep,
	};

	virtual ~FSlateFontMeasure() = default;

	/** The size of a text in one line. */
	virtual FVector2D Measure(FStringView Text, const FSlateFontInfo& FontInfo) const = 0;
	/** The height of a line. */
	virtual float GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const = 0;
	/** Where letters stand, from the bottom of a line: less than 0. */
	virtual float GetBaseline(const FSlateFontInfo& FontInfo) const = 0;
	/** How many characters of a one-line text lie before HorizontalOffset, counting one from its middle on. */
	virtual int32 FindCharacterIndexAtOffset(
		FStringView Text, const FSlateFontInfo& FontInfo, float HorizontalOffset) const;
	/** Where the cursor stands before a character of a one-line text, or behind the last. */
	virtual float FindOffsetOfCharacterIndex(FStringView Text, const FSlateFontInfo& FontInfo, int32 Index) const;
	/** The stretches that characters take: more than one where the text runs in both directions. */
	virtual TArray<FSpan> FindSpansOfCharacters(
		FStringView Text, const FSlateFontInfo& FontInfo, int32 Begin, int32 End) const;
	/** Whether the cursor may stand there: not inside of what is seen as one letter. */
	virtual bool IsCaretStop(FStringView Text, int32 Index) const;
	/** The lengths of the lines, at least one, into which a text is broken that has so much width. */
	virtual TArray<int32> FindLineBreaks(FStringView Text, const FSlateFontInfo& FontInfo, float WrapWidth,
		ELongWords LongWords = ELongWords::Break) const;
	/** The places inside a text, in order, where a line may begin whatever the widths: behind spaces, mostly. */
	virtual TArray<int32> FindLineBreakPlaces(FStringView Text) const;
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
	virtual float GetBaseline(const FSlateFontInfo& FontInfo) const override;
};
