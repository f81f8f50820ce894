#pragma once

#include "Agent/Chat/TranscriptEntry.h"
#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "Misc/DateTime.h"
#include "Templates/UniquePtr.h"

/** A conversation of the project, as a list shows it. */
struct FKestrelConversationInfo
{
	FString Id;
	/** One line that is never empty and shows what cannot be seen as escapes. */
	FString Title;
	FString Prompt;       // the first one
	FDateTime LastChange; // UTC
	bool bIsOfClient = false;
};

/** Whose conversation it is: that of the person at the panel, or what another assistant has done in the editor. */
enum class EKestrelConversationOwner : uint8
{
	Panel,
	Client,
};

/** How reading a conversation went. */
enum class EKestrelConversationRead : uint8
{
	Done,
	NotThere,
	Damaged, // and set aside
};

/**
 * The project's conversations on the disk: Saved/Kestrel/Conversations, readable by the editor's user alone.
 *
 * Each is a file of lines of JSON, named after its id, which is a GUID. The first line has the first prompt; each other
 * one is a block. Lines are appended, so an editor that dies leaves one unfinished line at most, which is ignored. A
 * name that the user gave lies in a file beside it. A damaged file gets another extension and stays for the user.
 */
class KESTREL_API FKestrelConversationStore
{
public:
	/** Where the project's conversations are; absolute. */
	static FString GetUsualFolder();
	/** Uses a folder, absolute, which is made with the first conversation. */
	void Open(const FString& InFolder) { Folder = InFolder; }

	const FString& GetFolder() const { return Folder; }

	/** The newest first. Conversations without a whole first line are left out. */
	TArray<FKestrelConversationInfo> List();
	/** A conversation as the list has it; unset when it is not there. */
	TOptional<FKestrelConversationInfo> Find(const FString& Id);
	EKestrelConversationRead Read(const FString& Id, TArray<FKestrelTranscriptEntry>& OutEntries);
	/**
	 * The newest conversation that can be read, to be shown without being asked for: only one whose file nobody else
	 * may read, as this store writes them, and none of another assistant. Those, and what came with a project, out of
	 * its repository for instance, are in the list.
	 */
	TOptional<FKestrelConversationInfo> ReadLast(TArray<FKestrelTranscriptEntry>& OutEntries);

	/** @param Title  of several lines, the first is used; empty gives the conversation its own title back */
	bool Rename(const FString& Id, const FString& Title);
	void Delete(const FString& Id);
	void DeleteAll();
	/** Deletes conversations last changed more than Days days ago, and the oldest ones above MaxBytes. */
	void DeleteOld(int32 Days, int64 MaxBytes);

	/** The files that turned out to be damaged since the last call, by their new names. */
	TArray<FString> TakeSetAside() { return MoveTemp(SetAside); }

	/** What a list shows for a prompt or a name: its first line, shortened. */
	static FString MakeTitle(const FString& Text);

private:
	friend class FKestrelConversationWriter;

	/** False when a project has put a link there: what lies behind it is somebody else's. */
	bool IsOurs() const;
	FString GetFile(const FString& Id, const TCHAR* Extension) const;
	/** The ids for which there is a file of that kind. */
	TArray<FString> FindIds(const TCHAR* Extension) const;
	/** Those of all conversations; only the files' times are looked at. */
	TArray<FString> FindNewestFirst() const;
	bool ReadInfo(const FString& Id, FKestrelConversationInfo& OutInfo);
	void MoveAside(const FString& Id);

	FString Folder; // absolute
	TArray<FString> SetAside;
};

/** Appends to the file of one conversation, which stays open. Every call hands its line to the system at once. */
class FKestrelConversationWriter
{
public:
	/** Starts the file of a new conversation. */
	void Begin(const FKestrelConversationStore& Store, const FString& Id, const FString& Prompt,
		EKestrelConversationOwner Owner = EKestrelConversationOwner::Panel);
	/** Goes on with the file of a conversation that was read before, without its unfinished line. */
	void Resume(const FKestrelConversationStore& Store, const FString& Id);
	/** @return false when this could not be written; then nothing more is written */
	bool Append(const FKestrelTranscriptEntry& Entry);
	/** Everything so far has been logged. */
	void MarkLogged();
	void Close();

private:
	bool Open(const FString& File);
	bool WriteLine(const FString& Line);

	TUniquePtr<IFileHandle> Handle; // null while nothing is stored
	int64 NumBytes = 0;             // of the file
};
