#pragma once

#include "AssetRegistry/AssetData.h"

/**
 * The first line of a package file: what the file holds, as JSON. The objects follow as text.
 *
 * {"Package":"/Game/F/A","Format":1,"Needs":["/Game/F/B"],"Assets":[{"Name":"A","Class":"/Script/M.C","Tags":{…}}]}
 */
struct FPackageHeader
{
	enum class EResult : uint8
	{
		Read,
		/** Saved by Unreal Editor, in its binary form. */
		Binary,
		/** Not a package, or one that is damaged, or of a later format. */
		Unreadable,
	};

	// Tags are few and short; a longer first line is no header.
	static constexpr int32 MaxBytes = 256 * 1024;
	static constexpr int32 CurrentFormat = 1;

	/** Whether a file can be opened without harm: opening a pipe would wait for whoever writes into it. */
	static bool IsRegularFile(const FString& FileName);
	/** Reads the header of a file, and of the file no more than that. */
	EResult Load(const FString& FileName);
	/** Reads the header from the start of a file's contents; bytes behind the first line are not looked at. */
	EResult Parse(TArrayView<const uint8> Bytes);
	/** The line, without a line break. */
	FString ToText() const;

	/** What a person is told of a file that cannot be read; empty for one that can. */
	static FString GetMessage(EResult Result, const FString& FileName);

	struct FAsset
	{
		FString Name;
		FString Class;
		TArray<TPair<FString, FString>> Tags;
	};

	FString PackageName;   // under which it was saved: the file may have been moved since
	TArray<FString> Needs; // packages that the objects refer to
	TArray<FAsset> Assets;

	/** The assets, in a package of the name; those whose class makes no sense are left out. */
	TArray<FAssetData> GetAssetData(const FString& InPackageName) const;
};
