#include "Widget/Markdown/Markdown.h"

#include "Misc/Optional.h"
#include "Widget/Markdown/MarkdownInlines.h"
#include "Widget/Markdown/MarkdownLine.h"
#include "Widget/Markdown/MarkdownMarkers.h"

namespace KestrelMarkdown
{
namespace
{
constexpr int32 CodeIndent = 4;

/** Items that follow one another. */
struct FList
{
	TCHAR Delimiter = TEXT('\0');
	bool bLoose = false; // blank lines between its items, or between the blocks of one
};

/** What is open around the line: the document, quotes in it, items of lists. */
struct FOpenContainer
{
	bool bQuote = false;
	FString Marker;           // until a block has it
	int32 Indent = 0;         // of an item: columns before its lines
	int32 List = INDEX_NONE;  // of an item: the one it belongs to
	int32 Items = INDEX_NONE; // the list among its blocks that a further item would go on with
	bool bHasBlocks = false;
	bool bAfterBlank = false; // the last line that it got was blank
};

enum class EOpenBlock : uint8
{
	None,
	Paragraph,
	Indented,
	Fenced,
	Table,
};

/** Reads line by line, as CommonMark describes it in its appendix "A parsing strategy". */
class FReader
{
public:
	FReader() { Open.AddDefaulted(); }

	void AddLine(FStringView LineText);
	bool IsFull() const { return NumParts >= MaxParts; }
	/** @param Rest  what is not read */
	TArray<FMarkdownBlock> Finish(FStringView Rest);

private:
	int32 MatchContainers(FLine& Line) const;
	bool AddToCode(FLine& Line);
	bool AddToParagraph(const FLine& Line);
	bool BeginBlocks(FLine& Line);
	bool BeginQuote(FLine& Line);
	bool BeginItem(FLine& Line);
	bool BeginLeaf(FLine& Line);
	bool EndParagraph(const FLine& Line);
	bool BeginTable(const FLine& Line);
	void AddRow(const TArray<FString>& Cells);
	FMarkdownText ReadText(FStringView Inlines);
	void NoteBlank();
	void NoteGoesOn(int32 NumContainers);
	void NoteChild(const FListMarker* Item);
	bool IsAfterParagraph() const { return OpenBlock == EOpenBlock::Paragraph && NumMatched == Open.Num(); }
	bool HasRoom() const { return Open.Num() <= MaxContainers; }
	void CloseUnmatched();
	void CloseBlock();
	FMarkdownBlock& AddBlock(EMarkdownBlock Kind);
	FMarkdownBlock& EmitBlock(EMarkdownBlock Kind);

	TArray<FMarkdownBlock> Blocks;
	int32 NumParts = 0;        // of which there may be MaxParts
	TArray<int32> ListOfBlock; // by block: the list that it is in an item of
	TArray<FList> Lists;
	TArray<FOpenContainer> Open;             // the document is the first
	int32 NumMatched = 0;                    // containers that the line goes on with, and those it has begun
	EOpenBlock OpenBlock = EOpenBlock::None; // the last block, as long as it can go on
	FString Text;                            // of the open paragraph
	int32 NumTextLines = 0;
	FFence Fence;
	FString BlankCode; // lines that belong to indented code only if more of it follows
};

void FReader::AddLine(FStringView LineText)
{
	FLine Line(LineText);
	NumMatched = MatchContainers(Line);
	if (NumMatched == Open.Num() && AddToCode(Line))
	{
		return;
	}
	const bool bWasBlank = Line.IsBlank();
	if (BeginBlocks(Line))
	{
		return;
	}
	if (Line.IsBlank())
	{
		CloseUnmatched();
		if (bWasBlank)
		{
			NoteBlank();
		}
	}
	else if (OpenBlock == EOpenBlock::Table && NumMatched == Open.Num())
	{
		AddRow(SplitCells(Line.GetRest(), Blocks.Last().Table.Columns.Num()));
	}
	else if (!AddToParagraph(Line))
	{
		AddBlock(EMarkdownBlock::Paragraph);
		OpenBlock = EOpenBlock::Paragraph;
		AddToParagraph(Line);
	}
}

int32 FReader::MatchContainers(FLine& Line) const
{
	for (int32 Index = 1; Index < Open.Num(); ++Index)
	{
		const FOpenContainer& Container = Open[Index];
		if (Container.bQuote)
		{
			if (Line.IsIndented() || Line.Peek() != TEXT('>'))
			{
				return Index;
			}
			Line.Skip(1);
			Line.SkipColumns(1);
		}
		// An item that begins with a blank line has no second one, unless that is indented.
		else if (Line.GetIndent() < Container.Indent && !(Line.IsBlank() && Container.bHasBlocks))
		{
			return Index;
		}
		else
		{
			Line.SkipColumns(Container.Indent);
		}
	}
	return Open.Num();
}

bool FReader::AddToCode(FLine& Line)
{
	if (OpenBlock == EOpenBlock::Fenced)
	{
		if (EndsFence(Line, Fence))
		{
			CloseBlock();
			return true;
		}
		Line.SkipColumns(Fence.Indent);
		Blocks.Last().Code += Line.ToCode() + TEXT("\n");
		return true;
	}
	if (OpenBlock != EOpenBlock::Indented || !(Line.IsBlank() || Line.IsIndented()))
	{
		return false;
	}
	const bool bBlank = Line.IsBlank();
	Line.SkipColumns(CodeIndent);
	BlankCode += Line.ToCode() + TEXT("\n");
	if (bBlank)
	{
		NoteBlank();
	}
	else
	{
		Blocks.Last().Code += BlankCode;
		BlankCode.Reset();
		NoteGoesOn(Open.Num());
	}
	return true;
}

/** Even where the line leaves out the markers of the paragraph's containers. */
bool FReader::AddToParagraph(const FLine& Line)
{
	if (OpenBlock != EOpenBlock::Paragraph)
	{
		return false;
	}
	Text += (NumTextLines > 0 ? TEXT("\n") : TEXT(""));
	Text += Line.GetRest();
	++NumTextLines;
	return true;
}

/** @return whether the line is read to its end */
bool FReader::BeginBlocks(FLine& Line)
{
	while (!Line.IsBlank())
	{
		if (Line.IsIndented())
		{
			if (OpenBlock == EOpenBlock::Paragraph)
			{
				return false;
			}
			Line.SkipColumns(CodeIndent);
			AddBlock(EMarkdownBlock::Code).Code = Line.ToCode() + TEXT("\n");
			OpenBlock = EOpenBlock::Indented;
			return true;
		}
		if (BeginQuote(Line))
		{
			continue;
		}
		if (BeginLeaf(Line))
		{
			return true;
		}
		if (!BeginItem(Line))
		{
			return IsAfterParagraph() && BeginTable(Line);
		}
	}
	return false;
}

bool FReader::BeginQuote(FLine& Line)
{
	if (Line.Peek() != TEXT('>') || !HasRoom())
	{
		return false;
	}
	CloseUnmatched();
	NoteChild(nullptr);
	Line.Skip(1);
	Line.SkipColumns(1);
	FOpenContainer& Quote = Open.AddDefaulted_GetRef();
	Quote.bQuote = true;
	NumMatched = Open.Num();
	return true;
}

bool FReader::BeginItem(FLine& Line)
{
	const TOptional<FListMarker> Marker = ReadListMarker(Line);
	if (!Marker.IsSet() || !HasRoom())
	{
		return false;
	}
	const FString MarkerText(Line.GetRest().Left(Marker->Length));
	const int32 MarkerIndent = Line.GetIndent();
	FLine Rest = Line;
	Rest.Skip(Marker->Length);
	// A number at the beginning of a line is more often one of the text than the middle of a list.
	if (IsAfterParagraph() && (Rest.IsBlank() || (Marker->bOrdered && Marker->Number != 1)))
	{
		return false;
	}
	Line = Rest;
	const int32 NumBlanks = Line.IsBlank() || Line.GetIndent() > CodeIndent ? 1 : Line.GetIndent();
	Line.SkipColumns(NumBlanks);
	CloseUnmatched();
	NoteChild(&Marker.GetValue());
	const int32 List = Open.Last().Items;
	FOpenContainer& Item = Open.AddDefaulted_GetRef();
	Item.Marker = MarkerText;
	Item.Indent = MarkerIndent + Marker->Length + NumBlanks;
	Item.List = List;
	NumMatched = Open.Num();
	return true;
}

bool FReader::BeginLeaf(FLine& Line)
{
	FStringView HeadingText;
	if (const int32 Level = ReadHeading(Line, HeadingText))
	{
		FMarkdownBlock& Heading = AddBlock(EMarkdownBlock::Heading);
		Heading.Level = Level;
		Heading.Text = ReadText(HeadingText);
		return true;
	}
	if (const TOptional<FFence> Begin = ReadFence(Line))
	{
		AddBlock(EMarkdownBlock::Code).Language = Begin->Language;
		Fence = Begin.GetValue();
		OpenBlock = EOpenBlock::Fenced;
		return true;
	}
	if (IsAfterParagraph() && EndParagraph(Line))
	{
		return true;
	}
	if (IsRule(Line))
	{
		AddBlock(EMarkdownBlock::Rule);
		return true;
	}
	return false;
}

/** A line of "=" or "-" makes the paragraph above it a heading. */
bool FReader::EndParagraph(const FLine& Line)
{
	const int32 Level = ReadUnderline(Line);
	if (Level == 0)
	{
		return false;
	}
	Blocks.Last().Kind = EMarkdownBlock::Heading;
	Blocks.Last().Level = Level;
	CloseBlock();
	return true;
}

/** A line of dashes and bars makes the one line above it the heading of a table. */
bool FReader::BeginTable(const FLine& Line)
{
	if (NumTextLines != 1)
	{
		return false;
	}
	const TArray<EMarkdownAlignment> Columns = ReadColumns(Line);
	const TArray<FString> Heading = SplitCells(Text, MaxColumns + 1);
	if (Columns.IsEmpty() || Heading.Num() != Columns.Num())
	{
		return false;
	}
	Blocks.Last().Kind = EMarkdownBlock::Table;
	Blocks.Last().Table.Columns = Columns;
	AddRow(Heading);
	OpenBlock = EOpenBlock::Table;
	Text.Reset();
	NumTextLines = 0;
	return true;
}

void FReader::AddRow(const TArray<FString>& Cells)
{
	NumParts += Blocks.Last().Table.Columns.Num(); // also where a row has fewer cells
	TArray<FMarkdownText>& Row = Blocks.Last().Table.Rows.AddDefaulted_GetRef();
	for (const FString& Cell : Cells)
	{
		Row.Add(ReadText(Cell));
	}
}

FMarkdownText FReader::ReadText(FStringView Inlines)
{
	FMarkdownText Read = ReadInlines(Inlines);
	NumParts += Read.Num();
	return Read;
}

void FReader::NoteBlank()
{
	// Inside a quote, a blank line is nothing to what is around it.
	for (int32 Index = NumMatched - 1; Index >= 0; --Index)
	{
		Open[Index].bAfterBlank = true;
		if (Open[Index].bQuote)
		{
			return;
		}
	}
}

/** Whatever follows a blank line inside one of a container's blocks does not part the container's blocks. */
void FReader::NoteGoesOn(int32 NumContainers)
{
	for (int32 Index = 0; Index < NumContainers; ++Index)
	{
		Open[Index].bAfterBlank = false;
	}
}

/** The innermost container is about to get a block, a container, or an item. */
void FReader::NoteChild(const FListMarker* Item)
{
	NoteGoesOn(Open.Num() - 1);
	FOpenContainer& Parent = Open.Last();
	const bool bSameList = Item && Parent.Items != INDEX_NONE && Lists[Parent.Items].Delimiter == Item->Delimiter;
	const int32 PartedList = bSameList ? Parent.Items : Parent.List;
	if (Parent.bAfterBlank && Parent.bHasBlocks && PartedList != INDEX_NONE)
	{
		Lists[PartedList].bLoose = true;
	}
	Parent.bAfterBlank = false;
	Parent.bHasBlocks = true;
	if (!bSameList)
	{
		Parent.Items = Item ? Lists.Add({ Item->Delimiter }) : INDEX_NONE;
	}
}

/** Closes what the line does not go on with. */
void FReader::CloseUnmatched()
{
	CloseBlock();
	while (Open.Num() > NumMatched)
	{
		if (!Open.Last().Marker.IsEmpty())
		{
			EmitBlock(EMarkdownBlock::Paragraph);
		}
		Open.Pop();
	}
}

void FReader::CloseBlock()
{
	if (OpenBlock == EOpenBlock::Paragraph)
	{
		Blocks.Last().Text = ReadText(FStringView(Text).TrimStartAndEnd());
		Text.Reset();
		NumTextLines = 0;
	}
	OpenBlock = EOpenBlock::None;
	BlankCode.Reset();
}

FMarkdownBlock& FReader::AddBlock(EMarkdownBlock Kind)
{
	CloseUnmatched();
	NoteChild(nullptr);
	return EmitBlock(Kind);
}

/** In what is open now. */
FMarkdownBlock& FReader::EmitBlock(EMarkdownBlock Kind)
{
	++NumParts;
	FMarkdownBlock& Block = Blocks.AddDefaulted_GetRef();
	Block.Kind = Kind;
	Block.Containers.Reserve(Open.Num() - 1);
	for (int32 Index = 1; Index < Open.Num(); ++Index)
	{
		Block.Containers.Add({ Open[Index].bQuote, MoveTemp(Open[Index].Marker) });
		Open[Index].Marker.Reset();
	}
	ListOfBlock.Add(Open.Last().List);
	return Block;
}

TArray<FMarkdownBlock> FReader::Finish(FStringView Rest)
{
	NumMatched = 1;
	CloseUnmatched();
	if (!Rest.IsEmpty())
	{
		EmitBlock(EMarkdownBlock::Code).Code = FString(Rest);
	}
	for (int32 Index = 0; Index < Blocks.Num(); ++Index)
	{
		Blocks[Index].bTight = ListOfBlock[Index] != INDEX_NONE && !Lists[ListOfBlock[Index]].bLoose;
	}
	return MoveTemp(Blocks);
}
}

TArray<FMarkdownBlock> Read(FStringView Source)
{
	FReader Reader;
	int32 Begin = 0;
	while (Begin < Source.Len() && !Reader.IsFull())
	{
		int32 End = Begin;
		while (End < Source.Len() && Source[End] != TEXT('\n') && Source[End] != TEXT('\r'))
		{
			++End;
		}
		Reader.AddLine(Source.Mid(Begin, End - Begin));
		const bool bBoth = End + 1 < Source.Len() && Source[End] == TEXT('\r') && Source[End + 1] == TEXT('\n');
		Begin = End + (bBoth ? 2 : 1);
	}
	return Reader.Finish(Source.RightChop(Begin));
}
}
