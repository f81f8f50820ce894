#include "PangoFonts.h"
#include "Styling/CoreStyle.h"

#include <gtest/gtest.h>

namespace
{
FSlateFontInfo FontOf(const char* Typeface)
{
	return FCoreStyle::GetDefaultFontStyle(Typeface, 10.0f);
}
}

TEST(PangoFontsTest, MeasuresTextAsItIsDrawn)
{
	const FPangoFonts Fonts;
	for (const char* Typeface : { "Regular", "Bold", "Italic", "Mono" })
	{
		for (const TCHAR* Text :
			{ TEXT("AVAToffice fi -> !="), TEXT("\tfloat Größe;"), TEXT("\u65E5\u672C \U0001F426"), TEXT("") })
		{
			PangoRectangle Logical;
			pango_layout_get_extents(Fonts.LayOut(Text, FontOf(Typeface)), nullptr, &Logical);
			const double Drawn = static_cast<double>(Logical.width) / PANGO_SCALE;
			EXPECT_NEAR(Fonts.Measure(Text, FontOf(Typeface)).X, Drawn, 0.51) << TCHAR_TO_UTF8(Text);
		}
	}
}

TEST(PangoFontsTest, KnowsTypefacesAndSizes)
{
	const FPangoFonts Fonts;
	const FStringView Text = TEXT("The quick brown fox");
	EXPECT_GT(Fonts.Measure(Text, FontOf("Bold")).X, Fonts.Measure(Text, FontOf("Regular")).X);
	EXPECT_NEAR(Fonts.Measure(TEXT("iiii"), FontOf("Mono")).X, Fonts.Measure(TEXT("WWWW"), FontOf("Mono")).X, 0.01);
	FSlateFontInfo Large = FontOf("Regular");
	Large.Size = 20.0f;
	EXPECT_NEAR(Fonts.Measure(Text, Large).X, 2.0 * Fonts.Measure(Text, FontOf("Regular")).X, 2.0);
	EXPECT_GT(Fonts.GetMaxCharacterHeight(Large), Fonts.GetMaxCharacterHeight(FontOf("Regular")));
}
