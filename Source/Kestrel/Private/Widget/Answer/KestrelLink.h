#pragma once

#include "CoreMinimal.h"

/** Where a piece of an answer leads: to a page, or to a file of the project. */
struct FKestrelLink
{
	/** "http:" or "https:"; empty for a file. */
	FString Address;
	/** The full path of a file that is there; empty for a page. */
	FString File;
	/** In the file, from 1; 0 where none was named. */
	int32 Line = 0;

	bool IsSet() const { return !Address.IsEmpty() || !File.IsEmpty(); }
};

struct FKestrelFoundLink
{
	int32 Begin = 0; // UTF-16 units of the text
	int32 End = 0;
	FKestrelLink Link;
};

/** Finds links in what the service wrote. It can write anything, so only pages and the project's own files are links.
 */
namespace KestrelLinks
{
/** Files that are looked for on the disk for one answer; further names are text. */
constexpr int32 MaxFiles = 200;

/**
 * The link of an address that Markdown gives; not set for addresses of any other kind.
 *
 * @param InOutFilesLeft  that may be looked for
 */
KESTREL_API FKestrelLink FromAddress(const FString& Address, int32& InOutFilesLeft);
/** Addresses of pages, and names of files with or without a line ("Source/Door.cpp:42"), that stand in a text. */
KESTREL_API TArray<FKestrelFoundLink> FindIn(const FString& Text, int32& InOutFilesLeft);
}
