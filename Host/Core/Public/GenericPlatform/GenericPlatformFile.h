#pragma once

#include "Containers/UnrealString.h"
#include "Misc/DateTime.h"
#include "Templates/Function.h"

/** An open file. Deleting the handle closes it. */
class IFileHandle
{
public:
	virtual ~IFileHandle() = default;
	virtual int64 Tell() = 0;
	virtual bool Seek(int64 NewPosition) = 0;
	virtual bool SeekFromEnd(int64 NewPositionRelativeToEnd = 0) = 0;
	virtual bool Read(uint8* Destination, int64 BytesToRead) = 0;
	virtual bool Write(const uint8* Source, int64 BytesToWrite) = 0;
	virtual bool Flush(const bool bFullFlush = false) = 0;
	virtual int64 Size() = 0;
};

/** A platform that does not know answers Unimplemented, so compare with Symlink. */
enum class ESymlinkResult
{
	Unimplemented = -1,
	NonSymlink = 0,
	Symlink = 1,
};

/** The files of the machine. Relative paths are resolved against the folder of the executable. */
class IPlatformFile
{
public:
	class FDirectoryVisitor
	{
	public:
		virtual ~FDirectoryVisitor() = default;
		/** Gets full entries; returning false stops the walk. */
		virtual bool Visit(const TCHAR* FilenameOrDirectory, bool bIsDirectory) = 0;
	};
	using FDirectoryVisitorFunc = TFunctionRef<bool(const TCHAR*, bool)>;

	virtual ~IPlatformFile() = default;
	virtual bool FileExists(const TCHAR* Filename) = 0;
	virtual bool DirectoryExists(const TCHAR* Directory) = 0;
	/** INDEX_NONE for a missing file. */
	virtual int64 FileSize(const TCHAR* Filename) = 0;
	/** False for a missing file. */
	virtual bool DeleteFile(const TCHAR* Filename) = 0;
	virtual bool IsReadOnly(const TCHAR* Filename) = 0;
	virtual bool SetReadOnly(const TCHAR* Filename, bool bNewReadOnlyValue) = 0;
	/** Destination first. */
	virtual bool MoveFile(const TCHAR* To, const TCHAR* From) = 0;
	/** About the path's last component; a link may well point to nothing. A missing file is none. */
	virtual ESymlinkResult IsSymlink(const TCHAR* Filename) = 0;
	/** Modification time, UTC; FDateTime::MinValue() on failure. */
	virtual FDateTime GetTimeStamp(const TCHAR* Filename) = 0;
	virtual void SetTimeStamp(const TCHAR* Filename, FDateTime DateTime) = 0;
	/** Null on failure; the caller deletes. */
	virtual IFileHandle* OpenRead(const TCHAR* Filename, bool bAllowWrite = false) = 0;
	/** Truncates unless told to append; creates no folders. */
	virtual IFileHandle* OpenWrite(const TCHAR* Filename, bool bAppend = false, bool bAllowRead = false) = 0;
	/** True when created or already there. */
	virtual bool CreateDirectory(const TCHAR* Directory) = 0;
	/** True also when it did not exist; false for a folder that is not empty. */
	virtual bool DeleteDirectory(const TCHAR* Directory) = 0;
	/** Entries come in the file system's order, with the directory's path as given in front. */
	virtual bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor) = 0;

	bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitor& Visitor);
	/** Links to folders are followed, but for those that lead back to where the walk has come from. */
	bool IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitorFunc Visitor);
	/** Adds the files with the extension (".log" or "log"; null or empty for all), with the directory's path in front.
	 */
	void FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension);
	bool CreateDirectoryTree(const TCHAR* Directory);
	/** Deletes read-only files, too. A link goes as a link, also when it is the directory itself. */
	bool DeleteDirectoryRecursively(const TCHAR* Directory);
	/** Destination first; fails if the destination exists. */
	bool CopyFile(const TCHAR* To, const TCHAR* From);
};
