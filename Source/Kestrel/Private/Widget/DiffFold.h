#pragma once

#include "CoreMinimal.h"
#include "Misc/Optional.h"
#include "Widget/LineDiff.h"

/** Lines of a difference that are all shown, or all folded away behind their number. */
struct FDiffSegment
{
	bool bFolded = false;
	int32 NumChanges = 0; // lines; among folded ones only where there are more changes than are shown
	FDiffChunk Chunk;
};

/** What two versions of a line do not have in common, as a part of each: UTF-16 units, the end excluded. */
struct FChangedPart
{
	int32 Begin = 0;
	int32 OldEnd = 0;
	int32 NewEnd = 0;
};

/** UTF-16 units of a line, the end excluded. */
struct FTextPart
{
	int32 Begin = 0;
	int32 End = 0;
};

namespace KestrelDiffFold
{
/** Unchanged lines that are shown before and after a change. */
constexpr int32 NumContextLines = 3;
/** Fewer are not folded: the fold would take as much room. */
constexpr int32 MinFoldedLines = 3;

/** Changes with lines around them; what comes after the last of them is one fold. Each is some widgets. */
constexpr int32 MaxShownSegments = 200;

/** Folds unchanged lines that are far from any change. No line is left out, and neighbours differ in bFolded. */
KESTREL_API TArray<FDiffSegment> Split(const TArray<FDiffChunk>& Chunks);

/** @return not set if the versions have too little in common to be read side by side, or nothing that differs */
KESTREL_API TOptional<FChangedPart> FindChangedPart(const FString& Old, const FString& New);

/** By index of a line in a chunk: the part of it that its counterpart in a changed block does not have. */
KESTREL_API TMap<int32, FTextPart> FindChangedParts(const FDiffChunk& Chunk);
}
