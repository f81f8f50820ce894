#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformFile.h"

/** How an operation goes wrong. */
enum class EFileFault : uint8
{
	/** The disk is full: half of what is written arrives, and no folder can be made. */
	NoSpace,
	/** Nothing is read or written. */
	IoError,
	/** The file or folder cannot be opened, deleted or moved. */
	AccessDenied,
	/** All but the last byte arrives. */
	ShortWrite,
	/** Any operation stops before it begins. */
	Interrupted,
	/** The process ends before the operation. */
	Kill,
	/** The process ends in the middle of a write. */
	KillInWrite,
};

enum class EFileOperation : uint8
{
	Open,
	Read,
	Write,
	Change, // delete, move
	MakeFolder,
};

/** The files of the machine, of which one operation, or all from one on, go wrong. In use as long as it exists. */
class FFaultyPlatformFile final : public IPlatformFile
{
public:
	static constexpr int32 Never = MAX_int32;

	/** @param InFaultAt  the first operation that goes wrong, counted from 0 */
	FFaultyPlatformFile(int32 InFaultAt, EFileFault InFault, bool bInPermanent);
	virtual ~FFaultyPlatformFile() override;

	/** Counts an operation. @return whether it goes wrong */
	bool IsFaulty(EFileOperation Operation);
	EFileFault GetFault() const { return Fault; }
	int32 GetNumOperations() const { return NumOperations; }
	/** Whether anything went wrong: not every fault can meet every operation. */
	bool HasFailed() const { return bHasFailed; }

	virtual bool FileExists(const TCHAR* Filename) override { return Below.FileExists(Filename); }
	virtual bool DirectoryExists(const TCHAR* Directory) override { return Below.DirectoryExists(Directory); }
	virtual int64 FileSize(const TCHAR* Filename) override { return Below.FileSize(Filename); }
	virtual bool DeleteFile(const TCHAR* Filename) override;
	virtual bool IsReadOnly(const TCHAR* Filename) override { return Below.IsReadOnly(Filename); }
	virtual bool SetReadOnly(const TCHAR* Filename, bool bReadOnly) override;
	virtual bool MoveFile(const TCHAR* To, const TCHAR* From) override;
	virtual FDateTime GetTimeStamp(const TCHAR* Filename) override { return Below.GetTimeStamp(Filename); }
	virtual void SetTimeStamp(const TCHAR* Filename, FDateTime Time) override { Below.SetTimeStamp(Filename, Time); }
	virtual IFileHandle* OpenRead(const TCHAR* Filename, bool bAllowWrite) override;
	virtual IFileHandle* OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead) override;
	virtual bool CreateDirectory(const TCHAR* Directory) override;
	virtual ESymlinkResult IsSymlink(const TCHAR* Filename) override { return Below.IsSymlink(Filename); }
	virtual bool DeleteDirectory(const TCHAR* Directory) override;
	virtual bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor) override;

private:
	IPlatformFile& Below;
	const int32 FaultAt;
	const EFileFault Fault;
	const bool bPermanent;
	int32 NumOperations = 0;
	bool bHasFailed = false;
};

/** Runs something in a copy of this process, which ends when it is done. @return false when the copy hung */
bool RunInChildProcess(TFunctionRef<void()> Run);
