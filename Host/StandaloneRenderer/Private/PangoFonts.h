#pragma once

#include "Fonts/FontMeasure.h"

#include <memory>
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

	/** One line of text, laid out. Good until the next call. */
	PangoLayout* LayOut(FStringView Text, const FSlateFontInfo& FontInfo) const;

private:
	struct FFace;

	/** A font as it is used: its description, and what is known of its characters. */
	const FFace& FindFace(const FSlateFontInfo& FontInfo) const;
	FVector2D MeasureByLayout(FStringView Text, const FFace& Face) const;
	void SetText(FStringView Text, const FFace& Face) const;

	TGObjectPtr<PangoContext> Context;
	TGObjectPtr<PangoLayout> Layout;
	mutable TArray<TUniquePtr<FFace>> Faces;
};
