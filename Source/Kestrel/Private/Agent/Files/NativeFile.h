#pragma once

#include "CoreMinimal.h"

/** What the platform knows about a path and the engine's file layer cannot be asked. All paths are absolute. */
namespace KestrelNativeFile
{
/**
 * Whether a path leads to an ordinary file. Pipes, sockets and devices do not: opening a pipe blocks until somebody
 * writes to it, and some devices never end. Links are followed.
 */
bool IsRegularFile(const FString& FullPath);

/**
 * Whether a path is longer than any that the system opens, or has hundreds of folders. To look at each of them, for
 * each of many paths, could take minutes.
 */
bool IsTooLong(const FString& FullPath);

/** Whether a path ends in a link whose target does not exist, or that leads in a circle. */
bool IsDanglingLink(const FString& FullPath);

/**
 * The path with all symbolic links resolved, as far as it exists; the part that does not exist is kept as given.
 *
 * @return an empty string when a link leads in a circle, when the platform cannot resolve the link that the path goes
 *         through, or when the path is too long (IsTooLong)
 */
FString ResolveLinks(const FString& FullPath);
/**
 * The same for a place below a folder, with as few questions to the system as it takes.
 *
 * @param RealFolder  with links resolved
 * @param Below       names with slashes between them
 */
FString ResolveLinksBelow(const FString& RealFolder, const FString& Below);

/** Whether no link lies between a folder and a path in it; both absolute. */
bool IsReachedWithoutLinks(const FString& FullPath, const FString& Folder);

/** What a link leads to, as it is written in the link; empty for what is no link. */
KESTREL_API FString ReadLink(const FString& FullPath);
/** @return false where the platform has no links that a plugin could make */
KESTREL_API bool MakeLink(const FString& FullPath, const FString& Target);

/** The permission bits of a file; -1 where the platform has none. */
KESTREL_API int32 GetMode(const FString& FullPath);
/** Whether the permission bits let nobody but the owner read or write a file; true where the platform has none. */
inline bool IsReadByOwnerOnly(const FString& FullPath)
{
	constexpr int32 OfOthers = 077;
	const int32 Mode = GetMode(FullPath);
	return Mode < 0 || (Mode & OfOthers) == 0;
}
/** A mode of -1 changes nothing. */
void SetMode(const FString& FullPath, int32 Mode);

/**
 * Lets only the user of the editor read a folder or a file. Changes nothing behind a link, nor where the platform has
 * no modes.
 */
KESTREL_API void RestrictToOwner(const FString& FullPath);
}
