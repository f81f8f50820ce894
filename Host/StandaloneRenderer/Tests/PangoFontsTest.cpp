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
	EXPECT_LT(Fonts.GetBaseline(Large), Fonts.GetBaseline(FontOf("Regular"))) << "more reaches below the letters";
	EXPECT_LT(Fonts.GetBaseline(FontOf("Regular")), 0.0f);
}

TEST(PangoFontsTest, StopsTheCursorOnlyBetweenLetters)
{
	const struct
	{
		const char* What;
		const TCHAR* Text;
		TArray<int32> Stops; // besides both ends
	} Cases[] = {
		{ "plain letters", TEXT("abc"), { 1, 2 } },
		{ "a letter with a mark above", TEXT("e\u0301x"), { 2 } },
		{ "a bird", TEXT("a\U0001F426b"), { 1, 3 } },
		{ "a family, joined", TEXT("\U0001F468\u200D\U0001F469\u200D\U0001F467!"), { 8 } },
		{ "a hand of some colour", TEXT("\U0001F44B\U0001F3FD!"), { 4 } },
		{ "a flag", TEXT("\U0001F1F3\U0001F1F4\U0001F1F8\U0001F1EA"), { 4 } },
		{ "Arabic with vowel marks", TEXT("\u0643\u064E\u062A"), { 2 } },
		{ "a Korean syllable in parts", TEXT("\u1112\u1161\u11ABx"), { 3 } },
	};
	const FPangoFonts Fonts;
	for (const auto& Case : Cases)
	{
		const FStringView Text = Case.Text;
		TArray<int32> Stops;
		for (int32 Index = 1; Index < Text.Len(); ++Index)
		{
			if (Fonts.IsCaretStop(Text, Index))
			{
				Stops.Add(Index);
			}
		}
		EXPECT_EQ(Stops, Case.Stops) << Case.What;
	}
}

TEST(PangoFontsTest, PutsTheCursorWhereALetterIsSeen)
{
	const FPangoFonts Fonts;
	const FSlateFontInfo Font = FontOf("Regular");
	for (const TCHAR* Text : { TEXT("plain"), TEXT("\u0645\u0631\u062D\u0628\u0627"), TEXT("\u65E5\u672C\u8A9E"),
			 TEXT("a\tb \U0001F426 c") })
	{
		const FStringView View = Text;
		for (int32 Index = 0; Index <= View.Len(); ++Index)
		{
			if (Fonts.IsCaretStop(View, Index))
			{
				const float X = Fonts.FindOffsetOfCharacterIndex(View, Font, Index);
				EXPECT_EQ(Fonts.FindCharacterIndexAtOffset(View, Font, X), Index) << TCHAR_TO_UTF8(Text);
			}
		}
	}
	const FStringView Arabic = TEXT("\u0645\u0631\u062D\u0628\u0627");
	EXPECT_GT(Fonts.FindOffsetOfCharacterIndex(Arabic, Font, 0), Fonts.FindOffsetOfCharacterIndex(Arabic, Font, 5))
		<< "it is read from the right";
	// Selected up to the middle of what is read from the right: what is seen falls apart.
	EXPECT_EQ(Fonts.FindSpansOfCharacters(TEXT("ab \u0645\u0631\u062D cd"), Font, 0, 4).Num(), 2);
	EXPECT_EQ(Fonts.FindSpansOfCharacters(TEXT("ab cd"), Font, 1, 4).Num(), 1);
}

TEST(PangoFontsTest, BreaksLinesAsTheLanguageDoes)
{
	const FPangoFonts Fonts;
	const FSlateFontInfo Font = FontOf("Regular");
	const auto ExpectFitting = [&](const FString& Text, float Width) {
		int32 Begin = 0;
		for (const int32 Length : Fonts.FindLineBreaks(Text, Font, Width))
		{
			ASSERT_GT(Length, 0);
			const FString Line = Text.Mid(Begin, Length).TrimEnd();
			EXPECT_LE(Fonts.Measure(Line, Font).X, Width + 1.0) << TCHAR_TO_UTF8(*Line);
			EXPECT_TRUE(Fonts.IsCaretStop(Text, Begin));
			Begin += Length;
		}
		EXPECT_EQ(Begin, Text.Len()) << "nothing is lost";
	};
	FString Long;
	for (int32 Index = 0; Index < 500; ++Index)
	{
		Long += TEXT("\u65E5\u672C\u8A9E\u306E\u6587\u7AE0\u3002 and some gr\u00F6\u00DFere words \U0001F426 ");
	}
	ExpectFitting(Long, 300.0f);
	ExpectFitting(
		TEXT(
			"\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645 \u0645\u0631\u062D\u0628\u0627"),
		60.0f);
	const TArray<int32> Words = Fonts.FindLineBreaks(TEXT("gr\u00F6\u00DFere words"), Font, 70.0f);
	EXPECT_EQ(Words, (TArray<int32>{ 8, 5 })) << "between words";
	EXPECT_EQ(Fonts.FindLineBreaks(TEXT("\u00F6"), Font, 1.0f), (TArray<int32>{ 1 })) << "what never fits has a line";
}

TEST(PangoFontsTest, FindsWhereALineMayBegin)
{
	const struct
	{
		const TCHAR* Text;
		TArray<int32> Places;
	} Cases[] = {
		{ TEXT("two words"), { 4 } },
		{ TEXT("gr\u00F6\u00DFere  words"), { 9 } },
		{ TEXT("\u65E5\u672C\u3002\u8A9E"), { 1, 3 } },
		{ TEXT("\t\u00F6 \U0001F426\u00F6 x"), { 1, 3, 5, 7 } },
		{ TEXT("\u00F6"), {} },
	};
	const FPangoFonts Fonts;
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Fonts.FindLineBreakPlaces(Case.Text), Case.Places) << TCHAR_TO_UTF8(Case.Text);
	}
	const TArray<int32> Whole =
		Fonts.FindLineBreaks(TEXT("gr\u00F6\u00DFere words"), FontOf("Regular"), 10.0f, FPangoFonts::ELongWords::Keep);
	EXPECT_EQ(Whole, (TArray<int32>{ 8, 5 })) << "words wider than the line";
}

TEST(PangoFontsTest, KeepsDrawnLinesApart)
{
	const FPangoFonts Fonts;
	const auto WidthOf = [&Fonts](const FString& Text, const char* Typeface) {
		int Width = 0;
		pango_layout_get_size(Fonts.LayOut(Text, FontOf(Typeface)), &Width, nullptr);
		return static_cast<double>(Width) / PANGO_SCALE;
	};
	// Twice, and more lines than are kept.
	for (int32 Index = 0; Index < 2000; ++Index)
	{
		const FString Text = FString::Printf(TEXT("Line %d of few"), Index % 900);
		const char* const Typeface = Index % 2 == 0 ? "Regular" : "Bold";
		ASSERT_NEAR(WidthOf(Text, Typeface), Fonts.Measure(Text, FontOf(Typeface)).X, 0.51) << Index;
	}
	EXPECT_NE(WidthOf(TEXT("CASE"), "Regular"), WidthOf(TEXT("case"), "Regular"));
}
