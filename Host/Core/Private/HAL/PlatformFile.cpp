#include "Containers/StringConv.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/PlatformProcess.h"
#include "Misc/Paths.h"
#include "Templates/UniquePtr.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace PlatformFile
{
std::string ToNative(const TCHAR* Path)
{
	FString Full = FPaths::IsRelative(Path) ? FString(FPlatformProcess::BaseDir()) + Path : FString(Path);
	FPaths::NormalizeFilename(Full);
	const FTCHARToUTF8 Native(*Full, Full.Len());
	return std::string(Native.Get(), static_cast<size_t>(Native.Length()));
}

/** With a slash behind its name, a link would be followed. */
FString WithoutSlashBehind(const TCHAR* InPath)
{
	FString Path = InPath;
	FPaths::NormalizeFilename(Path);
	while (Path.Len() > 1 && Path.EndsWith(TEXT("/")))
	{
		Path.LeftChopInline(1);
	}
	return Path;
}

bool Stat(const TCHAR* Path, struct stat& Out)
{
	return *Path && ::stat(ToNative(Path).c_str(), &Out) == 0;
}

class FUnixFileHandle final : public IFileHandle
{
public:
	explicit FUnixFileHandle(int InDescriptor)
		: Descriptor(InDescriptor)
	{
	}
	~FUnixFileHandle() override { ::close(Descriptor); }
	UE_NONCOPYABLE(FUnixFileHandle)

	int64 Tell() override { return ::lseek(Descriptor, 0, SEEK_CUR); }
	bool Seek(int64 NewPosition) override { return ::lseek(Descriptor, NewPosition, SEEK_SET) >= 0; }
	bool SeekFromEnd(int64 NewPosition) override { return ::lseek(Descriptor, NewPosition, SEEK_END) >= 0; }
	bool Read(uint8* Destination, int64 BytesToRead) override
	{
		while (BytesToRead > 0)
		{
			const ssize_t Done = ::read(Descriptor, Destination, static_cast<size_t>(BytesToRead));
			if (Done < 0 && errno == EINTR)
			{
				continue;
			}
			if (Done <= 0)
			{
				return false;
			}
			Destination += Done;
			BytesToRead -= Done;
		}
		return true;
	}
	bool Write(const uint8* Source, int64 BytesToWrite) override
	{
		while (BytesToWrite > 0)
		{
			const ssize_t Done = ::write(Descriptor, Source, static_cast<size_t>(BytesToWrite));
			if (Done < 0 && errno == EINTR)
			{
				continue;
			}
			if (Done <= 0)
			{
				return false;
			}
			Source += Done;
			BytesToWrite -= Done;
		}
		return true;
	}
	bool Flush(const bool bFullFlush) override { return ::fsync(Descriptor) == 0; }
	int64 Size() override
	{
		struct stat Info
		{
		};
		return ::fstat(Descriptor, &Info) == 0 ? Info.st_size : INDEX_NONE;
	}

private:
	const int Descriptor;
};

class FUnixPlatformFile final : public IPlatformFile
{
public:
	bool FileExists(const TCHAR* Filename) override
	{
		struct stat Info
		{
		};
		return Stat(Filename, Info) && !S_ISDIR(Info.st_mode);
	}
	bool DirectoryExists(const TCHAR* Directory) override
	{
		struct stat Info
		{
		};
		return Stat(Directory, Info) && S_ISDIR(Info.st_mode);
	}
	int64 FileSize(const TCHAR* Filename) override
	{
		struct stat Info
		{
		};
		return Stat(Filename, Info) && !S_ISDIR(Info.st_mode) ? Info.st_size : INDEX_NONE;
	}
	bool DeleteFile(const TCHAR* Filename) override
	{
		// POSIX lets a file go that the user may not write; the engine's contract does not.
		// A link has no mode of its own to ask for.
		return (IsSymlink(Filename) == ESymlinkResult::Symlink || !IsReadOnly(Filename)) &&
			   ::unlink(ToNative(Filename).c_str()) == 0;
	}
	bool IsReadOnly(const TCHAR* Filename) override
	{
		const std::string Native = ToNative(Filename);
		struct stat Info
		{
		};
		return ::stat(Native.c_str(), &Info) == 0 &&
			   ((Info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(Native.c_str(), W_OK) != 0);
	}
	bool SetReadOnly(const TCHAR* Filename, bool bNewReadOnlyValue) override
	{
		struct stat Info
		{
		};
		if (!Stat(Filename, Info))
		{
			return false;
		}
		const mode_t Mode = bNewReadOnlyValue ? Info.st_mode & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH)
											  : Info.st_mode | S_IWUSR;
		return ::chmod(ToNative(Filename).c_str(), Mode) == 0;
	}
	ESymlinkResult IsSymlink(const TCHAR* Filename) override
	{
		struct stat Info
		{
		};
		const FString Path = WithoutSlashBehind(Filename);
		const bool bLink = !Path.IsEmpty() && ::lstat(ToNative(*Path).c_str(), &Info) == 0 && S_ISLNK(Info.st_mode);
		return bLink ? ESymlinkResult::Symlink : ESymlinkResult::NonSymlink;
	}
	bool MoveFile(const TCHAR* To, const TCHAR* From) override
	{
		return ::rename(ToNative(From).c_str(), ToNative(To).c_str()) == 0;
	}
	FDateTime GetTimeStamp(const TCHAR* Filename) override
	{
		struct stat Info
		{
		};
		constexpr int64 NanosecondsPerTick = 100;
		return Stat(Filename, Info) ? FDateTime::FromUnixTimestamp(Info.st_mtim.tv_sec) +
										  FTimespan(Info.st_mtim.tv_nsec / NanosecondsPerTick)
									: FDateTime::MinValue();
	}
	void SetTimeStamp(const TCHAR* Filename, FDateTime DateTime) override
	{
		struct stat Info
		{
		};
		if (Stat(Filename, Info))
		{
			const timespec Times[2] = { Info.st_atim, { DateTime.ToUnixTimestamp(), 0 } };
			::utimensat(AT_FDCWD, ToNative(Filename).c_str(), Times, 0);
		}
	}
	IFileHandle* OpenRead(const TCHAR* Filename, bool bAllowWrite) override { return Open(Filename, O_RDONLY); }
	IFileHandle* OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead) override
	{
		return Open(Filename, (bAllowRead ? O_RDWR : O_WRONLY) | O_CREAT | (bAppend ? O_APPEND : O_TRUNC));
	}
	bool CreateDirectory(const TCHAR* Directory) override
	{
		return ::mkdir(ToNative(Directory).c_str(), 0777) == 0 || (errno == EEXIST && DirectoryExists(Directory));
	}
	bool DeleteDirectory(const TCHAR* Directory) override
	{
		return ::rmdir(ToNative(Directory).c_str()) == 0 || errno == ENOENT;
	}
	bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor) override
	{
		DIR* Handle = ::opendir(ToNative(Directory).c_str());
		if (!Handle)
		{
			return false;
		}
		FString Entry(Directory);
		if (!Entry.EndsWith(TEXT("/")))
		{
			Entry.AppendChar(u'/');
		}
		const int32 PrefixLength = Entry.Len();
		bool bGoOn = true;
		for (const dirent* Item = ::readdir(Handle); Item && bGoOn; Item = ::readdir(Handle))
		{
			const std::string_view Name = Item->d_name;
			if (Name == "." || Name == "..")
			{
				continue;
			}
			Entry.LeftInline(PrefixLength);
			const FUTF8ToTCHAR Wide(Item->d_name, static_cast<int32>(Name.size()));
			Entry.Append(FStringView(Wide.Get(), Wide.Length()));
			const bool bLink = Item->d_type == DT_LNK || Item->d_type == DT_UNKNOWN;
			bGoOn = Visitor(*Entry, bLink ? DirectoryExists(*Entry) : Item->d_type == DT_DIR);
		}
		::closedir(Handle);
		return bGoOn;
	}

private:
	static IFileHandle* Open(const TCHAR* Filename, int Flags)
	{
		const int Descriptor = ::open(ToNative(Filename).c_str(), Flags | O_CLOEXEC, 0666);
		struct stat Info
		{
		};
		if (Descriptor >= 0 && (::fstat(Descriptor, &Info) != 0 || S_ISDIR(Info.st_mode)))
		{
			::close(Descriptor);
			return nullptr;
		}
		return Descriptor < 0 ? nullptr : new FUnixFileHandle(Descriptor);
	}
};

bool HasExtension(const TCHAR* File, const TCHAR* FileExtension)
{
	if (!FileExtension || !*FileExtension)
	{
		return true;
	}
	const FStringView Wanted = *FileExtension == u'.' ? FileExtension + 1 : FileExtension;
	return FStringView(FPaths::GetExtension(File)).Equals(Wanted, ESearchCase::IgnoreCase);
}
}

FPlatformFileManager& FPlatformFileManager::Get()
{
	static FPlatformFileManager Manager;
	return Manager;
}

IPlatformFile& FPlatformFileManager::GetPlatformFile()
{
	static PlatformFile::FUnixPlatformFile File;
	return TopmostPlatformFile ? *TopmostPlatformFile : File;
}

bool IPlatformFile::IterateDirectory(const TCHAR* Directory, FDirectoryVisitor& Visitor)
{
	const auto Visit = [&Visitor](const TCHAR* Entry, bool bIsDirectory) { return Visitor.Visit(Entry, bIsDirectory); };
	return IterateDirectory(Directory, FDirectoryVisitorFunc(Visit));
}

namespace PlatformFile
{
std::string RealPath(const TCHAR* Path)
{
	std::error_code Error;
	return std::filesystem::canonical(ToNative(Path), Error).string();
}

bool IsWithin(const std::string& Path, const std::string& Folder)
{
	return Path == Folder || Folder == "/" || Path.compare(0, Folder.size() + 1, Folder + "/") == 0;
}

/** A walk through folders and links to folders; a link back to where the walk has come from is named, not entered. */
bool Walk(IPlatformFile& Files, const TCHAR* Directory, IPlatformFile::FDirectoryVisitorFunc Visitor,
	std::vector<std::string>& LinksOnTheWay)
{
	const auto Visit = [&](const TCHAR* Entry, bool bIsDirectory) {
		if (!Visitor(Entry, bIsDirectory))
		{
			return false;
		}
		if (!bIsDirectory || Files.IsSymlink(Entry) != ESymlinkResult::Symlink)
		{
			return !bIsDirectory || Walk(Files, Entry, Visitor, LinksOnTheWay);
		}
		const std::string Target = RealPath(Entry);
		if (IsWithin(RealPath(Directory), Target) || std::ranges::find(LinksOnTheWay, Target) != LinksOnTheWay.end())
		{
			return true;
		}
		LinksOnTheWay.push_back(Target);
		const bool bGoOn = Walk(Files, Entry, Visitor, LinksOnTheWay);
		LinksOnTheWay.pop_back();
		return bGoOn;
	};
	return Files.IterateDirectory(Directory, IPlatformFile::FDirectoryVisitorFunc(Visit)) ||
		   !Files.DirectoryExists(Directory);
}
}

bool IPlatformFile::IterateDirectoryRecursively(const TCHAR* Directory, FDirectoryVisitorFunc Visitor)
{
	std::vector<std::string> LinksOnTheWay = { PlatformFile::RealPath(Directory) };
	return PlatformFile::Walk(*this, Directory, Visitor, LinksOnTheWay);
}

void IPlatformFile::FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension)
{
	const auto Visit = [&](const TCHAR* Entry, bool bIsDirectory) {
		if (!bIsDirectory && PlatformFile::HasExtension(Entry, FileExtension))
		{
			FoundFiles.Emplace(Entry);
		}
		return true;
	};
	IterateDirectory(Directory, FDirectoryVisitorFunc(Visit));
}

bool IPlatformFile::CreateDirectoryTree(const TCHAR* Directory)
{
	FString Path = Directory;
	FPaths::NormalizeDirectoryName(Path);
	if (Path.IsEmpty() || DirectoryExists(*Path))
	{
		return true;
	}
	const FString Parent = FPaths::GetPath(Path);
	return (Parent.IsEmpty() || CreateDirectoryTree(*Parent)) && CreateDirectory(*Path);
}

bool IPlatformFile::DeleteDirectoryRecursively(const TCHAR* Directory)
{
	const FString Path = PlatformFile::WithoutSlashBehind(Directory);
	if (IsSymlink(*Path) == ESymlinkResult::Symlink)
	{
		return DeleteFile(*Path);
	}
	TArray<FString> Files;
	TArray<FString> Directories;
	const auto Visit = [&](const TCHAR* Entry, bool bIsDirectory) {
		(bIsDirectory ? Directories : Files).Emplace(Entry);
		return true;
	};
	IterateDirectory(*Path, FDirectoryVisitorFunc(Visit));
	for (const FString& File : Files)
	{
		if (IsSymlink(*File) != ESymlinkResult::Symlink)
		{
			SetReadOnly(*File, false);
		}
		DeleteFile(*File);
	}
	for (const FString& Child : Directories)
	{
		DeleteDirectoryRecursively(*Child);
	}
	return DeleteDirectory(*Path);
}

bool IPlatformFile::CopyFile(const TCHAR* To, const TCHAR* From)
{
	if (FileExists(To))
	{
		return false;
	}
	const TUniquePtr<IFileHandle> Source(OpenRead(From));
	const TUniquePtr<IFileHandle> Target(Source ? OpenWrite(To) : nullptr);
	if (!Target)
	{
		return false;
	}
	TArray<uint8> Buffer;
	Buffer.SetNumUninitialized(1 << 16);
	for (int64 Left = Source->Size(); Left > 0;)
	{
		const int64 Count = FMath::Min(Left, static_cast<int64>(Buffer.Num()));
		if (!Source->Read(Buffer.GetData(), Count) || !Target->Write(Buffer.GetData(), Count))
		{
			return false;
		}
		Left -= Count;
	}
	return true;
}
