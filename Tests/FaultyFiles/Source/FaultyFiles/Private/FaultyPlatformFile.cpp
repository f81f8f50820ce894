#include "FaultyPlatformFile.h"

#include "HAL/PlatformFileManager.h"
#include "Misc/Guid.h"
#include "Templates/UniquePtr.h"

#include <sys/wait.h>
#include <unistd.h>

namespace FaultyPlatformFile
{
constexpr uint32 Bit(EFileOperation Operation)
{
	return 1u << static_cast<uint32>(Operation);
}

constexpr uint32 AllOperations = 0xFF;

/** Which operations a fault can meet. */
uint32 GetOperations(EFileFault Fault)
{
	switch (Fault)
	{
	case EFileFault::NoSpace:
		return Bit(EFileOperation::Write) | Bit(EFileOperation::MakeFolder);
	case EFileFault::IoError:
		return Bit(EFileOperation::Read) | Bit(EFileOperation::Write);
	case EFileFault::AccessDenied:
		return Bit(EFileOperation::Open) | Bit(EFileOperation::Change) | Bit(EFileOperation::MakeFolder);
	case EFileFault::ShortWrite:
	case EFileFault::KillInWrite:
		return Bit(EFileOperation::Write);
	case EFileFault::Interrupted:
	case EFileFault::Kill:
		break;
	}
	return AllOperations;
}

class FFaultyHandle final : public IFileHandle
{
public:
	FFaultyHandle(FFaultyPlatformFile& InFiles, IFileHandle* InBelow)
		: Files(InFiles)
		, Below(InBelow)
	{
	}

	virtual int64 Tell() override { return Below->Tell(); }
	virtual bool Seek(int64 Position) override { return Below->Seek(Position); }
	virtual bool SeekFromEnd(int64 Position) override { return Below->SeekFromEnd(Position); }
	virtual bool Read(uint8* Destination, int64 Bytes) override
	{
		return !Files.IsFaulty(EFileOperation::Read) && Below->Read(Destination, Bytes);
	}
	virtual bool Write(const uint8* Source, int64 Bytes) override
	{
		if (!Files.IsFaulty(EFileOperation::Write))
		{
			return Below->Write(Source, Bytes);
		}
		const EFileFault Fault = Files.GetFault();
		Below->Write(Source, Fault == EFileFault::ShortWrite ? FMath::Max<int64>(Bytes - 1, 0)
							 : Fault == EFileFault::NoSpace || Fault == EFileFault::KillInWrite ? Bytes / 2
																								: 0);
		if (Fault == EFileFault::KillInWrite)
		{
			_exit(0);
		}
		return false;
	}
	virtual bool Flush(const bool bFullFlush) override
	{
		return !Files.IsFaulty(EFileOperation::Write) && Below->Flush(bFullFlush);
	}
	virtual int64 Size() override { return Below->Size(); }

private:
	FFaultyPlatformFile& Files;
	const TUniquePtr<IFileHandle> Below;
};
}

FFaultyPlatformFile::FFaultyPlatformFile(int32 InFaultAt, EFileFault InFault, bool bInPermanent)
	: Below(FPlatformFileManager::Get().GetPlatformFile())
	, FaultAt(InFaultAt)
	, Fault(InFault)
	, bPermanent(bInPermanent)
{
	FPlatformFileManager::Get().SetPlatformFile(*this);
}

FFaultyPlatformFile::~FFaultyPlatformFile()
{
	FPlatformFileManager::Get().SetPlatformFile(Below);
}

bool FFaultyPlatformFile::IsFaulty(EFileOperation Operation)
{
	const int32 Index = NumOperations++;
	const bool bMet = (FaultyPlatformFile::GetOperations(Fault) & FaultyPlatformFile::Bit(Operation)) != 0;
	const bool bFaulty = bMet && (bPermanent ? Index >= FaultAt : Index == FaultAt);
	if (bFaulty && Fault == EFileFault::Kill)
	{
		_exit(0);
	}
	bHasFailed |= bFaulty;
	return bFaulty;
}

bool FFaultyPlatformFile::DeleteFile(const TCHAR* Filename)
{
	return !IsFaulty(EFileOperation::Change) && Below.DeleteFile(Filename);
}

bool FFaultyPlatformFile::SetReadOnly(const TCHAR* Filename, bool bReadOnly)
{
	return !IsFaulty(EFileOperation::Change) && Below.SetReadOnly(Filename, bReadOnly);
}

bool FFaultyPlatformFile::MoveFile(const TCHAR* To, const TCHAR* From)
{
	return !IsFaulty(EFileOperation::Change) && Below.MoveFile(To, From);
}

IFileHandle* FFaultyPlatformFile::OpenRead(const TCHAR* Filename, bool bAllowWrite)
{
	IFileHandle* const Handle = IsFaulty(EFileOperation::Open) ? nullptr : Below.OpenRead(Filename, bAllowWrite);
	return Handle ? new FaultyPlatformFile::FFaultyHandle(*this, Handle) : nullptr;
}

IFileHandle* FFaultyPlatformFile::OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead)
{
	IFileHandle* const Handle =
		IsFaulty(EFileOperation::Open) ? nullptr : Below.OpenWrite(Filename, bAppend, bAllowRead);
	return Handle ? new FaultyPlatformFile::FFaultyHandle(*this, Handle) : nullptr;
}

bool FFaultyPlatformFile::CreateDirectory(const TCHAR* Directory)
{
	return !IsFaulty(EFileOperation::MakeFolder) && Below.CreateDirectory(Directory);
}

bool FFaultyPlatformFile::DeleteDirectory(const TCHAR* Directory)
{
	return !IsFaulty(EFileOperation::Change) && Below.DeleteDirectory(Directory);
}

bool FFaultyPlatformFile::IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor)
{
	return Below.IterateDirectory(Directory, Visitor);
}

bool RunInChildProcess(TFunctionRef<void()> Run)
{
	// A copy gets the main thread alone: what another thread held, a lock of the allocator for instance, is never given
	// back there. Such a copy hangs, and the next one hardly ever does.
	constexpr int32 NumTries = 5;
	constexpr unsigned int LongestSeconds = 2;
	constexpr int32 NumSkippedGuids = 1000;
	for (int32 Try = 0; Try < NumTries; ++Try)
	{
		const pid_t Child = fork();
		if (Child == 0)
		{
			alarm(LongestSeconds);
			// The copy would draw the same names as this process does next.
			for (int32 Index = 0; Index < NumSkippedGuids; ++Index)
			{
				FGuid::NewGuid();
			}
			Run();
			_exit(0);
		}
		int Status = 0;
		if (Child > 0 && waitpid(Child, &Status, 0) == Child && WIFEXITED(Status))
		{
			return WEXITSTATUS(Status) == 0;
		}
	}
	return false;
}
