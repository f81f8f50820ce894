#pragma once

#include "CoreMinimal.h"

/**
 * A folder on the way of a walk, with the way back to where the walk began. Lives on the stack of the walk.
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

	/** Whether something may be looked into. RealPath has links resolved; it is empty where they cannot be. */
	using FMayRead = TFunctionRef<bool(const FString& Path, const FString& RealPath)>;

	/** The files below a folder whose names are wanted, as Root / ...; in each folder files come before folders. */
	static TArray<FString> FindFiles(const FString& Root, TFunctionRef<bool(const FString& Name)> IsWanted);
	/**
	 * The same without what must not be read.
	 *
	 * @param MayRead  asked about each wanted file, and before the walk enters Root or a folder behind a link
	 */
	static TArray<FString> FindFiles(
		const FString& Root, TFunctionRef<bool(const FString& Name)> IsWanted, FMayRead MayRead);

private:
	void AppendFiles(TFunctionRef<bool(const FString&)> IsWanted, FMayRead MayRead, TArray<FString>& OutFiles);
	/** Empty where links cannot be resolved. */
	FString ResolveFile(const FString& Name) const;
	bool IsLoop() const;

	const FString Path;
	FKestrelFolder* const Above; // null where the walk begins
	FString RealPath;            // absolute, with links resolved where the platform can
	bool bIsResolved = true;     // false where it could not
	bool bIsLink = false;
	bool bIsBelowLink = false;
	int64 CostBelowLinks = 0; // of the whole walk, in files listed; counted where it begins
};
