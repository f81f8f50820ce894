#pragma once

#include "CoreMinimal.h"
#include "HAL/ThreadSafeCounter.h"
#include "Templates/UniquePtr.h"

/**
 * A folder on the way of a walk, with the way back to where the walk began: those above have to outlive it. Threads may
 * walk different folders of one walk.
 *
 * Links to folders are followed. A folder that a link leads back to from below itself has nothing in it, since the walk
 * would never end; neither has anything that is reached through links once they have led to very many files, since a
 * few links to each other are enough to make more paths than anyone could walk.
 */
class FKestrelFolder
{
public:
	/** The names in a folder, in the order of the file system. */
	struct FListing
	{
		TArray<FString> Files;
		TArray<FString> Folders;
	};

	/** Where a walk begins. A folder that does not exist has nothing in it. */
	explicit FKestrelFolder(const FString& InPath);
	/** A folder inside another, by its name. */
	FKestrelFolder(FKestrelFolder& InAbove, const FString& Name);
	UE_NONCOPYABLE(FKestrelFolder)

	const FString& GetPath() const { return Path; }
	FListing List();

	/** Empty where links cannot be resolved. @param Name  of a file in the folder */
	FString ResolveFile(const FString& Name) const;
	/** The place itself, absolute; empty where links cannot be resolved. */
	FString GetRealPath() const { return bIsResolved ? RealPath : FString(); }
	/** Whether it may be another place than its path says: where a walk begins, and behind a link. */
	bool MayBeElsewhere() const { return !Above || bIsLink; }

private:
	bool IsLoop() const;

	const FString Path;
	FKestrelFolder* const Above; // null where the walk begins
	FString RealPath;            // absolute, with links resolved where the platform can
	bool bIsResolved = true;     // false where it could not
	bool bIsLink = false;
	bool bIsBelowLink = false;
	FThreadSafeCounter CostBelowLinks; // of the whole walk, in files listed; counted where it begins
};

/**
 * Finds the files below a folder whose names are wanted, folder by folder: in each the files come before those of the
 * folders in it.
 */
class FKestrelFileWalk
{
public:
	using FIsWanted = TFunction<bool(const FString& Name)>;
	/** Whether something may be looked into. RealPath has links resolved; it is empty where they cannot be. */
	using FMayRead = TFunction<bool(const FString& Path, const FString& RealPath)>;

	/** @param InMayRead  asked about each wanted file, and before the walk enters Root or a folder behind a link */
	FKestrelFileWalk(const FString& Root, FIsWanted InIsWanted, FMayRead InMayRead);
	UE_NONCOPYABLE(FKestrelFileWalk)

	/** All of them at once, as Root / ... */
	static TArray<FString> FindAll(const FString& Root, FIsWanted IsWanted);

	/** Walks one more folder. @return false when there is none left */
	bool Next();
	/** What was found so far, as Root / ... */
	TArray<FString>& GetFiles() { return Files; }

private:
	/** A folder with those in it that are still to be walked. */
	struct FLevel
	{
		TUniquePtr<FKestrelFolder> Folder; // its address is kept by those in it
		TArray<FString> Names;
		int32 NumWalked = 0;
	};

	void Enter(TUniquePtr<FKestrelFolder> Folder);

	const FIsWanted IsWanted;
	const FMayRead MayRead;
	TUniquePtr<FKestrelFolder> Root; // until it is walked
	TArray<FLevel> Levels;           // from the root down
	TArray<FString> Files;
};
