#pragma once

#include "CoreMinimal.h"
#include "Misc/DateTime.h"

struct FKestrelTaskControl;

/** What a listing of the project keeps: extensions without a dot, and names of single folders. */
struct FKestrelTreeFilter
{
	TArray<FString> SupportedExtensions;
	TArray<FString> ExcludedDirs;

	bool operator==(const FKestrelTreeFilter& Other) const
	{
		return SupportedExtensions == Other.SupportedExtensions && ExcludedDirs == Other.ExcludedDirs;
	}
};

/**
 * The tree of a folder as text: what FFileUtils::BuildJsonTree gives without asset classes. It stays true for as long
 * as no folder in it has changed; a folder changes when something in it comes, goes or gets another name, which is all
 * that the tree tells.
 */
struct FKestrelTreeText
{
	/** A folder that was walked, and when it had changed last. */
	struct FStamp
	{
		FString Path;
		FDateTime Time;
	};

	/** Looks at each folder. */
	bool IsFresh(const FString& WantedPath, const FKestrelTreeFilter& WantedFilter) const;

	FString Path;
	FKestrelTreeFilter Filter;
	TArray<FStamp> Stamps;
	FString Text;       // JSON, without white space
	TArray<uint8> Utf8; // the same as it goes over the wire
	/** Whether the stamps would tell of a change. */
	bool bCanTellChanges = false;
};

/** Keeps the last tree for the next request. Game thread only. */
class KESTREL_API FKestrelKeptTree
{
public:
	static FKestrelKeptTree& Get();

	/** Null when there is none. */
	const TSharedPtr<const FKestrelTreeText>& GetTree() const { return Tree; }
	void Keep(const TSharedRef<const FKestrelTreeText>& Made) { Tree = Made; }
	/** The next tree is made anew. */
	void Forget() { Tree.Reset(); }

private:
	TSharedPtr<const FKestrelTreeText> Tree;
};

namespace KestrelTree
{
/**
 * Makes the tree of a folder, on any thread.
 *
 * @param Kept     an earlier one, which is given back when it is still true; may be null
 * @param Control  of the task that this is part of: NumDone counts the folders; a canceled task gets part of the tree
 */
KESTREL_API TSharedRef<const FKestrelTreeText> MakeText(const TSharedPtr<const FKestrelTreeText>& Kept,
	const FString& Path, const FKestrelTreeFilter& Filter, FKestrelTaskControl& Control);

/**
 * Whether a tree goes on below a folder; what lies deeper than a document is nested is left out. Trees are written
 * recursively, and stacks of worker threads are small.
 *
 * @param Depth  0 for the folder whose tree it is
 */
bool MayHaveFolders(int32 Depth);

/** An entry of the excluded folders as it is compared: without slashes and spaces around it. */
FString CleanExcludedEntry(const FString& Entry);
/**
 * The part of a path that exclusion looks at. The names of the folders that the project itself lies in say nothing
 * about a folder of the project.
 */
FString ToComparedPath(const FString& Path);
}
