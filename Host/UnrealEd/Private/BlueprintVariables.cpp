#include "Compiler/BlueprintCompilationManager.h"
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

/** Three plain numbers with commas between. */
bool ReadThree(const FString& Text, double& OutFirst, double& OutSecond, double& OutThird)
{
	TArray<FString> Numbers;
	Text.ParseIntoArray(Numbers, TEXT(","), false);
	if (Numbers.Num() != 3)
	{
		return false;
	}
	double* const Targets[] = { &OutFirst, &OutSecond, &OutThird };
	for (int32 Index = 0; Index < 3; ++Index)
	{
		const FString Number = Numbers[Index].TrimStartAndEnd();
		if (!Number.IsNumeric())
		{
			return false;
		}
		*Targets[Index] = FCString::Atod(*Number);
	}
	return true;
}

bool ReadTransform(const FString& Text, FTransform& OutTransform)
{
	TArray<FString> Members;
	Text.ParseIntoArray(Members, TEXT("|"), false);
	FVector Place;
	FRotator Turn;
	FVector Scale;
	if (Members.Num() != 3 || !ReadThree(Members[0], Place.X, Place.Y, Place.Z) ||
		!ReadThree(Members[1], Turn.Pitch, Turn.Yaw, Turn.Roll) || !ReadThree(Members[2], Scale.X, Scale.Y, Scale.Z))
	{
		return false;
	}
	OutTransform = FTransform(Turn, Place, Scale);
	return true;
}

/** Structs that pins have in a form of their own are read in that, all others as properties write themselves. */
bool ReadPinText(const FProperty& Property, const FString& Text, void* Value, UObject* Owner, int32 PortFlags)
{
	const FStructProperty* const StructProperty = CastField<FStructProperty>(&Property);
	const UScriptStruct* const Struct = StructProperty ? StructProperty->Struct : nullptr;
	if (Struct == TBaseStructure<FVector>::Get())
	{
		FVector& Vector = *static_cast<FVector*>(Value);
		return ReadThree(Text, Vector.X, Vector.Y, Vector.Z);
	}
	if (Struct == TBaseStructure<FRotator>::Get())
	{
		FRotator& Turn = *static_cast<FRotator*>(Value);
		return ReadThree(Text, Turn.Pitch, Turn.Yaw, Turn.Roll);
	}
	if (Struct == TBaseStructure<FTransform>::Get())
	{
		return ReadTransform(Text, *static_cast<FTransform*>(Value));
	}
	const bool bWhole = Struct != TBaseStructure<FLinearColor>::Get() ||
						(Text.Contains(TEXT("R=")) && Text.Contains(TEXT("G=")) && Text.Contains(TEXT("B=")));
	return bWhole && Property.ImportText_Direct(*Text, Value, Owner, PortFlags);
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
	FBlueprintCompilationManager::ExtendSkeleton(*Blueprint, Blueprint->NewVariables.Last());
	MarkBlueprintAsModified(Blueprint);
	return true;
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

bool FBlueprintEditorUtils::HasGetTypeHash(const FEdGraphPinType& PinType)
{
	using FSchema = UEdGraphSchema_K2;
	const FName Category = PinType.PinCategory;
	if (PinType.IsContainer() || Category == FSchema::PC_Boolean || Category == FSchema::PC_Text ||
		Category == FSchema::PC_Delegate || Category == FSchema::PC_MCDelegate)
	{
		return false;
	}
	const UScriptStruct* const Struct = Cast<UScriptStruct>(PinType.PinSubCategoryObject.Get());
	return Category != FSchema::PC_Struct || (Struct && Struct->CanHash());
}

bool FBlueprintEditorUtils::PropertyValueFromString(
	const FProperty* Property, const FString& StrValue, uint8* Container, UObject* OwningObject, int32 PortFlags)
{
	// Read aside first: a text that breaks off must not leave half a value.
	const FPropertyValueBuffer Value(*Property);
	void* const Target = Property->ContainerPtrToValuePtr<void>(static_cast<void*>(Container));
	Property->CopyCompleteValue(Value.Get(), Target);
	if (!BlueprintVariables::ReadPinText(*Property, StrValue, Value.Get(), OwningObject, PortFlags))
	{
		return false;
	}
	Property->CopyCompleteValue(Target, Value.Get());
	return true;
}
