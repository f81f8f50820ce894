#include "Agent/History/TransactionLookup.h"

#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "UObject/ObjectPtr.h"

FString GetKestrelTransactionName(const FString& ConversationId)
{
	return FString::Printf(TEXT("Kestrel Transaction %s"), *ConversationId);
}

int32 FKestrelTransactionLookup::Find(const FString& Name)
{
	const UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	const int32 NumTransactions = Transactor ? Transactor->GetQueueLength() : 0;
	for (int32 Index = 0; Index < NumTransactions; ++Index)
	{
		const FTransaction* Transaction = Transactor->GetTransaction(Index);
		if (Transaction && Transaction->GetTitle().ToString().Equals(Name))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

bool FKestrelTransactionLookup::Contains(const FString& ConversationId)
{
	const UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	if (!Transactor)
	{
		return false;
	}
	const int32 NewLength = Transactor->GetQueueLength();
	const FTransaction* Last = Transactor->GetTransaction(NewLength - 1);
	const FGuid NewLast = Last ? Last->GetId() : FGuid();
	if (NewLength != QueueLength || NewLast != LastTransaction || !ConversationId.Equals(Conversation))
	{
		bContains = Find(GetKestrelTransactionName(ConversationId)) != INDEX_NONE;
		Conversation = ConversationId;
		QueueLength = NewLength;
		LastTransaction = NewLast;
	}
	return bContains;
}
