#pragma once

#include "CoreMinimal.h"

/**
 * A copy of a file while it is being rewritten, since a write that fails leaves half a file.
 *
 * The copy lies in Saved/Kestrel/Rescue of the project: a folder of its own with the file, and beside it a text file
 * that says where it came from. It goes when the object does. What an editor that ended in between has left behind is
 * found at the next start.
 */
class KESTREL_API FFileRescue
{
public:
	/** A copy that was left behind. Paths are absolute. */
	struct FLeftCopy
	{
		FString Copy;
		FString Original;
	};

	/** @param FullPath  absolute; a file that does not exist, or cannot be read, is not kept */
	explicit FFileRescue(const FString& FullPath);
	~FFileRescue();
	UE_NONCOPYABLE(FFileRescue)

	/** False when there is no copy to fall back on. */
	bool IsKept() const { return bKept; }

	/**
	 * Lets the copy outlive this object, in Saved/Kestrel/Kept.
	 *
	 * @return where it is; empty when there is none
	 */
	FString Keep();

	/** Puts the copy in the file's place, or leaves it where it is when even that fails. */
	void PutBack();

	/**
	 * The copies left behind by an earlier run of the editor whose original has another content now, or none. Those
	 * that have become needless are removed.
	 */
	static TArray<FLeftCopy> FindLeftCopies();
	/** Whether a path, which may be anybody's, is that of a copy that Keep() has made and that is still there. */
	static bool IsKeptCopy(const FString& Path);
	/** Removes kept copies that are older than 30 days. */
	static void RemoveOldKept();

private:
	void Remove();

	const FString Original;
	const FString Folder; // with the copy; "<Folder>.txt" names the original
	bool bKept = false;
};
