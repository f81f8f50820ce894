#pragma once

#include "CoreMinimal.h"

#include "FileHistory.generated.h"

struct FKestrelFileSnapshot;

/** What a tool does to a file. */
UENUM()
enum class EFileActionType : uint8
{
	/** No action performed */
	None = 0,
	/** File was created */
	Creation = 1,
	/** File was modified */
	Modification = 2,
	/** File was deleted */
	Deletion = 3,
};

/** What revision control says of a file. */
enum class EKestrelRevisionControl : uint8
{
	/** Nothing, or there is none. */
	Unknown,
	/** It has a version that was checked in; the file may have changed since. */
	CheckedIn,
	/** It is marked to be added. */
	Added,
	/** It has versions that nobody has merged yet; not even undo touches them. */
	Conflicted,
};

/** Tells whether a file is still as it was. */
struct FKestrelFileMark
{
	bool IsSameAs(const FKestrelFileMark& Other) const
	{
		return bExists == Other.bExists && (!bExists || Checksum == Other.Checksum);
	}

	bool bExists = false;
	uint32 Checksum = 0; // CRC-32 of the bytes
};

/** A change of a file, with the text that goes with it. */
struct FFileHistoryEntry
{
	EFileActionType ActionType = EFileActionType::None;
	FString Content;
	/**
	 * The file as it is stored, when Content is that file's text and the bytes are not plain ASCII: writing the text
	 * would change the encoding, and a file that is no text would be lost.
	 */
	TArray<uint8> Bytes;
	/** Of a creation: how many folders above the file are new, too. They go with it, as far as they are empty. */
	int32 NumNewFolders = 0;
	/** The file's permission bits; -1 where the platform has none. */
	int32 Mode = -1;
	/** What the path leads to, when it is a symbolic link; else empty. */
	FString LinkTarget;
	/** As it was before the change. */
	EKestrelRevisionControl RevisionControl = EKestrelRevisionControl::Unknown;
	/** Revision control was told that the file goes or comes, so what it would check in next has changed. */
	bool bIndexTouched = false;
	/** Where the entry is on the disk; empty when it is not kept there. */
	FString RecordFile;
	/** The record was found at the start: the project may have brought it. */
	bool bFromEarlierRun = false;
	/** How the conversation's last change, or its undo, has left the file; unset when nobody knows. */
	TOptional<FKestrelFileMark> Left;
	/** Copies of the versions that somebody else has written between two changes of the conversation. */
	TArray<FString> KeptCopies;
	/** How the file behind a link was left before the link itself went. */
	TOptional<FKestrelFileMark> LeftBehindLink;
	// With links resolved, when the change was made; not kept on the disk.
	FString RealPath;
	FString RealFolder;
	/** Later records have greater numbers. */
	int64 Order = 0;
};

DECLARE_DELEGATE_TwoParams(FOnTextKeptDelegate, const FString& /*FilePath*/, const FString& /*CopyPath*/);

/**
 * What tools have changed, so that a whole conversation can be undone and redone. Entries of a conversation are on the
 * disk as well, before the change is made (FKestrelHistoryStore), so that undo survives the editor.
 *
 * A change is recorded before it is made, under a key (the conversation's id) and the file's absolute path; keys and
 * paths ignore case. Only the first record of a file counts: it leads back to before the conversation. A new change
 * ends the redo of what was undone of the same conversation.
 *
 *   recorded        undo leads to        redo leads to
 *   Creation        no file              the text it had before the undo
 *   Modification    the text recorded    the text it had before the undo
 *   Deletion        the text recorded    no file
 *
 * The disk decides how to get there. A file that was modified and then deleted is created again, and a redo repeats
 * what the undo has really changed.
 */
class KESTREL_API FFileHistory
{
public:
	using FFileEntries = TMap<FString, FFileHistoryEntry>;
	using FHistories = TMap<FString, FFileEntries>;

	static FFileHistory& Get();

	// Each answers whether the change can be undone now; if not, it must not be made.

	/** Content: the text before the change. An empty text or path is not recorded. */
	bool StoreFileVersion(const FString& Key, const FString& FilePath, const FString& Content);
	/** Content: the text that the file will have. */
	bool StoreFileCreation(const FString& Key, const FString& FilePath, const FString& Content);
	/** Content: the text of the file that will be deleted. */
	bool StoreFileDeletion(const FString& Key, const FString& FilePath, const FString& Content);
	/** Content: the text just before the undo of UndoneEntry. */
	bool StoreFileRedoVersion(
		const FString& Key, const FString& FilePath, const FString& Content, const FFileHistoryEntry& UndoneEntry);

	/**
	 * Remembers how a change has left its file, under whatever path it is recorded, to tell later whether somebody else
	 * has changed it since.
	 */
	void NoteLeft(const FString& Key, const FString& FilePath);
	/** Drops the record of a change that failed, when the file is still as it was recorded. */
	void ForgetUnchanged(const FString& Key, const FString& FilePath);

	/** Makes a change through FFileUtils. @return whether it succeeded; `None` changes nothing and succeeds */
	bool ApplyFileSystemChange(const FString& FilePath, const FString& Content, EFileActionType ActionType);

	// Each answers whether anything was undone or redone. What was done moves to the other side; what could not be done
	// stays, to be tried again.
	bool UndoChanges(const FString& Key, const FString& FilePath);
	bool UndoAllChanges(const FString& Key);
	bool RedoChanges(const FString& Key, const FString& FilePath);
	bool RedoAllChanges(const FString& Key);

	bool CanUndo(const FString& Key, const FString& FilePath) const;
	bool CanRedo(const FString& Key, const FString& FilePath) const;

	/** Drops what could be redone. */
	void ForgetRedo(const FString& Key);
	/**
	 * Takes over the conversation that an earlier run of the editor has changed last.
	 *
	 * @param OutNotUndoable  gets the files it changed whose records are no longer to be trusted
	 * @return its id, or empty
	 */
	FString LoadLastConversation(TArray<FString>& OutNotUndoable);

	/** Undo or redo has found a file that is not as the conversation left it, and kept a copy of it. */
	FOnTextKeptDelegate OnTextKept;

	const FHistories& GetFileHistories() const { return FileHistories; }
	const FHistories& GetRedoHistories() const { return RedoHistories; }

private:
	FFileHistory() = default;
	UE_NONCOPYABLE(FFileHistory)

	bool Store(const FString& Key, const FString& FilePath, EFileActionType ActionType, const FString& Content);
	/**
	 * Before a file is changed that the conversation has changed already, under whatever path: keeps a copy of what
	 * somebody else has written to it since.
	 *
	 * @return false when there is such a version, and it could not be kept
	 */
	bool KeepVersionOfOthers(const FString& Key, const FString& Name, const FString& FullPath);
	/** @param RealPath  of the file; empty when only the record under this very path is meant */
	void NoteLeftAt(const FString& Key, const FString& FilePath, const FString& RealPath);
	/**
	 * Before a link is put back to the file that the conversation has changed through it: records that file, too, which
	 * gets its old text back behind the link.
	 *
	 * @param OutName  what it is recorded under; stays empty when there is nothing to record
	 * @return false when it could not be recorded
	 */
	bool StoreRedoBehindLink(const FString& Key, const FFileHistoryEntry& Entry, const FKestrelFileSnapshot& Now,
		const FKestrelFileSnapshot& To, FString& OutName);
	/** Brings a file of an entry from one state to another. @return whether it got there */
	bool ChangeState(const FString& FilePath, const FFileHistoryEntry& Entry, const FKestrelFileSnapshot& From,
		const FKestrelFileSnapshot& To);
	/** Brings the file behind a link that was put back to its state, as far as the conversation has changed it. */
	bool ChangeBehindLink(const FString& FilePath, const FFileHistoryEntry& Entry, const FKestrelFileSnapshot& To);

	FHistories FileHistories;
	FHistories RedoHistories;
};
