#pragma once

#include "Containers/UnrealString.h"

/**
 * The names of packages and the files they lie in. The project's Content folder is mounted as "/Game"; packages below
 * "/Script" are code and have no file.
 */
class FPackageName
{
public:
	/** ".uasset" */
	static const FString& GetAssetPackageExtension();
	/** ".umap" */
	static const FString& GetMapPackageExtension();

	/**
	 * "<Project>/Content/Folder/Asset.uasset" becomes "/Game/Folder/Asset". The file need not exist, and its path may
	 * be relative.
	 *
	 * @return false for a file that does not lie below a mounted folder
	 */
	static bool TryConvertFilenameToLongPackageName(
		const FString& InFilename, FString& OutPackageName, FString* OutFailureReason = nullptr);
	/** The reverse; an empty extension gives the file's path without one. */
	static bool TryConvertLongPackageNameToFilename(
		const FString& InLongPackageName, FString& OutFilename, const FString& InExtension = TEXT(""));

	/** The last part of a name. */
	static FString GetShortName(const FString& LongName);
	/** All but the last part, without a slash at the end. */
	static FString GetLongPackagePath(const FString& InLongPackageName);
};
