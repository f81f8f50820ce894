#pragma once

#include "CoreMinimal.h"
#include "Misc/DateTime.h"

/**
 * The prompts that were sent in this project, for the user to send again: in Saved/Kestrel/Prompts.json, which only the
 * user can read. The key never gets into it.
 *
 * A file that is damaged, too large or reached through a link counts as empty, and a project may bring one of its own:
 * its prompts are only ever put into the prompt box.
 */
class KESTREL_API FKestrelPromptStore
{
public:
	/** More are forgotten, the oldest first. */
	static constexpr int32 MaxPrompts = 200;
	/** Bytes of UTF-8; a longer prompt is not stored. */
	static constexpr int32 MaxPromptBytes = 64 * 1024;

	static FString GetUsualFile();
	/** Uses a file, absolute, in the project's Saved folder or elsewhere in the project; it need not exist. */
	void Open(const FString& InFile);

	/** The oldest first. */
	const TArray<FString>& GetPrompts() const { return Prompts; }
	/** Remembers a prompt as the latest; one that was sent before moves to the end. */
	void Add(const FString& Prompt);
	void RemoveAll();
	/** Removes the prompts that were last sent more than Days days ago. */
	void RemoveOld(int32 Days);

	/** What was being written when the panel was closed, for the next panel of this run. */
	void KeepDraft(const FString& InDraft) { Draft = InDraft; }
	FString TakeDraft() { return MoveTemp(Draft); }

private:
	void Load();
	void Append(const FString& Prompt, const FDateTime& Time);
	/** A file that cannot be written is left alone: the chat must go on. */
	void Save() const;
	bool MayUseFile() const;

	FString File; // absolute
	TArray<FString> Prompts;
	TArray<FDateTime> Times; // UTC, one for each prompt
	FString Draft;
};
