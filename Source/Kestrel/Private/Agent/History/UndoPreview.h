#pragma once

#include "Agent/FileHistory.h"
#include "CoreMinimal.h"

/** What an undo or redo of a conversation would touch. Looking changes nothing. */
struct KESTREL_API FKestrelUndoPreview
{
	/**
	 * @param Id        of a conversation; may be empty, which touches nothing
	 * @param MaxFiles  more are not compared with what the conversation has left
	 */
	static FKestrelUndoPreview OfUndo(const FString& Id, int32 MaxFiles = MAX_int32);
	static FKestrelUndoPreview OfRedo(const FString& Id, int32 MaxFiles = MAX_int32);

	/** "3 files, 1 step in the editor", without what there is none of */
	static FText DescribeCounts(int32 Files, int32 Steps);
	FText Describe() const { return DescribeCounts(NumFiles, NumSteps); }
	/** Whether something goes that is not the conversation's. */
	bool TouchesOthers() const { return !OtherSteps.IsEmpty() || !FilesOfOthers.IsEmpty(); }
	/** What goes that is not the conversation's, as sentences; empty for nothing. */
	FText DescribeOthers() const;

	int32 NumFiles = 0;
	/** Steps in the editor that the conversation's tools have made. */
	int32 NumSteps = 0;
	/** Titles of later steps that others have made; they are undone on the way, the last one first. */
	TArray<FString> OtherSteps;
	/** Files that somebody has written to since: a copy of them is kept. Below the project directory, or in full. */
	TArray<FString> FilesOfOthers;

private:
	void LookAtFiles(const FFileHistory::FHistories& Histories, const FString& Id, int32 MaxFiles);
	void LookAtSteps(const FString& Id);
};
