#include "Agent/FileRescue.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"

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

FString CopyIn(const FString& Folder, const FString& Original)
{
	return Folder / FPaths::GetCleanFilename(Original);
}

FString NoteOf(const FString& Folder)
{
	return Folder + TEXT(".txt");
}

void RemoveFolder(const FString& Folder)
{
	Files().DeleteDirectoryRecursively(*Folder);
	Files().DeleteFile(*NoteOf(Folder));
}

bool HaveSameContent(const FString& A, const FString& B)
{
	TArray<uint8> BytesOfA;
	TArray<uint8> BytesOfB;
	return Files().FileSize(*A) == Files().FileSize(*B) && FFileHelper::LoadFileToArray(BytesOfA, *A) &&
		   FFileHelper::LoadFileToArray(BytesOfB, *B) && BytesOfA == BytesOfB;
}
}

FFileRescue::FFileRescue(const FString& FullPath)
	: Original(FullPath)
	, Folder(FileRescue::RescueDir() / FGuid::NewGuid().ToString())
{
	if (!FileRescue::Files().CreateDirectoryTree(*Folder))
	{
		return;
	}
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
	FileRescue::RemoveFolder(Folder);
	bKept = false;
}

void FFileRescue::PutBack()
{
	if (!bKept)
	{
		return;
	}
	// What a failed write left of the file is in the way.
	FileRescue::Files().DeleteFile(*Original);
	if (FileRescue::Files().CopyFile(*Original, *FileRescue::CopyIn(Folder, Original)))
	{
		Remove();
	}
	bKept = false; // a copy that could not be put back stays for the next start
}

TArray<FFileRescue::FLeftCopy> FFileRescue::FindLeftCopies()
{
	TArray<FString> Notes;
	IFileManager::Get().FindFiles(Notes, *(FileRescue::RescueDir() / TEXT("*.txt")), true, false);
	Notes.Sort();
	TArray<FLeftCopy> LeftCopies;
	for (const FString& Note : Notes)
	{
		const FString Folder = FileRescue::RescueDir() / FPaths::GetBaseFilename(Note);
		FString Original;
		FFileHelper::LoadFileToString(Original, *FileRescue::NoteOf(Folder));
		const FString Copy = FileRescue::CopyIn(Folder, Original);
		if (!FPaths::FileExists(Copy) || FileRescue::HaveSameContent(Copy, Original))
		{
			FileRescue::RemoveFolder(Folder);
			continue;
		}
		LeftCopies.Add({ Copy, Original });
	}
	return LeftCopies;
}
