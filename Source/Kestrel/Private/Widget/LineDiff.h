#pragma once

#include "CoreMinimal.h"

/** In which of the two texts a line stands. */
enum class EDiffLineType : int32
{
	Unchanged = 0,
	Added = 1,
	Removed = 2,
};

/** A line of the difference between two texts. */
struct FDiffLine
{
	FString Content; // without its line ending; of an unchanged line, as the old text has it
	EDiffLineType Type = EDiffLineType::Unchanged;
	int32 OldLineNumber = 0; // from 1; 0 for an added line
	int32 NewLineNumber = 0; // from 1; 0 for a removed line
};

/** Lines of a difference that are shown together. */
struct FDiffChunk
{
	TArray<FDiffLine> Lines;
};

/** What two texts have in common, line by line. */
namespace KestrelLineDiff
{
/** Blank lines count; no text is no line, and a line break at the end begins another. */
KESTREL_API TArray<FString> SplitIntoLines(const FString& Text);

/**
 * All lines of both texts in order: the longest common subsequence unchanged, and of what was replaced the removed
 * lines before the added ones. Letter case is ignored.
 *
 * The result is that of the textbook's table of lengths, walked back from its last cell with "equal" before "added"
 * before "removed". Of the table only one bit a cell is worked out, a word of cells at a time (H. Hyyrö, "Bit-Parallel
 * LCS-length Computation Revisited", 2004): whether the length grows in that column. Along the walk that is all one has
 * to know. Rows are kept at intervals only and worked out again in between, so N old and M new lines take the memory of
 * about 2 * sqrt(N) * M bits.
 */
KESTREL_API TArray<FDiffLine> Compare(const TArray<FString>& OldLines, const TArray<FString>& NewLines);

/**
 * A line as whole lines of at most NumColumns characters, for where somebody decides: nothing may lie out of view. Long
 * runs of white space, behind which the rest of a line could hide, are named by their length instead.
 */
KESTREL_API TArray<FString> FoldLine(const FString& Line, int32 NumColumns);

/** Groups the lines of a difference: more than six unchanged ones in a row end a chunk. No line is left out. */
KESTREL_API TArray<FDiffChunk> MakeChunks(TArray<FDiffLine> Lines);
}
