#pragma once

#include "CoreMinimal.h"

class FJsonObject;
enum class EKestrelRevisionControl : uint8;

/**
 * True when a folder of the path has a name of the list. Letter case is ignored, and so are slashes and spaces around
 * an entry.
 */
KESTREL_API bool IsDirectoryExcluded(const FString& Path, const TArray<FString>& ExcludedDirs);

/**
 * Reads and edits text files of the project and lists its folders.
 *
 * A path is relative to the project directory or absolute. Every call works at once, on the game thread, and answers
 * with one text: the result, or a text that begins with "Error: " and names the file.
 *
 * A rewrite happens in place, so that links and permissions stay. A copy is kept under the project's Saved folder
 * meanwhile (FFileRescue), and put back when the write fails. Revision control is told of each change, and never
 * decides whether it is made.
 */
class KESTREL_API FFileUtils
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
	 * Writes a new file, with the folders that it needs; one that is there is overwritten. Text beyond ASCII makes it
	 * UTF-16 with a byte order mark, by the engine's automatic choice, unless the user's settings say UTF-8.
	 */
	static FString CreateNewFileWithContent(const FString& Path, const FString& Content);

	/**
	 * Replaces every occurrence of a text, with regard to case. When it does not occur as given, it is tried in the
	 * file's own style: line endings as in the file and four spaces for a tab (or the reverse), first both, then
	 * each alone. The new text goes in as given. Writes UTF-8 without a byte order mark.
	 *
	 * @param OutContentBefore  the whole text as it was, once it could be read
	 * @param OutContentAfter   the whole text as it is now, when anything was replaced
	 * @return the count of replacements in words; an error, with the file left as it was, when there are none, or when
	 *         the file holds bytes that are no text and would be lost
	 */
	static FString UpdateFile(const FString& Path, const FString& OldString, const FString& NewString,
		FString& OutContentBefore, FString& OutContentAfter);

	/**
	 * The replacement that UpdateFile makes, in a text alone.
	 *
	 * @param FullPath         names the file in an error
	 * @param OutAfter         the text as it was when nothing was replaced
	 * @return an error when there is nothing to replace; else empty
	 */
	static FString ReplaceInText(const FString& FullPath, const FString& Text, const FString& OldString,
		const FString& NewString, FString& OutAfter, int32& OutNumReplacements);
	/** The second half of UpdateFile: writes what ReplaceInText has made. @return UpdateFile's result */
	static FString WriteUpdatedText(const FString& FullPath, const FString& After, int32 NumReplacements);

	/**
	 * The text that InsertIntoFile leaves, with the line endings of this platform.
	 *
	 * @param OutPosition  LineIndex, kept within 0 and the number of lines
	 */
	static FString InsertIntoText(const FString& Text, int32 LineIndex, const FString& NewLine, int32& OutPosition);
	/** The second half of InsertIntoFile: writes what InsertIntoText has made. @return InsertIntoFile's result */
	static FString WriteInsertedText(const FString& FullPath, const FString& After, int32 Position);

	/** Whether a created or inserted-into file with this text becomes UTF-16, by the user's settings. */
	static bool IsSavedAsUtf16(const FString& Text);

	/**
	 * Inserts a text as a line of its own. All lines end as the platform's do afterwards.
	 *
	 * @param LineIndex  how many lines stay above it: 0 is the top; kept within 0 and the number of lines
	 */
	static FString InsertIntoFile(const FString& Path, int32 LineIndex, const FString& Text);

	/** Replaces one line, counted from 1. A number out of range, or any failure, changes nothing and says nothing. */
	static void ReplaceLineInFile(const FString& Path, int32 LineNumber, const FString& NewLine);

	/** Replaces the whole text of a file that exists. Writes UTF-8 without a byte order mark. */
	static FString ReplaceFile(const FString& Path, const FString& NewContent);

	/** Makes the file's bytes these, whether it exists or not. @return ReplaceFile's or CreateNewFile's result */
	static FString WriteBytes(const FString& Path, const TArray<uint8>& Bytes);

	/** Deletes a file, in revision control too. */
	static FString DeleteFile(const FString& Path);

	/** What is wrong with a file that cannot be edited as text. */
	static const TCHAR* const BytesAreNoText;
	/** A failure as a result text: "Error: <what>: <file>". */
	static FString MakeError(const TCHAR* What, const FString& FullPath);
	/** Whether a result text is a failure: it begins with "Error:" in any letter case. */
	static bool IsError(const FString& ResultText);

	// Revision control, through the editor's provider. Texts are reports for the log.
	static FString AddNewFileToSourceControl(const FString& Path);
	static FString CheckoutFileFromSourceControl(const FString& Path);
	static EKestrelRevisionControl GetRevisionControl(const FString& Path);
	/** Gives the file the content that is checked in, whatever was to be checked in next. @return whether it did */
	static bool RevertInSourceControl(const FString& Path);
	/**
	 * A provider's removal deletes the file as well.
	 *
	 * @param bSilent  keeps a failure out of the log
	 */
	static FString RemoveFileFromSourceControl(const FString& Path, bool bSilent);

	/**
	 * Whether a file belongs into a tree of assets of some classes. Files that are no assets always do.
	 *
	 * @param EnabledAssetClassPatterns  names of classes, as "StaticMesh" or "*Blueprint"
	 * @param OutClassName               the asset's class when it belongs; none for other files
	 * @return false for an asset of another class, or of one that nobody knows
	 */
	static bool FileMatchesAssetClassPatterns(const FString& FolderPath, const FString& FileName,
		const TSet<FName>& EnabledAssetClassPatterns, FName& OutClassName);

	/**
	 * A folder as a JSON object: each kept file a member with its asset class or "#" as its value, each kept folder an
	 * object of its own.
	 * Files come before folders, both in the order of the file system. Folders without a kept file are left out.
	 *
	 * @param SupportedExtensions        without a dot; letter case is ignored
	 * @param ExcludedDirs               as for IsDirectoryExcluded; of a folder in the project, the part of the path
	 *                                   below the project directory is looked at
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
