#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** True when a folder of the path has a name of the list. Slashes and blanks around an entry do not count, nor does
 * case. */
bool IsDirectoryExcluded(const FString& Path, const TArray<FString>& ExcludedDirs);

/**
 * Reads text files of the project and pictures its folders.
 *
 * A path is relative to the project directory or absolute. Every call works at once, on the game thread, and answers
 * with one text: the result, or a text that begins with "Error: " and names the file.
 */
class FFileUtils
{
public:
	/** The project directory is relative to the executable in the editor; this makes both it and the path full. */
	static FString ToAbsolutePath(const FString& Path);

	/** The file's text as it is stored. */
	static FString ReadFile(const FString& Path);

	/**
	 * Reads some lines of a text file.
	 *
	 * @param StartLine  first line, counted from 1; anything smaller means 1
	 * @param EndLine    last line, included; -1, or a line past the end, means the last line of the file
	 * @return the lines joined by "\n", with none after the last
	 */
	static FString ReadFileLineRange(const FString& Path, int32 StartLine, int32 EndLine);

	/**
	 * A folder as a JSON object: each kept file a member with "#" as its value, each kept folder an object of its own.
	 * Files come before folders, both in the order of the file system. Folders without a kept file are left out.
	 *
	 * @param SupportedExtensions        without a dot; letter case does not count
	 * @param EnabledAssetClassPatterns  an empty set keeps assets of every class
	 */
	static TSharedPtr<FJsonObject> BuildJsonTree(const FString& Path, const TArray<FString>& SupportedExtensions,
		const TArray<FString>& ExcludedDirs, const TSet<FName>& EnabledAssetClassPatterns);
	/** The tree of a folder by the user's settings, as condensed JSON; "{}" for a folder that is excluded or missing.
	 */
	static FString GetSubDirectoryStructureAsJsonObject(const FString& Path);
	/**
	 * The same, worked out at a later moment of the game thread: the settings and the asset registry are its alone.
	 * OnComplete is called if it is still bound then.
	 */
	static void GetSubDirectoryStructureAsJsonObjectAsync(
		const FString& Path, TDelegate<void(const FString&)> OnComplete);

	/** The later moment of GetSubDirectoryStructureAsJsonObjectAsync. */
	static void AsyncDirectoryWorker(const FString& Path, TDelegate<void(const FString&)> OnComplete);

	/** Paths below a folder of the project, relative to the project directory, of the files that matter to a game. */
	static TArray<FString> GetDirectoryStructureAsList(const FString& Path);
	/** All such paths of the project, sorted without regard to case, as a JSON array. */
	static FString GetProjectStructureAsJsonList();
};
