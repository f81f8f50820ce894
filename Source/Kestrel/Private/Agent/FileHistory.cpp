#include "Agent/FileHistory.h"

#include "Agent/FileUtils.h"
#include "Agent/TextFile.h"
#include "Algo/Reverse.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

/** A file as it is, or as it is to be. */
struct FFileHistory::FFileState
{
	/** What is on the disk now. */
	static FFileState OnDisk(const FString& FilePath);
	/** Where undoing or redoing an entry leads to. */
	static FFileState BeforeChange(const FFileHistoryEntry& Entry);
	static FFileState AfterChange(const FFileHistoryEntry& Entry);

	/** How one gets from here to there; `None` when one is there already. */
	EFileActionType ActionTo(const FFileState& Other) const;

	bool bExists = false;
	FString Content;
	TArray<uint8> Bytes; // as in FFileHistoryEntry
};

namespace FileHistory
{
/** The bytes of a file whose text alone would not bring it back. Empty for others, and for another text than Content.
 */
TArray<uint8> LoadBytesBeyondText(const FString& FilePath, const FString& Content)
{
	FString Text;
	TArray<uint8> Bytes;
	const KestrelTextFile::EContent Kind = KestrelTextFile::Load(FilePath, Text, Bytes);
	const bool bSayMore = Kind == KestrelTextFile::EContent::Text || Kind == KestrelTextFile::EContent::Binary;
	return bSayMore && Text.Equals(Content) ? Bytes : TArray<uint8>();
}

bool ContainsOtherCase(const FFileHistory::FFileEntries& Entries, const FString& FilePath)
{
	if (!Entries.Contains(FilePath))
	{
		return false;
	}
	for (const auto& Pair : Entries)
	{
		if (Pair.Key == FilePath)
		{
			return !Pair.Key.Equals(FilePath);
		}
	}
	return false;
}

/**
 * The name under which a file is recorded. Names ignore case, and some file systems do not: there the second of two
 * files is recorded by a longer way to it, "Folder/./A.txt".
 */
FString GetRecordName(const FFileHistory::FFileEntries& Entries, const FString& FilePath)
{
	FString Name = FilePath;
	while (ContainsOtherCase(Entries, Name))
	{
		Name = FPaths::GetPath(Name) + TEXT("/./") + FPaths::GetCleanFilename(Name);
	}
	return Name;
}

int32 CountMissingFolders(const FString& FilePath)
{
	int32 Count = 0;
	for (FString Folder = FPaths::GetPath(FilePath); !Folder.IsEmpty() && !FPaths::DirectoryExists(Folder);
		 Folder = FPaths::GetPath(Folder))
	{
		++Count;
	}
	return Count;
}

void RemoveEmptyFolders(const FString& FilePath, int32 NumFolders)
{
	FString Folder = FPaths::GetPath(FilePath);
	for (; NumFolders > 0 && FPlatformFileManager::Get().GetPlatformFile().DeleteDirectory(*Folder); --NumFolders)
	{
		Folder = FPaths::GetPath(Folder);
	}
}

const FFileHistoryEntry* Find(const FFileHistory::FHistories& Histories, const FString& Key, const FString& FilePath)
{
	const FFileHistory::FFileEntries* Entries = Histories.Find(Key);
	return Entries ? Entries->Find(FilePath) : nullptr;
}

void Remove(FFileHistory::FHistories& Histories, const FString& Key, const FString& FilePath)
{
	FFileHistory::FFileEntries* Entries = Histories.Find(Key);
	if (Entries && Entries->Remove(FilePath) > 0 && Entries->IsEmpty())
	{
		Histories.Remove(Key);
	}
}

/** Two paths may lead to one file, through a link for instance: only the way back, step by step, ends at its start. */
TArray<FString> PathsFromLastToFirst(const FFileHistory::FHistories& Histories, const FString& Key)
{
	TArray<FString> Paths;
	if (const FFileHistory::FFileEntries* Entries = Histories.Find(Key))
	{
		Entries->GenerateKeyArray(Paths);
		Algo::Reverse(Paths);
	}
	return Paths;
}
}

FFileHistory::FFileState FFileHistory::FFileState::OnDisk(const FString& FilePath)
{
	FFileState State;
	State.bExists = FPaths::FileExists(FilePath);
	if (State.bExists)
	{
		const KestrelTextFile::EContent Kind = KestrelTextFile::Load(FilePath, State.Content, State.Bytes);
		if (Kind == KestrelTextFile::EContent::PlainAscii)
		{
			State.Bytes.Empty();
		}
	}
	return State;
}

FFileHistory::FFileState FFileHistory::FFileState::BeforeChange(const FFileHistoryEntry& Entry)
{
	FFileState State;
	State.bExists = Entry.ActionType != EFileActionType::Creation;
	State.Content = Entry.Content;
	State.Bytes = Entry.Bytes;
	return State;
}

FFileHistory::FFileState FFileHistory::FFileState::AfterChange(const FFileHistoryEntry& Entry)
{
	FFileState State = BeforeChange(Entry);
	State.bExists = Entry.ActionType != EFileActionType::Deletion;
	return State;
}

EFileActionType FFileHistory::FFileState::ActionTo(const FFileState& Other) const
{
	if (bExists && Other.bExists && Content.Equals(Other.Content) && Bytes == Other.Bytes)
	{
		return EFileActionType::None;
	}
	if (Other.bExists)
	{
		return bExists ? EFileActionType::Modification : EFileActionType::Creation;
	}
	return bExists ? EFileActionType::Deletion : EFileActionType::None;
}

FFileHistory& FFileHistory::Get()
{
	static FFileHistory Instance;
	return Instance;
}

void FFileHistory::Store(
	const FString& Key, const FString& FilePath, EFileActionType ActionType, const FString& Content)
{
	// Made again, what was taken back before would overwrite this change.
	RedoHistories.Remove(Key);
	FFileEntries& Entries = FileHistories.FindOrAdd(Key);
	const FString Name = FileHistory::GetRecordName(Entries, FilePath);
	if (!Entries.Contains(Name))
	{
		FFileHistoryEntry& Entry = Entries.Add(Name);
		Entry.ActionType = ActionType;
		Entry.Content = Content;
		if (ActionType == EFileActionType::Creation)
		{
			Entry.NumNewFolders = FileHistory::CountMissingFolders(FFileUtils::ToAbsolutePath(FilePath));
		}
		else
		{
			Entry.Bytes = FileHistory::LoadBytesBeyondText(FilePath, Content);
		}
	}
}

void FFileHistory::StoreFileVersion(const FString& Key, const FString& FilePath, const FString& Content)
{
	if (!FilePath.IsEmpty() && !Content.IsEmpty())
	{
		Store(Key, FilePath, EFileActionType::Modification, Content);
	}
}

void FFileHistory::StoreFileCreation(const FString& Key, const FString& FilePath, const FString& Content)
{
	Store(Key, FilePath, EFileActionType::Creation, Content);
}

void FFileHistory::StoreFileDeletion(const FString& Key, const FString& FilePath, const FString& Content)
{
	Store(Key, FilePath, EFileActionType::Deletion, Content);
}

void FFileHistory::StoreFileRedoVersion(
	const FString& Key, const FString& FilePath, const FString& Content, const FFileHistoryEntry& UndoneEntry)
{
	RedoHistories.FindOrAdd(Key).Add(
		FilePath, { UndoneEntry.ActionType, Content, FileHistory::LoadBytesBeyondText(FilePath, Content), 0 });
}

void FFileHistory::ForgetUnchanged(const FString& Key, const FString& FilePath)
{
	const FFileEntries* Entries = FileHistories.Find(Key);
	const FString Name = Entries ? FileHistory::GetRecordName(*Entries, FilePath) : FString();
	const FFileHistoryEntry* Entry = Entries ? Entries->Find(Name) : nullptr;
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	if (Entry && FFileState::OnDisk(FullPath).ActionTo(FFileState::BeforeChange(*Entry)) == EFileActionType::None)
	{
		FileHistory::Remove(FileHistories, Key, Name);
	}
}

bool FFileHistory::ApplyFileSystemChange(const FString& FilePath, const FString& Content, EFileActionType ActionType)
{
	switch (ActionType)
	{
	case EFileActionType::Creation:
		return !FFileUtils::IsError(FFileUtils::CreateNewFileWithContent(FilePath, Content));
	case EFileActionType::Modification:
		return !FFileUtils::IsError(FFileUtils::ReplaceFile(FilePath, Content));
	case EFileActionType::Deletion:
		return !FFileUtils::IsError(FFileUtils::DeleteFile(FilePath));
	case EFileActionType::None:
		break;
	}
	return true;
}

bool FFileHistory::ChangeState(const FString& FilePath, const FFileState& From, const FFileState& To)
{
	if (!ApplyFileSystemChange(FilePath, To.Content, From.ActionTo(To)))
	{
		return false;
	}
	return !To.bExists || To.Bytes.IsEmpty() || FFileHelper::SaveArrayToFile(To.Bytes, *FilePath);
}

bool FFileHistory::UndoChanges(const FString& Key, const FString& FilePath)
{
	const FFileHistoryEntry* Entry = FileHistory::Find(FileHistories, Key, FilePath);
	if (!Entry)
	{
		return false;
	}
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FFileState Now = FFileState::OnDisk(FullPath);
	const FFileState Before = FFileState::BeforeChange(*Entry);
	FFileHistoryEntry Undone;
	Undone.ActionType = Before.ActionTo(Now);
	if (Undone.ActionType == EFileActionType::None)
	{
		FileHistory::Remove(FileHistories, Key, FilePath);
		return false;
	}
	StoreFileRedoVersion(Key, FilePath, Now.Content, Undone);
	const int32 NumNewFolders = Entry->NumNewFolders;
	const bool bUndone = ChangeState(FullPath, Now, Before);
	if (bUndone)
	{
		FileHistory::RemoveEmptyFolders(FullPath, NumNewFolders);
	}
	FileHistory::Remove(bUndone ? FileHistories : RedoHistories, Key, FilePath);
	return bUndone;
}

bool FFileHistory::RedoChanges(const FString& Key, const FString& FilePath)
{
	const FFileHistoryEntry* Entry = FileHistory::Find(RedoHistories, Key, FilePath);
	if (!Entry)
	{
		return false;
	}
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FFileState Now = FFileState::OnDisk(FullPath);
	const FFileState After = FFileState::AfterChange(*Entry);
	const EFileActionType Redone = Now.ActionTo(After);
	const int32 NumNewFolders = FileHistory::CountMissingFolders(FullPath);
	const bool bRedone = ChangeState(FullPath, Now, After);
	if (bRedone)
	{
		FileHistory::Remove(RedoHistories, Key, FilePath);
	}
	if (bRedone && Redone != EFileActionType::None)
	{
		FileHistories.FindOrAdd(Key).Add(FilePath, { Redone, Now.Content, Now.Bytes, NumNewFolders });
	}
	return bRedone && Redone != EFileActionType::None;
}

bool FFileHistory::UndoAllChanges(const FString& Key)
{
	bool bAny = false;
	for (const FString& FilePath : FileHistory::PathsFromLastToFirst(FileHistories, Key))
	{
		bAny |= UndoChanges(Key, FilePath);
	}
	return bAny;
}

bool FFileHistory::RedoAllChanges(const FString& Key)
{
	bool bAny = false;
	for (const FString& FilePath : FileHistory::PathsFromLastToFirst(RedoHistories, Key))
	{
		bAny |= RedoChanges(Key, FilePath);
	}
	return bAny;
}

bool FFileHistory::CanUndo(const FString& Key, const FString& FilePath) const
{
	return FileHistory::Find(FileHistories, Key, FilePath) != nullptr;
}

bool FFileHistory::CanRedo(const FString& Key, const FString& FilePath) const
{
	return FileHistory::Find(RedoHistories, Key, FilePath) != nullptr;
}
