#include "HAL/FileManager.h"

#include "CoreGlobals.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

namespace FileManager
{
IPlatformFile& Files()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

/** Not through a link: what it points to stays. */
void MakeReplaceable(const TCHAR* Filename)
{
	if (Files().IsSymlink(Filename) != ESymlinkResult::Symlink)
	{
		Files().SetReadOnly(Filename, false);
	}
}

FStringView NameOf(const TCHAR* Entry, int32 DirectoryLength)
{
	return FStringView(Entry).RightChop(DirectoryLength);
}
}

IFileManager& IFileManager::Get()
{
	static IFileManager Manager;
	return Manager;
}

void IFileManager::FindFiles(TArray<FString>& FileNames, const TCHAR* Filename, bool bFiles, bool bDirectories)
{
	const FString Pattern = FPaths::GetCleanFilename(Filename);
	const FString Directory = FString(Filename).LeftChop(Pattern.Len());
	const bool bAll = Pattern.IsEmpty() || Pattern.Equals(TEXT("*")) || Pattern.Equals(TEXT("*.*"));
	const auto Visit = [&](const TCHAR* Entry, bool bIsDirectory) {
		const FStringView Name = FileManager::NameOf(Entry, Directory.Len());
		if ((bIsDirectory ? bDirectories : bFiles) && (bAll || FString(Name).MatchesWildcard(Pattern)))
		{
			FileNames.Emplace(Name);
		}
		return true;
	};
	FileManager::Files().IterateDirectory(*Directory, IPlatformFile::FDirectoryVisitorFunc(Visit));
}

void IFileManager::FindFiles(TArray<FString>& FoundFiles, const TCHAR* Directory, const TCHAR* FileExtension)
{
	TArray<FString> Paths;
	FileManager::Files().FindFiles(Paths, Directory, FileExtension);
	for (const FString& Path : Paths)
	{
		FoundFiles.Add(FPaths::GetCleanFilename(Path));
	}
}

void IFileManager::FindFilesRecursive(TArray<FString>& FileNames, const TCHAR* StartDirectory, const TCHAR* Filename,
	bool bFiles, bool bDirectories, bool bClearFileNames)
{
	if (bClearFileNames)
	{
		FileNames.Empty();
	}
	const FString Pattern(Filename);
	const auto Visit = [&](const TCHAR* Entry, bool bIsDirectory) {
		if ((bIsDirectory ? bDirectories : bFiles) && FPaths::GetCleanFilename(Entry).MatchesWildcard(Pattern))
		{
			FileNames.Emplace(Entry);
		}
		return true;
	};
	FileManager::Files().IterateDirectoryRecursively(StartDirectory, IPlatformFile::FDirectoryVisitorFunc(Visit));
}

FDateTime IFileManager::GetTimeStamp(const TCHAR* Filename)
{
	return FileManager::Files().GetTimeStamp(Filename);
}

int64 IFileManager::FileSize(const TCHAR* Filename)
{
	return FileManager::Files().FileSize(Filename);
}

bool IFileManager::FileExists(const TCHAR* Filename)
{
	return FileManager::Files().FileExists(Filename);
}

bool IFileManager::DirectoryExists(const TCHAR* InDirectory)
{
	return FileManager::Files().DirectoryExists(InDirectory);
}

bool IFileManager::Delete(const TCHAR* Filename, bool RequireExists, bool EvenReadOnly, bool Quiet)
{
	// A link that leads nowhere does not exist to those who follow it, but unlink removes it.
	const bool bDangling =
		!DirectoryExists(Filename) && FileManager::Files().IsSymlink(Filename) == ESymlinkResult::Symlink;
	if (!FileExists(Filename) && !bDangling)
	{
		return !RequireExists;
	}
	if (EvenReadOnly)
	{
		FileManager::MakeReplaceable(Filename);
	}
	const bool bDeleted = FileManager::Files().DeleteFile(Filename);
	UE_CLOG(!bDeleted && !Quiet, LogCore, Warning, TEXT("Error deleting file: %s"), Filename);
	return bDeleted;
}

bool IFileManager::Move(const TCHAR* Dest, const TCHAR* Src, bool Replace, bool EvenIfReadOnly)
{
	if (!Replace && FileExists(Dest))
	{
		return false;
	}
	if (EvenIfReadOnly)
	{
		FileManager::MakeReplaceable(Dest);
	}
	MakeDirectory(*FPaths::GetPath(Dest), true);
	return FileManager::Files().MoveFile(Dest, Src);
}

uint32 IFileManager::Copy(const TCHAR* Dest, const TCHAR* Src, bool Replace)
{
	if (Replace && !Delete(Dest, false, true, true))
	{
		return COPY_Fail;
	}
	MakeDirectory(*FPaths::GetPath(Dest), true);
	return FileManager::Files().CopyFile(Dest, Src) ? COPY_OK : COPY_Fail;
}

bool IFileManager::MakeDirectory(const TCHAR* Path, bool Tree)
{
	return Tree ? FileManager::Files().CreateDirectoryTree(Path) : FileManager::Files().CreateDirectory(Path);
}

bool IFileManager::DeleteDirectory(const TCHAR* Path, bool RequireExists, bool Tree)
{
	if (!DirectoryExists(Path))
	{
		return !RequireExists;
	}
	return Tree ? FileManager::Files().DeleteDirectoryRecursively(Path) : FileManager::Files().DeleteDirectory(Path);
}
