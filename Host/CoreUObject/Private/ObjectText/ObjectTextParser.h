#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/** One "Begin Object ... End Object", without what is nested in it. */
struct FObjectRecord
{
	struct FLine
	{
		FStringView Text;
		int32 Number; // in the file, from 1
	};

	FString ClassPath;
	FString Name;
	FString Flags; // names, separated by commas
	int32 Parent = INDEX_NONE;
	int32 LineNumber = 0;
	TArray<FLine> Lines; // of properties; they point into the text that was parsed
};

/** What is wrong with a line. */
struct FObjectTextProblem
{
	int32 LineNumber = 0;
	FString Text;
};

/** Parts a text into its objects, an outer before those in it. What makes no sense is left out and told of. */
class FObjectTextParser
{
public:
	// Objects lie three or four deep in each other; the stack of the program that walks them is the limit.
	static constexpr int32 MaxDepth = 64;
	static constexpr int32 MaxObjects = 1000000;

	/** @param FirstLineNumber  of the text in its file */
	FObjectTextParser(FStringView Text, int32 FirstLineNumber);

	TArray<FObjectRecord> Objects;
	TArray<FObjectTextProblem> Problems;

private:
	void ReadLine(FStringView Line);
	void Begin(FStringView Rest);

	TArray<int32> Open; // indices of the objects around the present line; none for one that is left out
	int32 LineNumber;
};
