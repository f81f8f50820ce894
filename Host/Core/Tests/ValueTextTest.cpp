#include "CoreMinimal.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"
#include "Utf8.h"

#include <cmath>
#include <gtest/gtest.h>

namespace ValueTextTest
{
TEST(LexToString, WritesEachKindOfNumber)
{
	const struct
	{
		FString Actual;
		const char* Expected;
	} Cases[] = {
		{ LexToString(true), "true" },
		{ LexToString(false), "false" },
		{ LexToString(uint8(200)), "200" },
		{ LexToString(MIN_int32), "-2147483648" },
		{ LexToString(MAX_uint32), "4294967295" },
		{ LexToString(MIN_int64), "-9223372036854775808" },
		{ LexToString(~uint64(0)), "18446744073709551615" },
		{ LexToString(0.5f), "0.500000" },
		{ LexToString(-0.25), "-0.250000" },
		{ LexToString(FString(TEXT("a b"))), "a b" },
		{ LexToString(FName(TEXT("Moor_3"))), "Moor_3" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(Case.Actual), Case.Expected);
	}
}

TEST(Color, OfAnyNumbersIsWithinItsBytes)
{
	const struct
	{
		FLinearColor Color;
		FColor Srgb;
		FColor Linear;
	} Cases[] = {
		{ FLinearColor::White, FColor(255, 255, 255), FColor(255, 255, 255) },
		{ FLinearColor::Transparent, FColor(0, 0, 0, 0), FColor(0, 0, 0, 0) },
		{ FLinearColor(0.5f, 0.0f, 1.0f, 0.5f), FColor(188, 0, 255, 128), FColor(128, 0, 255, 128) },
		{ FLinearColor(-3.0f, 7.0f, INFINITY, -INFINITY), FColor(0, 255, 255, 0), FColor(0, 255, 255, 0) },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Case.Color.ToFColor(true), Case.Srgb) << ToUtf8(Case.Color.ToString());
		EXPECT_EQ(Case.Color.ToFColorSRGB(), Case.Srgb);
		EXPECT_EQ(Case.Color.ToFColor(false), Case.Linear) << ToUtf8(Case.Color.ToString());
	}
	// No number at all is some colour, not a crash.
	EXPECT_EQ(FLinearColor(NAN, NAN, NAN, 1.0f).ToFColor(true).A, 255);
	for (int32 Byte = 0; Byte < 256; ++Byte)
	{
		const FColor Color(static_cast<uint8>(Byte), 0, 0);
		EXPECT_EQ(FLinearColor(Color).ToFColorSRGB(), Color) << "comes back the same";
	}
}

TEST(Color, IsMixedComparedAndWritten)
{
	const FLinearColor Color(0.5f, 1.0f, 0.25f, 0.5f);
	EXPECT_EQ(Color * FLinearColor(0.5f, 0.5f, 4.0f, 1.0f), FLinearColor(0.25f, 0.5f, 1.0f, 0.5f));
	EXPECT_EQ(Color * 2.0f, FLinearColor(1.0f, 2.0f, 0.5f, 1.0f));
	EXPECT_EQ(Color.CopyWithNewOpacity(1.0f), FLinearColor(0.5f, 1.0f, 0.25f, 1.0f));
	EXPECT_TRUE(Color.Equals(FLinearColor(0.50001f, 1.0f, 0.25f, 0.5f)));
	EXPECT_FALSE(Color.Equals(FLinearColor(0.51f, 1.0f, 0.25f, 0.5f)));
	EXPECT_FALSE(Color.Equals(FLinearColor(0.5f, 1.0f, 0.25f, 0.6f))) << "opacity counts";
	EXPECT_TRUE(Color.Equals(FLinearColor(0.6f, 1.0f, 0.25f, 0.5f), 0.2f));
	EXPECT_EQ(ToUtf8(Color.ToString()), "(R=0.500000,G=1.000000,B=0.250000,A=0.500000)");
}

TEST(Color, HexadecimalTextsOfOtherFormsAreNoColours)
{
	for (const TCHAR* const Text : { TEXT(""), TEXT("#"), TEXT("#12"), TEXT("#1234"), TEXT("12345"), TEXT("#1234567"),
			 TEXT("123456789"), TEXT("##123456"), TEXT("#12345g"), TEXT("\uFF11\uFF12\uFF13"), TEXT("-12") })
	{
		EXPECT_EQ(FColor::FromHex(Text), FColor(0, 0, 0, 0)) << ToUtf8(Text);
	}
	EXPECT_EQ(FColor::FromHex(TEXT("fFf")), FColor::White);
}

TEST(Timespan, IsAddedNegatedAndCompared)
{
	const FTimespan Span(25, 30, 15);
	EXPECT_EQ(Span.GetDays(), 1);
	EXPECT_EQ((Span + FTimespan::FromHours(0.5)).GetTotalHours(), 26.0 + 15.0 / 3600.0);
	EXPECT_EQ((Span - Span).GetTicks(), 0);
	EXPECT_EQ((-Span).GetTotalSeconds(), -Span.GetTotalSeconds());
	EXPECT_EQ((-Span).GetDays(), -1) << "truncated, not rounded down";
	EXPECT_LT(-Span, Span);
	EXPECT_EQ(FTimespan::FromMinutes(1.5), FTimespan::FromSeconds(90.0));
	EXPECT_EQ(FTimespan::FromDays(1.0), FTimespan(24, 0, 0));
}

TEST(DateTimeTest, TellsItsPartsAtTheEdgesOfTheCalendar)
{
	const struct
	{
		FDateTime Time;
		int32 Year, Month, Day, DayOfYear;
	} Cases[] = {
		{ FDateTime::MinValue(), 1, 1, 1, 1 },
		{ FDateTime::MaxValue(), 9999, 12, 31, 365 },
		{ FDateTime(2024, 2, 29), 2024, 2, 29, 60 },
		{ FDateTime(2023, 3, 1), 2023, 3, 1, 60 },
		{ FDateTime(2000, 12, 31, 23, 59, 59, 999), 2000, 12, 31, 366 },
		{ FDateTime(1900, 3, 1), 1900, 3, 1, 60 },
	};
	for (const auto& Case : Cases)
	{
		int32 Year = 0;
		int32 Month = 0;
		int32 Day = 0;
		Case.Time.GetDate(Year, Month, Day);
		EXPECT_EQ(Year, Case.Year) << ToUtf8(Case.Time.ToString());
		EXPECT_EQ(Month, Case.Month) << ToUtf8(Case.Time.ToString());
		EXPECT_EQ(Day, Case.Day) << ToUtf8(Case.Time.ToString());
		EXPECT_EQ(Case.Time.GetDayOfYear(), Case.DayOfYear) << ToUtf8(Case.Time.ToString());
		EXPECT_EQ(Case.Time.GetDate(), FDateTime(Case.Year, Case.Month, Case.Day));
		FDateTime Read;
		EXPECT_TRUE(FDateTime::ParseIso8601(*Case.Time.ToIso8601(), Read));
		EXPECT_EQ(Read.ToUnixTimestamp(), Case.Time.ToUnixTimestamp()) << "read back";
	}
	EXPECT_EQ(FDateTime::FromUnixTimestamp(-1).ToUnixTimestamp(), -1);
	EXPECT_EQ(ToUtf8(FDateTime::FromUnixTimestamp(0).ToIso8601()), "1970-01-01T00:00:00.000Z");
	EXPECT_LE(FDateTime::Today(), FDateTime::Now());
	FDateTime Untouched(2024, 1, 1);
	for (const TCHAR* const Text : { TEXT(""), TEXT("yesterday"), TEXT("2024-13-01"), TEXT("2024-02-30T00:00:00Z"),
			 TEXT("2024-01-01T25:00:00Z"), TEXT("2024-01") })
	{
		EXPECT_FALSE(FDateTime::ParseIso8601(Text, Untouched)) << ToUtf8(Text);
	}
}

TEST(FNameTest, IsOrderedAndFormatted)
{
	const FName A(TEXT("alpha"));
	const FName B(TEXT("Beta"));
	EXPECT_TRUE(FNameLexicalLess()(A, B)) << "letter case is ignored";
	EXPECT_FALSE(FNameLexicalLess()(B, A));
	EXPECT_NE(FNameFastLess()(A, B), FNameFastLess()(B, A)) << "one order, whichever";
	EXPECT_TRUE(A == TEXT("ALPHA"));
	FString Text = TEXT("x");
	A.ToString(Text);
	EXPECT_EQ(ToUtf8(Text), "alpha");
	EXPECT_FALSE(A.IsEqual(FName(TEXT("Alpha")), ENameCase::CaseSensitive));
}

TEST(FStringTest, OrderIgnoresCaseAndJoinsWork)
{
	EXPECT_TRUE(FString(TEXT("abc")) < FString(TEXT("ABD")));
	EXPECT_TRUE(FString(TEXT("abc")) <= FString(TEXT("ABC")));
	EXPECT_TRUE(FString(TEXT("abd")) > FString(TEXT("ABC")));
	EXPECT_EQ(ToUtf8(TEXT("a") + FString(TEXT("b"))), "ab");
	EXPECT_EQ(ToUtf8(FString(TEXT("a")) + FStringView(TEXT("bc"))), "abc");
	const FString Start = TEXT("a");
	EXPECT_EQ(ToUtf8(Start + TEXT('b')), "ab");
	EXPECT_EQ(ToUtf8(FPaths::GetPathLeaf(TEXT("/a/b/"))), "b");
	EXPECT_EQ(ToUtf8(FPaths::GetPathLeaf(TEXT("b"))), "b");
}
}
