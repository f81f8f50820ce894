#include "Agent/Tools/ProjectView.h"

#include "Agent/Files/NativeFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "Misc/Crc.h"
#include "Misc/Paths.h"

namespace ProjectView
{
constexpr int64 MaxTotalBytes = 64 * 1024 * 1024;
constexpr double MaxSeconds = 1.0;

uint32 ChecksumOf(const FString& Text)
{
	return FCrc::MemCrc32(*Text, Text.Len() * static_cast<int32>(sizeof(TCHAR)));
}
}

bool FKestrelExpectedFile::IsStateOf(const FKestrelFileState& Now) const
{
	if (!bExists || !Now.bExists)
	{
		return bExists == Now.bExists;
	}
	if (!bIsRead || !Now.bIsRead)
	{
		return Size == Now.Size && ModificationTime == Now.ModificationTime;
	}
	// What a tool was yet to write had no bytes: the texts have to do.
	return bIsOnDisk ? Size == Now.Size && Checksum == Now.Checksum
					 : TextLength == Now.Text.Len() && Checksum == ProjectView::ChecksumOf(Now.Text);
}

FKestrelExpectedFile FKestrelFileState::WithoutText() const
{
	FKestrelExpectedFile State = *this;
	if (!bIsOnDisk)
	{
		State.TextLength = Text.Len();
		State.Checksum = ProjectView::ChecksumOf(Text);
	}
	return State;
}

FKestrelProjectView::FKestrelProjectView(EKestrelLookAhead InLookAhead, const TSharedRef<FKestrelAssetFinder>& Finder)
	: LookAhead(InLookAhead)
	, StartTime(FPlatformTime::Seconds())
	, Assets(Finder)
{
}

const FString& FKestrelProjectView::Resolve(const FString& FullPath)
{
	TArray<FPath>& Spellings = Paths.FindOrAdd(FullPath);
	const FPath* Known =
		Spellings.FindByPredicate([&FullPath](const FPath& Path) { return Path.FullPath.Equals(FullPath); });
	if (Known)
	{
		return Known->RealPath;
	}
	const FString Place = DeletedLinks.IsEmpty() ? FString() : GetPlace(FullPath);
	const bool bGone = DeletedLinks.ContainsByPredicate([&Place](const FString& Link) { return Link.Equals(Place); });
	return Spellings.Add_GetRef({ FullPath, bGone ? Place : KestrelNativeFile::ResolveLinks(FullPath) }).RealPath;
}

const FString& FKestrelProjectView::GetKey(const FString& FullPath)
{
	const FString& RealPath = Resolve(FullPath);
	return RealPath.IsEmpty() ? FullPath : RealPath;
}

FString FKestrelProjectView::GetPlace(const FString& FullPath)
{
	return KestrelNativeFile::ResolveLinks(FPaths::GetPath(FullPath)) / FPaths::GetCleanFilename(FullPath);
}

FKestrelProjectView::FFile* FKestrelProjectView::Find(const FString& RealPath)
{
	TArray<FFile>* const Spellings = Files.Find(RealPath);
	return Spellings
			   ? Spellings->FindByPredicate([&RealPath](const FFile& File) { return File.RealPath.Equals(RealPath); })
			   : nullptr;
}

FKestrelPathReview FKestrelProjectView::Review(const FString& FullPath, EKestrelReviewFor Purpose)
{
	return Reviewer.Review(FullPath, Resolve(FullPath), Purpose);
}

bool FKestrelProjectView::Exists(const FString& FullPath)
{
	const FFile* File = Find(GetKey(FullPath));
	return File ? File->State.bExists : FPaths::FileExists(FullPath);
}

bool FKestrelProjectView::IsFolder(const FString& FullPath)
{
	const FString& RealPath = GetKey(FullPath);
	const TArray<FString>* const Spellings = NewFolders.Find(RealPath);
	return FPaths::DirectoryExists(FullPath) ||
		   (Spellings &&
			   Spellings->ContainsByPredicate([&RealPath](const FString& Folder) { return Folder.Equals(RealPath); }));
}

bool FKestrelProjectView::IsOrdinaryFile(const FString& FullPath)
{
	const FFile* File = Find(GetKey(FullPath));
	return File && !File->State.bIsOnDisk ? File->State.bExists : KestrelNativeFile::IsRegularFile(FullPath);
}

const FKestrelFileState& FKestrelProjectView::Look(const FString& FullPath)
{
	const FString RealPath = GetKey(FullPath);
	FFile* const File = Find(RealPath);
	if (!File)
	{
		return Files.FindOrAdd(RealPath).Add_GetRef({ RealPath, Load(FullPath) }).State;
	}
	// Each plan keeps texts of its own.
	const int64 TextSize = File->State.Text.Len();
	if (File->State.bIsRead && TextSize > GetRoom())
	{
		File->State.bIsRead = false;
		File->State.bIsBeyondLimits = true;
		File->State.Text.Empty();
	}
	NumBytesRead += TextSize;
	return File->State;
}

FString FKestrelProjectView::TakeText(const FString& FullPath)
{
	FFile* const File = Find(GetKey(FullPath));
	return File ? MoveTemp(File->State.Text) : FString();
}

int64 FKestrelProjectView::GetRoom() const
{
	if (LookAhead == EKestrelLookAhead::Unlimited)
	{
		return MaxTextLength;
	}
	return IsTimeOver() ? 0 : FMath::Clamp<int64>(ProjectView::MaxTotalBytes - NumBytesRead, 0, MaxShownLength);
}

bool FKestrelProjectView::IsTimeOver() const
{
	return FPlatformTime::Seconds() - StartTime > ProjectView::MaxSeconds;
}

bool FKestrelProjectView::HasTimeForNotes() const
{
	return LookAhead == EKestrelLookAhead::Limited && !IsTimeOver();
}

bool FKestrelProjectView::TakeRoomFor(int64 NumCharacters)
{
	if (NumCharacters > GetRoom())
	{
		return false;
	}
	NumBytesRead += NumCharacters;
	return true;
}

FKestrelFileState FKestrelProjectView::Load(const FString& FullPath)
{
	FKestrelFileState State;
	State.bExists = FPaths::FileExists(FullPath);
	if (!State.bExists)
	{
		return State;
	}
	State.Size = IFileManager::Get().FileSize(*FullPath);
	State.ModificationTime = IFileManager::Get().GetTimeStamp(*FullPath);
	State.bIsTooLarge = State.Size > MaxTextLength;
	State.bIsBeyondLimits = !State.bIsTooLarge && State.Size > GetRoom();
	if (State.bIsBeyondLimits || State.bIsTooLarge)
	{
		return State;
	}
	TArray<uint8> Bytes;
	State.Content = KestrelTextFile::Load(FullPath, State.Text, Bytes);
	State.bIsRead = State.Content != KestrelTextFile::EContent::Unreadable;
	State.Size = State.bIsRead ? Bytes.Num() : State.Size;
	State.Checksum = LookAhead == EKestrelLookAhead::Limited ? FCrc::MemCrc32(Bytes.GetData(), Bytes.Num()) : 0;
	NumBytesRead += Bytes.Num();
	return State;
}

void FKestrelProjectView::Set(const FString& FullPath, const FKestrelFileState& State)
{
	const FString RealPath = GetKey(FullPath);
	FFile* const File = Find(RealPath);
	if (File)
	{
		File->State = State;
		return;
	}
	Files.FindOrAdd(RealPath).Add({ RealPath, State });
}

void FKestrelProjectView::NoteNewFolders(const FString& FullPath)
{
	for (FString Folder = FPaths::GetPath(FullPath); !Folder.IsEmpty() && !IsFolder(Folder);
		 Folder = FPaths::GetPath(Folder))
	{
		const FString& RealPath = GetKey(Folder);
		NewFolders.FindOrAdd(RealPath).Add(RealPath);
	}
}

void FKestrelProjectView::Write(const FString& FullPath, const FString& Text)
{
	NoteNewFolders(FullPath);
	FKestrelFileState State;
	State.bExists = true;
	State.bIsRead = true;
	State.Text = Text;
	State.Content = KestrelTextFile::EContent::Text;
	State.bIsOnDisk = false;
	Set(FullPath, State);
}

void FKestrelProjectView::WriteUnseen(const FString& FullPath)
{
	NoteNewFolders(FullPath);
	FKestrelFileState State;
	State.bExists = true;
	State.bIsBeyondLimits = true;
	State.Size = -1; // is that of no file on the disk
	State.bIsOnDisk = false;
	Set(FullPath, State);
}

void FKestrelProjectView::Delete(const FString& FullPath)
{
	if (!KestrelNativeFile::ReadLink(FullPath).IsEmpty())
	{
		// What it led to stays.
		DeletedLinks.Add(GetPlace(FullPath));
		Paths.Empty();
	}
	FKestrelFileState State;
	State.bIsOnDisk = false;
	Set(FullPath, State);
}
