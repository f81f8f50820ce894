#pragma once

#include "CoreMinimal.h"
#include "Misc/Guid.h"

/** The title of the editor transactions that a conversation's tools open. */
KESTREL_API FString GetKestrelTransactionName(const FString& ConversationId);

/**
 * Whether the editor's list of transactions has one of a title. The panel asks in every frame, so the answer is kept
 * for as long as the list is the same, which its length and its last entry tell: undo alone takes nothing out of it.
 */
class FKestrelTransactionLookup
{
public:
	/** The index of the first transaction of exactly that title; those that were undone count. -1 for none. */
	static int32 Find(const FString& Name);

	bool Contains(const FString& ConversationId);

private:
	FString Conversation;
	int32 QueueLength = INDEX_NONE;
	FGuid LastTransaction;
	bool bContains = false;
};
