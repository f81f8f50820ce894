#include "CoreMinimal.h"
#include "Misc/Char.h"
#include "Misc/TerminalText.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace
{
std::string ToUtf8(const TArray<FString>& Pieces)
{
	return ToUtf8(FString::Join(Pieces, TEXT("|")));
}

// What the engine's build refuses must not compile here either.
template <typename A, typename B>
concept CAddable = requires(A Left, B Right)
{
	Left + Right;
};
template <typename T>
concept CEqualityComparable = requires(T A, T B)
{
	A == B;
};
template <typename T>
concept CLessComparable = requires(T A, T B)
{
	A < B;
};
template <typename A, typename B>
concept CHasMinimum = requires(A Left, B Right)
{
	FMath::Min(Left, Right);
};
static_assert(!std::is_constructible_v<FString, int32>);
static_assert(CAddable<FString, const TCHAR*> && !CAddable<FString, int32> && !CAddable<FString, char>);
static_assert(!CEqualityComparable<FText> && !CLessComparable<FName>);
static_assert(!std::is_convertible_v<FString, FText>);
static_assert(CHasMinimum<int32, int32> && !CHasMinimum<int32, int64>);
}

TEST(FStringTest, ComparisonIgnoresCaseExceptInEquals)
{
	const FString Lower = TEXT("readme.md");
	EXPECT_TRUE(Lower == TEXT("README.MD"));
	EXPECT_FALSE(Lower.Equals(TEXT("README.MD")));
	EXPECT_TRUE(Lower.Contains(TEXT("ADM")));
	EXPECT_EQ(Lower.Find(TEXT("ADM"), ESearchCase::CaseSensitive), INDEX_NONE);
	EXPECT_TRUE(FString(TEXT("a.h")) < FString(TEXT("B.cpp")));
	EXPECT_EQ(ToUtf8(Lower.Replace(TEXT("ME"), TEXT("YOU"))), "readYOU.md");
	EXPECT_TRUE(TArray<FString>({ TEXT("Saved") }).Contains(FString(TEXT("saved"))));
	EXPECT_EQ(GetTypeHash(FString(TEXT("Key"))), GetTypeHash(FString(TEXT("kEY"))));
	EXPECT_FALSE(FString(TEXT("\u00e9")) == FString(TEXT("\u00c9"))) << "only ASCII letters fold";
}

TEST(FStringTest, EmptyTextsFollowTheEnginesRules)
{
	const FString Text = TEXT("abc");
	EXPECT_TRUE(Text.Contains(TEXT("")));
	EXPECT_FALSE(Text.StartsWith(TEXT("")));
	EXPECT_FALSE(Text.EndsWith(FString()));
	EXPECT_EQ(**FString(), 0);
	FString Copy = Text;
	EXPECT_EQ(Copy.ReplaceInline(TEXT(""), TEXT("x")), 0);
	EXPECT_EQ(Copy.ReplaceInline(*FString(Copy), *FString(Copy), ESearchCase::CaseSensitive), 0);
	EXPECT_EQ(ToUtf8(FString() / TEXT("a") / TEXT("")), "a/");
	EXPECT_EQ(ToUtf8(FString(TEXT("A/")) / TEXT("/b")), "A//b");
}

TEST(FStringTest, ParsingDropsEmptyPiecesUnlessTold)
{
	struct FCase
	{
		const TCHAR* Text;
		bool bCull;
		const char* Expected;
		int32 Num;
	};
	const FCase Cases[] = {
		{ TEXT(",a,,b,"), true, "a|b", 2 },
		{ TEXT(",a,,b,"), false, "|a||b|", 5 },
		{ TEXT(""), false, "", 0 },
	};
	for (const FCase& Case : Cases)
	{
		TArray<FString> Pieces = { TEXT("stale") };
		EXPECT_EQ(FString(Case.Text).ParseIntoArray(Pieces, TEXT(","), Case.bCull), Case.Num);
		EXPECT_EQ(ToUtf8(Pieces), Case.Expected);
	}
	TArray<FString> Lines;
	EXPECT_EQ(FString(TEXT("a\r\n\r\nb\n")).ParseIntoArrayLines(Lines), 2);
	EXPECT_EQ(FString(TEXT("a\r\n\r\nb\n")).ParseIntoArrayLines(Lines, false), 4);
	EXPECT_EQ(ToUtf8(Lines), "a||b|");
}

TEST(FStringTest, CutsCountFromTheEndTheyAreNamedFor)
{
	const FString Text = TEXT("abcdef");
	EXPECT_EQ(ToUtf8(Text.LeftChop(2)), "abcd");
	EXPECT_EQ(ToUtf8(Text.RightChop(2)), "cdef");
	EXPECT_EQ(ToUtf8(Text.Mid(4, 100)), "ef");
	EXPECT_EQ(ToUtf8(Text.Left(-1)), "");
	EXPECT_EQ(Text.Find(TEXT("c"), ESearchCase::CaseSensitive, ESearchDir::FromEnd, 2), INDEX_NONE);
	FString Left = TEXT("old");
	EXPECT_FALSE(Text.Split(TEXT("x"), &Left, nullptr));
	EXPECT_EQ(ToUtf8(Left), "old");
	FString Self = TEXT("k=v");
	EXPECT_TRUE(Self.Split(TEXT("="), &Left, &Self));
	EXPECT_EQ(ToUtf8(Left + TEXT("/") + Self), "k/v");
	FString Doubled = TEXT("ab");
	Doubled += Doubled;
	EXPECT_EQ(ToUtf8(Doubled), "abab");
}

TEST(FStringTest, PrintfLaysOutEverySpecifier)
{
	EXPECT_EQ(ToUtf8(FString::Printf(TEXT("%s|%5s|%-5s|%.2s"), TEXT("\u00e9"), TEXT("ab"), TEXT("ab"), TEXT("abc"))),
		"\u00e9|   ab|ab   |ab");
	EXPECT_EQ(ToUtf8(FString::Printf(TEXT("%d %03d %u %lld %x %%"), -1, 7, 8u, 1LL << 40, 255)),
		"-1 007 8 1099511627776 ff %");
	EXPECT_EQ(ToUtf8(FString::Printf(TEXT("%f %.2f %g %c %hs"), 1.5, 2.0f, 0.25, u'x', "narrow")),
		"1.500000 2.00 0.25 x narrow");
	EXPECT_EQ(ToUtf8(FString::SanitizeFloat(5)), "5.0");
	EXPECT_EQ(ToUtf8(LexToString(true)), "true");
}

TEST(FStringTest, NumbersStopAtTheFirstBadCharacter)
{
	EXPECT_EQ(FCString::Atoi(TEXT("  -12abc")), -12);
	EXPECT_EQ(FCString::Atoi(TEXT("abc")), 0);
	EXPECT_EQ(FCString::Atoi(TEXT("99999999999")), MAX_int32);
	EXPECT_TRUE(FString(TEXT("*.Build.cs")).MatchesWildcard(TEXT("\\*.b?ild*")) == false);
	EXPECT_TRUE(FString(TEXT("Game.Build.cs")).MatchesWildcard(TEXT("*.b?ild*")));
}

TEST(FStringTest, ConversionsKeepEveryCharacterAndReplaceWhatIsBroken)
{
	const FString Text = TEXT("\u20ac \U0001F600");
	EXPECT_EQ(ToUtf8(Text), "\u20ac \U0001F600");
	EXPECT_EQ(Text.Len(), 4) << "a character outside the basic plane has two units";
	EXPECT_TRUE(FString(UTF8_TO_TCHAR("\u20ac \U0001F600")).Equals(Text));
	EXPECT_EQ(ToUtf8(FString("a\xff"
							 "b\xc3")),
		"a\ufffd"
		"b\ufffd");
	const TCHAR Lone[] = { u'a', 0xD83D, 0 };
	EXPECT_EQ(ToUtf8(FString(Lone)), "a\ufffd");
}

TEST(FStringDeathTest, IndexPastTheEndAsserts)
{
	const FString Text = TEXT("abc");
	EXPECT_DEATH((void)Text[3], "out of bounds");
}

TEST(FNameTest, NamesIgnoreCaseKeepItAndSplitNumbers)
{
	EXPECT_TRUE(FName(TEXT("Kismet")) == FName(TEXT("kISMET")));
	EXPECT_EQ(ToUtf8(FName(TEXT("kISMET")).ToString()), "kISMET");
	EXPECT_EQ(ToUtf8(FName().ToString()), "None");
	EXPECT_TRUE(FName(TEXT("")).IsNone());
	EXPECT_TRUE(FName(TEXT("none")).IsNone());
	EXPECT_EQ(ToUtf8(FName(TEXT("Foo_3")).GetPlainNameString()), "Foo");
	EXPECT_EQ(ToUtf8(FName(TEXT("Foo_3")).ToString()), "Foo_3");
	EXPECT_EQ(FName(TEXT("Foo_03")).GetNumber(), 0);
	EXPECT_TRUE(FName(TEXT("a")).LexicalLess(FName(TEXT("B"))));
	EXPECT_TRUE(FName(TEXT("NeverMadeBefore"), FNAME_Find).IsNone());
}

TEST(FTextTest, FormatReplacesByOrderAndByName)
{
	FFormatNamedArguments Named;
	Named.Add(TEXT("Who"), FText::FromString(TEXT("you")));
	EXPECT_EQ(ToUtf8(FText::Format(INVTEXT("{0} of {1} {2}"), 1, 2500).ToString()), "1 of 2,500 {2}");
	EXPECT_EQ(ToUtf8(FText::Format(INVTEXT("Hi {Who}"), Named).ToString()), "Hi you");
	for (const int32 Count : { 1, 2 })
	{
		EXPECT_EQ(ToUtf8(FText::Format(INVTEXT("{0} {0}|plural(one=place,other=places)!"), Count).ToString()),
			Count == 1 ? "1 place!" : "2 places!");
	}
	const FText Text = NSLOCTEXT("Space", "Key", "Source");
	EXPECT_EQ(ToUtf8(FTextInspector::GetNamespace(Text)), "Space");
	EXPECT_TRUE(Text.EqualTo(INVTEXT("Source")));
}

TEST(FTerminalTextTest, NothingOfAStringControlsTheTerminalOrHides)
{
	const TPair<const TCHAR*, const char*> Cases[] = {
		{ TEXT("\x1b[31m\b\x9b\x85"), "\\u001B[31m\\u0008\\u009B\\u0085" },
		{ TEXT("a\u2028b\u2029c\u202Ed\u2066"), "a\\u2028b\\u2029c\\u202Ed\\u2066" },
		{ TEXT("\u200B\u2060\uFEFF\U000E0041"), "\\u200B\\u2060\\uFEFF\\U000E0041" },
		{ TEXT("a\r\n\tb\rc\n"), "a\n\tb\\u000Dc\n" },
		{ TEXT("\u00E4 \U0001F469\u200D\U0001F680 \u0645\u06CC\u200C\u062E"),
			"\u00E4 \U0001F469\u200D\U0001F680 \u0645\u06CC\u200C\u062E" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(MakeTerminalText(Case.Key)), Case.Value);
	}
}

TEST(FStringTest, ChangesInPlace)
{
	FString Text(TEXT("  Lantern"));
	Text.TrimStartInline();
	EXPECT_EQ(ToUtf8(Text), "Lantern");
	Text.ToUpperInline();
	EXPECT_EQ(ToUtf8(Text), "LANTERN");
	Text.ToLowerInline();
	Text.RightChopInline(3);
	EXPECT_EQ(ToUtf8(Text), "tern");
	Text.RightInline(3);
	EXPECT_EQ(ToUtf8(Text), "ern");
	Text.MidInline(1, 1);
	EXPECT_EQ(ToUtf8(Text), "r");
}

TEST(FTextTest, IsComparedWithAndWithoutCase)
{
	const FText Text = FText::AsCultureInvariant(TEXT("Gate"));
	EXPECT_TRUE(Text.EqualToCaseIgnored(INVTEXT("gATE")));
	EXPECT_LT(Text.CompareTo(INVTEXT("Hall")), 0);
	EXPECT_TRUE(Text.IdenticalTo(FText(Text)));
	EXPECT_FALSE(Text.IdenticalTo(INVTEXT("Gate")));
	EXPECT_TRUE(INVTEXT(" \t").IsEmptyOrWhitespace());
	EXPECT_FALSE(Text.IsEmptyOrWhitespace());
}
