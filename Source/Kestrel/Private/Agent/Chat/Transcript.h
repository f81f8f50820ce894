#pragma once

#include "Agent/Chat/ConversationStore.h"
#include "Agent/Chat/TranscriptEntry.h"
#include "CoreMinimal.h"

/**
 * What has been said in the conversation of now, whether a panel was open or not. It outlives the panels, and by the
 * store also the editor.
 */
class KESTREL_API FKestrelTranscript
{
public:
	/** Uses a folder of conversations, absolute. Nothing has been said yet. */
	void Open(const FString& Folder);
	/** A new conversation: what was said before is in the store only. */
	void Begin(const FString& Id, const FString& Prompt);
	/** The next panel is to find the project's last conversation. */
	void RestoreForNextPanel() { bIsToBeRestored = true; }
	bool IsToBeRestored() const { return bIsToBeRestored; }
	/** The project's last conversation, as long as none has begun. What was said meanwhile is added to it. */
	void RestoreLast();
	/** @return false when it could not be stored, which is told once for a conversation */
	bool Add(const FKestrelTranscriptEntry& Entry);
	/** A panel has shown and logged all of it. */
	void MarkLogged();
	/** Nothing of it stays, neither here nor in the store. What comes is not stored until the next one begins. */
	void Forget();
	/** @return false when it could not be written */
	bool Rename(const FString& OtherId, const FString& NewTitle);
	/** Forgets it if it is this one, and else deletes it from the store. */
	void Delete(const FString& Id);
	void DeleteAll();

	const TArray<FKestrelTranscriptEntry>& GetEntries() const { return Entries; }
	/** How many of the entries, at the start, are of an earlier run of the editor. */
	int32 GetNumRestored() const { return NumRestored; }
	/** Empty before the first conversation. */
	const FString& GetId() const { return Id; }
	/** As the list shows it; empty as long as nothing is stored. */
	const FString& GetTitle() const { return Title; }
	FKestrelConversationStore& GetStore() { return Store; }

private:
	void Clear();

	FKestrelConversationStore Store;
	FKestrelConversationWriter Writer;
	FString Id;
	FString Title;
	TArray<FKestrelTranscriptEntry> Entries;
	int64 ChangeLength = 0; // characters of the changes among the entries
	int32 NumRestored = 0;
	bool bIsToBeRestored = false;
};
