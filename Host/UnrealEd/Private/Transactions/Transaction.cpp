#include "Editor/Transactor.h"
#include "UObject/Class.h"
#include "UObject/ObjectText.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeReload.h"

/** References in recorded states are numbers: an object may have another name when the state is put back. */
class FTransactionReferences final : public FObjectReferences
{
public:
	explicit FTransactionReferences(FTransaction& InTransaction)
		: Transaction(InTransaction)
	{
	}

	FString Describe(const UObject* Object) override
	{
		if (!Object)
		{
			return TEXT("None");
		}
		const int32* const Known = Transaction.ReferenceNumbers.Find(Object);
		const int32 Number = Known ? *Known : Transaction.References.Add(const_cast<UObject*>(Object));
		Transaction.ReferenceNumbers.Add(Object, Number);
		return FString::Printf(TEXT("Object%d"), Number);
	}

	UObject* Find(const FString& Text) override
	{
		const FString Prefix = TEXT("Object");
		const int32 Number = Text.StartsWith(Prefix) ? FCString::Atoi(*Text + Prefix.Len()) : INDEX_NONE;
		// A type of the game may have been recompiled since.
		return Transaction.References.IsValidIndex(Number)
				   ? FReflectedTypeReload::FindNewest(Transaction.References[Number])
				   : nullptr;
	}

private:
	FTransaction& Transaction;
};

FTransaction::FTransaction(const TCHAR* InContext, const FText& InTitle, bool)
{
	Context.TransactionId = FGuid::NewGuid();
	Context.OperationId = FGuid::NewGuid();
	Context.Title = InTitle;
	Context.Context = InContext;
}

FTransaction::~FTransaction() = default;

UObject* FTransaction::FRecord::Resolve() const
{
	return ClassOfDefaults ? ClassOfDefaults->GetDefaultObject() : Object;
}

SIZE_T FTransaction::DataSize() const
{
	SIZE_T Size = 0;
	for (const FRecord& Record : Records)
	{
		Size += static_cast<SIZE_T>(Record.Before.Text.Len() + Record.After.Text.Len());
	}
	return Size;
}

FTransaction::FState FTransaction::Capture(const UObject& Object)
{
	const FTransactionReferences TransactionReferences(*this);
	FState State;
	State.Name = Object.GetFName();
	State.Outer = Object.GetOuter();
	// Written aside, so that the text that stays is of the right size from the start.
	StateText.Reset();
	ObjectText::WriteState(Object, ObjectText::EExtent::Transaction, 0, StateText);
	State.Text = StateText;
	return State;
}

void FTransaction::SaveObject(UObject* Object)
{
	if (RecordIndices.Contains(Object))
	{
		return;
	}
	FRecord Record;
	Record.Object = Object;
	Record.ClassOfDefaults = Object->HasAnyFlags(RF_ClassDefaultObject) ? Object->GetClass() : nullptr;
	Record.Before = Capture(*Object);
	RecordIndices.Add(Object, Records.Add(MoveTemp(Record)));
}

void FTransaction::SaveNewObject(UObject* Object)
{
	FRecord Record;
	Record.Object = Object;
	Record.bNew = true;
	RecordIndices.Add(Object, Records.Add(MoveTemp(Record)));
}

void FTransaction::Finish()
{
	for (FRecord& Record : Records)
	{
		Record.After = Capture(*Record.Resolve());
	}
	Records.RemoveAll([](const FRecord& Record) { return !Record.bNew && Record.Before == Record.After; });
	RecordIndices.Empty();
	ReferenceNumbers.Empty();
	StateText.Empty();
}

bool FTransaction::IsEmpty() const
{
	// What was made and is nowhere used is no change.
	return !Records.ContainsByPredicate([](const FRecord& Record) { return !Record.bNew; });
}

TArray<UObject*> FTransaction::GetObjects() const
{
	TArray<UObject*> Objects;
	for (const FRecord& Record : Records)
	{
		Objects.Add(Record.Resolve());
	}
	return Objects;
}

void FTransaction::Restore(UObject& Object, const FState& State)
{
	if (Object.GetFName() != State.Name || Object.GetOuter() != State.Outer)
	{
		Object.Rename(*State.Name.ToString(), State.Outer);
	}
	const FTransactionReferences TransactionReferences(*this);
	ObjectText::ReadState(Object, State.Text);
}

void FTransaction::Apply(bool bForward)
{
	const TArray<UObject*> Objects = GetObjects();
	for (UObject* const Object : Objects)
	{
		Object->PreEditUndo();
	}
	for (int32 Index = 0; Index < Records.Num(); ++Index)
	{
		// Backwards: what was made last goes first.
		const FRecord& Record = Records[bForward ? Index : Records.Num() - 1 - Index];
		UObject& Object = *Record.Resolve();
		Object.MarkPackageDirty();
		if (bForward || !Record.bNew)
		{
			Restore(Object, bForward ? Record.After : Record.Before);
		}
		else
		{
			// Out of the way, so that its name is free.
			Object.Rename(nullptr, GetTransientPackage());
		}
	}
	for (UObject* const Object : Objects)
	{
		Object->PostEditUndo();
	}
}

void FTransaction::AddReferencedObjects(FReferenceCollector& Collector)
{
	for (FRecord& Record : Records)
	{
		Collector.AddReferencedObject(Record.Object);
		Collector.AddReferencedObject(Record.ClassOfDefaults);
		Collector.AddReferencedObject(Record.Before.Outer);
		Collector.AddReferencedObject(Record.After.Outer);
	}
	Collector.AddReferencedObjects(References);
}
