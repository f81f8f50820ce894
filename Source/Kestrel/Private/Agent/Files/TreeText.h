#pragma once

#include "CoreMinimal.h"
#include "Misc/DateTime.h"

class FKestrelFolder;

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
 * The tree of a folder as text: what FFileUtils::BuildJsonTree gives without asset classes, written as it is walked,
 * and kept for as long as no folder in it has changed. A folder changes when something in it comes, goes or gets
 * another name, which is all that the tree tells.
 */
class KESTREL_API FKestrelTreeText
{
public:
	static FKestrelTreeText& Get();

	/** @return the JSON text, without white space */
	FString Make(const FString& Path, const FKestrelTreeFilter& Filter);
	/** The next tree is made anew. */
	void Forget() { bIsValid = false; }

private:
	/** A folder that was walked, and when it had changed last. */
	struct FStamp
	{
		FString Path;
		FDateTime Time;
	};

	bool IsFresh(const FString& Path, const FKestrelTreeFilter& Filter) const;
	/** @return the object of a folder; empty when there is nothing in it */
	FString MakeFolder(FKestrelFolder& Folder);

	FString RootPath;
	FKestrelTreeFilter RootFilter;
	TSet<FString> ExcludedNames; // of RootFilter, as they are compared
	TArray<FStamp> Stamps;
	FString Text;
	bool bIsValid = false;
};

namespace KestrelTree
{
/** An entry of the excluded folders as it is compared: without slashes and spaces around it. */
FString CleanExcludedEntry(const FString& Entry);
/**
 * The part of a path that exclusion looks at. The names of the folders that the project itself lies in say nothing
 * about a folder of the project.
 */
FString ToComparedPath(const FString& Path);
}
