#include "Editor/TransBuffer.h"

#include "CoreGlobals.h"

#define LOCTEXT_NAMESPACE "TransBuffer"

int32 UTransBuffer::Begin(const TCHAR* SessionContext, const FText& Description)
{
	const int32 Result = ActiveCount;
	if (ActiveCount++ == 0)
	{
		// What was undone is given up with the first change; an empty transaction gives it back.
		UndoCountBefore = UndoCount;
		PutAside.Empty();
		for (int32 Index = UndoBuffer.Num() - UndoCount; Index < UndoBuffer.Num(); ++Index)
		{
			PutAside.Add(UndoBuffer[Index]);
		}
		UndoBuffer.RemoveAt(UndoBuffer.Num() - UndoCount, UndoCount);
		UndoCount = 0;
		const TSharedRef<FTransaction> Transaction = MakeShared<FTransaction>(SessionContext, Description, true);
		UndoBuffer.Add(Transaction);
		GUndo = &*Transaction;
	}
	ActiveRecordCounts.Add(UndoBuffer.Last()->GetObjects().Num());
	return Result;
}

int32 UTransBuffer::End()
{
	const int32 Result = ActiveCount;
	if (ActiveCount == 0)
	{
		return Result;
	}
	ActiveRecordCounts.Pop();
	if (--ActiveCount == 0)
	{
		CloseOutermost();
	}
	return Result;
}

void UTransBuffer::CloseOutermost()
{
	GUndo = nullptr;
	UndoBuffer.Last()->Finish();
	if (UndoBuffer.Last()->IsEmpty())
	{
		UndoBuffer.Pop();
		UndoBuffer.Append(PutAside);
		UndoCount = UndoCountBefore;
	}
	PutAside.Empty();
	GiveUpOldest();
	BufferChangedDelegate.Broadcast();
}

void UTransBuffer::GiveUpOldest()
{
	SIZE_T Size = 0;
	for (int32 Index = UndoBuffer.Num() - 1; Index >= 0; --Index)
	{
		Size += UndoBuffer[Index]->DataSize();
		if (Size > MaxMemory && Index < UndoBuffer.Num() - 1)
		{
			UndoBuffer.RemoveAt(0, Index + 1);
			UndoCount = FMath::Min(UndoCount, UndoBuffer.Num());
			return;
		}
	}
}

void UTransBuffer::Cancel(int32 StartIndex)
{
	if (ActiveCount == 0)
	{
		return;
	}
	if (StartIndex > 0)
	{
		End(); // the outer one goes on with what was recorded
		return;
	}
	GUndo = nullptr;
	ActiveCount = 0;
	ActiveRecordCounts.Empty();
	UndoBuffer.Pop();
	UndoBuffer.Append(PutAside);
	UndoCount = UndoCountBefore;
	PutAside.Empty();
	BufferChangedDelegate.Broadcast();
}

void UTransBuffer::Reset(const FText&)
{
	if (ActiveCount > 0)
	{
		Cancel();
	}
	UndoBuffer.Empty();
	UndoCount = 0;
	BufferChangedDelegate.Broadcast();
}

bool UTransBuffer::CanUndo(FText* Text)
{
	const bool bActive = ActiveCount > 0;
	const bool bNothing = UndoBuffer.Num() == UndoCount;
	if (Text && (bActive || bNothing))
	{
		*Text = bActive ? LOCTEXT("CantUndoDuringTransaction", "Can't undo while an action is in progress")
						: LOCTEXT("CantUndoAfter", "Nothing to undo");
	}
	return !bActive && !bNothing;
}

bool UTransBuffer::CanRedo(FText* Text)
{
	const bool bActive = ActiveCount > 0;
	if (Text && (bActive || UndoCount == 0))
	{
		*Text = bActive ? LOCTEXT("CantRedoDuringTransaction", "Can't redo while an action is in progress")
						: LOCTEXT("CantRedo", "Nothing to redo");
	}
	return !bActive && UndoCount > 0;
}

const FTransaction* UTransBuffer::GetTransaction(int32 QueueIndex) const
{
	return UndoBuffer.IsValidIndex(QueueIndex) ? &*UndoBuffer[QueueIndex] : nullptr;
}

int32 UTransBuffer::FindTransactionIndex(const FGuid& TransactionId) const
{
	return UndoBuffer.IndexOfByPredicate(
		[&TransactionId](const TSharedRef<FTransaction>& Each) { return Each->GetId() == TransactionId; });
}

FTransactionContext UTransBuffer::GetUndoContext(bool bCheckWhetherUndoPossible)
{
	FTransactionContext Context;
	if (bCheckWhetherUndoPossible && !CanUndo(&Context.Title))
	{
		return Context;
	}
	const FTransaction* const Transaction = GetTransaction(UndoBuffer.Num() - UndoCount - 1);
	return Transaction ? Transaction->GetContext() : Context;
}

FTransactionContext UTransBuffer::GetRedoContext()
{
	FTransactionContext Context;
	return CanRedo(&Context.Title) ? GetTransaction(UndoBuffer.Num() - UndoCount)->GetContext() : Context;
}

void UTransBuffer::SetPrimaryUndoObject(UObject* Object)
{
	if (ActiveCount == 1)
	{
		UndoBuffer.Last()->SetPrimaryObject(Object);
	}
}

bool UTransBuffer::Undo(bool bCanRedo)
{
	if (!CanUndo())
	{
		return false;
	}
	const TSharedRef<FTransaction> Transaction = UndoBuffer[UndoBuffer.Num() - ++UndoCount];
	Transaction->Apply(false);
	if (!bCanRedo)
	{
		UndoBuffer.RemoveAt(UndoBuffer.Num() - UndoCount, UndoCount);
		UndoCount = 0;
	}
	BufferChangedDelegate.Broadcast();
	return true;
}

bool UTransBuffer::Redo()
{
	if (!CanRedo())
	{
		return false;
	}
	const TSharedRef<FTransaction> Transaction = UndoBuffer[UndoBuffer.Num() - UndoCount--];
	Transaction->Apply(true);
	BufferChangedDelegate.Broadcast();
	return true;
}

void UTransBuffer::BeginDestroy()
{
	if (ActiveCount > 0)
	{
		GUndo = nullptr;
	}
	Super::BeginDestroy();
}

void UTransBuffer::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	Super::AddReferencedObjects(InThis, Collector);
	UTransBuffer* const This = static_cast<UTransBuffer*>(InThis);
	for (const TSharedRef<FTransaction>& Transaction : This->UndoBuffer)
	{
		Transaction->AddReferencedObjects(Collector);
	}
	for (const TSharedRef<FTransaction>& Transaction : This->PutAside)
	{
		Transaction->AddReferencedObjects(Collector);
	}
}

#undef LOCTEXT_NAMESPACE
