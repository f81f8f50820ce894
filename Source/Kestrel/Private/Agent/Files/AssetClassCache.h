#pragma once

#include "CoreMinimal.h"

/**
 * Which class the assets of the project have.
 *
 * The asset registry knows, but not before it has scanned the content, which takes its time after each start. What it
 * has told is kept in Plugins/kestrel-unreal/Saved/AssetClassCache.log of the project, a line "<package>=<class>" each,
 * and answers meanwhile.
 */
class KESTREL_API FAssetClassCache
{
public:
	static FAssetClassCache& Get();

	/** @param FileName  of an asset, absolute or relative. @return none when neither registry nor cache know of it */
	FName FindClass(const FString& FileName);
	/** Writes the file when anything has changed since it was read. */
	void Save();
	/** Reads the file again at the next question. */
	void Reload();

private:
	FAssetClassCache() = default;
	UE_NONCOPYABLE(FAssetClassCache)

	void Load();
	void Remember(const FString& PackageName, FName ClassName);

	TMap<FString, FName> Classes; // by long package name
	bool bLoaded = false;
	bool bChanged = false;
};
