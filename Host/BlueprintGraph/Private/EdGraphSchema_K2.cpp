#include "EdGraphSchema_K2.h"

#include "Engine/Blueprint.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "ParameterDirection.h"

#define LOCTEXT_NAMESPACE "KismetSchema"

DEFINE_LOG_CATEGORY_STATIC(LogBlueprint, Log, All);

const FName FBlueprintMetadata::MD_Tooltip(TEXT("tooltip"));
const FName FBlueprintMetadata::MD_ExposeOnSpawn(TEXT("ExposeOnSpawn"));
const FName FBlueprintMetadata::MD_Private(TEXT("BlueprintPrivate"));
const FName FBlueprintMetadata::MD_Bitmask(TEXT("Bitmask"));
const FName FBlueprintMetadata::MD_DisplayName(TEXT("DisplayName"));
const FName FBlueprintMetadata::MD_WorldContext(TEXT("WorldContext"));
const FName FBlueprintMetadata::MD_DeprecatedFunction(TEXT("DeprecatedFunction"));
const FName FBlueprintMetadata::MD_IsBlueprintBase(TEXT("IsBlueprintBase"));
const FName FBlueprintMetadata::MD_AllowableBlueprintVariableType(TEXT("BlueprintType"));
const FName FBlueprintMetadata::MD_NotAllowableBlueprintVariableType(TEXT("NotBlueprintType"));

const FName UEdGraphSchema_K2::PC_Exec(TEXT("exec"));
const FName UEdGraphSchema_K2::PC_Boolean(TEXT("bool"));
const FName UEdGraphSchema_K2::PC_Byte(TEXT("byte"));
const FName UEdGraphSchema_K2::PC_Class(TEXT("class"));
const FName UEdGraphSchema_K2::PC_SoftClass(TEXT("softclass"));
const FName UEdGraphSchema_K2::PC_Int(TEXT("int"));
const FName UEdGraphSchema_K2::PC_Int64(TEXT("int64"));
const FName UEdGraphSchema_K2::PC_Float(TEXT("float"));
const FName UEdGraphSchema_K2::PC_Double(TEXT("double"));
const FName UEdGraphSchema_K2::PC_Real(TEXT("real"));
const FName UEdGraphSchema_K2::PC_Name(TEXT("name"));
const FName UEdGraphSchema_K2::PC_Delegate(TEXT("delegate"));
const FName UEdGraphSchema_K2::PC_MCDelegate(TEXT("mcdelegate"));
const FName UEdGraphSchema_K2::PC_Object(TEXT("object"));
const FName UEdGraphSchema_K2::PC_Interface(TEXT("interface"));
const FName UEdGraphSchema_K2::PC_SoftObject(TEXT("softobject"));
const FName UEdGraphSchema_K2::PC_String(TEXT("string"));
const FName UEdGraphSchema_K2::PC_Text(TEXT("text"));
const FName UEdGraphSchema_K2::PC_Struct(TEXT("struct"));
const FName UEdGraphSchema_K2::PC_Wildcard(TEXT("wildcard"));
const FName UEdGraphSchema_K2::PC_Enum(TEXT("enum"));
const FName UEdGraphSchema_K2::PC_FieldPath(TEXT("fieldpath"));

const FName UEdGraphSchema_K2::PSC_Self(TEXT("self"));
const FName UEdGraphSchema_K2::PSC_Index(TEXT("index"));
const FName UEdGraphSchema_K2::PSC_Bitmask(TEXT("bitmask"));

const FName UEdGraphSchema_K2::PN_Execute(TEXT("execute"));
const FName UEdGraphSchema_K2::PN_Then(TEXT("then"));
const FName UEdGraphSchema_K2::PN_Completed(TEXT("Completed"));
const FName UEdGraphSchema_K2::PN_DelegateEntry(TEXT("delegate"));
const FName UEdGraphSchema_K2::PN_EntryPoint(TEXT("EntryPoint"));
const FName UEdGraphSchema_K2::PN_Self(TEXT("self"));
const FName UEdGraphSchema_K2::PN_Else(TEXT("else"));
const FName UEdGraphSchema_K2::PN_Item(TEXT("Item"));
const FName UEdGraphSchema_K2::PN_Index(TEXT("Index"));
const FName UEdGraphSchema_K2::PN_Condition(TEXT("Condition"));
const FName UEdGraphSchema_K2::PN_ReturnValue(TEXT("ReturnValue"));

const FName UEdGraphSchema_K2::FN_UserConstructionScript(TEXT("UserConstructionScript"));
const FName UEdGraphSchema_K2::FN_ExecuteUbergraphBase(TEXT("ExecuteUbergraph"));
const FName UEdGraphSchema_K2::GN_EventGraph(TEXT("EventGraph"));

const FText UEdGraphSchema_K2::VR_DefaultCategory = NSLOCTEXT("K2Schema", "Default", "Default");

namespace K2Schema
{
/** Makes a node of a function, with the pins that it has by itself. */
template <typename NodeType>
NodeType* AddTerminator(UEdGraph& Graph, UClass* SignatureOwner, int32 NodePosX)
{
	FGraphNodeCreator<NodeType> Creator(Graph);
	NodeType* const Node = Creator.CreateNode();
	if (SignatureOwner)
	{
		Node->FunctionReference.SetExternalMember(Graph.GetFName(), SignatureOwner);
	}
	else
	{
		Node->FunctionReference.SetSelfMember(Graph.GetFName());
	}
	Node->NodePosX = NodePosX;
	Creator.Finalize();
	return Node;
}

constexpr int32 ResultNodeDistance = 256; // graph units

UK2Node_FunctionEntry* FindEntry(const UEdGraph* Graph)
{
	TArray<UK2Node_FunctionEntry*> Entries;
	return Graph && Graph->GetNodesOfClass(Entries) ? Entries[0] : nullptr;
}

/** Inputs in front. Null when both pins have the same direction. */
bool SortByDirection(const UEdGraphPin* A, const UEdGraphPin* B, const UEdGraphPin*& Input, const UEdGraphPin*& Output)
{
	const bool bForward = A->Direction == EGPD_Output && B->Direction == EGPD_Input;
	const bool bBackward = A->Direction == EGPD_Input && B->Direction == EGPD_Output;
	Output = bForward ? A : B;
	Input = bForward ? B : A;
	return bForward || bBackward;
}

FPinConnectionResponse Disallow(const FText& Message)
{
	return FPinConnectionResponse(CONNECT_RESPONSE_DISALLOW, Message);
}
}

const FPinConnectionResponse UEdGraphSchema_K2::CanCreateConnection(const UEdGraphPin* A, const UEdGraphPin* B) const
{
	const UEdGraphNode* const NodeA = A->GetOwningNodeUnchecked();
	const UEdGraphNode* const NodeB = B->GetOwningNodeUnchecked();
	if (!NodeA || !NodeB || NodeA == NodeB)
	{
		return K2Schema::Disallow(LOCTEXT("ConnectionSameNode", "Both are on the same node"));
	}
	if (A->bOrphanedPin || B->bOrphanedPin || A->bNotConnectable || B->bNotConnectable)
	{
		return K2Schema::Disallow(LOCTEXT("ConnectionNotConnectable", "The pin cannot be connected"));
	}
	const UEdGraphPin* Input = nullptr;
	const UEdGraphPin* Output = nullptr;
	if (!K2Schema::SortByDirection(A, B, Input, Output))
	{
		return K2Schema::Disallow(LOCTEXT("ConnectionDirection", "Directions are not compatible"));
	}
	const UK2Node* const Node = Cast<UK2Node>(NodeA);
	const UClass* const Context = Node ? Node->GetBlueprintClassFromNode() : nullptr;
	if (!ArePinTypesCompatible(Output->PinType, Input->PinType, Context))
	{
		return K2Schema::Disallow(FText::Format(LOCTEXT("ConnectionTypes", "{0} is not compatible with {1}."),
			TypeToText(Output->PinType), TypeToText(Input->PinType)));
	}
	// One way of execution leaves a pin, one value reaches one.
	const UEdGraphPin* const Exclusive = IsExecPin(*Output) ? Output : Input;
	if (Exclusive->LinkedTo.Num() == 0)
	{
		return FPinConnectionResponse(CONNECT_RESPONSE_MAKE, FText());
	}
	return FPinConnectionResponse(Exclusive == A ? CONNECT_RESPONSE_BREAK_OTHERS_A : CONNECT_RESPONSE_BREAK_OTHERS_B,
		LOCTEXT("ConnectionReplace", "Replace existing connections"));
}

void UEdGraphSchema_K2::TrySetDefaultValue(UEdGraphPin& Pin, const FString& NewDefaultValue, bool bMarkAsModified) const
{
	const FString Error = IsDefaultTextValid(Pin, NewDefaultValue);
	if (!Error.IsEmpty())
	{
		UE_LOG(LogBlueprint, Warning, TEXT("Value '%s' of the pin '%s' is not valid: %s"), *NewDefaultValue,
			*Pin.PinName.ToString(), *Error);
		return;
	}
	Pin.Modify(bMarkAsModified);
	SetPinDefaultValueAtConstruction(&Pin, NewDefaultValue);
	Pin.GetOwningNode()->PinDefaultValueChanged(&Pin);
}

FText UEdGraphSchema_K2::GetPinDisplayName(const UEdGraphPin* Pin) const
{
	if (!Pin->PinFriendlyName.IsEmpty())
	{
		return Pin->PinFriendlyName;
	}
	if (IsExecPin(*Pin) && (Pin->PinName == PN_Execute || Pin->PinName == PN_Then))
	{
		return FText();
	}
	return FText::FromString(
		FName::NameToDisplayString(Pin->PinName.ToString(), Pin->PinType.PinCategory == PC_Boolean));
}

void UEdGraphSchema_K2::CreateFunctionGraphTerminators(UEdGraph& Graph, UClass* Class) const
{
	const UFunction* const Signature = Class ? Class->FindFunctionByName(Graph.GetFName()) : nullptr;
	UK2Node_FunctionEntry* const Entry = K2Schema::AddTerminator<UK2Node_FunctionEntry>(Graph, Class, 0);
	if (!Signature || !HasFunctionAnyOutputParameter(Signature))
	{
		return;
	}
	UK2Node_FunctionResult* const Result =
		K2Schema::AddTerminator<UK2Node_FunctionResult>(Graph, Class, K2Schema::ResultNodeDistance);
	Entry->FindPinChecked(PN_Then)->MakeLinkTo(Result->FindPinChecked(PN_Execute));
}

void UEdGraphSchema_K2::CreateFunctionGraphTerminators(UEdGraph& Graph, const UFunction* FunctionSignature) const
{
	// The signature is copied: the function is a new one that only looks alike.
	UK2Node_FunctionEntry* const Entry = K2Schema::AddTerminator<UK2Node_FunctionEntry>(Graph, nullptr, 0);
	UK2Node_FunctionResult* Result = nullptr;
	for (TFieldIterator<FProperty> It(FunctionSignature, EFieldIterationFlags::None); It; ++It)
	{
		FEdGraphPinType Type;
		if (!It->HasAnyPropertyFlags(CPF_Parm) || !ConvertPropertyToPinType(*It, Type))
		{
			continue;
		}
		const bool bOutput = IsOutputParameter(**It);
		if (!bOutput)
		{
			Entry->CreateUserDefinedPin(It->GetFName(), Type, EGPD_Output, false);
			continue;
		}
		if (!Result)
		{
			Result = K2Schema::AddTerminator<UK2Node_FunctionResult>(Graph, nullptr, K2Schema::ResultNodeDistance);
			Entry->FindPinChecked(PN_Then)->MakeLinkTo(Result->FindPinChecked(PN_Execute));
		}
		Result->CreateUserDefinedPin(It->GetFName(), Type, EGPD_Input, false);
	}
}

void UEdGraphSchema_K2::AddExtraFunctionFlags(const UEdGraph* CurrentGraph, int32 ExtraFlags) const
{
	if (UK2Node_FunctionEntry* const Entry = K2Schema::FindEntry(CurrentGraph))
	{
		Entry->Modify();
		Entry->AddExtraFlags(ExtraFlags);
	}
}

void UEdGraphSchema_K2::MarkFunctionEntryAsEditable(const UEdGraph* CurrentGraph, bool bNewEditable) const
{
	for (UEdGraphNode* const Node : CurrentGraph->Nodes)
	{
		if (UK2Node_EditablePinBase* const Editable = Cast<UK2Node_EditablePinBase>(Node))
		{
			Editable->Modify();
			Editable->bIsEditable = bNewEditable;
		}
	}
}

bool UEdGraphSchema_K2::HasFunctionAnyOutputParameter(const UFunction* Function)
{
	for (TFieldIterator<FProperty> It(Function, EFieldIterationFlags::None); It; ++It)
	{
		if (IsOutputParameter(**It))
		{
			return true;
		}
	}
	return false;
}

bool UEdGraphSchema_K2::FunctionCanBePlacedAsEvent(const UFunction* InFunction)
{
	return InFunction && InFunction->HasAllFunctionFlags(FUNC_BlueprintEvent) &&
		   !InFunction->HasAnyFunctionFlags(FUNC_Static | FUNC_BlueprintPure) &&
		   !HasFunctionAnyOutputParameter(InFunction);
}

FText UEdGraphSchema_K2::GetFriendlySignatureName(const UFunction* Function)
{
	return Function->GetDisplayNameText();
}

FText UEdGraphSchema_K2::GetFriendlyGraphName(const UEdGraph& Graph)
{
	const bool bConstruction = Graph.GetFName() == FN_UserConstructionScript;
	const FString Name = bConstruction ? FString(TEXT("ConstructionScript")) : Graph.GetName();
	return FText::FromString(FName::NameToDisplayString(Name, false));
}

#undef LOCTEXT_NAMESPACE
