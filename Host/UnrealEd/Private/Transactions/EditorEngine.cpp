#include "EdGraph/EdGraphNode.h"
#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "EditorSubsystem.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"

UEditorEngine* GEditor = nullptr;

namespace EditorEngine
{
/** Members and graphs may have come or gone: the skeletons of the Blueprints have to follow. */
void RefreshBlueprints(const FTransaction* Transaction)
{
	TArray<UBlueprint*> Blueprints;
	for (UObject* const Object : Transaction ? Transaction->GetObjects() : TArray<UObject*>())
	{
		UBlueprint* const Own = Cast<UBlueprint>(Object);
		UBlueprint* const Blueprint = Own ? Own : Object->GetTypedOuter<UBlueprint>();
		if (Blueprint)
		{
			Blueprints.AddUnique(Blueprint);
		}
	}
	for (UBlueprint* const Blueprint : Blueprints)
	{
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(Blueprint);
	}
}
}

int32 UEditorEngine::BeginTransaction(const FText& Description)
{
	return BeginTransaction(TEXT(""), Description, nullptr);
}

int32 UEditorEngine::BeginTransaction(const TCHAR* TransactionContext, const FText& Description, UObject* PrimaryObject)
{
	if (!Trans)
	{
		return INDEX_NONE;
	}
	const int32 Index = Trans->Begin(TransactionContext, Description);
	Trans->SetPrimaryUndoObject(PrimaryObject);
	return Index;
}

int32 UEditorEngine::EndTransaction()
{
	return Trans ? Trans->End() : INDEX_NONE;
}

void UEditorEngine::CancelTransaction(int32 Index)
{
	if (Trans)
	{
		Trans->Cancel(Index);
	}
}

bool UEditorEngine::UndoTransaction(bool bCanRedo)
{
	const FTransaction* const Transaction =
		Trans ? Trans->GetTransaction(Trans->GetQueueLength() - Trans->GetUndoCount() - 1) : nullptr;
	if (!Trans || !Trans->Undo(bCanRedo))
	{
		return false;
	}
	EditorEngine::RefreshBlueprints(bCanRedo ? Transaction : nullptr);
	return true;
}

bool UEditorEngine::RedoTransaction()
{
	const FTransaction* const Transaction =
		Trans ? Trans->GetTransaction(Trans->GetQueueLength() - Trans->GetUndoCount()) : nullptr;
	if (!Trans || !Trans->Redo())
	{
		return false;
	}
	EditorEngine::RefreshBlueprints(Transaction);
	return true;
}

void UEditorEngine::ResetTransaction(const FText& Reason)
{
	if (Trans)
	{
		Trans->Reset(Reason);
	}
}

UEditorSubsystem* UEditorEngine::GetEditorSubsystemBase(UClass* SubsystemClass)
{
	for (UEditorSubsystem* const Subsystem : Subsystems)
	{
		if (Subsystem->GetClass() == SubsystemClass)
		{
			return Subsystem;
		}
	}
	UEditorSubsystem* const Subsystem = NewObject<UEditorSubsystem>(this, SubsystemClass);
	Subsystems.Add(Subsystem);
	Subsystem->Initialize();
	return Subsystem;
}

void UEditorEngine::DeinitializeSubsystems()
{
	for (UEditorSubsystem* const Subsystem : Subsystems)
	{
		Subsystem->Deinitialize();
	}
	Subsystems.Empty();
}
