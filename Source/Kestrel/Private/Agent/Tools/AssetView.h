#pragma once

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "CoreMinimal.h"
#include "Misc/DateTime.h"

class UClass;

/**
 * An asset that tools of one answer change: what it was when it was shown, or when the last of these tools left it.
 *
 * The file says what it is as long as nothing is unsaved. What is unsaved is compared as the tools describe it.
 */
class FKestrelAssetWatch
{
public:
	/** Looks at once. @param InObjectPath  need not exist */
	explicit FKestrelAssetWatch(const FString& InObjectPath);
	UE_NONCOPYABLE(FKestrelAssetWatch)

	bool IsUnchanged() const;
	/** Whether it is a Blueprint in memory that has what is changed in the other one, too. */
	bool InheritsFrom(const FKestrelAssetWatch& Other) const;
	/** What it is now is what was expected. */
	void LookAgain();

	const FString ObjectPath;

private:
	struct FState
	{
		bool operator==(const FState& Other) const;

		int64 FileSize = -1;        // bytes; less than 0 when there is no file
		FDateTime ModificationTime; // UTC; of a file that is too large to read
		uint32 FileChecksum = 0;    // CRC-32 of one that is not
		bool bIsUnsaved = false;
		uint32 UnsavedChecksum = 0; // CRC-32 of a Blueprint's description
	};

	FState Look() const;

	const FString FileName; // absolute; empty for a package without a place
	FState Seen;
};

/** The project's assets as a row of tools finds them, each with those that the tools before it will create. */
class FKestrelAssetView
{
public:
	using FWatches = TMap<FString, TSharedRef<FKestrelAssetWatch>>; // by object path

	/** @param InFinder  one that other views may share, as long as nothing comes or goes */
	explicit FKestrelAssetView(const TSharedRef<FKestrelAssetFinder>& InFinder = MakeShared<FKestrelAssetFinder>())
		: Finder(InFinder)
	{
	}
	UE_NONCOPYABLE(FKestrelAssetView)

	FKestrelAssetAddress Find(const UClass& Class, const FString& Name);
	/** A Blueprint that will be there for the tools behind. */
	void Create(const FKestrelAssetAddress& Address);
	/** The same one for all tools that change the asset. */
	TSharedRef<FKestrelAssetWatch> Watch(const FString& ObjectPath);
	/** All of them, those of tools behind included as they come. */
	TSharedRef<const FWatches> GetWatches() const { return Watches; }
	/** The packages that saving everything would save, sorted. */
	TArray<FString> ListUnsaved() const;

	/** Names of assets for one that nothing has; not those that tools before this one will make. */
	TArray<FString> FindClosest(const UClass& Class, const FString& Name) { return Finder->FindClosest(Class, Name); }

private:
	const TSharedRef<FKestrelAssetFinder> Finder;
	TMap<FString, FKestrelAssetAddress> Created; // by name
	const TSharedRef<FWatches> Watches = MakeShared<FWatches>();
};
