#include "Agent/FileHistory.h"

#include "Agent/Files/FileRescue.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Files/TextFile.h"
#include "Agent/History/HistoryStore.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Crc.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
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
	/** On the disk, and its content is not known: nothing can be recorded of it. */
	bool bIsUnreadable = false;
	FString Content;
	// As in FFileHistoryEntry:
	TArray<uint8> Bytes;
	int32 Mode = -1;
	FString LinkTarget;
	/** Of a link that was deleted: what it led to was not, and has a text of its own. */
	bool bIsLinkAlone = false;
};

namespace FileHistory
{
/**
 * Fills in what the text alone would not bring back of the file on the disk: its bytes, mode and link.
 *
 * @param OutPlainAscii  the file's bytes, when they are the entry's text in plain ASCII
 * @return false when the file is there and cannot be read; one with another text than the entry has adds no bytes
 */
bool FillFromDisk(const FString& FullPath, FFileHistoryEntry& Entry, TArray<uint8>& OutPlainAscii)
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

/**
 * Takes back what revision control was told about a file, which may give the file itself another content.
 *
 * @return false when it would not, for instance since another program works on the repository
 */
bool RevertIndex(const FString& FullPath, const FFileHistoryEntry& Entry)
{
	const bool bHasChanged = Entry.RevisionControl == EKestrelRevisionControl::CheckedIn ||
							 FFileUtils::GetRevisionControl(FullPath) == EKestrelRevisionControl::Added;
	return !bHasChanged || FFileUtils::RevertInSourceControl(FullPath) ||
		   FFileUtils::GetRevisionControl(FullPath) == EKestrelRevisionControl::Unknown;
}

/** Tells revision control about a file that is back what it knew before the conversation. */
void RestoreIndex(const FString& FullPath, const FFileHistoryEntry& Entry)
{
	const EKestrelRevisionControl Now = FFileUtils::GetRevisionControl(FullPath);
	if (Entry.RevisionControl == EKestrelRevisionControl::Added && Now != Entry.RevisionControl)
	{
		FFileUtils::AddNewFileToSourceControl(FullPath);
	}
	else if (Entry.RevisionControl == EKestrelRevisionControl::Unknown && Now == EKestrelRevisionControl::Added)
	{
		FFileUtils::RevertInSourceControl(FullPath); // a file that is created is added
	}
}

FKestrelFileMark MarkOf(const FString& FullPath)
{
	FKestrelFileMark Mark;
	Mark.bExists = FPaths::FileExists(FullPath);
	TArray<uint8> Bytes;
	if (Mark.bExists && KestrelNativeFile::IsRegularFile(FullPath) && FFileHelper::LoadFileToArray(Bytes, *FullPath))
	{
		Mark.Checksum = FCrc::MemCrc32(Bytes.GetData(), Bytes.Num());
	}
	return Mark;
}

/** @return false when there is a file, and no copy of it could be kept */
bool KeepCopy(const FString& FullPath, TArray<FString>& OutCopies)
{
	if (!FPaths::FileExists(FullPath))
	{
		return true;
	}
	const FString Copy = FFileRescue(FullPath).Keep();
	if (Copy.IsEmpty())
	{
		return false;
	}
	OutCopies.Add(Copy);
	return true;
}

/**
 * A text that somebody else has written since the conversation's last change must not go with undo and redo.
 *
 * @param Left  how the conversation has left the file
 * @return false when there is one, and no copy of it could be kept
 */
bool KeepIfChanged(const FString& FullPath, const TOptional<FKestrelFileMark>& Left, const FFileHistoryEntry& Entry)
{
	TArray<FString> Copies;
	// After a restart without a mark, the editor has ended in the middle of the change.
	const bool bChanged = Left.IsSet() ? !MarkOf(FullPath).IsSameAs(Left.GetValue()) : Entry.bFromEarlierRun;
	if (bChanged && !KeepCopy(FullPath, Copies))
	{
		return false;
	}
	for (const FString& Copy : Copies)
	{
		FFileHistory::Get().OnTextKept.ExecuteIfBound(FullPath, Copy);
	}
	return true;
}

/** What a step of undo or redo would change is judged before it: a link that it replaces keeps what it leads to. */
bool KeepTextOfOthers(const FString& FullPath, const FString& LinkNow, const FFileHistoryEntry& Entry)
{
	for (const FString& Copy : Entry.KeptCopies)
	{
		FFileHistory::Get().OnTextKept.ExecuteIfBound(FullPath, Copy);
	}
	const bool bReplacesLink = !LinkNow.IsEmpty() && !LinkNow.Equals(Entry.LinkTarget);
	return bReplacesLink || KeepIfChanged(FullPath, Entry.Left, Entry);
}

/**
 * A change is undone where it was made: since then, a folder may have become a link to somewhere else, or a link that
 * stays as it is may lead on to another file.
 */
bool IsWhereItWas(const FString& FullPath, const FString& LinkNow, const FFileHistoryEntry& Entry)
{
	if (Entry.bFromEarlierRun)
	{
		return FKestrelPathReview::Of(FullPath).bIsOfProject;
	}
	const bool bStaysLink = !LinkNow.IsEmpty() && LinkNow.Equals(Entry.LinkTarget);
	return (Entry.RealFolder.IsEmpty() ||
			   KestrelNativeFile::ResolveLinks(FPaths::GetPath(FullPath)).Equals(Entry.RealFolder)) &&
		   (!bStaysLink || KestrelNativeFile::ResolveLinks(FullPath).Equals(Entry.RealPath));
}

void NotePlace(const FString& FullPath, FFileHistoryEntry& Entry)
{
	static int64 NumNoted = 0;
	Entry.Order = ++NumNoted;
	Entry.RealPath = KestrelNativeFile::ResolveLinks(FullPath);
	Entry.RealFolder = KestrelNativeFile::ResolveLinks(FPaths::GetPath(FullPath));
}

bool IsLinkGone(const FFileHistoryEntry& Entry, const FString& FilePath)
{
	return !Entry.LinkTarget.IsEmpty() && KestrelNativeFile::ReadLink(FFileUtils::ToAbsolutePath(FilePath)).IsEmpty();
}

/**
 * How the conversation has left a file, in an entry that may be about another path to it.
 *
 * @param EntryPath  what the entry is recorded under
 * @return null when the entry is about another file
 */
TOptional<FKestrelFileMark>* FindLeft(
	FFileHistoryEntry& Entry, const FString& EntryPath, const FString& FilePath, const FString& RealPath)
{
	if (EntryPath.Equals(FilePath))
	{
		return &Entry.Left;
	}
	if (!Entry.RealPath.Equals(RealPath))
	{
		return nullptr;
	}
	return IsLinkGone(Entry, EntryPath) ? &Entry.LeftBehindLink : &Entry.Left;
}

/** Of a file that was missing on the disk, and that revision control would still have. */
bool WasMissing(const FFileHistoryEntry& Entry)
{
	return Entry.ActionType == EFileActionType::Creation && Entry.RevisionControl == EKestrelRevisionControl::CheckedIn;
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

/** Puts a link, or the place for a file, where a file or another link is. */
bool ReplaceLink(const FString& FilePath, const FString& OldTarget, const FString& NewTarget)
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

const FFileHistoryEntry* Find(const FFileHistory::FHistories& Histories, const FString& Key, const FString& FilePath)
{
	const FFileHistory::FFileEntries* Entries = Histories.Find(Key);
	return Entries ? Entries->Find(FilePath) : nullptr;
}

void Remove(FFileHistory::FHistories& Histories, const FString& Key, const FString& FilePath)
{
	FFileHistory::FFileEntries* Entries = Histories.Find(Key);
	if (const FFileHistoryEntry* Entry = Entries ? Entries->Find(FilePath) : nullptr)
	{
		FKestrelHistoryStore::Remove(*Entry);
		Entries->Remove(FilePath);
		if (Entries->IsEmpty())
		{
			Histories.Remove(Key);
		}
	}
}

/** Two paths may lead to one file, through a link for instance: only the way back, step by step, ends at its start. */
TArray<FString> PathsFromLastToFirst(const FFileHistory::FHistories& Histories, const FString& Key)
{
	TArray<FString> Paths;
	if (const FFileHistory::FFileEntries* Entries = Histories.Find(Key))
	{
		Entries->GenerateKeyArray(Paths);
		Paths.Sort([Entries](const FString& A, const FString& B) {
			return Entries->FindChecked(A).Order > Entries->FindChecked(B).Order;
		});
	}
	return Paths;
}
}

FFileHistory::FFileState FFileHistory::FFileState::OnDisk(const FString& FilePath)
{
	FFileState State;
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

FFileHistory::FFileState FFileHistory::FFileState::BeforeChange(const FFileHistoryEntry& Entry)
{
	FFileState State;
	State.bExists = Entry.ActionType != EFileActionType::Creation;
	State.Content = Entry.Content;
	State.Bytes = Entry.Bytes;
	State.Mode = Entry.Mode;
	State.LinkTarget = Entry.LinkTarget;
	State.bIsLinkAlone = Entry.ActionType == EFileActionType::Deletion && !Entry.LinkTarget.IsEmpty();
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

FFileHistory& FFileHistory::Get()
{
	static FFileHistory Instance;
	return Instance;
}

bool FFileHistory::Store(
	const FString& Key, const FString& FilePath, EFileActionType ActionType, const FString& Content)
{
	FFileEntries* const Existing = FileHistories.Find(Key);
	const FString Name = Existing ? FileHistory::GetRecordName(*Existing, FilePath) : FilePath;
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	if (!KeepVersionOfOthers(Key, Name, FullPath))
	{
		return false;
	}
	const bool bTouchesIndex = ActionType != EFileActionType::Modification;
	FFileHistoryEntry Entry;
	FFileHistoryEntry* const Stored = Existing ? Existing->Find(Name) : nullptr;
	if (Stored)
	{
		if (Stored->bIndexTouched || !bTouchesIndex)
		{
			return true;
		}
		Entry = *Stored;
	}
	TArray<uint8> PlainAscii;
	if (!Stored)
	{
		Entry.ActionType = ActionType;
		Entry.Content = Content;
		Entry.RevisionControl = FFileUtils::GetRevisionControl(FullPath);
		FileHistory::NotePlace(FullPath, Entry);
		if (ActionType == EFileActionType::Creation)
		{
			Entry.LinkTarget = KestrelNativeFile::ReadLink(FullPath);
			Entry.NumNewFolders = FileHistory::CountMissingFolders(FullPath);
		}
		else if (!FileHistory::FillFromDisk(FullPath, Entry, PlainAscii))
		{
			return false;
		}
	}
	Entry.bIndexTouched = bTouchesIndex;
	if (!FKestrelHistoryStore::Write(Key, EKestrelHistorySide::Undo, Name, Entry, PlainAscii))
	{
		return false;
	}
	FileHistories.FindOrAdd(Key).Add(Name, MoveTemp(Entry));
	return true;
}

bool FFileHistory::KeepVersionOfOthers(const FString& Key, const FString& Name, const FString& FullPath)
{
	FFileEntries* const Entries = FileHistories.Find(Key);
	if (!Entries)
	{
		return true;
	}
	const FString RealPath = KestrelNativeFile::ResolveLinks(FullPath);
	TOptional<FKestrelFileMark> Now;
	for (auto& Pair : *Entries)
	{
		FFileHistoryEntry& Entry = Pair.Value;
		TOptional<FKestrelFileMark>* const Left = FileHistory::FindLeft(Entry, Pair.Key, Name, RealPath);
		if (!Left || !Left->IsSet())
		{
			continue;
		}
		const bool bFirst = !Now.IsSet();
		Now = bFirst ? FileHistory::MarkOf(FullPath) : Now;
		if (Now->IsSameAs(Left->GetValue()))
		{
			continue;
		}
		// One copy is enough for all paths that lead to the file.
		if (bFirst && !FileHistory::KeepCopy(FullPath, Entry.KeptCopies))
		{
			return false;
		}
		*Left = Now;
		FKestrelHistoryStore::WriteLeft(Entry);
	}
	return true;
}

void FFileHistory::ForgetRedo(const FString& Key)
{
	if (const FFileEntries* Entries = RedoHistories.Find(Key))
	{
		for (const auto& Pair : *Entries)
		{
			FKestrelHistoryStore::Remove(Pair.Value);
		}
		RedoHistories.Remove(Key);
	}
}

bool FFileHistory::StoreFileVersion(const FString& Key, const FString& FilePath, const FString& Content)
{
	return FilePath.IsEmpty() || Content.IsEmpty() || Store(Key, FilePath, EFileActionType::Modification, Content);
}

bool FFileHistory::StoreFileCreation(const FString& Key, const FString& FilePath, const FString& Content)
{
	return Store(Key, FilePath, EFileActionType::Creation, Content);
}

bool FFileHistory::StoreFileDeletion(const FString& Key, const FString& FilePath, const FString& Content)
{
	return Store(Key, FilePath, EFileActionType::Deletion, Content);
}

bool FFileHistory::StoreFileRedoVersion(
	const FString& Key, const FString& FilePath, const FString& Content, const FFileHistoryEntry& UndoneEntry)
{
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	FFileHistoryEntry Entry;
	Entry.ActionType = UndoneEntry.ActionType;
	Entry.Content = Content;
	FileHistory::NotePlace(FullPath, Entry);
	TArray<uint8> PlainAscii;
	if (!FileHistory::FillFromDisk(FullPath, Entry, PlainAscii) ||
		!FKestrelHistoryStore::Write(Key, EKestrelHistorySide::Redo, FilePath, Entry, PlainAscii))
	{
		return false;
	}
	RedoHistories.FindOrAdd(Key).Add(FilePath, MoveTemp(Entry));
	return true;
}

FString FFileHistory::LoadLastConversation(TArray<FString>& OutNotUndoable)
{
	TOptional<FKestrelHistoryStore::FConversation> Last = FKestrelHistoryStore::LoadLast();
	if (!Last.IsSet())
	{
		return FString();
	}
	if (!Last->Undo.IsEmpty())
	{
		FileHistories.Add(Last->Id, MoveTemp(Last->Undo));
	}
	if (!Last->Redo.IsEmpty())
	{
		RedoHistories.Add(Last->Id, MoveTemp(Last->Redo));
	}
	OutNotUndoable = MoveTemp(Last->NotFollowed);
	return Last->Id;
}

void FFileHistory::NoteLeft(const FString& Key, const FString& FilePath)
{
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FString RealPath = KestrelNativeFile::ResolveLinks(FullPath);
	const FKestrelFileMark Mark = FileHistory::MarkOf(FullPath);
	for (FHistories* Histories : { &FileHistories, &RedoHistories })
	{
		FFileEntries* const Entries = Histories->Find(Key);
		if (!Entries)
		{
			continue;
		}
		for (auto& Pair : *Entries)
		{
			FFileHistoryEntry& Entry = Pair.Value;
			TOptional<FKestrelFileMark>* const Left = FileHistory::FindLeft(Entry, Pair.Key, FilePath, RealPath);
			if (!Left)
			{
				continue;
			}
			if (Left == &Entry.Left && FileHistory::IsLinkGone(Entry, Pair.Key) && !Entry.LeftBehindLink.IsSet())
			{
				Entry.LeftBehindLink = Entry.Left;
			}
			*Left = Mark;
			FKestrelHistoryStore::WriteLeft(Entry);
		}
	}
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

bool FFileHistory::ChangeBehindLink(const FString& FilePath, const FFileHistoryEntry& Entry, const FFileState& To)
{
	const FFileState Behind = FFileState::OnDisk(FilePath);
	if (To.bIsLinkAlone || Behind.ActionTo(To) == EFileActionType::None)
	{
		return true;
	}
	const bool bIsSameFile = Entry.bFromEarlierRun || KestrelNativeFile::ResolveLinks(FilePath).Equals(Entry.RealPath);
	const TOptional<FKestrelFileMark>& Left = Entry.LeftBehindLink.IsSet() ? Entry.LeftBehindLink : Entry.Left;
	return bIsSameFile && !Behind.bIsUnreadable && FileHistory::KeepIfChanged(FilePath, Left, Entry) &&
		   ChangeState(FilePath, Entry, Behind, To);
}

bool FFileHistory::ChangeState(
	const FString& FilePath, const FFileHistoryEntry& Entry, const FFileState& From, const FFileState& To)
{
	const EFileActionType Action = From.ActionTo(To);
	if (!From.LinkTarget.Equals(To.LinkTarget) && To.bExists)
	{
		if (!FileHistory::ReplaceLink(FilePath, From.LinkTarget, To.LinkTarget))
		{
			return false;
		}
		return To.LinkTarget.IsEmpty() ? ChangeState(FilePath, Entry, FFileState::OnDisk(FilePath), To)
									   : ChangeBehindLink(FilePath, Entry, To);
	}
	if (Action == EFileActionType::None || Action == EFileActionType::Deletion || To.Bytes.IsEmpty())
	{
		if (!ApplyFileSystemChange(FilePath, To.Content, Action))
		{
			return false;
		}
	}
	else if (FFileUtils::IsError(FFileUtils::WriteBytes(FilePath, To.Bytes)))
	{
		return false;
	}
	if (To.bExists)
	{
		KestrelNativeFile::SetMode(FilePath, To.Mode);
	}
	return true;
}

bool FFileHistory::UndoChanges(const FString& Key, const FString& FilePath)
{
	const FFileHistoryEntry* Found = FileHistory::Find(FileHistories, Key, FilePath);
	if (!Found)
	{
		return false;
	}
	const FFileHistoryEntry Entry = *Found;
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FFileState Before = FFileState::BeforeChange(Entry);
	FFileState Now = FFileState::OnDisk(FullPath);
	// Judged now, since other steps may have changed where the path leads.
	if (Now.bIsUnreadable || !FileHistory::IsWhereItWas(FullPath, Now.LinkTarget, Entry))
	{
		return false;
	}
	FFileHistoryEntry Undone;
	Undone.ActionType = Before.ActionTo(Now);
	if (Undone.ActionType == EFileActionType::None)
	{
		FileHistory::RemoveEmptyFolders(FullPath, Entry.NumNewFolders); // of a file that is gone again
		FileHistory::Remove(FileHistories, Key, FilePath);
		return false;
	}
	if (!FileHistory::KeepTextOfOthers(FullPath, Now.LinkTarget, Entry) ||
		!StoreFileRedoVersion(Key, FilePath, Now.Content, Undone))
	{
		return false;
	}
	if (Entry.bIndexTouched)
	{
		if (!FileHistory::RevertIndex(FullPath, Entry))
		{
			FileHistory::Remove(RedoHistories, Key, FilePath);
			return false;
		}
		Now = FFileState::OnDisk(FullPath);
	}
	// Revision control is not told of a file that it is to have again as it had it.
	const bool bUndone = FileHistory::WasMissing(Entry)
							 ? FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*FullPath)
							 : ChangeState(FullPath, Entry, Now, Before);
	if (bUndone)
	{
		if (Entry.bIndexTouched && (Before.bExists || FileHistory::WasMissing(Entry)))
		{
			FileHistory::RestoreIndex(FullPath, Entry);
		}
		FileHistory::RemoveEmptyFolders(FullPath, Entry.NumNewFolders);
	}
	FileHistory::Remove(bUndone ? FileHistories : RedoHistories, Key, FilePath);
	NoteLeft(Key, FilePath);
	return bUndone;
}

bool FFileHistory::RedoChanges(const FString& Key, const FString& FilePath)
{
	const FFileHistoryEntry* Found = FileHistory::Find(RedoHistories, Key, FilePath);
	if (!Found)
	{
		return false;
	}
	const FFileHistoryEntry Entry = *Found;
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FFileState Now = FFileState::OnDisk(FullPath);
	const FFileState After = FFileState::AfterChange(Entry);
	if (Now.bIsUnreadable || !FileHistory::IsWhereItWas(FullPath, Now.LinkTarget, Entry))
	{
		return false;
	}
	FFileHistoryEntry Redone;
	Redone.ActionType = Now.ActionTo(After);
	if (Redone.ActionType == EFileActionType::None)
	{
		FileHistory::Remove(RedoHistories, Key, FilePath);
		return false;
	}
	if (!FileHistory::KeepTextOfOthers(FullPath, Now.LinkTarget, Entry))
	{
		return false;
	}
	FileHistory::NotePlace(FullPath, Redone);
	Redone.Content = Now.Content;
	Redone.Bytes = Now.Bytes;
	Redone.Mode = Now.Mode;
	Redone.LinkTarget = Now.LinkTarget;
	Redone.NumNewFolders = FileHistory::CountMissingFolders(FullPath);
	Redone.RevisionControl = FFileUtils::GetRevisionControl(FullPath);
	Redone.bIndexTouched = Redone.ActionType != EFileActionType::Modification;
	if (!FKestrelHistoryStore::Write(Key, EKestrelHistorySide::Undo, FilePath, Redone))
	{
		return false;
	}
	FileHistories.FindOrAdd(Key).Add(FilePath, Redone);
	const bool bRedone = ChangeState(FullPath, Entry, Now, After);
	FileHistory::Remove(bRedone ? RedoHistories : FileHistories, Key, FilePath);
	NoteLeft(Key, FilePath);
	return bRedone;
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
