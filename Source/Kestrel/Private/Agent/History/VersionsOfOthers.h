#pragma once

#include "Agent/FileHistory.h"
#include "CoreMinimal.h"

/** What others write to a file that a conversation has changed: noticed by the marks, and kept before it would go. */
namespace KestrelVersionsOfOthers
{
/** What is on the disk now. */
FKestrelFileMark MarkOf(const FString& FullPath);

/** Whether somebody else has changed a file since it was left so; not when that is not known. */
bool IsChangedSince(const FString& FullPath, const TOptional<FKestrelFileMark>& Left);

/**
 * How the conversation has left a file, in an entry that may be about another path to it.
 *
 * @param EntryPath  what the entry is recorded under
 * @param RealPath   of FilePath; empty for one that cannot be resolved, which only its own entry is about
 * @return null when the entry is about another file
 */
TOptional<FKestrelFileMark>* FindLeft(
	FFileHistoryEntry& Entry, const FString& EntryPath, const FString& FilePath, const FString& RealPath);
/** Whether an entry was of a link, and there is none now. */
bool IsLinkGone(const FFileHistoryEntry& Entry, const FString& EntryPath);

/** @return false when there is a file, and no copy of it could be kept */
bool KeepCopy(const FString& FullPath, TArray<FString>& OutCopies);

/**
 * A text that somebody else has written since the conversation's last change must not go with undo and redo.
 *
 * @param Left  how the conversation has left the file
 * @return false when there is one, and no copy of it could be kept
 */
bool KeepIfChanged(const FString& FullPath, const TOptional<FKestrelFileMark>& Left, const FFileHistoryEntry& Entry);

/** Tells of the copies that were made between two changes. */
void NameKeptCopies(const FString& FullPath, const FFileHistoryEntry& Entry);

/**
 * The same before a step of undo or redo, which a link that it replaces does not concern: what that leads to stays.
 * Copies that were made between two changes are named.
 *
 * @param LinkNow  where the path leads if it is a link now
 */
bool KeepBeforeStep(const FString& FullPath, const FString& LinkNow, const FFileHistoryEntry& Entry);
}
