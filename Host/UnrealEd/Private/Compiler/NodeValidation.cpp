#include "Compiler/NodeValidation.h"

#include "EdGraph/EdGraph.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_CallFunction.h"
#include "K2Node_Event.h"
#include "K2Node_FunctionResult.h"
#include "K2Node_Variable.h"
#include "Kismet2/CompilerResultsLog.h"
#include "UObject/UnrealType.h"

namespace NodeValidation
{
using FSchema = UEdGraphSchema_K2;

void ValidateLink(const UEdGraphPin& Output, const UEdGraphPin& Input, FCompilerResultsLog& Log)
{
	UEdGraphNode* const Node = Output.GetOwningNode();
	if (Output.Direction == Input.Direction)
	{
		Log.Error(FString::Printf(TEXT("Can't connect pins %s and %s of @@: their directions are the same"),
					  *Output.GetName(), *Input.GetName()),
			Node);
		return;
	}
	const UK2Node* const K2Node = Cast<UK2Node>(Node);
	if (!GetDefault<FSchema>()->ArePinTypesCompatible(
			Output.PinType, Input.PinType, K2Node ? K2Node->GetBlueprintClassFromNode() : nullptr))
	{
		Log.Error(FString::Printf(TEXT("Can't connect pins %s and %s of @@: %s is not compatible with %s."),
					  *Output.GetName(), *Input.GetName(), *FSchema::TypeToText(Output.PinType).ToString(),
					  *FSchema::TypeToText(Input.PinType).ToString()),
			Node);
	}
}

void ValidatePinValue(const UEdGraphPin& Pin, FCompilerResultsLog& Log)
{
	if (Pin.Direction != EGPD_Input || Pin.HasAnyConnections() || Pin.bDefaultValueIsIgnored || Pin.bHidden ||
		FSchema::IsExecPin(Pin))
	{
		return;
	}
	const FString Error =
		GetDefault<FSchema>()->IsPinDefaultValid(&Pin, Pin.DefaultValue, Pin.DefaultObject, Pin.DefaultTextValue);
	if (!Error.IsEmpty())
	{
		Log.Error(FString::Printf(TEXT("The value '%s' of the pin %s of @@ is not valid: %s"), *Pin.DefaultValue,
					  *Pin.GetName(), *Error),
			Pin.GetOwningNode());
	}
}

void ValidatePin(const UEdGraphPin& Pin, FCompilerResultsLog& Log)
{
	UEdGraphNode* const Node = Pin.GetOwningNode();
	if (Pin.bOrphanedPin)
	{
		Log.Warning(
			FString::Printf(TEXT("In use pin %s no longer exists on node @@. Please refresh node or break links "
								 "to remove pin."),
				*Pin.GetName()),
			Node);
		return;
	}
	const bool bExclusive = FSchema::IsExecPin(Pin) == (Pin.Direction == EGPD_Output);
	if (bExclusive && Pin.LinkedTo.Num() > 1)
	{
		Log.Error(FString::Printf(TEXT("The pin %s of @@ has more than one link"), *Pin.GetName()), Node);
	}
	for (const UEdGraphPin* const Other : Pin.LinkedTo)
	{
		// Each link is looked at from one end; two ends of one direction, from either.
		if (Pin.Direction == EGPD_Output || Other->Direction == EGPD_Input)
		{
			ValidateLink(Pin, *Other, Log);
		}
	}
	ValidatePinValue(Pin, Log);
}

void ValidateVariable(UK2Node_Variable& Node, FCompilerResultsLog& Log)
{
	if (!Node.VariableReference.IsLocalScope() && !Node.GetPropertyForVariable())
	{
		const UBlueprint* const Blueprint = Node.GetBlueprint();
		Log.Error(
			FString::Printf(TEXT("Could not find a variable named \"%s\" in '%s'.\nMake sure '%s' has been compiled "
								 "for  @@"),
				*Node.GetVarNameString(), *Blueprint->GetName(), *Blueprint->GetName()),
			&Node);
		return;
	}
	const UEdGraphPin* const Self = Node.FindPin(FSchema::PN_Self);
	if (Self && !Node.VariableReference.IsSelfContext() && !Self->HasAnyConnections())
	{
		Log.Error(TEXT("This blueprint (self) is not the target of @@: the Target pin needs a connection"), &Node);
	}
}

void ValidateCall(UK2Node_CallFunction& Node, FCompilerResultsLog& Log)
{
	const UFunction* const Function = Node.GetTargetFunction();
	if (!Function)
	{
		const UBlueprint* const Blueprint = Node.GetBlueprint();
		Log.Error(
			FString::Printf(TEXT("Could not find a function named \"%s\" in '%s'.\nMake sure '%s' has been compiled "
								 "for  @@"),
				*Node.GetFunctionName().ToString(), *Blueprint->GetName(), *Blueprint->GetName()),
			&Node);
		return;
	}
	if (Function->HasMetaData(FBlueprintMetadata::MD_DeprecatedFunction))
	{
		Log.Warning(TEXT("@@ is deprecated; please replace or remove it."), &Node);
	}
	const UEdGraphPin* const Self = Node.FindPin(FSchema::PN_Self, EGPD_Input);
	const UClass* const Context = Node.GetBlueprintClassFromNode();
	const bool bSelfWillDo = Context && Context->IsChildOf(Function->GetOwnerClass());
	if (Self && !Self->bHidden && !Self->HasAnyConnections() && !Node.FunctionReference.IsSelfContext() && !bSelfWillDo)
	{
		Log.Error(FString::Printf(TEXT("This blueprint (self) is not a %s, therefore 'Target' of @@ must have a "
									   "connection."),
					  *Function->GetOwnerClass()->GetName()),
			&Node);
	}
}

void ValidateEvent(UK2Node_Event& Node, FCompilerResultsLog& Log)
{
	if (Node.bOverrideFunction && !Node.FindEventSignatureFunction())
	{
		Log.Error(FString::Printf(TEXT("Missing Event '%s' for @@"), *Node.GetFunctionName().ToString()), &Node);
	}
}

void ValidateResult(UK2Node_FunctionResult& Node, FCompilerResultsLog& Log)
{
	const UEdGraphPin* const Exec = Node.GetExecPin();
	const bool bHasOutputs = Node.Pins.Num() > 1;
	if (bHasOutputs && Exec && !Exec->HasAnyConnections())
	{
		Log.Warning(TEXT("@@ is never reached: nothing is connected to it"), &Node);
	}
}

/** Nodes that are enabled; others do not take part. */
void ValidateNode(UEdGraphNode& Node, FCompilerResultsLog& Log)
{
	if (UK2Node_Variable* const Variable = Cast<UK2Node_Variable>(&Node))
	{
		ValidateVariable(*Variable, Log);
	}
	else if (UK2Node_CallFunction* const Call = Cast<UK2Node_CallFunction>(&Node))
	{
		ValidateCall(*Call, Log);
	}
	else if (UK2Node_Event* const Event = Cast<UK2Node_Event>(&Node))
	{
		ValidateEvent(*Event, Log);
	}
	else if (UK2Node_FunctionResult* const Result = Cast<UK2Node_FunctionResult>(&Node))
	{
		ValidateResult(*Result, Log);
	}
	for (const UEdGraphPin* const Pin : Node.Pins)
	{
		ValidatePin(*Pin, Log);
	}
}
}

void ValidateGraph(const UEdGraph& Graph, FCompilerResultsLog& Log)
{
	for (UEdGraphNode* const Node : Graph.Nodes)
	{
		if (!Node)
		{
			Log.Warning(FString::Printf(TEXT("The graph %s holds a node whose class is missing"), *Graph.GetName()));
			continue;
		}
		Node->bHasCompilerMessage = false;
		Node->ErrorMsg.Empty();
		Node->ErrorType = 0;
		if (Node->IsNodeEnabled())
		{
			NodeValidation::ValidateNode(*Node, Log);
		}
	}
}
