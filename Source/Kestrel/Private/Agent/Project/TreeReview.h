#pragma once

#include "CoreMinimal.h"

class FKestrelSearchReview;

/** What a listing of the project tells of files that rules keep from being read: nothing. */
namespace KestrelTreeReview
{
/**
 * @param Folder  of the tree
 * @param Tree    JSON text, as FFileUtils::GetSubDirectoryStructureAsJsonObject makes it
 * @return the same without files that a rule denies reading, or asks for, and without folders that have no others
 */
FString LeaveOutRestricted(const FString& Folder, const FString& Tree);
/** @param FullPath  of a file, or of a folder, which is judged by what may lie in it */
bool MayTell(const FKestrelSearchReview& Review, const FString& FullPath, bool bIsFolder);
}
