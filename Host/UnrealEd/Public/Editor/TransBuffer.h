#pragma once

#include "Editor/Transactor.h"
#include "Templates/SharedPointer.h"
#include "TransBuffer.generated.h"

/** The editor's transactor. */
UCLASS(Transient)
class UNREALED_API UTransBuffer : public UTransactor
{
	GENERATED_BODY()

public:
	/** The oldest transactions are given up when all together have more characters. */
	SIZE_T MaxMemory = 256 * 1024 * 1024;
	TArray<TSharedRef<FTransaction>> UndoBuffer;
	int32 UndoCount = 0;
	int32 ActiveCount = 0;
	/** Of each level, how many objects were recorded when it began. */
	TArray<int32> ActiveRecordCounts;

	int32 Begin(const TCHAR* SessionContext, const FText& Description) override;
	int32 End() override;
	void Cancel(int32 StartIndex = 0) override;
	void Reset(const FText& Reason) override;
	bool CanUndo(FText* Text = nullptr) override;
	bool CanRedo(FText* Text = nullptr) override;
	int32 GetQueueLength() const override { return UndoBuffer.Num(); }
	const FTransaction* GetTransaction(int32 QueueIndex) const override;
	int32 FindTransactionIndex(const FGuid& TransactionId) const override;
	int32 GetUndoCount() const override { return UndoCount; }
	FTransactionContext GetUndoContext(bool bCheckWhetherUndoPossible = true) override;
	FTransactionContext GetRedoContext() override;
	void SetPrimaryUndoObject(UObject* Object) override;
	bool Undo(bool bCanRedo = true) override;
	bool Redo() override;
	bool IsActive() override { return ActiveCount > 0; }

	FSimpleMulticastDelegate& OnUndoBufferChanged() { return BufferChangedDelegate; }

	void BeginDestroy() override;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

private:
	void CloseOutermost();
	void GiveUpOldest();

	/** What was undone before the open transaction began: it comes back when that turns out to be empty. */
	TArray<TSharedRef<FTransaction>> PutAside;
	int32 UndoCountBefore = 0;
	FSimpleMulticastDelegate BufferChangedDelegate;
};
