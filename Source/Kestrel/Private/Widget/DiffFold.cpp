#include "Widget/DiffFold.h"

namespace KestrelDiffFold
{
namespace
{
bool IsChange(const FDiffLine& Line)
{
	return Line.Type != EDiffLineType::Unchanged;
}

/** For each line, whether a change is near. */
TArray<bool> FindShownLines(const TArray<const FDiffLine*>& Lines)
{
	TArray<bool> Shown;
	Shown.Init(false, Lines.Num());
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		if (!IsChange(*Lines[Index]))
		{
			continue;
		}
		for (int32 Near = FMath::Max(0, Index - NumContextLines);
			 Near <= FMath::Min(Lines.Num() - 1, Index + NumContextLines); ++Near)
		{
			Shown[Near] = true;
		}
	}
	return Shown;
}

void ShowShortGaps(TArray<bool>& Shown)
{
	for (int32 Begin = 0; Begin < Shown.Num();)
	{
		int32 End = Begin;
		while (End < Shown.Num() && Shown[End] == Shown[Begin])
		{
			++End;
		}
		if (!Shown[Begin] && End - Begin < MinFoldedLines)
		{
			for (int32 Index = Begin; Index < End; ++Index)
			{
				Shown[Index] = true;
			}
		}
		Begin = End;
	}
}

void HideBeyondLimit(TArray<bool>& Shown)
{
	int32 NumSegments = 0;
	for (int32 Index = 0; Index < Shown.Num(); ++Index)
	{
		NumSegments += Shown[Index] && (Index == 0 || !Shown[Index - 1]) ? 1 : 0;
		Shown[Index] = Shown[Index] && NumSegments <= MaxShownSegments;
	}
}

bool IsSurrogate(TCHAR Character)
{
	return Character >= 0xD800 && Character <= 0xDFFF;
}

int32 CountCommonStart(const FString& A, const FString& B)
{
	int32 Count = 0;
	while (Count < A.Len() && Count < B.Len() && A[Count] == B[Count])
	{
		++Count;
	}
	return Count > 0 && IsSurrogate(A[Count - 1]) ? Count - 1 : Count;
}

int32 CountCommonEnd(const FString& A, const FString& B, int32 Start)
{
	int32 Count = 0;
	while (Count < A.Len() - Start && Count < B.Len() - Start && A[A.Len() - 1 - Count] == B[B.Len() - 1 - Count])
	{
		++Count;
	}
	return Count > 0 && IsSurrogate(A[A.Len() - Count]) ? Count - 1 : Count;
}
}

TArray<FDiffSegment> Split(const TArray<FDiffChunk>& Chunks)
{
	TArray<const FDiffLine*> Lines;
	for (const FDiffChunk& Chunk : Chunks)
	{
		for (const FDiffLine& Line : Chunk.Lines)
		{
			Lines.Add(&Line);
		}
	}
	TArray<bool> Shown = FindShownLines(Lines);
	ShowShortGaps(Shown);
	HideBeyondLimit(Shown);
	TArray<FDiffSegment> Segments;
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		if (Segments.IsEmpty() || Segments.Last().bFolded == Shown[Index])
		{
			Segments.AddDefaulted_GetRef().bFolded = !Shown[Index];
		}
		Segments.Last().NumChanges += IsChange(*Lines[Index]) ? 1 : 0;
		Segments.Last().Chunk.Lines.Add(*Lines[Index]);
	}
	return Segments;
}

TOptional<FChangedPart> FindChangedPart(const FString& Old, const FString& New)
{
	const int32 Start = CountCommonStart(Old, New);
	const int32 End = CountCommonEnd(Old, New, Start);
	const int32 NumCommon = Start + End;
	const int32 Longer = FMath::Max(Old.Len(), New.Len());
	// Indentation alone is nothing in common.
	const bool bIndentOnly = End == 0 && Old.Left(Start).TrimStart().IsEmpty();
	const bool bAlike = NumCommon * 3 >= Longer && !bIndentOnly;
	if (!bAlike || NumCommon == Longer)
	{
		return {};
	}
	return FChangedPart{ Start, Old.Len() - End, New.Len() - End };
}

TMap<int32, FTextPart> FindChangedParts(const FDiffChunk& Chunk)
{
	TMap<int32, FTextPart> Parts;
	for (int32 Begin = 0; Begin < Chunk.Lines.Num();)
	{
		int32 FirstAdded = Begin;
		while (FirstAdded < Chunk.Lines.Num() && Chunk.Lines[FirstAdded].Type == EDiffLineType::Removed)
		{
			++FirstAdded;
		}
		int32 End = FirstAdded;
		while (End < Chunk.Lines.Num() && Chunk.Lines[End].Type == EDiffLineType::Added)
		{
			++End;
		}
		for (int32 Index = 0; Begin + Index < FirstAdded && FirstAdded + Index < End; ++Index)
		{
			const TOptional<FChangedPart> Part =
				FindChangedPart(Chunk.Lines[Begin + Index].Content, Chunk.Lines[FirstAdded + Index].Content);
			if (Part.IsSet())
			{
				Parts.Add(Begin + Index, { Part->Begin, Part->OldEnd });
				Parts.Add(FirstAdded + Index, { Part->Begin, Part->NewEnd });
			}
		}
		Begin = FMath::Max(End, Begin + 1);
	}
	return Parts;
}
}
