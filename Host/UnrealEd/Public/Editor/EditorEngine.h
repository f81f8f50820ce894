#pragma once

#include "Engine/Engine.h"
#include "Internationalization/Text.h"
#include "EditorEngine.generated.h"

class UEditorSubsystem;
class UTransactor;

/** The editor. It owns the list of what can be undone. */
UCLASS(Config = Engine, Transient)
class UNREALED_API UEditorEngine : public UEngine
{
	GENERATED_BODY()

public:
	UPROPERTY()
	TObjectPtr<UTransactor> Trans;

	/** Opens a transaction, or enters the one that is open. @return how many were open before; -1 when none can be */
	int32 BeginTransaction(const FText& Description);
	virtual int32 BeginTransaction(const TCHAR* TransactionContext, const FText& Description, UObject* PrimaryObject);
	virtual int32 EndTransaction();
	virtual void CancelTransaction(int32 Index);
	/** False when there is nothing to undo, or a transaction is open. */
	virtual bool UndoTransaction(bool bCanRedo = true);
	virtual bool RedoTransaction();
	/** Forgets everything. */
	virtual void ResetTransaction(const FText& Reason);

	/** Made by the first who asks for it. */
	template <typename SubsystemType>
	SubsystemType* GetEditorSubsystem()
	{
		return static_cast<SubsystemType*>(GetEditorSubsystemBase(SubsystemType::StaticClass()));
	}
	UEditorSubsystem* GetEditorSubsystemBase(UClass* SubsystemClass);
	/** Host: ends all of them. */
	void DeinitializeSubsystems();

private:
	UPROPERTY()
	TArray<TObjectPtr<UEditorSubsystem>> Subsystems;
};
