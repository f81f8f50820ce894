#include "Agent/History/FileSnapshot.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/Files/TextFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"

FKestrelFileSnapshot FKestrelFileSnapshot::OnDisk(const FString& FilePath)
{
	FKestrelFileSnapshot State;
	State.bExists = FPaths::FileExists(FilePath);
	State.LinkTarget = KestrelNativeFile::ReadLink(FilePath);
	if (State.bExists)
	{
		State.Mode = KestrelNativeFile::GetMode(FilePath);
		const KestrelTextFile::EContent Kind = KestrelTextFile::Load(FilePath, State.Content, State.Bytes);
		State.bIsUnreadable = Kind == KestrelTextFile::EContent::Unreadable;
		if (Kind == KestrelTextFile::EContent::PlainAscii)
		{
			State.Bytes.Empty();
		}
	}
	return State;
}

FKestrelFileSnapshot FKestrelFileSnapshot::BeforeChange(const FFileHistoryEntry& Entry)
{
	FKestrelFileSnapshot State;
	State.bExists = Entry.ActionType != EFileActionType::Creation;
	State.Content = Entry.Content;
	State.Bytes = Entry.Bytes;
	State.Mode = Entry.Mode;
	State.LinkTarget = Entry.LinkTarget;
	State.bIsLinkAlone = Entry.ActionType == EFileActionType::Deletion && !Entry.LinkTarget.IsEmpty();
	return State;
}

FKestrelFileSnapshot FKestrelFileSnapshot::AfterChange(const FFileHistoryEntry& Entry)
{
	FKestrelFileSnapshot State = BeforeChange(Entry);
	State.bExists = Entry.ActionType != EFileActionType::Deletion;
	return State;
}

EFileActionType FKestrelFileSnapshot::ActionTo(const FKestrelFileSnapshot& Other) const
{
	const bool bSameText =
		bIsLinkAlone || Other.bIsLinkAlone || (Content.Equals(Other.Content) && Bytes == Other.Bytes);
	if (bExists && Other.bExists && bSameText && LinkTarget.Equals(Other.LinkTarget))
	{
		return EFileActionType::None;
	}
	if (Other.bExists)
	{
		return bExists ? EFileActionType::Modification : EFileActionType::Creation;
	}
	return bExists ? EFileActionType::Deletion : EFileActionType::None;
}

bool KestrelFileSnapshot::FillFromDisk(const FString& FullPath, FFileHistoryEntry& Entry, TArray<uint8>& OutPlainAscii)
{
	Entry.LinkTarget = KestrelNativeFile::ReadLink(FullPath);
	Entry.Mode = KestrelNativeFile::GetMode(FullPath);
	if (!FPaths::FileExists(FullPath))
	{
		return true;
	}
	TArray<uint8> Bytes;
	if (!KestrelNativeFile::IsRegularFile(FullPath) || !FFileHelper::LoadFileToArray(Bytes, *FullPath))
	{
		return false;
	}
	if (KestrelTextFile::IsPlainAsciiOf(Entry.Content, Bytes))
	{
		OutPlainAscii = MoveTemp(Bytes);
		return true;
	}
	FString Text;
	FFileHelper::BufferToString(Text, Bytes.GetData(), Bytes.Num());
	if (Text.Equals(Entry.Content))
	{
		Entry.Bytes = MoveTemp(Bytes);
	}
	return true;
}

bool KestrelFileSnapshot::ReplaceLink(const FString& FilePath, const FString& OldTarget, const FString& NewTarget)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	const bool bIsThere = FPaths::FileExists(FilePath) || !OldTarget.IsEmpty();
	const FString Aside = FilePath + TEXT(".") + FGuid::NewGuid().ToString();
	if (bIsThere && !Files.MoveFile(*Aside, *FilePath))
	{
		return false;
	}
	if (!NewTarget.IsEmpty() && !KestrelNativeFile::MakeLink(FilePath, NewTarget))
	{
		Files.MoveFile(*FilePath, *Aside);
		return false;
	}
	return !bIsThere || Files.DeleteFile(*Aside);
}

int32 KestrelFileSnapshot::CountMissingFolders(const FString& FilePath)
{
	int32 Count = 0;
	for (FString Folder = FPaths::GetPath(FilePath); !Folder.IsEmpty() && !FPaths::DirectoryExists(Folder);
		 Folder = FPaths::GetPath(Folder))
	{
		++Count;
	}
	return Count;
}

void KestrelFileSnapshot::RemoveEmptyFolders(const FString& FilePath, int32 NumFolders)
{
	FString Folder = FPaths::GetPath(FilePath);
	for (; NumFolders > 0 && FPlatformFileManager::Get().GetPlatformFile().DeleteDirectory(*Folder); --NumFolders)
	{
		Folder = FPaths::GetPath(Folder);
	}
}
