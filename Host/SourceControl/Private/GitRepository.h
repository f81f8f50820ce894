#pragma once

#include "CoreMinimal.h"

struct git_index;
struct git_repository;
struct git_tree;

/** What git says of a file. */
enum class EGitFileStatus : uint32
{
	Current = 0, // known, and as it was checked in
	StagedNew = 1 << 0,
	StagedChange = 1 << 1,
	StagedDeletion = 1 << 2,
	Untracked = 1 << 3,
	Changed = 1 << 4,
	Deleted = 1 << 5,
	Ignored = 1 << 6,
	Conflicted = 1 << 7,
	Missing = 1 << 8, // neither on disk nor known
};
ENUM_CLASS_FLAGS(EGitFileStatus)

/**
 * The git repository whose work tree is one folder.
 *
 * It is opened for one job and closed again, so that what other programs do to it in between is seen. The user's and
 * the system's git configuration do not matter. Files are named by absolute paths; every function answers false, with
 * a reason for the user, and leaves everything as it was.
 */
class FGitRepository
{
public:
	explicit FGitRepository(const FString& InWorkTree);
	~FGitRepository();
	UE_NONCOPYABLE(FGitRepository)

	/** Whether a folder says that it is a repository; it may turn out to be a broken one. */
	static bool HasRepository(const FString& WorkTree);

	bool Open(FText& OutError);
	bool GetStatus(const FString& File, EGitFileStatus& OutStatus, FText& OutError);
	/** As "git add": not for ignored files and folders. */
	bool Add(const TArray<FString>& Files, FText& OutError);
	/** As "git rm": also deletes the files. Not for files with changes that would be lost. */
	bool Remove(const TArray<FString>& Files, FText& OutError);
	/** What is checked in comes back; a file that was only added is no longer, and stays on disk. */
	bool Revert(const TArray<FString>& Files, FText& OutError);

private:
	/** Relative to the work tree, in UTF-8 as git has it. */
	struct FPath
	{
		FString File;
		TArray<char> Relative; // ends in a null
		const char* Get() const { return Relative.GetData(); }
	};

	bool MakePath(const FString& File, FPath& OutPath, FText& OutError) const;
	bool MakePaths(const TArray<FString>& Files, TArray<FPath>& OutPaths, FText& OutError) const;
	bool GetStatus(const FPath& Path, EGitFileStatus& OutStatus, FText& OutError);
	bool CheckCanAdd(const FPath& Path, FText& OutError);
	bool CheckCanRemove(const FPath& Path, FText& OutError);
	bool ReadIndex(FText& OutError);
	bool WriteIndex(FText& OutError);
	bool RestoreEntry(git_tree* Tree, const FPath& Path, FText& OutError);
	bool CheckOutFromIndex(const TArray<FPath>& Paths, FText& OutError);

	const FString WorkTree; // absolute
	git_repository* Repository = nullptr;
	git_index* Index = nullptr;
};
