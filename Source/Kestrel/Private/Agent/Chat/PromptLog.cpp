#include "Agent/Chat/PromptLog.h"

#include "Agent/Files/NativeFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

namespace PromptLog
{
const TCHAR* const NamePrefix = TEXT("KestrelPrompts_");
}

FString FKestrelPromptLog::GetUsualFolder()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectPluginsDir() / TEXT("kestrel-unreal") / TEXT("Logs"));
}

void FKestrelPromptLog::Open(const FString& InFolder)
{
	Folder = InFolder;
	EnsureFolderExists();
}

void FKestrelPromptLog::EnsureFolderExists() const
{
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	const bool bIsNew = !PlatformFile.DirectoryExists(*Folder);
	if (bIsNew)
	{
		PlatformFile.CreateDirectoryTree(*Folder);
	}
	if (bIsNew || IsOurs())
	{
		KestrelNativeFile::RestrictToOwner(Folder);
	}
}

bool FKestrelPromptLog::IsOurs() const
{
	return KestrelNativeFile::IsReachedWithoutLinks(Folder, FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
}

TArray<FString> FKestrelPromptLog::GetAllFiles() const
{
	TArray<FString> LogFiles;
	FPlatformFileManager::Get().GetPlatformFile().FindFiles(LogFiles, *Folder, TEXT(".log"));
	return LogFiles;
}

TArray<FString> FKestrelPromptLog::GetOwnFiles() const
{
	TArray<FString> LogFiles = GetAllFiles();
	if (!IsOurs())
	{
		// Behind a link lie somebody else's files as well.
		LogFiles.RemoveAll(
			[](const FString& File) { return !FPaths::GetCleanFilename(File).StartsWith(PromptLog::NamePrefix); });
	}
	return LogFiles;
}

void FKestrelPromptLog::DeleteAll() const
{
	for (const FString& File : GetOwnFiles())
	{
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*File);
	}
}

void FKestrelPromptLog::DeleteOld(int32 Days) const
{
	for (const FString& File : GetOwnFiles())
	{
		if (IsOlderThanDays(File, Days))
		{
			FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*File);
		}
	}
}

bool FKestrelPromptLog::IsOlderThanDays(const FString& File, int32 Days)
{
	// Time stamps of files are UTC.
	const FTimespan Age = FDateTime::UtcNow() - FPlatformFileManager::Get().GetPlatformFile().GetTimeStamp(*File);
	return Age.GetTotalDays() > Days;
}

FString FKestrelPromptLog::GetFilePath() const
{
	const FString Today = FDateTime::Now().ToString(TEXT("%Y-%m-%d"));
	return Folder / PromptLog::NamePrefix + Today + TEXT(".log");
}

void FKestrelPromptLog::Append(const FString& Text, const FString& FilePath, bool bWithTimestamp) const
{
	EnsureFolderExists();
	const FString Entry =
		bWithTimestamp ? FString::Printf(TEXT("\n[%s] %s\n\n"), *FDateTime::Now().ToString(TEXT("%H:%M:%S")), *Text)
					   : FString::Printf(TEXT("%s\n"), *Text);
	// A link could lead anywhere, and a pipe would hold the editor.
	const bool bIsThere = FPaths::FileExists(FilePath);
	if (KestrelNativeFile::IsDanglingLink(FilePath) || !KestrelNativeFile::ReadLink(FilePath).IsEmpty() ||
		!KestrelNativeFile::ReadLink(Folder).IsEmpty() || (bIsThere && !KestrelNativeFile::IsRegularFile(FilePath)))
	{
		return;
	}
	// Without a byte order mark: each append would write another one into the middle of the file.
	FFileHelper::SaveStringToFile(
		Entry, *FilePath, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM, &IFileManager::Get(), FILEWRITE_Append);
	KestrelNativeFile::RestrictToOwner(FilePath);
}
