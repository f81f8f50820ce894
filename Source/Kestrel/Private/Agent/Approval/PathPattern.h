#pragma once

#include "CoreMinimal.h"

/**
 * A pattern for paths: `?` is any character and `*` any number of them within a name, `**` any number of folders. One
 * without a slash is about names, whatever folder they are in; one that ends with a slash about all that is in a
 * folder. Letter case is ignored.
 */
class KESTREL_API FKestrelPathPattern
{
public:
	explicit FKestrelPathPattern(const FString& Pattern);

	/** @param Path  with slashes only */
	bool Matches(const FString& Path) const;
	/** Whether it matches every path: it is empty, or has nothing but asterisks. */
	bool MatchesAll() const { return bMatchesAll; }
	/** Whether it begins at the root of a disk, or of the assets. */
	bool IsAbsolute() const { return bIsAbsolute; }

	/** Whether a name is as a pattern with `?` and `*` says, in time that grows with both lengths only. */
	static bool MatchesName(const FString& Name, const FString& Pattern);

private:
	TArray<FString> Names;
	bool bMatchesAll = false;
	bool bIsAbsolute = false;
};
