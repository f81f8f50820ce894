#include "Widget/Markdown/MarkdownDelimiters.h"

#include "Widget/Markdown/MarkdownCharacters.h"

namespace KestrelMarkdown
{
namespace
{
constexpr EMarkdownStyle Styles[] = { EMarkdownStyle::Strong, EMarkdownStyle::Emphasis, EMarkdownStyle::Strike };
constexpr int32 NumStyles = UE_ARRAY_COUNT(Styles);

/** Index in Styles. */
int32 StyleOf(TCHAR Character, int32 Length)
{
	return Character == TEXT('~') ? 2 : Length == 2 ? 0 : 1;
}

/** Runs that agree in this find the same partners. */
constexpr int32 NumKinds = 18;
int32 KindOf(TCHAR Character, bool bOpens, int32 Length)
{
	const int32 Kind = Character == TEXT('*') ? 0 : Character == TEXT('_') ? 1 : 2;
	return (Kind * 2 + (bOpens ? 1 : 0)) * 3 + Length % 3;
}

void Append(FMarkdownText& Text, const FString& Piece, EMarkdownStyle Style, const FString& Address)
{
	if (Piece.IsEmpty())
	{
		return;
	}
	if (!Text.IsEmpty() && Text.Last().Style == Style &&
		Text.Last().Address.Equals(Address, ESearchCase::CaseSensitive))
	{
		Text.Last().Text += Piece;
		return;
	}
	Text.Add({ Piece, Style, Address });
}
}

int32 FDelimiters::AddText(FStringView Text)
{
	FPiece& Piece = Pieces.AddDefaulted_GetRef();
	Piece.Text = FString(Text);
	return Pieces.Num() - 1;
}

void FDelimiters::AddCode(const FString& Code)
{
	Pieces[AddText(Code)].bCode = true;
}

void FDelimiters::AddDelimiters(FStringView Text, TCHAR Before, TCHAR After)
{
	FRun Run;
	Run.Piece = AddText(Text);
	Run.Character = Text[0];
	Run.Length = Text.Len();
	Run.Left = Run.Length;
	const bool bAtWord =
		!IsAnySpace(After) && (!IsAnyPunctuation(After) || IsAnySpace(Before) || IsAnyPunctuation(Before));
	const bool bAfterWord =
		!IsAnySpace(Before) && (!IsAnyPunctuation(Before) || IsAnySpace(After) || IsAnyPunctuation(After));
	// Underscores are more often part of a name than they emphasise a part of it.
	const bool bInWord = Run.Character == TEXT('_');
	Run.bOpens = bAtWord && (!bInWord || !bAfterWord || IsAnyPunctuation(Before));
	Run.bCloses = bAfterWord && (!bInWord || !bAtWord || IsAnyPunctuation(After));
	if (Run.Character == TEXT('~') && Run.Length > 2)
	{
		return;
	}
	Run.Previous = LastRun;
	const int32 Index = Runs.Add(Run);
	if (LastRun != INDEX_NONE)
	{
		Runs[LastRun].Next = Index;
	}
	LastRun = Index;
}

void FDelimiters::AddLink(int32 Piece, const FString& Address)
{
	Pieces[Piece].Text.Reset();
	Pieces[Piece].Link = Addresses.Add(Address);
	Pieces[AddText(FStringView())].bEndsLink = true;
}

int32 FDelimiters::TrimBlanks()
{
	if (Pieces.IsEmpty() || Pieces.Last().bCode)
	{
		return 0;
	}
	FString& Text = Pieces.Last().Text;
	int32 Length = Text.Len();
	while (Length > 0 && Text[Length - 1] == TEXT(' '))
	{
		--Length;
	}
	const int32 NumBlanks = Text.Len() - Length;
	Text.LeftInline(Length);
	return NumBlanks;
}

void FDelimiters::MatchFrom(int32 FirstRun)
{
	int32 Bottoms[NumKinds];
	for (int32& Bottom : Bottoms)
	{
		Bottom = FirstRun - 1;
	}
	int32 Closing = INDEX_NONE;
	for (int32 Run = LastRun; Run >= FirstRun; Run = Runs[Run].Previous)
	{
		Closing = Run;
	}
	while (Closing != INDEX_NONE)
	{
		const FRun& Run = Runs[Closing];
		int32& Bottom = Bottoms[KindOf(Run.Character, Run.bOpens, Run.Length)];
		const int32 Opening = Run.bCloses ? FindOpening(Run, Bottom) : INDEX_NONE;
		if (Opening != INDEX_NONE)
		{
			Match(Opening, Closing);
			Closing = Runs[Closing].Left > 0 ? Closing : Runs[Closing].Next;
			continue;
		}
		const int32 Next = Run.Next;
		if (Run.bCloses)
		{
			Bottom = FMath::Max(Bottom, Run.Previous);
			if (!Run.bOpens)
			{
				Remove(Closing);
			}
		}
		Closing = Next;
	}
	while (LastRun >= FirstRun)
	{
		Remove(LastRun);
	}
}

int32 FDelimiters::FindOpening(const FRun& Closing, int32 Bottom) const
{
	for (int32 Run = Closing.Previous; Run > Bottom; Run = Runs[Run].Previous)
	{
		if (Matches(Runs[Run], Closing))
		{
			return Run;
		}
	}
	return INDEX_NONE;
}

bool FDelimiters::Matches(const FRun& Opening, const FRun& Closing)
{
	if (Opening.Character != Closing.Character || !Opening.bOpens)
	{
		return false;
	}
	if (Opening.Character == TEXT('~'))
	{
		return Opening.Length == Closing.Length;
	}
	// Of "***a** b*", say, the runs of three and two must not meet as if they were written apart.
	const bool bBothWays = Closing.bOpens || Opening.bCloses;
	return !bBothWays || Closing.Length % 3 == 0 || (Opening.Length + Closing.Length) % 3 != 0;
}

void FDelimiters::Match(int32 Opening, int32 Closing)
{
	FRun& Begin = Runs[Opening];
	FRun& End = Runs[Closing];
	const bool bStrike = Begin.Character == TEXT('~');
	const int32 Length = bStrike ? Begin.Length : (Begin.Left >= 2 && End.Left >= 2 ? 2 : 1);
	const int32 Style = StyleOf(Begin.Character, Length);
	++Pieces[Begin.Piece].NumBeginning[Style];
	++Pieces[End.Piece].NumEnding[Style];
	RemoveBetween(Opening, Closing);
	Begin.Left -= Length;
	End.Left -= Length;
	if (Begin.Left == 0)
	{
		Remove(Opening);
	}
	if (End.Left == 0)
	{
		Remove(Closing);
	}
}

void FDelimiters::RemoveBetween(int32 Opening, int32 Closing)
{
	Runs[Opening].Next = Closing;
	Runs[Closing].Previous = Opening;
}

/** From those that wait; it keeps its own neighbours. */
void FDelimiters::Remove(int32 Run)
{
	const int32 Previous = Runs[Run].Previous;
	const int32 Next = Runs[Run].Next;
	if (Previous != INDEX_NONE)
	{
		Runs[Previous].Next = Next;
	}
	if (Next != INDEX_NONE)
	{
		Runs[Next].Previous = Previous;
	}
	else
	{
		LastRun = Previous;
	}
}

FMarkdownText FDelimiters::TakeText()
{
	for (const FRun& Run : Runs)
	{
		Pieces[Run.Piece].Text.LeftInline(Run.Left);
	}
	FMarkdownText Text;
	int32 Depths[NumStyles] = {};
	TArray<int32> Links;
	for (const FPiece& Piece : Pieces)
	{
		EMarkdownStyle Style = Piece.bCode ? EMarkdownStyle::Code : EMarkdownStyle::None;
		for (int32 Index = 0; Index < NumStyles; ++Index)
		{
			Depths[Index] -= Piece.NumEnding[Index];
			Style |= Depths[Index] > 0 ? Styles[Index] : EMarkdownStyle::None;
		}
		if (Piece.bEndsLink)
		{
			Links.Pop();
		}
		Append(Text, Piece.Text, Style, Links.IsEmpty() ? FString() : Addresses[Links.Last()]);
		for (int32 Index = 0; Index < NumStyles; ++Index)
		{
			Depths[Index] += Piece.NumBeginning[Index];
		}
		if (Piece.Link != INDEX_NONE)
		{
			Links.Push(Piece.Link);
		}
	}
	return Text;
}
}
