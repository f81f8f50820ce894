#include "Widget/LineDiff.h"

#include "Algo/Reverse.h"

namespace KestrelLineDiff
{
constexpr int32 WordBits = 64;
/** So many unchanged lines in a row still belong to the chunk before them. */
constexpr int32 MaxUnchangedInRow = 6;

/** The lines of two texts as numbers: equal lines, but for letter case, have the same. */
struct FSymbols
{
	FSymbols(const TArray<FString>& OldLines, const TArray<FString>& NewLines)
		: Old(Number(OldLines))
		, New(Number(NewLines))
	{
	}

	TArray<int32> Number(const TArray<FString>& Lines)
	{
		TArray<int32> Symbols;
		Symbols.Reserve(Lines.Num());
		for (const FString& Line : Lines)
		{
			const int32* Known = Numbers.Find(Line);
			Symbols.Add(Known ? *Known : Numbers.Add(Line, Numbers.Num()));
		}
		return Symbols;
	}

	TMap<FString, int32> Numbers;
	TArray<int32> Old;
	TArray<int32> New;
};

/** Where each symbol stands among the new lines. Common ones have their places as bits, rare ones as numbers. */
class FPlaces
{
public:
	FPlaces(const TArray<int32>& New, int32 NumNew, int32 NumSymbols)
		: NumWords((NumNew + WordBits - 1) / WordBits)
		, Scratch(MakeEmptyRow())
	{
		Begin.SetNumZeroed(NumSymbols + 1);
		for (int32 Index = 0; Index < NumNew; ++Index)
		{
			++Begin[New[Index] + 1];
		}
		for (int32 Symbol = 0; Symbol < NumSymbols; ++Symbol)
		{
			Begin[Symbol + 1] += Begin[Symbol];
		}
		Places.SetNumZeroed(NumNew);
		TArray<int32> Next = Begin;
		for (int32 Index = 0; Index < NumNew; ++Index)
		{
			Places[Next[New[Index]]++] = Index;
		}
		KeepCommonOnes(NumSymbols);
	}

	/** The bits of a symbol's places, good until the next call. */
	const uint64* BitsOf(int32 Symbol)
	{
		if (const int32* Common = CommonRows.Find(Symbol))
		{
			return CommonBits.GetData() + static_cast<int64>(*Common) * NumWords;
		}
		SetBits(Scratch.GetData(), LastRare, false);
		LastRare = Symbol;
		SetBits(Scratch.GetData(), LastRare, true);
		return Scratch.GetData();
	}

	const int32 NumWords;

private:
	TArray<uint64> MakeEmptyRow() const
	{
		TArray<uint64> Row;
		Row.SetNumZeroed(NumWords);
		return Row;
	}

	/** There cannot be many symbols with more places than a row has words. */
	void KeepCommonOnes(int32 NumSymbols)
	{
		for (int32 Symbol = 0; Symbol < NumSymbols; ++Symbol)
		{
			if (Begin[Symbol + 1] - Begin[Symbol] > NumWords)
			{
				const int32 Row = CommonRows.Num();
				CommonRows.Add(Symbol, Row);
				CommonBits.SetNumZeroed((Row + 1) * NumWords);
				SetBits(CommonBits.GetData() + static_cast<int64>(Row) * NumWords, Symbol, true);
			}
		}
	}

	void SetBits(uint64* Row, int32 Symbol, bool bValue) const
	{
		if (Symbol == INDEX_NONE)
		{
			return;
		}
		for (int32 Index = Begin[Symbol]; Index < Begin[Symbol + 1]; ++Index)
		{
			const uint64 Bit = 1ull << (Places[Index] % WordBits);
			uint64& Word = Row[Places[Index] / WordBits];
			Word = bValue ? Word | Bit : Word & ~Bit;
		}
	}

	TArray<int32> Begin;  // by symbol: where its places begin
	TArray<int32> Places; // by symbol, ascending
	TMap<int32, int32> CommonRows;
	TArray<uint64> CommonBits;
	TArray<uint64> Scratch; // the bits of LastRare
	int32 LastRare = INDEX_NONE;
};

/**
 * The table of lengths, a bit for each cell: 0 where the length of cell (i, j) is one more than that of cell (i, j -
 * 1). Rows are asked for from the last to the first.
 */
class FLengthTable
{
public:
	FLengthTable(const TArray<int32>& InOld, int32 InNumOld, FPlaces& InPlaces)
		: Old(InOld)
		, NumOld(InNumOld)
		, Places(InPlaces)
		, NumWords(InPlaces.NumWords)
		, BlockRows(FMath::Max(1, FMath::CeilToInt(FMath::Sqrt(static_cast<float>(InNumOld)))))
	{
		const int32 NumBlocks = (NumOld + BlockRows - 1) / BlockRows;
		BlockStarts.SetNumUninitialized(FMath::Max(NumBlocks, 1) * NumWords);
		Block.SetNumUninitialized((BlockRows + 1) * NumWords);
		for (uint64& Word : BlockStarts)
		{
			Word = ~0ull;
		}
		for (int32 Index = 0; Index + 1 < NumBlocks; ++Index)
		{
			WorkOutBlock(Index);
			FMemory::Memcpy(StartOf(Index + 1), RowInBlock(BlockRows), NumWords * sizeof(uint64));
		}
	}

	/** Whether the length of cell (OldIndex, NewIndex), both from 1, is greater than that of the cell before it. */
	bool Grows(int32 OldIndex, int32 NewIndex)
	{
		const int32 Wanted = (OldIndex - 1) / BlockRows;
		if (Wanted != CurrentBlock)
		{
			WorkOutBlock(Wanted);
		}
		const uint64* Row = RowInBlock(OldIndex - Wanted * BlockRows);
		return (Row[(NewIndex - 1) / WordBits] >> ((NewIndex - 1) % WordBits) & 1) == 0;
	}

private:
	uint64* StartOf(int32 BlockIndex) { return BlockStarts.GetData() + BlockIndex * NumWords; }
	uint64* RowInBlock(int32 Row) { return Block.GetData() + Row * NumWords; }

	void WorkOutBlock(int32 BlockIndex)
	{
		CurrentBlock = BlockIndex;
		FMemory::Memcpy(RowInBlock(0), StartOf(BlockIndex), NumWords * sizeof(uint64));
		const int32 First = BlockIndex * BlockRows;
		for (int32 Row = 0; Row < BlockRows && First + Row < NumOld; ++Row)
		{
			NextRow(RowInBlock(Row), Places.BitsOf(Old[First + Row]), RowInBlock(Row + 1));
		}
	}

	/** V' = (V + (V & P)) | (V & ~P), the sum carried from word to word. */
	void NextRow(const uint64* Row, const uint64* Bits, uint64* OutRow) const
	{
		uint64 Carry = 0;
		for (int32 Index = 0; Index < NumWords; ++Index)
		{
			const uint64 Value = Row[Index];
			const uint64 Sum = Value + Carry;
			const uint64 Matches = Value & Bits[Index];
			const uint64 Total = Sum + Matches;
			Carry = (Sum < Carry ? 1 : 0) | (Total < Matches ? 1 : 0);
			OutRow[Index] = Total | (Value & ~Bits[Index]);
		}
	}

	const TArray<int32>& Old;
	const int32 NumOld;
	FPlaces& Places;
	const int32 NumWords;
	const int32 BlockRows;
	TArray<uint64> BlockStarts; // the row before each block
	TArray<uint64> Block;       // the row before the current block, and its rows
	int32 CurrentBlock = INDEX_NONE;
};

/**
 * The lines of two texts that the table is about: those that stand in the other text as well, less those that both
 * begin with. No others can make a longest common subsequence longer or shorter, so the table tells the same of them.
 */
class FTableLines
{
public:
	/** Both as symbols, less the lines that both end with. */
	FTableLines(TArrayView<const int32> Old, TArrayView<const int32> New, int32 NumSymbols)
		: OldKept(Keep(Old, MarkSymbols(New, NumSymbols), NumOldKept))
		, NewKept(Keep(New, MarkSymbols(Old, NumSymbols), NumNewKept))
	{
		while (NumCommon < OldKept.Num() && NumCommon < NewKept.Num() && OldKept[NumCommon] == NewKept[NumCommon])
		{
			++NumCommon;
		}
		OldKept.RemoveAt(0, NumCommon);
		NewKept.RemoveAt(0, NumCommon);
		if (!OldKept.IsEmpty() && !NewKept.IsEmpty())
		{
			Places.Emplace(NewKept, NewKept.Num(), NumSymbols);
			Table.Emplace(OldKept, OldKept.Num(), *Places);
		}
	}
	UE_NONCOPYABLE(FTableLines)

	/** As FLengthTable::Grows, for lines of the whole texts. */
	bool Grows(int32 OldIndex, int32 NewIndex)
	{
		const int32 OldRow = NumOldKept[OldIndex];
		const int32 NewColumn = NumNewKept[NewIndex];
		if (OldRow == 0 || NewColumn == NumNewKept[NewIndex - 1])
		{
			return false; // a line that is in one text only
		}
		if (NewColumn <= NumCommon)
		{
			return OldRow >= NewColumn;
		}
		return OldRow > NumCommon && Table.IsSet() && Table->Grows(OldRow - NumCommon, NewColumn - NumCommon);
	}

private:
	static TArray<bool> MarkSymbols(TArrayView<const int32> Symbols, int32 NumSymbols)
	{
		TArray<bool> Marks;
		Marks.SetNumZeroed(NumSymbols);
		for (const int32 Symbol : Symbols)
		{
			Marks[Symbol] = true;
		}
		return Marks;
	}

	/** @param OutCounts  how many are kept of the first so many lines */
	static TArray<int32> Keep(TArrayView<const int32> Symbols, const TArray<bool>& IsInOther, TArray<int32>& OutCounts)
	{
		TArray<int32> Kept;
		Kept.Reserve(Symbols.Num());
		OutCounts.Reserve(Symbols.Num() + 1);
		OutCounts.Add(0);
		for (const int32 Symbol : Symbols)
		{
			if (IsInOther[Symbol])
			{
				Kept.Add(Symbol);
			}
			OutCounts.Add(Kept.Num());
		}
		return Kept;
	}

	TArray<int32> NumOldKept; // of the first so many lines
	TArray<int32> NumNewKept;
	TArray<int32> OldKept;
	TArray<int32> NewKept;
	int32 NumCommon = 0; // of the kept lines, at the beginning
	TOptional<FPlaces> Places;
	TOptional<FLengthTable> Table;
};

/** Walks the table back and collects the lines, the last first. */
class FWalk
{
public:
	FWalk(const TArray<FString>& InOldLines, const TArray<FString>& InNewLines)
		: OldLines(InOldLines)
		, NewLines(InNewLines)
		, Symbols(InOldLines, InNewLines)
		, OldIndex(InOldLines.Num())
		, NewIndex(InNewLines.Num())
	{
		Lines.Reserve(OldIndex + NewIndex);
	}

	TArray<FDiffLine> Run()
	{
		// Equal lines at the end need no table.
		TakeUnchanged();
		if (OldIndex > 0 && NewIndex > 0)
		{
			FTableLines Table(TArrayView<const int32>(Symbols.Old.GetData(), OldIndex),
				TArrayView<const int32>(Symbols.New.GetData(), NewIndex), Symbols.Numbers.Num());
			while (OldIndex > 0 && NewIndex > 0)
			{
				Table.Grows(OldIndex, NewIndex) ? TakeRemoved() : TakeAdded();
				TakeUnchanged();
			}
		}
		while (NewIndex > 0)
		{
			TakeAdded();
		}
		while (OldIndex > 0)
		{
			TakeRemoved();
		}
		Algo::Reverse(Lines);
		return MoveTemp(Lines);
	}

private:
	void TakeUnchanged()
	{
		while (OldIndex > 0 && NewIndex > 0 && Symbols.Old[OldIndex - 1] == Symbols.New[NewIndex - 1])
		{
			Lines.Add({ OldLines[OldIndex - 1], EDiffLineType::Unchanged, OldIndex, NewIndex });
			--OldIndex;
			--NewIndex;
		}
	}

	void TakeAdded()
	{
		Lines.Add({ NewLines[NewIndex - 1], EDiffLineType::Added, 0, NewIndex });
		--NewIndex;
	}

	void TakeRemoved()
	{
		Lines.Add({ OldLines[OldIndex - 1], EDiffLineType::Removed, OldIndex, 0 });
		--OldIndex;
	}

	const TArray<FString>& OldLines;
	const TArray<FString>& NewLines;
	FSymbols Symbols;
	int32 OldIndex; // lines of the old text that are still to be walked
	int32 NewIndex;
	TArray<FDiffLine> Lines;
};
}

TArray<FString> KestrelLineDiff::SplitIntoLines(const FString& Text)
{
	TArray<FString> Lines;
	// The parser takes a text that has been emptied, but keeps its memory, for one empty line.
	if (!Text.IsEmpty())
	{
		constexpr bool bCullEmpty = false;
		Text.ParseIntoArrayLines(Lines, bCullEmpty);
	}
	return Lines;
}

TArray<FDiffLine> KestrelLineDiff::Compare(const TArray<FString>& OldLines, const TArray<FString>& NewLines)
{
	return FWalk(OldLines, NewLines).Run();
}

TArray<FDiffChunk> KestrelLineDiff::MakeChunks(TArray<FDiffLine> Lines)
{
	TArray<FDiffChunk> Chunks;
	FDiffChunk Current;
	int32 NumUnchanged = 0;
	for (FDiffLine& Line : Lines)
	{
		NumUnchanged = Line.Type == EDiffLineType::Unchanged ? NumUnchanged + 1 : 0;
		if (NumUnchanged > MaxUnchangedInRow && !Current.Lines.IsEmpty())
		{
			Chunks.Add(MoveTemp(Current));
			Current = FDiffChunk();
			NumUnchanged = 0;
		}
		Current.Lines.Add(MoveTemp(Line));
	}
	if (!Current.Lines.IsEmpty())
	{
		Chunks.Add(MoveTemp(Current));
	}
	return Chunks;
}

namespace KestrelLineDiff
{
bool IsSpaceOrTab(TCHAR Character)
{
	return Character == TEXT(' ') || Character == TEXT('\t');
}

/** More than any indentation. */
constexpr int32 LongestRunShown = 32;

FString NameLongRuns(const FString& Line)
{
	FString Result;
	for (int32 Index = 0; Index < Line.Len();)
	{
		int32 End = Index;
		while (End < Line.Len() && IsSpaceOrTab(Line[End]))
		{
			++End;
		}
		if (End - Index > LongestRunShown)
		{
			Result += FString::Printf(TEXT(" \u27E8%d spaces\u27E9 "), End - Index);
			Index = End;
			continue;
		}
		End = FMath::Max(End, Index + 1);
		Result.Append(*Line + Index, End - Index);
		Index = End;
	}
	return Result;
}

TArray<FString> FoldLine(const FString& Line, int32 NumColumns)
{
	const FString Named = NameLongRuns(Line);
	TArray<FString> Pieces;
	int32 Begin = 0;
	do
	{
		int32 End = FMath::Min(Begin + NumColumns, Named.Len());
		// Both halves of a surrogate pair stay together.
		const bool bSplitsPair = End < Named.Len() && Named[End] >= 0xDC00 && Named[End] <= 0xDFFF;
		End -= bSplitsPair && End - 1 > Begin ? 1 : 0;
		Pieces.Add((Begin > 0 ? TEXT("\u21AA ") : TEXT("")) + Named.Mid(Begin, End - Begin));
		Begin = End;
	}
	while (Begin < Named.Len());
	return Pieces;
}
}
