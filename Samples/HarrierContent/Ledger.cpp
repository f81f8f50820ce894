#include "Assets.h"
#include "GraphBuilder.h"
#include "K2Node_EditablePinBase.h"
#include "Kismet/KismetMathLibrary.h"

namespace Ledger
{
using namespace HarrierContent;

/** Adds feathers to the total and answers with the new one. */
void AddEnter(UBlueprint& Blueprint)
{
	FGraphBuilder Graph(FGraphBuilder::AddFunction(Blueprint, TEXT("Enter")));
	Graph.GetEntry().CreateUserDefinedPin(TEXT("Feathers"), TypeOf(UEdGraphSchema_K2::PC_Int), EGPD_Output);
	UEdGraphNode& Total = Graph.Get(TEXT("Total"));
	UEdGraphNode& Sum = Graph.Call(UKismetMathLibrary::StaticClass(), TEXT("Add_IntInt"));
	UEdGraphNode& SetTotal = Graph.Set(TEXT("Total"));
	FGraphBuilder::Then(Graph.GetEntry(), SetTotal);
	UK2Node_EditablePinBase& Result = Graph.GetResult();
	Result.CreateUserDefinedPin(TEXT("ReturnValue"), TypeOf(UEdGraphSchema_K2::PC_Int), EGPD_Input);
	FGraphBuilder::Then(SetTotal, Result);
	FGraphBuilder::Link(Total, TEXT("Total"), Sum, TEXT("A"));
	FGraphBuilder::Link(Graph.GetEntry(), TEXT("Feathers"), Sum, TEXT("B"));
	FGraphBuilder::Link(Sum, TEXT("ReturnValue"), SetTotal, TEXT("Total"));
	FGraphBuilder::Link(SetTotal, TEXT("Output_Get"), Result, TEXT("ReturnValue"));
}
}

/** A Blueprint that is no actor: what the warden's book says of feathers. */
void HarrierContent::MakeLedger()
{
	UBlueprint& Blueprint = *MakeBlueprint(TEXT("/Game/Blueprints/BP_Ledger"), UObject::StaticClass());
	AddVariables(Blueprint,
		{ { TEXT("Total"), TypeOf(UEdGraphSchema_K2::PC_Int), TEXT("12") },
			{ TEXT("Names"), In(EPinContainerType::Array, TypeOf(UEdGraphSchema_K2::PC_String)), TEXT("") } });
	Ledger::AddEnter(Blueprint);
	Compile(Blueprint);
	Save(Blueprint);
}
