#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

/** An asset as it is listed. */
struct FAssetListItem
{
	explicit FAssetListItem(const FAssetData& InData);
	/** Of a package that Unreal Editor saved: only its name is known. */
	explicit FAssetListItem(FName ForeignPackage);

	FAssetData Data;
	FString ClassName;     // in words
	FString Key;           // what it is sorted by and known by: name and path in lower case
	bool bForeign = false; // cannot be opened
};

/**
 * The project's own assets by name, as the registry knows them at any time, and those of them that a search finds.
 *
 * It hears of each change and never asks the registry for all assets again: a scan that finds thousands of them costs
 * a search among the known ones for each.
 */
class FAssetList
{
public:
	using FItem = TSharedPtr<FAssetListItem>;

	FAssetList();
	~FAssetList();
	UE_NONCOPYABLE(FAssetList)

	/** All words have to be in the name, the class or the folder, in any letter case. */
	void SetFilter(const FString& Text);
	/** What the search finds. Good until the next Update. */
	const TArray<FItem>& GetShown() const { return Shown; }
	int32 GetNumAssets() const { return Items.Num(); }
	/** Takes up what was heard since the last time. True when what is shown is now something else. */
	bool Update();

private:
	void OnAdded(const FAssetData& Asset);
	void OnRemoved(const FAssetData& Asset);
	void OnForeignChanged(FName PackageName, bool bForeign);
	void Add(const FItem& Item);
	void OnRenamed(const FAssetData& Asset, const FString& OldObjectPath);
	bool Matches(const FAssetListItem& Item) const;
	/** The place of the first item that does not stand before the key. */
	int32 FindPlace(const FString& Key) const;
	void Remove(const FString& Key);

	TArray<FItem> Items; // sorted by Key
	TArray<FItem> Shown;
	TArray<FString> FilterWords;
	bool bChanged = true;
	FDelegateHandle AddedHandle;
	FDelegateHandle RemovedHandle;
	FDelegateHandle RenamedHandle;
	FDelegateHandle ForeignHandle;
};
