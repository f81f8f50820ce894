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
/** Replaces the longest part of the path that exists; Resolve answers with an empty string for one that does not. */
FString ResolveExistingPart(const FString& FullPath, TFunctionRef<FString(const FString&)> Resolve)
{
	FString Existing = FullPath;
	FString Rest;
	while (!Existing.IsEmpty())
	{
		const FString Resolved = Resolve(Existing);
		if (!Resolved.IsEmpty())
		{
			return Rest.IsEmpty() ? Resolved : Resolved / Rest;
		}
		const FString Name = FPaths::GetCleanFilename(Existing);
		Rest = Rest.IsEmpty() ? Name : Name / Rest;
		Existing = FPaths::GetPath(Existing);
	}
	return FullPath;
}

bool IsReachedWithoutLinks(const FString& FullPath, const FString& Folder)
{
	FString InFolder = FullPath;
	return FPaths::MakePathRelativeTo(InFolder, *(Folder / TEXT(""))) &&
		   ResolveLinks(FullPath).Equals(ResolveLinks(Folder) / InFolder);
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

FString ResolveLinks(const FString& FullPath)
{
	bool bDangling = false;
	const FString Resolved = ResolveExistingPart(FullPath, [&bDangling](const FString& Path) {
		bDangling |= IsDanglingLink(Path);
		char* const Native = realpath(TCHAR_TO_UTF8(*Path), nullptr);
		const FString Real = Native ? FString(UTF8_TO_TCHAR(Native)) : FString();
		free(Native);
		return Real;
	});
	return bDangling ? FString() : Resolved;
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
