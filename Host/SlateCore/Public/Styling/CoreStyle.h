#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Styling/ISlateStyle.h"

/** The style of Slate's own widgets. */
class FCoreStyle
{
public:
	static const ISlateStyle& Get();
	static TSharedRef<const FCompositeFont> GetDefaultFont();
	/**
	 * The default font in one of its typefaces: "Regular", "Bold", "Italic", "BoldItalic", "Light", "Medium", "Black",
	 * "Mono". Another name is kept as it is and drawn as Regular.
	 *
	 * @param InSize  in points
	 */
	static FSlateFontInfo GetDefaultFontStyle(const FName InTypefaceFontName, const float InSize,
		const FFontOutlineSettings& InOutlineSettings = FFontOutlineSettings());
};
