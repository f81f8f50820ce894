#pragma once

#include "Agent/FileHistory.h"
#include "CoreMinimal.h"

/** A file as it is, or as it is to be. */
struct FKestrelFileSnapshot
{
	/** What is on the disk now. */
	static FKestrelFileSnapshot OnDisk(const FString& FilePath);
	/** Where undoing or redoing an entry leads to. */
	static FKestrelFileSnapshot BeforeChange(const FFileHistoryEntry& Entry);
	static FKestrelFileSnapshot AfterChange(const FFileHistoryEntry& Entry);

	/** How one gets from here to there; `None` when one is there already. */
	EFileActionType ActionTo(const FKestrelFileSnapshot& Other) const;

	bool bExists = false;
	/** On the disk, and its content is not known: nothing can be recorded of it. */
	bool bIsUnreadable = false;
	FString Content;
	// As in FFileHistoryEntry:
	TArray<uint8> Bytes;
	int32 Mode = -1;
	FString LinkTarget;
	/** Of a link that was deleted: what it led to was not, and has a text of its own. */
	bool bIsLinkAlone = false;
};

namespace KestrelFileSnapshot
{
/**
 * Fills in what the text alone would not bring back of the file on the disk: its bytes, mode and link.
 *
 * @param OutPlainAscii  the file's bytes, when they are the entry's text in plain ASCII
 * @return false when the file is there and cannot be read; one with another text than the entry has adds no bytes
 */
bool FillFromDisk(const FString& FullPath, FFileHistoryEntry& Entry, TArray<uint8>& OutPlainAscii);

/**
 * Puts a link, or the place for a file, where a file or another link is.
 *
 * @param OldTarget  where a link leads that is there; empty for a file, or nothing
 * @param NewTarget  empty for the place for a file
 */
bool ReplaceLink(const FString& FilePath, const FString& OldTarget, const FString& NewTarget);

/** How many folders above a file would have to be made for it. */
int32 CountMissingFolders(const FString& FilePath);
/** Removes that many folders above a file, as far as they are empty. */
void RemoveEmptyFolders(const FString& FilePath, int32 NumFolders);
}
