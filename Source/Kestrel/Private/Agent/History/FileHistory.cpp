#include "Agent/FileHistory.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/PathReview.h"
#include "Agent/History/FileSnapshot.h"
#include "Agent/History/HistoryStore.h"
#include "Agent/History/RevisionIndex.h"
#include "Agent/History/VersionsOfOthers.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

namespace FileHistory
{
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

/**
 * The name under which a file is recorded that a link leads to, a longer way to it: it may have a record of its own,
 * and there may be other links.
 */
FString GetNameBehindLink(const FFileHistory::FHistories& Histories, const FString& Key, const FString& RealPath)
{
	const FFileHistory::FFileEntries* Entries = Histories.Find(Key);
	FString Folder = FPaths::GetPath(RealPath);
	FString Name;
	do
	{
		Folder += TEXT("/.");
		Name = Folder / FPaths::GetCleanFilename(RealPath);
	}
	while (Entries && Entries->Contains(Name));
	return Name;
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

/**
 * Later changes of a file through links that could not be undone, since a link led nowhere for instance. The file is
 * further back now than they know, and must not go forward to their step again. A link that is itself to be restored
 * keeps its entry.
 */
void RemoveOvertaken(FFileHistory::FHistories& Histories, const FString& Key, const FFileHistoryEntry& Undone)
{
	TArray<FString> Overtaken;
	if (const FFileHistory::FFileEntries* Entries = Histories.Find(Key))
	{
		for (const auto& Pair : *Entries)
		{
			const FFileHistoryEntry& Entry = Pair.Value;
			if (Entry.Order > Undone.Order && !Entry.LinkTarget.IsEmpty() && Entry.RealPath.Equals(Undone.RealPath) &&
				KestrelNativeFile::ReadLink(FFileUtils::ToAbsolutePath(Pair.Key)).Equals(Entry.LinkTarget))
			{
				Overtaken.Add(Pair.Key);
			}
		}
	}
	for (const FString& FilePath : Overtaken)
	{
		KestrelVersionsOfOthers::NameKeptCopies(FFileUtils::ToAbsolutePath(FilePath), *Find(Histories, Key, FilePath));
		Remove(Histories, Key, FilePath);
	}
}

/** The file is as it was before the conversation. */
void EndUndo(
	FFileHistory::FHistories& Histories, const FString& Key, const FString& FilePath, const FFileHistoryEntry& Entry)
{
	KestrelFileSnapshot::RemoveEmptyFolders(FFileUtils::ToAbsolutePath(FilePath), Entry.NumNewFolders);
	Remove(Histories, Key, FilePath);
	RemoveOvertaken(Histories, Key, Entry);
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
			Entry.NumNewFolders = KestrelFileSnapshot::CountMissingFolders(FullPath);
		}
		else if (!KestrelFileSnapshot::FillFromDisk(FullPath, Entry, PlainAscii))
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
		TOptional<FKestrelFileMark>* const Left = KestrelVersionsOfOthers::FindLeft(Entry, Pair.Key, Name, RealPath);
		if (!Left || !Left->IsSet())
		{
			continue;
		}
		const bool bFirst = !Now.IsSet();
		Now = bFirst ? KestrelVersionsOfOthers::MarkOf(FullPath) : Now;
		if (Now->IsSameAs(Left->GetValue()))
		{
			continue;
		}
		// One copy is enough for all paths that lead to the file.
		if (bFirst && !KestrelVersionsOfOthers::KeepCopy(FullPath, Entry.KeptCopies))
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
	if (!KestrelFileSnapshot::FillFromDisk(FullPath, Entry, PlainAscii) ||
		!FKestrelHistoryStore::Write(Key, EKestrelHistorySide::Redo, FilePath, Entry, PlainAscii))
	{
		return false;
	}
	RedoHistories.FindOrAdd(Key).Add(FilePath, MoveTemp(Entry));
	return true;
}

bool FFileHistory::StoreRedoBehindLink(const FString& Key, const FFileHistoryEntry& Entry,
	const FKestrelFileSnapshot& Now, const FKestrelFileSnapshot& To, FString& OutName)
{
	const bool bLinkReturns = !To.LinkTarget.IsEmpty() && !To.LinkTarget.Equals(Now.LinkTarget) && !To.bIsLinkAlone;
	if (!bLinkReturns || Entry.RealPath.IsEmpty())
	{
		return true;
	}
	const FKestrelFileSnapshot Behind = FKestrelFileSnapshot::OnDisk(Entry.RealPath);
	FKestrelFileSnapshot BehindThen = To;
	BehindThen.LinkTarget.Empty();
	FFileHistoryEntry Undone;
	Undone.ActionType = BehindThen.ActionTo(Behind);
	if (Behind.bIsUnreadable || Undone.ActionType == EFileActionType::None)
	{
		return true;
	}
	OutName = FileHistory::GetNameBehindLink(RedoHistories, Key, Entry.RealPath);
	return StoreFileRedoVersion(Key, OutName, Behind.Content, Undone);
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
	NoteLeftAt(Key, FilePath, KestrelNativeFile::ResolveLinks(FFileUtils::ToAbsolutePath(FilePath)));
}

void FFileHistory::NoteLeftAt(const FString& Key, const FString& FilePath, const FString& RealPath)
{
	const FString FullPath = FFileUtils::ToAbsolutePath(FilePath);
	const FKestrelFileMark Mark = KestrelVersionsOfOthers::MarkOf(FullPath);
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
			TOptional<FKestrelFileMark>* const Left =
				KestrelVersionsOfOthers::FindLeft(Entry, Pair.Key, FilePath, RealPath);
			if (!Left)
			{
				continue;
			}
			if (Left == &Entry.Left && KestrelVersionsOfOthers::IsLinkGone(Entry, Pair.Key) &&
				!Entry.LeftBehindLink.IsSet())
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
	if (Entry && FKestrelFileSnapshot::OnDisk(FullPath).ActionTo(FKestrelFileSnapshot::BeforeChange(*Entry)) ==
					 EFileActionType::None)
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

bool FFileHistory::ChangeBehindLink(
	const FString& FilePath, const FFileHistoryEntry& Entry, const FKestrelFileSnapshot& To)
{
	const FKestrelFileSnapshot Behind = FKestrelFileSnapshot::OnDisk(FilePath);
	if (To.bIsLinkAlone || Behind.ActionTo(To) == EFileActionType::None)
	{
		return true;
	}
	const bool bIsSameFile = Entry.bFromEarlierRun || KestrelNativeFile::ResolveLinks(FilePath).Equals(Entry.RealPath);
	const TOptional<FKestrelFileMark>& Left = Entry.LeftBehindLink.IsSet() ? Entry.LeftBehindLink : Entry.Left;
	return bIsSameFile && !Behind.bIsUnreadable && KestrelVersionsOfOthers::KeepIfChanged(FilePath, Left, Entry) &&
		   ChangeState(FilePath, Entry, Behind, To);
}

bool FFileHistory::ChangeState(const FString& FilePath, const FFileHistoryEntry& Entry,
	const FKestrelFileSnapshot& From, const FKestrelFileSnapshot& To)
{
	const EFileActionType Action = From.ActionTo(To);
	if (!From.LinkTarget.Equals(To.LinkTarget) && To.bExists)
	{
		if (!KestrelFileSnapshot::ReplaceLink(FilePath, From.LinkTarget, To.LinkTarget))
		{
			return false;
		}
		return To.LinkTarget.IsEmpty() ? ChangeState(FilePath, Entry, FKestrelFileSnapshot::OnDisk(FilePath), To)
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
	const FKestrelFileSnapshot Before = FKestrelFileSnapshot::BeforeChange(Entry);
	FKestrelFileSnapshot Now = FKestrelFileSnapshot::OnDisk(FullPath);
	// Judged now, since other steps may have changed where the path leads.
	if (Now.bIsUnreadable || !FileHistory::IsWhereItWas(FullPath, Now.LinkTarget, Entry))
	{
		return false;
	}
	FFileHistoryEntry Undone;
	Undone.ActionType = Before.ActionTo(Now);
	if (Undone.ActionType == EFileActionType::None)
	{
		KestrelVersionsOfOthers::NameKeptCopies(FullPath, Entry);
		FileHistory::EndUndo(FileHistories, Key, FilePath, Entry);
		return false;
	}
	if (!KestrelVersionsOfOthers::KeepBeforeStep(FullPath, Now.LinkTarget, Entry) ||
		!StoreFileRedoVersion(Key, FilePath, Now.Content, Undone))
	{
		return false;
	}
	FString NameBehindLink;
	const auto ForgetRedoOfIt = [&]() {
		FileHistory::Remove(RedoHistories, Key, FilePath);
		FileHistory::Remove(RedoHistories, Key, NameBehindLink);
		return false;
	};
	if (!StoreRedoBehindLink(Key, Entry, Now, Before, NameBehindLink) ||
		(Entry.bIndexTouched && !KestrelRevisionIndex::Revert(FullPath, Entry)))
	{
		return ForgetRedoOfIt();
	}
	if (Entry.bIndexTouched)
	{
		Now = FKestrelFileSnapshot::OnDisk(FullPath);
	}
	// Revision control is not told of a file that it is to have again as it had it.
	const bool bUndone = KestrelRevisionIndex::WasMissing(Entry)
							 ? FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*FullPath)
							 : ChangeState(FullPath, Entry, Now, Before);
	if (bUndone)
	{
		if (Entry.bIndexTouched && (Before.bExists || KestrelRevisionIndex::WasMissing(Entry)))
		{
			KestrelRevisionIndex::Restore(FullPath, Entry);
		}
		FileHistory::EndUndo(FileHistories, Key, FilePath, Entry);
	}
	// What a link leads to was not touched with the link alone: others may have written to it.
	NoteLeftAt(Key, FilePath, Before.bIsLinkAlone ? FString() : KestrelNativeFile::ResolveLinks(FullPath));
	return bUndone || ForgetRedoOfIt();
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
	const FKestrelFileSnapshot Now = FKestrelFileSnapshot::OnDisk(FullPath);
	const FKestrelFileSnapshot After = FKestrelFileSnapshot::AfterChange(Entry);
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
	if (!KestrelVersionsOfOthers::KeepBeforeStep(FullPath, Now.LinkTarget, Entry))
	{
		return false;
	}
	FileHistory::NotePlace(FullPath, Redone);
	Redone.Content = Now.Content;
	Redone.Bytes = Now.Bytes;
	Redone.Mode = Now.Mode;
	Redone.LinkTarget = Now.LinkTarget;
	Redone.NumNewFolders = KestrelFileSnapshot::CountMissingFolders(FullPath);
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
