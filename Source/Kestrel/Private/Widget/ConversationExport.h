#pragma once

#include "Agent/Chat/ConversationStore.h"
#include "Agent/Chat/TranscriptEntry.h"
#include "CoreMinimal.h"

/** A conversation as a document for others: Saved/Kestrel/Exports of the project. */
namespace KestrelConversationExport
{
/** The conversation in Markdown: who speaks as headings, what was done as quotes, changes with the lines around. */
KESTREL_API FString ToMarkdown(const FString& Title, const TArray<FKestrelTranscriptEntry>& Entries);
/** Never overwrites a file. @return the file's full path; empty when it could not be written */
KESTREL_API FString Write(
	const FString& Folder, const FKestrelConversationInfo& Info, const TArray<FKestrelTranscriptEntry>& Entries);
}
