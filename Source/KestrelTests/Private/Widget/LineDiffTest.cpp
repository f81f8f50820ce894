#include "Widget/LineDiff.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"

namespace LineDiffTest
{
/** The textbook's way, which the fast one must equal. */
TArray<FDiffLine> CompareByTable(const TArray<FString>& Old, const TArray<FString>& New)
{
	const int32 Width = New.Num() + 1;
	TArray<int32> Table;
	Table.SetNumZeroed((Old.Num() + 1) * Width);
	for (int32 I = 1; I <= Old.Num(); ++I)
	{
		for (int32 J = 1; J <= New.Num(); ++J)
		{
			Table[I * Width + J] = Old[I - 1] == New[J - 1]
									   ? Table[(I - 1) * Width + J - 1] + 1
									   : FMath::Max(Table[(I - 1) * Width + J], Table[I * Width + J - 1]);
		}
	}
	TArray<FDiffLine> Lines;
	for (int32 I = Old.Num(), J = New.Num(); I > 0 || J > 0;)
	{
		if (I > 0 && J > 0 && Old[I - 1] == New[J - 1])
		{
			Lines.Insert({ Old[I - 1], EDiffLineType::Unchanged, I--, J-- }, 0);
		}
		else if (J > 0 && (I == 0 || Table[I * Width + J - 1] >= Table[(I - 1) * Width + J]))
		{
			Lines.Insert({ New[J - 1], EDiffLineType::Added, 0, J-- }, 0);
		}
		else
		{
			Lines.Insert({ Old[I - 1], EDiffLineType::Removed, I--, 0 }, 0);
		}
	}
	return Lines;
}

/** "=1,1:text +2:text -2:text" */
FString Describe(const TArray<FDiffLine>& Lines)
{
	FString Text;
	for (const FDiffLine& Line : Lines)
	{
		switch (Line.Type)
		{
		case EDiffLineType::Unchanged:
			Text += FString::Printf(TEXT("=%d,%d"), Line.OldLineNumber, Line.NewLineNumber);
			break;
		case EDiffLineType::Added:
			Text += FString::Printf(TEXT("+%d"), Line.NewLineNumber);
			break;
		case EDiffLineType::Removed:
			Text += FString::Printf(TEXT("-%d"), Line.OldLineNumber);
			break;
		}
		Text += TEXT(":") + Line.Content + TEXT(" ");
	}
	return Text;
}

FString DescribeTexts(const TCHAR* Old, const TCHAR* New)
{
	return Describe(
		KestrelLineDiff::Compare(KestrelLineDiff::SplitIntoLines(Old), KestrelLineDiff::SplitIntoLines(New)));
}

/** Case must make no difference. */
FString MakeLine(FKestrelDice& Dice, int32 NumKinds)
{
	const TCHAR Letter = Dice.Roll(2) == 0 ? TEXT('a') : TEXT('A');
	return FString::Printf(TEXT("%c%d"), Letter, Dice.Roll(NumKinds));
}

/** Lines of a few kinds; the fewer kinds, the more ways there are to match them. */
TArray<FString> MakeLines(FKestrelDice& Dice, int32 MaxLines, int32 NumKinds)
{
	TArray<FString> Lines;
	for (int32 Count = Dice.Roll(MaxLines + 1); Count > 0; --Count)
	{
		Lines.Add(MakeLine(Dice, NumKinds));
	}
	return Lines;
}

/** Some lines changed, as when somebody works on a text: most are as they were, and many stand in one text only. */
TArray<FString> ChangeLines(FKestrelDice& Dice, const TArray<FString>& Lines, int32 NumKinds)
{
	TArray<FString> Changed;
	for (const FString& Line : Lines)
	{
		const int32 What = Dice.Roll(12);
		if (What == 0)
		{
			Changed.Add(MakeLine(Dice, NumKinds));
		}
		if (What != 1)
		{
			Changed.Add(Line);
		}
	}
	return Changed;
}

struct FCase
{
	const TCHAR* What;
	const TCHAR* Old;
	const TCHAR* New;
	const TCHAR* Expected;
};

const FCase Cases[] = {
	{ TEXT("nothing"), TEXT(""), TEXT(""), TEXT("") },
	{ TEXT("a new text"), TEXT(""), TEXT("a\nb"), TEXT("+1:a +2:b ") },
	{ TEXT("a text that went"), TEXT("a\nb"), TEXT(""), TEXT("-1:a -2:b ") },
	{ TEXT("a replaced line"), TEXT("a\nb\nc"), TEXT("a\nx\nc"), TEXT("=1,1:a -2:b +2:x =3,3:c ") },
	{ TEXT("letter case, with the old text"), TEXT("Alpha"), TEXT("ALPHA"), TEXT("=1,1:Alpha ") },
	{ TEXT("blank lines and any line ends"), TEXT("a\r\n\r\nb"), TEXT("a\n\nb\n"), TEXT("=1,1:a =2,2: =3,3:b +4: ") },
	{ TEXT("a line doubled: the later one is the old one"), TEXT("a"), TEXT("a\na"), TEXT("+1:a =1,2:a ") },
};
}

DEFINE_SPEC(FKestrelLineDiffSpec, "Kestrel.LineDiff", KestrelTest::Flags)
void FKestrelLineDiffSpec::Define()
{
	It("tells what two texts have in common", [this]() {
		for (const LineDiffTest::FCase& Case : LineDiffTest::Cases)
		{
			KestrelTest::TestSameText(*this, Case.What, LineDiffTest::DescribeTexts(Case.Old, Case.New), Case.Expected);
		}
	});

	It("equals the table of lengths on thousands of texts", [this]() {
		FKestrelDice Dice;
		for (int32 Round = 0; Round < 4000; ++Round)
		{
			// Now and then more lines than fit a word, or several.
			const int32 MaxLines = Round % 40 == 0 ? 200 : Round % 4 == 0 ? 70 : 12;
			const int32 NumKinds = Round % 3 == 0 ? MaxLines * 2 : 1 + Round % 9;
			const TArray<FString> Old = LineDiffTest::MakeLines(Dice, MaxLines, NumKinds);
			const TArray<FString> New = Round % 2 == 0 ? LineDiffTest::MakeLines(Dice, MaxLines, NumKinds)
													   : LineDiffTest::ChangeLines(Dice, Old, NumKinds);
			const FString Expected = LineDiffTest::Describe(LineDiffTest::CompareByTable(Old, New));
			if (!KestrelTest::TestSameText(*this, FString::Printf(TEXT("round %d"), Round),
					LineDiffTest::Describe(KestrelLineDiff::Compare(Old, New)), Expected))
			{
				return;
			}
		}
	});

	It("ends a chunk at the seventh unchanged line, and drops none", [this]() {
		const auto SizesOf = [](const TArray<FDiffLine>& Lines) {
			FString Sizes;
			for (const FDiffChunk& Chunk : KestrelLineDiff::MakeChunks(Lines))
			{
				Sizes += FString::Printf(TEXT("%d "), Chunk.Lines.Num());
			}
			return Sizes;
		};
		TArray<FDiffLine> Lines;
		KestrelTest::TestSameText(*this, TEXT("nothing"), SizesOf(Lines), TEXT(""));
		Lines.SetNum(20);
		KestrelTest::TestSameText(*this, TEXT("unchanged"), SizesOf(Lines), TEXT("6 7 7 "));
		Lines[5].Type = EDiffLineType::Added;
		KestrelTest::TestSameText(*this, TEXT("with a change"), SizesOf(Lines), TEXT("12 7 1 "));
	});

	It("folds long lines, and names the white space that something could hide behind", [this]() {
		const auto Fold = [](const FString& Line) {
			return FString::Join(KestrelLineDiff::FoldLine(Line, 12), TEXT("|"));
		};
		KestrelTest::TestSameText(*this, TEXT("short"), Fold(TEXT("\t\tint A;")), TEXT("\t\tint A;"));
		KestrelTest::TestSameText(*this, TEXT("empty"), Fold(TEXT("")), TEXT(""));
		KestrelTest::TestSameText(*this, TEXT("long"), Fold(TEXT("abcdefghijklmnopqrstuvwxyz")),
			TEXT("abcdefghijkl|\u21AA mnopqrstuvwx|\u21AA yz"));
		KestrelTest::TestSameText(*this, TEXT("far right"), Fold(TEXT("a") + FString::ChrN(300, u' ') + TEXT("b")),
			TEXT("a \u27E8300 space|\u21AA s\u27E9 b"));
		KestrelTest::TestSameText(
			*this, TEXT("a pair"), Fold(TEXT("abcdefghijk\U0001F426x")), TEXT("abcdefghijk|\u21AA \U0001F426x"));
	});
}
