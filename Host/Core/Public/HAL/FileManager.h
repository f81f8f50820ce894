#pragma once

#include "Containers/UnrealString.h"
#include "Misc/DateTime.h"

enum EFileWrite
{
	FILEWRITE_None = 0x00,
	FILEWRITE_NoFail = 0x01,
	FILEWRITE_EvenIfReadOnly = 0x04,
	FILEWRITE_Append = 0x08,
};

enum ECopyResult
{
	COPY_OK = 0x00,
	COPY_Fail = 0x01,
};

/** Files as the editor handles them, on top of the platform's. */
class IFileManager
{
public:
	static IFileManager& Get();

	/**
	 * Adds the bare names (no path) of what matches a pattern like "Dir/\*". Not recursive; unsorted, in the file
	 * system's order; names that begin with a dot are among them. A missing folder gives nothing.
	 */
	void FindFiles(TArray<FString>& FileNames, const TCHAR* Filename, bool Files, bool Directories);
	/** Adds the bare names of the files with the extension ("ext" or ".ext"; null or empty for all). */
	void FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension = nullptr);
	/** Entries start with StartDirectory. The array is cleared unless told otherwise. */
	void FindFilesRecursive(TArray<FString>& FileNames, const TCHAR* StartDirectory, const TCHAR* Filename, bool Files,
		bool Directories, bool bClearFileNames = true);

	FDateTime GetTimeStamp(const TCHAR* Filename);
	int64 FileSize(const TCHAR* Filename);
	bool FileExists(const TCHAR* Filename);
	bool DirectoryExists(const TCHAR* InDirectory);
	/** A missing file counts as success unless RequireExists. */
	bool Delete(const TCHAR* Filename, bool RequireExists = false, bool EvenReadOnly = false, bool Quiet = false);
	/** Destination first. */
	bool Move(const TCHAR* Dest, const TCHAR* Src, bool Replace = true, bool EvenIfReadOnly = false);
	/** Destination first. @return an ECopyResult */
	uint32 Copy(const TCHAR* Dest, const TCHAR* Src, bool Replace = true);
	bool MakeDirectory(const TCHAR* Path, bool Tree = false);
	bool DeleteDirectory(const TCHAR* Path, bool RequireExists = false, bool Tree = false);
};
