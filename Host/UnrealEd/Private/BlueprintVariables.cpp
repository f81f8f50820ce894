#include "EdGraphSchema_K2.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_Variable.h"
#include "Kismet2/BlueprintEditorUtils.h"

namespace BlueprintVariables
{
/** Whether a member of the class or a parent, be it compiled or not, has the name. */
bool IsNameTaken(const UBlueprint& Blueprint, FName Name)
{
	const UClass* const Class =
		Blueprint.SkeletonGeneratedClass ? Blueprint.SkeletonGeneratedClass : Blueprint.ParentClass;
	const USimpleConstructionScript* const Components = Blueprint.SimpleConstructionScript;
	return FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, Name) != INDEX_NONE ||
		   (Class && Class->FindPropertyByName(Name)) || (Components && Components->FindSCSNode(Name));
}

FBPVariableDescription MakeVariable(FName Name, const FEdGraphPinType& Type, const FString& DefaultValue)
{
	FBPVariableDescription Variable;
	Variable.VarName = Name;
	Variable.VarGuid = FGuid::NewGuid();
	Variable.VarType = Type;
	Variable.VarType.bIsConst = false;
	Variable.VarType.bIsWeakPointer = false;
	Variable.VarType.bIsReference = false;
	Variable.FriendlyName =
		FName::NameToDisplayString(Name.ToString(), Type.PinCategory == UEdGraphSchema_K2::PC_Boolean);
	Variable.Category = UEdGraphSchema_K2::VR_DefaultCategory;
	Variable.PropertyFlags |= CPF_BlueprintVisible;
	Variable.DefaultValue = DefaultValue;
	return Variable;
}

/** The description of a member, or of a local variable; null when there is none. */
FBPVariableDescription* Find(UBlueprint* Blueprint, FName Name, const UStruct* LocalScope)
{
	if (!LocalScope)
	{
		const int32 Index = FBlueprintEditorUtils::FindNewVariableIndex(Blueprint, Name);
		return Index == INDEX_NONE ? nullptr : &Blueprint->NewVariables[Index];
	}
	TArray<UK2Node_FunctionEntry*> Entries;
	FBlueprintEditorUtils::GetAllNodesOfClass(Blueprint, Entries);
	for (UK2Node_FunctionEntry* const Entry : Entries)
	{
		if (Entry->GetGraph()->GetFName() == LocalScope->GetFName())
		{
			return Entry->LocalVariables.FindByPredicate(
				[Name](const FBPVariableDescription& Local) { return Local.VarName == Name; });
		}
	}
	return nullptr;
}

void ReconstructNodesOf(const UBlueprint& Blueprint, FName Variable)
{
	TArray<UK2Node_Variable*> Nodes;
	FBlueprintEditorUtils::GetAllNodesOfClass(&Blueprint, Nodes);
	for (UK2Node_Variable* const Node : Nodes)
	{
		if (Node->GetVarName() == Variable)
		{
			Node->ReconstructNode();
		}
	}
}
}

bool FBlueprintEditorUtils::AddMemberVariable(
	UBlueprint* Blueprint, const FName& NewVarName, const FEdGraphPinType& NewVarType, const FString& DefaultValue)
{
	if (NewVarName.IsNone() || BlueprintVariables::IsNameTaken(*Blueprint, NewVarName))
	{
		return false;
	}
	Blueprint->Modify();
	FBPVariableDescription Variable = BlueprintVariables::MakeVariable(NewVarName, NewVarType, DefaultValue);
	Variable.PropertyFlags |= CPF_DisableEditOnInstance;
	const bool bDelegate = NewVarType.PinCategory == UEdGraphSchema_K2::PC_MCDelegate;
	Variable.PropertyFlags |= bDelegate ? CPF_BlueprintAssignable | CPF_BlueprintCallable : CPF_None;
	Blueprint->NewVariables.Add(MoveTemp(Variable));
	ValidateBlueprintChildVariables(Blueprint, NewVarName);
	MarkBlueprintAsStructurallyModified(Blueprint);
	return true;
}

bool FBlueprintEditorUtils::AddLocalVariable(UBlueprint* Blueprint, UEdGraph* InTargetGraph, const FName InNewVarName,
	const FEdGraphPinType& InNewVarType, const FString& DefaultValue)
{
	TArray<UK2Node_FunctionEntry*> Entries;
	if (!InTargetGraph || !InTargetGraph->GetNodesOfClass(Entries))
	{
		return false;
	}
	Blueprint->Modify();
	Entries[0]->Modify();
	Entries[0]->LocalVariables.Add(BlueprintVariables::MakeVariable(InNewVarName, InNewVarType, DefaultValue));
	MarkBlueprintAsStructurallyModified(Blueprint);
	return true;
}

void FBlueprintEditorUtils::RemoveMemberVariable(UBlueprint* Blueprint, const FName VarName)
{
	const int32 Index = FindNewVariableIndex(Blueprint, VarName);
	if (Index != INDEX_NONE)
	{
		Blueprint->Modify();
		Blueprint->NewVariables.RemoveAt(Index);
		MarkBlueprintAsStructurallyModified(Blueprint);
	}
}

void FBlueprintEditorUtils::ChangeMemberVariableType(
	UBlueprint* Blueprint, const FName VariableName, const FEdGraphPinType& NewPinType)
{
	const int32 Index = FindNewVariableIndex(Blueprint, VariableName);
	if (Index == INDEX_NONE || Blueprint->NewVariables[Index].VarType == NewPinType)
	{
		return;
	}
	Blueprint->Modify();
	Blueprint->NewVariables[Index].VarType = NewPinType;
	Blueprint->NewVariables[Index].DefaultValue.Empty();
	MarkBlueprintAsStructurallyModified(Blueprint);
	BlueprintVariables::ReconstructNodesOf(*Blueprint, VariableName);
}

int32 FBlueprintEditorUtils::FindNewVariableIndex(const UBlueprint* Blueprint, const FName& InName)
{
	return InName.IsNone()
			   ? INDEX_NONE
			   : Blueprint->NewVariables.IndexOfByPredicate(
					 [InName](const FBPVariableDescription& Variable) { return Variable.VarName == InName; });
}

int32 FBlueprintEditorUtils::FindNewVariableIndexAndBlueprint(
	UBlueprint* InBlueprint, FName InName, UBlueprint*& OutFoundBlueprint)
{
	for (UBlueprint* Blueprint = InBlueprint; Blueprint;
		 Blueprint = UBlueprint::GetBlueprintFromClass(Blueprint->ParentClass))
	{
		const int32 Index = FindNewVariableIndex(Blueprint, InName);
		if (Index != INDEX_NONE)
		{
			OutFoundBlueprint = Blueprint;
			return Index;
		}
	}
	OutFoundBlueprint = nullptr;
	return INDEX_NONE;
}

void FBlueprintEditorUtils::SetBlueprintVariableCategory(UBlueprint* Blueprint, const FName& VarName,
	const UStruct* InLocalVarScope, const FText& NewCategory, bool bDontRecompile)
{
	Blueprint->Modify();
	FBPVariableDescription* const Variable = BlueprintVariables::Find(Blueprint, VarName, InLocalVarScope);
	if (!Variable)
	{
		return;
	}
	Variable->Category = NewCategory.IsEmpty() ? UEdGraphSchema_K2::VR_DefaultCategory : NewCategory;
	if (!bDontRecompile)
	{
		MarkBlueprintAsStructurallyModified(Blueprint);
	}
}

void FBlueprintEditorUtils::SetBlueprintVariableMetaData(UBlueprint* Blueprint, const FName& VarName,
	const UStruct* InLocalVarScope, const FName& MetaDataKey, const FString& MetaDataValue)
{
	Blueprint->Modify();
	if (FBPVariableDescription* const Variable = BlueprintVariables::Find(Blueprint, VarName, InLocalVarScope))
	{
		Variable->SetMetaData(MetaDataKey, MetaDataValue);
		MarkBlueprintAsStructurallyModified(Blueprint);
	}
}

void FBlueprintEditorUtils::SetBlueprintVariableRepNotifyFunc(
	UBlueprint* Blueprint, const FName& VarName, const FName& RepNotifyFunc)
{
	const int32 Index = FindNewVariableIndex(Blueprint, VarName);
	if (Index != INDEX_NONE)
	{
		Blueprint->NewVariables[Index].RepNotifyFunc = RepNotifyFunc;
	}
}

FName FBlueprintEditorUtils::GetBlueprintVariableRepNotifyFunc(UBlueprint* Blueprint, const FName& VarName)
{
	const int32 Index = FindNewVariableIndex(Blueprint, VarName);
	return Index == INDEX_NONE ? FName() : Blueprint->NewVariables[Index].RepNotifyFunc;
}

void FBlueprintEditorUtils::SetBlueprintOnlyEditableFlag(
	UBlueprint* Blueprint, const FName& VarName, const bool bNewBlueprintOnly)
{
	const int32 Index = FindNewVariableIndex(Blueprint, VarName);
	if (Index == INDEX_NONE)
	{
		return;
	}
	Blueprint->Modify();
	uint64& Flags = Blueprint->NewVariables[Index].PropertyFlags;
	Flags = bNewBlueprintOnly ? Flags | CPF_DisableEditOnInstance : Flags & ~CPF_DisableEditOnInstance;
	MarkBlueprintAsStructurallyModified(Blueprint);
}

void FBlueprintEditorUtils::ValidateBlueprintChildVariables(UBlueprint* InBlueprint, const FName InVariableName)
{
	TArray<UBlueprint*> Children;
	GetDependentBlueprints(InBlueprint, Children);
	for (UBlueprint* const Child : Children)
	{
		const int32 Index = FindNewVariableIndex(Child, InVariableName);
		if (Index != INDEX_NONE)
		{
			Child->Modify();
			Child->NewVariables[Index].VarName = FindUniqueKismetName(Child, InVariableName.ToString());
		}
	}
}

FName FBlueprintEditorUtils::FindUniqueKismetName(
	const UBlueprint* InBlueprint, const FString& InBaseName, UStruct* InScope)
{
	TArray<UEdGraph*> Graphs;
	InBlueprint->GetAllGraphs(Graphs);
	const auto IsTaken = [&](FName Name) {
		return BlueprintVariables::IsNameTaken(*InBlueprint, Name) || (InScope && InScope->FindPropertyByName(Name)) ||
			   Graphs.ContainsByPredicate([Name](const UEdGraph* Graph) { return Graph->GetFName() == Name; });
	};
	FName Name(*InBaseName);
	for (int32 Number = 0; IsTaken(Name); ++Number)
	{
		Name = FName(*FString::Printf(TEXT("%s_%d"), *InBaseName, Number));
	}
	return Name;
}

bool FBlueprintEditorUtils::PropertyValueFromString(
	const FProperty* Property, const FString& StrValue, uint8* Container, UObject* OwningObject, int32 PortFlags)
{
	// Read aside first: a text that breaks off must not leave half a value.
	const FPropertyValueBuffer Value(*Property);
	void* const Target = Property->ContainerPtrToValuePtr<void>(static_cast<void*>(Container));
	Property->CopyCompleteValue(Value.Get(), Target);
	const TCHAR* const Rest = Property->ImportText_Direct(*StrValue, Value.Get(), OwningObject, PortFlags);
	if (!Rest)
	{
		return false;
	}
	Property->CopyCompleteValue(Target, Value.Get());
	return true;
}
