#pragma once

#include "Containers/Map.h"
#include "Misc/ITransaction.h"
#include "UObject/Object.h"
#include "Transactor.generated.h"

class FTransactionReferences;

/**
 * What was changed between its beginning and its end: of each object that was to be changed, the state before and the
 * state after.
 */
class UNREALED_API FTransaction : public ITransaction
{
public:
	FTransaction(const TCHAR* InContext, const FText& InTitle, bool bInFlip);
	~FTransaction() override;
	UE_NONCOPYABLE(FTransaction)

	FText GetTitle() const { return Context.Title; }
	FGuid GetId() const { return Context.TransactionId; }
	FTransactionContext GetContext() const { return Context; }
	/** In characters. */
	SIZE_T DataSize() const;

	void SaveObject(UObject* Object) override;
	void SaveNewObject(UObject* Object) override;

	// For the transaction buffer.
	void SetPrimaryObject(UObject* InObject) { Context.PrimaryObject = InObject; }
	/** Takes the states after; objects that are as they were fall out. */
	void Finish();
	bool IsEmpty() const;
	/** Puts the objects back to before, or forth again. Their packages become dirty. */
	void Apply(bool bForward);
	/** The objects, in the order in which they were first recorded. */
	TArray<UObject*> GetObjects() const;
	void AddReferencedObjects(FReferenceCollector& Collector);

private:
	struct FState
	{
		FName Name;
		UObject* Outer = nullptr;
		FString Text;

		bool operator==(const FState& Other) const
		{
			return Name == Other.Name && Outer == Other.Outer && Text.Equals(Other.Text);
		}
	};
	struct FRecord
	{
		/** The class's present one for a default object, which a compile recreates. */
		UObject* Resolve() const;

		UObject* Object = nullptr;
		UClass* ClassOfDefaults = nullptr;
		bool bNew = false; // there was no such object before
		FState Before;
		FState After;
	};

	FState Capture(const UObject& Object);
	void Restore(UObject& Object, const FState& State);

	FTransactionContext Context;
	TArray<FRecord> Records;
	TMap<UObject*, int32> RecordIndices;
	TArray<UObject*> References; // that the texts name by number
	TMap<const UObject*, int32> ReferenceNumbers;
	FString StateText; // of the object that is being captured
	friend class FTransactionReferences;
};

/** The list of transactions, of which some may have been undone. */
UCLASS(Abstract, Transient)
class UNREALED_API UTransactor : public UObject
{
	GENERATED_BODY()

public:
	virtual int32 Begin(const TCHAR* SessionContext, const FText& Description)
		PURE_VIRTUAL(UTransactor::Begin, return 0;);
	virtual int32 End() PURE_VIRTUAL(UTransactor::End, return 0;);
	virtual void Cancel(int32 StartIndex = 0) PURE_VIRTUAL(UTransactor::Cancel, );
	virtual void Reset(const FText& Reason) PURE_VIRTUAL(UTransactor::Reset, );
	/** False while a transaction is open. Text gets the reason. */
	virtual bool CanUndo(FText* Text = nullptr) PURE_VIRTUAL(UTransactor::CanUndo, return false;);
	virtual bool CanRedo(FText* Text = nullptr) PURE_VIRTUAL(UTransactor::CanRedo, return false;);
	/** Of all transactions, those that were undone too. */
	virtual int32 GetQueueLength() const PURE_VIRTUAL(UTransactor::GetQueueLength, return 0;);
	/** 0 is the oldest; null for an index that there is not. */
	virtual const FTransaction* GetTransaction(int32 QueueIndex) const
		PURE_VIRTUAL(UTransactor::GetTransaction, return nullptr;);
	virtual int32 FindTransactionIndex(const FGuid& TransactionId) const
		PURE_VIRTUAL(UTransactor::FindTransactionIndex, return INDEX_NONE;);
	/** How many have been undone. */
	virtual int32 GetUndoCount() const PURE_VIRTUAL(UTransactor::GetUndoCount, return 0;);
	/** Of what the next undo reverts. When that is asked for and impossible, Title says why. */
	virtual FTransactionContext GetUndoContext(bool bCheckWhetherUndoPossible = true)
		PURE_VIRTUAL(UTransactor::GetUndoContext, return FTransactionContext(););
	virtual FTransactionContext GetRedoContext()
		PURE_VIRTUAL(UTransactor::GetRedoContext, return FTransactionContext(););
	virtual void SetPrimaryUndoObject(UObject* Object) PURE_VIRTUAL(UTransactor::SetPrimaryUndoObject, );
	virtual bool Undo(bool bCanRedo = true) PURE_VIRTUAL(UTransactor::Undo, return false;);
	virtual bool Redo() PURE_VIRTUAL(UTransactor::Redo, return false;);
	virtual bool IsActive() PURE_VIRTUAL(UTransactor::IsActive, return false;);
};
