#pragma once

#include "Fonts/FontMeasure.h"

#include <memory>
#include <string>
#include <unordered_map>
// GLib has a type that is called as the engine's error device is.
#define GError GLibError
#include <pango/pangocairo.h>
#undef GError

/** What Pango gives is given back when the pointer goes. */
struct FGObjectDeleter
{
	void operator()(void* Object) const { g_object_unref(Object); }
};
template <typename Type>
using TGObjectPtr = std::unique_ptr<Type, FGObjectDeleter>;

namespace PangoFonts
{
class FShownText;
}

/**
 * Text as Pango shapes it, for measuring and for drawing alike: without kerning and ligatures, and with positions
 * between pixels, so that the width of ASCII text is the sum of its characters' widths.
 */
class FPangoFonts final : public FSlateFontMeasure
{
public:
	FPangoFonts();
	virtual ~FPangoFonts() override;

	virtual FVector2D Measure(FStringView Text, const FSlateFontInfo& FontInfo) const override;
	virtual float GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const override;
	virtual float GetBaseline(const FSlateFontInfo& FontInfo) const override;
	virtual int32 FindCharacterIndexAtOffset(
		FStringView Text, const FSlateFontInfo& FontInfo, float HorizontalOffset) const override;
	virtual float FindOffsetOfCharacterIndex(
		FStringView Text, const FSlateFontInfo& FontInfo, int32 Index) const override;
	virtual TArray<FSpan> FindSpansOfCharacters(
		FStringView Text, const FSlateFontInfo& FontInfo, int32 Begin, int32 End) const override;
	virtual bool IsCaretStop(FStringView Text, int32 Index) const override;
	virtual TArray<int32> FindLineBreaks(FStringView Text, const FSlateFontInfo& FontInfo, float WrapWidth,
		ELongWords LongWords = ELongWords::Break) const override;
	virtual TArray<int32> FindLineBreakPlaces(FStringView Text) const override;

	/** One line of text, laid out. Good until the next call. Lines that are drawn again and again are kept. */
	PangoLayout* LayOut(FStringView Text, const FSlateFontInfo& FontInfo) const;

private:
	struct FFace;

	/** A font as it is used: its description, and what is known of its characters. */
	const FFace& FindFace(const FSlateFontInfo& FontInfo) const;
	FVector2D MeasureByLayout(FStringView Text, const FFace& Face) const;
	void SetText(FStringView Text, const FFace& Face) const;
	void SetText(const PangoFonts::FShownText& Text, const FFace& Face) const;
	/** The lengths of the first lines of a text; those that a part of it can tell, which begins where the last ended.
	 */
	TArray<int32> BreakPiece(
		FStringView Piece, const FFace& Face, float WrapWidth, ELongWords LongWords, bool bIsLastPiece) const;

	/** Lines that were drawn, by their text with the number of their font behind it. Two generations: a line that is
	 * not drawn while a whole new one comes up is forgotten. */
	using FKeptLines = std::unordered_map<std::u16string, TGObjectPtr<PangoLayout>>;
	static constexpr size_t MaxKeptLines = 256; // of each generation; a window shows some fifty

	TGObjectPtr<PangoContext> Context;
	TGObjectPtr<PangoLayout> Layout;
	mutable TArray<TUniquePtr<FFace>> Faces;
	mutable FKeptLines KeptLines;
	mutable FKeptLines OlderLines;
};
