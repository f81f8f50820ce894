#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

class FText;

/**
 * The names of packages and the files they lie in. Folders are mounted as roots: the project's Content folder as
 * "/Game/", the engine's as "/Engine/", a plugin's as "/<Plugin>/". Packages below "/Script/" are code and have no
 * file.
 */
class FPackageName
{
public:
	/** ".uasset" */
	static const FString& GetAssetPackageExtension();
	/** ".umap" */
	static const FString& GetMapPackageExtension();

	/** Makes a folder known under a root such as "/Plugin/". One that is known already is left alone. */
	static void RegisterMountPoint(const FString& RootPath, const FString& ContentPath);
	static void UnRegisterMountPoint(const FString& RootPath, const FString& ContentPath);
	/** The roots, each with a slash at both ends. */
	static void QueryRootContentPaths(TArray<FString>& OutRootContentPaths);

	/**
	 * "<Project>/Content/Folder/Asset.uasset" becomes "/Game/Folder/Asset". The file need not exist, and its path may
	 * be relative.
	 *
	 * @return false for a file that does not lie below a mounted folder
	 */
	static bool TryConvertFilenameToLongPackageName(
		const FString& InFilename, FString& OutPackageName, FString* OutFailureReason = nullptr);
	/** The reverse; an empty extension gives the file's path without one. A root gives its folder. */
	static bool TryConvertLongPackageNameToFilename(
		const FString& InLongPackageName, FString& OutFilename, const FString& InExtension = TEXT(""));
	/** The same; a name below no mounted root ends the process. */
	static FString LongPackageNameToFilename(const FString& InLongPackageName, const FString& InExtension = TEXT(""));
	/** The same; a file below no mounted folder ends the process. */
	static FString FilenameToLongPackageName(const FString& InFilename);

	/** Whether a package of the name could be saved: a mounted root, no slash at the end, nothing illegal in it. */
	static bool IsValidLongPackageName(
		const FString& InLongPackageName, bool bIncludeReadOnlyRoots = false, FText* OutReason = nullptr);
	/** Whether there is a file for the package, and which. */
	static bool DoesPackageExist(const FString& LongPackageName, FString* OutFilename = nullptr);
	/** Whether the name starts with "/Script/". */
	static bool IsScriptPackage(const FString& InPackageName);
	/** Whether the name has no slash. */
	static bool IsShortPackageName(const FString& PossiblyLongName);

	/** The last part of a name. */
	static FString GetShortName(const FString& LongName);
	/** All but the last part, without a slash at the end. */
	static FString GetLongPackagePath(const FString& InLongPackageName);

	/** "/Game/X/A" of "/Game/X/A.A:B", and of the package's name alone. */
	static FString ObjectPathToPackageName(const FString& InObjectPath);
	/** "B" of "/Game/X/A.A:B.B". */
	static FString ObjectPathToObjectName(const FString& InObjectPath);
	/** "/Game/X/A.A" of "/Script/Engine.Blueprint'/Game/X/A.A'"; a path without class is returned as it is. */
	static FString ExportTextPathToObjectPath(const FString& InExportTextPath);
	static bool ParseExportTextPath(const FString& InExportTextPath, FString* OutClassName, FString* OutObjectPath);
};
