#include "Agent/Files/NativeFile.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

#if PLATFORM_LINUX || PLATFORM_MAC
#include "stdlib.h"
#include "sys/stat.h"
#include "unistd.h"
#endif

namespace KestrelNativeFile
{
bool IsTooLong(const FString& FullPath)
{
#if PLATFORM_WINDOWS
	constexpr int32 MaxPathLength = 32767;
#else
	constexpr int32 MaxPathLength = 4096;
#endif
	constexpr int32 MaxFolders = 512; // no project comes near
	int32 NumFolders = 0;
	for (const TCHAR Character : FullPath.Left(MaxPathLength))
	{
		NumFolders += Character == TEXT('/') ? 1 : 0;
	}
	return FullPath.Len() > MaxPathLength || NumFolders > MaxFolders;
}

bool IsReachedWithoutLinks(const FString& FullPath, const FString& Folder)
{
	FString InFolder = FullPath;
	return FPaths::MakePathRelativeTo(InFolder, *(Folder / TEXT(""))) &&
		   ResolveLinks(FullPath).Equals(ResolveLinks(Folder) / InFolder);
}

FString ResolveLinksBelow(const FString& RealFolder, const FString& Below)
{
#if PLATFORM_LINUX || PLATFORM_MAC
	TArray<FString> Names;
	Below.ParseIntoArray(Names, TEXT("/"));
	FString Path = RealFolder;
	for (const FString& Name : Names)
	{
		Path /= Name;
		if (!ReadLink(Path).IsEmpty())
		{
			return ResolveLinks(RealFolder / Below);
		}
	}
	return Path;
#else
	return ResolveLinks(RealFolder / Below);
#endif
}

#if PLATFORM_LINUX || PLATFORM_MAC
bool IsRegularFile(const FString& FullPath)
{
	struct stat Info;
	return stat(TCHAR_TO_UTF8(*FullPath), &Info) == 0 && S_ISREG(Info.st_mode);
}

bool IsDanglingLink(const FString& FullPath)
{
	struct stat Info;
	return lstat(TCHAR_TO_UTF8(*FullPath), &Info) == 0 && stat(TCHAR_TO_UTF8(*FullPath), &Info) != 0;
}

/** The path with all links resolved; empty for one that does not exist. */
FString ResolveExisting(const FString& FullPath)
{
	char* const Native = realpath(TCHAR_TO_UTF8(*FullPath), nullptr);
	const FString Real = Native ? FString(UTF8_TO_TCHAR(Native)) : FString();
	free(Native);
	return Real;
}

FString WithoutSlashesAtTheEnd(const FString& Path)
{
	int32 Length = Path.Len();
	while (Length > 1 && Path[Length - 1] == TEXT('/'))
	{
		--Length;
	}
	return Path.Left(Length);
}

/** Where the names of the path end: its lengths up to there. */
TArray<int32> FindEndsOfNames(const FString& Path)
{
	TArray<int32> Ends;
	for (int32 Index = 1; Index < Path.Len(); ++Index)
	{
		if (Path[Index] == TEXT('/') && Path[Index - 1] != TEXT('/'))
		{
			Ends.Add(Index);
		}
	}
	Ends.Add(Path.Len());
	return Ends;
}

FString ResolveLinks(const FString& FullPath)
{
	if (IsTooLong(FullPath))
	{
		return FString();
	}
	const FString Path = WithoutSlashesAtTheEnd(FullPath);
	const FString Whole = ResolveExisting(Path);
	if (!Whole.IsEmpty())
	{
		return Whole; // as nearly all that is asked for does
	}
	const TArray<int32> Ends = FindEndsOfNames(Path);
	// Nothing exists in a folder that does not: each look halves what is left to find out.
	FString Real;
	int32 NumExisting = 0;
	for (int32 NumLeft = Ends.Num(); NumLeft > 0;)
	{
		const int32 NumLookedAt = (NumLeft + 1) / 2;
		FString Resolved = ResolveExisting(Path.Left(Ends[NumExisting + NumLookedAt - 1]));
		if (Resolved.IsEmpty())
		{
			NumLeft = NumLookedAt - 1;
			continue;
		}
		Real = MoveTemp(Resolved);
		NumExisting += NumLookedAt;
		NumLeft -= NumLookedAt;
	}
	if (NumExisting == Ends.Num())
	{
		return Real;
	}
	if (IsDanglingLink(Path.Left(Ends[NumExisting])))
	{
		return FString();
	}
	return NumExisting == 0 ? Path : Real / Path.RightChop(Ends[NumExisting - 1] + 1);
}

FString ReadLink(const FString& FullPath)
{
	constexpr int32 MaxLength = 4096;
	char Target[MaxLength];
	const ssize_t Length = readlink(TCHAR_TO_UTF8(*FullPath), Target, MaxLength - 1);
	if (Length <= 0)
	{
		return FString();
	}
	Target[Length] = '\0';
	return FString(UTF8_TO_TCHAR(Target));
}

bool MakeLink(const FString& FullPath, const FString& Target)
{
	return symlink(TCHAR_TO_UTF8(*Target), TCHAR_TO_UTF8(*FullPath)) == 0;
}

constexpr int32 PermissionBits = 0777; // not those that run a program as somebody else

int32 GetMode(const FString& FullPath)
{
	struct stat Info;
	return stat(TCHAR_TO_UTF8(*FullPath), &Info) == 0 ? static_cast<int32>(Info.st_mode) & PermissionBits : -1;
}

void SetMode(const FString& FullPath, int32 Mode)
{
	if (Mode >= 0)
	{
		chmod(TCHAR_TO_UTF8(*FullPath), static_cast<mode_t>(Mode & PermissionBits));
	}
}

void RestrictToOwner(const FString& FullPath)
{
	constexpr int32 OwnersFile = 0600;
	constexpr int32 OwnersFolder = 0700;
	if (ReadLink(FullPath).IsEmpty())
	{
		SetMode(FullPath, FPaths::DirectoryExists(FullPath) ? OwnersFolder : OwnersFile);
	}
}
#else
bool IsRegularFile(const FString& FullPath)
{
	return FPaths::FileExists(FullPath);
}

bool IsDanglingLink(const FString& FullPath)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	return Files.IsSymlink(*FullPath) == ESymlinkResult::Symlink && !Files.FileExists(*FullPath) &&
		   !Files.DirectoryExists(*FullPath);
}

FString ResolveLinks(const FString& FullPath)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	if (IsTooLong(FullPath))
	{
		return FString();
	}
	for (FString Path = FullPath; !Path.IsEmpty(); Path = FPaths::GetPath(Path))
	{
		if (Files.IsSymlink(*Path) == ESymlinkResult::Symlink)
		{
			return FString(); // the engine tells that there is a link, but not where it leads
		}
	}
	return FullPath;
}

FString ReadLink(const FString&)
{
	return FString();
}

bool MakeLink(const FString&, const FString&)
{
	return false;
}

int32 GetMode(const FString&)
{
	return -1;
}

void SetMode(const FString&, int32)
{
}

void RestrictToOwner(const FString&)
{
}
#endif
}
