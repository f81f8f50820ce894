#pragma once

#include "Agent/FileHistory.h"
#include "CoreMinimal.h"
#include "Misc/DateTime.h"

/** Which way a record leads. */
enum class EKestrelHistorySide : uint8
{
	Undo,
	Redo,
};

/**
 * The records of the file history on the disk, so that undo survives the editor: Saved/Kestrel/History of the project,
 * a folder a conversation, a compressed file a record, readable by the editor's user alone.
 *
 * A record is written under another name first and then moved, so a file with a record's name is whole. Only
 * conversations whose ids are GUIDs are kept; what else lies there is left alone.
 */
class KESTREL_API FKestrelHistoryStore
{
public:
	/** A conversation with records. */
	struct FConversation
	{
		FString Id;
		FDateTime LastChange;            // UTC
		FFileHistory::FFileEntries Undo; // in the order in which they were recorded
		FFileHistory::FFileEntries Redo;
		/** Files whose changes were recorded for undo, in records that must not be followed. */
		TArray<FString> NotFollowed;
	};

	/** A GUID of digits alone, as the agent makes them. */
	static bool IsConversationId(const FString& Name);

	/**
	 * Writes a record.
	 *
	 * @param Entry  gets the record's file
	 * @param PlainAscii  the entry's content as bytes, when a caller has them at hand; else empty
	 * @return false when it is not on the disk; true for a conversation that is not kept
	 */
	static bool Write(const FString& Id, EKestrelHistorySide Side, const FString& FilePath, FFileHistoryEntry& Entry,
		const TArray<uint8>& PlainAscii = TArray<uint8>());
	/** Keeps how the file was left beside the record. Without it, undo after a restart keeps a copy to be safe. */
	static void WriteLeft(const FFileHistoryEntry& Entry);
	static void Remove(const FFileHistoryEntry& Entry);

	/**
	 * The conversation that changed something last, with the records that are left of it, if any; unset when there is
	 * none. Records that are damaged, that lead where a project has no business, or that are too much to hold in memory
	 * are left out.
	 */
	static TOptional<FConversation> LoadLast();
	/** Removes conversations that were last changed more than Days days ago, those without records, and the oldest ones
	 * above MaxBytes. */
	static void RemoveOld(int32 Days, int64 MaxBytes);
	static void RemoveAll();
};
