#include "Widget/Markdown/Markdown.h"

#include "../Support/MutateText.h"
#include "ReferenceMarkdown.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace
{
std::string ToUtf8(const FString& Text)
{
	return std::string(TCHAR_TO_UTF8(*Text));
}

std::string Describe(const FMarkdownText& Text)
{
	std::string Result;
	for (const FMarkdownSpan& Span : Text)
	{
		const auto Style = static_cast<unsigned>(Span.Style);
		Result += DescribeSpan({ ToUtf8(Span.Text), Style, ToUtf8(Span.Address) });
	}
	return Result;
}

std::string Describe(const FMarkdownTable& Table)
{
	std::string Result;
	for (const EMarkdownAlignment Alignment : Table.Columns)
	{
		Result += std::string(1, "LCR"[static_cast<int>(Alignment)]);
	}
	for (const TArray<FMarkdownText>& Row : Table.Rows)
	{
		Result += "\n  |";
		for (int32 Column = 0; Column < Table.Columns.Num(); ++Column)
		{
			Result += (Row.IsValidIndex(Column) ? Describe(Row[Column]) : std::string()) + "|";
		}
	}
	return Result;
}

std::string Describe(const FMarkdownBlock& Block)
{
	std::string Result;
	for (const FMarkdownContainer& Container : Block.Containers)
	{
		std::string Marker = ToUtf8(Container.Marker);
		Marker = Marker == "*" || Marker == "+" ? "-" : Marker;
		Result += Container.bQuote
					  ? "> "
					  : "[" + (Marker.size() > 1 ? "#" + Marker.substr(Marker.size() - 1) : Marker.substr(0, 1)) + "] ";
	}
	// The reference knows it of paragraphs only.
	const bool bTight = Block.bTight && Block.Kind == EMarkdownBlock::Paragraph && !Block.Text.IsEmpty();
	Result += bTight ? "tight " : "";
	switch (Block.Kind)
	{
	case EMarkdownBlock::Paragraph:
		return Result + "p " + Describe(Block.Text);
	case EMarkdownBlock::Heading:
		return Result + "h" + std::to_string(Block.Level) + " " + Describe(Block.Text);
	case EMarkdownBlock::Code:
		return Result + "code(" + ToUtf8(Block.Language) + ") " + ToUtf8(Block.Code);
	case EMarkdownBlock::Rule:
		return Result + "rule";
	case EMarkdownBlock::Table:
		return Result + "table " + Describe(Block.Table);
	}
	return Result;
}

std::string DescribeMarkdown(const std::string& Source)
{
	std::string Result;
	for (const FMarkdownBlock& Block : KestrelMarkdown::Read(FString(UTF8_TO_TCHAR(Source.c_str()))))
	{
		Result += Describe(Block) + "\n";
	}
	return Result;
}

/** Blocks as they occur in answers, put together at random. */
std::string MakeDocument(FTextMutator& Dice)
{
	static const std::string Lines[] = { "Some text", "- item", "  more", "* star", "1. one", "2) two", "> quote", ">",
		"    indented", "\tTab", "```", "```cpp", "~~~", "# Heading", "## Two ##", "---", "===", "| a | b |",
		"|---|:-:|", "| 1 | 2", "a | b", "", "", "", "*emph* and **strong**", "`code` ``a`b``",
		"[link](https://a.example \"t\")", "![image](b.png)", "<https://c.example>", "**a *b* c**", "~~gone~~ ~x~",
		"snake_case_name _u_", "a\\*b \\\\", "two  ", "back\\", "&lt;&amp;&#65;&#x42;&nope;", "***both***", "**open",
		"`tick", "[not](a link", "-", "1.", "10. ten", "      deep", "> - mixed", "- > mixed", "- - twice", "   three",
		"+ plus", "- a\\|b", "1. do\n   ```cpp\n   int A;\n\n   ```\n   then", "- do\n\n  ```\n  B\n  ```\n\n- then",
		"| `x\\|y` | z |" };
	static const std::string Indents[] = { "", "", "", "", " ", "  ", "   ", "    ", "\t", "> ", ">", "- " };
	std::string Document;
	for (size_t Count = 1 + Dice.Below(8); Count > 0; --Count)
	{
		for (size_t Depth = Dice.Below(3); Depth > 0; --Depth)
		{
			Document += Indents[Dice.Below(std::size(Indents))];
		}
		Document += Lines[Dice.Below(std::size(Lines))] + "\n";
	}
	return Document;
}
}

TEST(MarkdownTest, ReadsGeneratedDocumentsAsTheReferencesDo)
{
	FTextMutator Dice("*_`[]()<>!|#-+=> \t\n\\&ab1.:\"'");
	const char* Rounds = std::getenv("KESTREL_FUZZ_ROUNDS");
	const int NumRounds = Rounds ? std::atoi(Rounds) : 20000;
	int NumCompared = 0;
	for (int Round = 0; Round < NumRounds && !HasFailure(); ++Round)
	{
		const std::string Document = Dice.Mutate(MakeDocument(Dice), 3);
		const std::string Expected = DescribeWithReference(Document);
		const bool bHasReference = Document.find("]:") != std::string::npos; // which is text here
		if (!bHasReference && DescribeWithSecondReference(Document) == Expected)
		{
			EXPECT_EQ(DescribeMarkdown(Document), Expected) << "Round " << Round << "\n" << Document;
			++NumCompared;
		}
	}
	EXPECT_GT(NumCompared, NumRounds / 2);
}

TEST(MarkdownTest, ReadsThisProjectsPagesAsTheReferencesDo)
{
	int NumPages = 0;
	for (const auto& Entry : std::filesystem::directory_iterator(PAGES))
	{
		if (Entry.path().extension() != ".md")
		{
			continue;
		}
		std::stringstream Page;
		Page << std::ifstream(Entry.path()).rdbuf();
		EXPECT_EQ(DescribeMarkdown(Page.str()), DescribeWithReference(Page.str())) << Entry.path();
		++NumPages;
	}
	EXPECT_GT(NumPages, 5);
}

// Each would take hours if it cost more than its length, or the whole stack if it cost depth.
TEST(MarkdownTest, ReadsHostileDocumentsInNoTime)
{
	static const std::string Repeated[] = { ">", "> ", "- ", "[", "![", "*", "**a ", "_a*", "`", "`a``", "[a](",
		"[a](<b", "<a:", "&", "\\", "|", "~", "a*", "[a](b \"", "]", "1. ", "\t", "* a **b ***c ", ">\n", "-\n",
		"- a\n\n", "```\n", "#\n", "a\n", "|a|\n|-|\n", "\r", "[a](b)", "![[a](b)", "  \n", "&#1114112;" };
	for (const std::string& Piece : Repeated)
	{
		for (const size_t Length : { size_t(90000), size_t(400000) })
		{
			std::string Document;
			while (Document.size() < Length)
			{
				Document += Piece;
			}
			const TArray<FMarkdownBlock> Blocks = KestrelMarkdown::Read(FString(UTF8_TO_TCHAR(Document.c_str())));
			EXPECT_LE(Blocks.Num(), KestrelMarkdown::MaxParts + 2) << Piece;
		}
	}
}

TEST(MarkdownTest, ShowsWhatExceedsItsLimitsAsItIs)
{
	const FString Deep = FString(UTF8_TO_TCHAR(std::string(100000, '>').c_str()));
	const TArray<FMarkdownBlock> Quotes = KestrelMarkdown::Read(Deep);
	ASSERT_EQ(Quotes.Num(), 1);
	EXPECT_EQ(Quotes[0].Containers.Num(), KestrelMarkdown::MaxContainers);
	EXPECT_EQ(Quotes[0].Text[0].Text.Len(), 100000 - KestrelMarkdown::MaxContainers);

	const FString Wide = FString::ChrN(10000, TEXT('|')).Replace(TEXT("|"), TEXT("|a")) + TEXT("\n") +
						 FString::ChrN(10000, TEXT('|')).Replace(TEXT("|"), TEXT("|-"));
	EXPECT_EQ(KestrelMarkdown::Read(Wide)[0].Kind, EMarkdownBlock::Paragraph);

	// Two characters for a row of 64 cells.
	const FString Columns = FString::ChrN(64, TEXT('|')).Replace(TEXT("|"), TEXT("|-"));
	const FString Rows = FString::ChrN(100000, TEXT('x')).Replace(TEXT("x"), TEXT("|\n"));
	const TArray<FMarkdownBlock> Table = KestrelMarkdown::Read(Columns + TEXT("\n") + Columns + TEXT("\n") + Rows);
	EXPECT_LE(Table[0].Table.Rows.Num() * 64, KestrelMarkdown::MaxParts + 128);
	EXPECT_EQ(Table.Last().Kind, EMarkdownBlock::Code);

	const FString Rules = FString::ChrN(KestrelMarkdown::MaxParts, TEXT('x')).Replace(TEXT("x"), TEXT("---\n"));
	const TArray<FMarkdownBlock> Many = KestrelMarkdown::Read(Rules + TEXT("**a**\n\nb"));
	EXPECT_EQ(ToUtf8(Many.Last().Code), "**a**\n\nb");
}
