#include "Agent/Files/FileRescue.h"

#include "Agent/Files/NativeFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

namespace FileRescue
{
IPlatformFile& Files()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

FString RescueDir()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("Rescue"));
}

/** Copies for the user, which no start asks about. */
FString KeptDir()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("Kept"));
}

/** False when a project has put links there: what lies behind them is somebody else's. */
bool IsOurs(const FString& Folder)
{
	return KestrelNativeFile::IsReachedWithoutLinks(
		Folder, FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir()));
}

FString CopyIn(const FString& Folder, const FString& Original)
{
	return Folder / FPaths::GetCleanFilename(Original);
}

FString NoteOf(const FString& Folder)
{
	return Folder + TEXT(".txt");
}

/** Removes one copy with its note. Whatever else lies in its folder stays, and so does the folder then. */
void RemoveCopy(const FString& Folder, const FString& Original)
{
	Files().DeleteFile(*CopyIn(Folder, Original));
	Files().DeleteDirectory(*Folder);
	Files().DeleteFile(*NoteOf(Folder));
}

/** The names that this class gives; anything else that lies there is somebody else's. */
bool IsOwnName(const FString& Name)
{
	FGuid Guid;
	return FGuid::Parse(Name, Guid) && Guid.ToString().Equals(Name);
}

/** What a note says, as long as note, folder and copy are real ones; empty for others. */
FString ReadNote(const FString& Folder)
{
	constexpr int64 MaxNoteBytes = 64 * 1024;
	const FString Note = NoteOf(Folder);
	const bool bReal = KestrelNativeFile::IsRegularFile(Note) && KestrelNativeFile::ReadLink(Note).IsEmpty() &&
					   KestrelNativeFile::ReadLink(Folder).IsEmpty() && Files().FileSize(*Note) <= MaxNoteBytes;
	FString Original;
	if (bReal)
	{
		FFileHelper::LoadFileToString(Original, *Note);
	}
	return FPaths::IsRelative(Original) || FPaths::GetCleanFilename(Original).IsEmpty() ? FString() : Original;
}

bool HaveSameContent(const FString& A, const FString& B)
{
	TArray<uint8> BytesOfA;
	TArray<uint8> BytesOfB;
	return KestrelNativeFile::IsRegularFile(A) && KestrelNativeFile::IsRegularFile(B) &&
		   Files().FileSize(*A) == Files().FileSize(*B) && FFileHelper::LoadFileToArray(BytesOfA, *A) &&
		   FFileHelper::LoadFileToArray(BytesOfB, *B) && BytesOfA == BytesOfB;
}
}

FFileRescue::FFileRescue(const FString& FullPath)
	: Original(FullPath)
	, Folder(FileRescue::RescueDir() / FGuid::NewGuid().ToString())
{
	if (!FileRescue::IsOurs(Folder) || !FileRescue::Files().CreateDirectoryTree(*Folder))
	{
		return;
	}
	KestrelNativeFile::RestrictToOwner(FileRescue::RescueDir());
	// The note comes first: a copy without one could not be offered.
	bKept = FFileHelper::SaveStringToFile(
				Original, *FileRescue::NoteOf(Folder), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM) &&
			FileRescue::Files().CopyFile(*FileRescue::CopyIn(Folder, Original), *Original);
	if (!bKept)
	{
		Remove();
	}
}

FFileRescue::~FFileRescue()
{
	if (bKept)
	{
		Remove();
	}
}

void FFileRescue::Remove()
{
	FileRescue::RemoveCopy(Folder, Original);
	bKept = false;
}

FString FFileRescue::Keep()
{
	const FString Target = FileRescue::CopyIn(FileRescue::KeptDir() / FPaths::GetCleanFilename(Folder), Original);
	if (!bKept || !FileRescue::IsOurs(FileRescue::KeptDir()) ||
		!FileRescue::Files().CreateDirectoryTree(*FPaths::GetPath(Target)))
	{
		return FString();
	}
	KestrelNativeFile::RestrictToOwner(FileRescue::KeptDir());
	if (!FileRescue::Files().MoveFile(*Target, *FileRescue::CopyIn(Folder, Original)))
	{
		FileRescue::Files().DeleteDirectory(*FPaths::GetPath(Target));
		return FString();
	}
	Remove();
	return Target;
}

bool FFileRescue::IsKeptCopy(const FString& Path)
{
	const FString Folder = FPaths::GetPath(Path);
	return FPaths::GetPath(Folder).Equals(FileRescue::KeptDir()) &&
		   FileRescue::IsOwnName(FPaths::GetCleanFilename(Folder)) && FileRescue::IsOurs(Folder) &&
		   KestrelNativeFile::IsRegularFile(Path);
}

void FFileRescue::RemoveOldKept()
{
	constexpr double DaysKept = 30.0;
	if (!FileRescue::IsOurs(FileRescue::KeptDir()))
	{
		return;
	}
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *(FileRescue::KeptDir() / TEXT("*")), false, true);
	for (const FString& Name : Names)
	{
		const FString Each = FileRescue::KeptDir() / Name;
		const FTimespan Age = FDateTime::UtcNow() - IFileManager::Get().GetTimeStamp(*Each);
		if (!FileRescue::IsOwnName(Name) || !KestrelNativeFile::ReadLink(Each).IsEmpty() ||
			Age.GetTotalDays() <= DaysKept)
		{
			continue;
		}
		TArray<FString> Copies;
		IFileManager::Get().FindFiles(Copies, *(Each / TEXT("*")), true, false);
		if (Copies.Num() == 1)
		{
			FileRescue::Files().DeleteFile(*(Each / Copies[0]));
		}
		FileRescue::Files().DeleteDirectory(*Each);
	}
}

void FFileRescue::PutBack()
{
	if (!bKept)
	{
		return;
	}
	TArray<uint8> Bytes;
	if (FFileHelper::LoadFileToArray(Bytes, *FileRescue::CopyIn(Folder, Original)) &&
		FFileHelper::SaveArrayToFile(Bytes, *Original))
	{
		Remove();
	}
	bKept = false; // a copy that could not be put back stays for the next start
}

TArray<FFileRescue::FLeftCopy> FFileRescue::FindLeftCopies()
{
	TArray<FString> Notes;
	if (!FileRescue::IsOurs(FileRescue::RescueDir()))
	{
		return TArray<FLeftCopy>();
	}
	IFileManager::Get().FindFiles(Notes, *(FileRescue::RescueDir() / TEXT("*.txt")), true, false);
	Notes.Sort();
	TArray<FLeftCopy> LeftCopies;
	for (const FString& Note : Notes)
	{
		const FString Name = FPaths::GetBaseFilename(Note);
		const FString Folder = FileRescue::RescueDir() / Name;
		const FString Original = FileRescue::IsOwnName(Name) ? FileRescue::ReadNote(Folder) : FString();
		if (Original.IsEmpty())
		{
			continue;
		}
		const FString Copy = FileRescue::CopyIn(Folder, Original);
		if (!FPaths::FileExists(Copy) || FileRescue::HaveSameContent(Copy, Original))
		{
			FileRescue::RemoveCopy(Folder, Original);
			continue;
		}
		LeftCopies.Add({ Copy, Original });
	}
	return LeftCopies;
}
