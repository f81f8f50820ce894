#include "GraphBuilder.h"

#include "EdGraphNode_Comment.h"
#include "EdGraphSchema_K2.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CallParentFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_FunctionResult.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Kismet2/BlueprintEditorUtils.h"

namespace GraphBuilder
{
// Units of the graph.
constexpr int32 ColumnWidth = 352;
constexpr int32 RowHeight = 224;
constexpr int32 FirstColumn = 1; // events stand left of it

UEdGraphPin& FindPin(const UEdGraphNode& Node, const TCHAR* Name, EEdGraphPinDirection Direction)
{
	UEdGraphPin* const Pin = Node.FindPin(Name, Direction);
	checkf(Pin, TEXT("%s has no pin %s"), *Node.GetPathName(), Name);
	return *Pin;
}
}

FGraphBuilder::FGraphBuilder(UEdGraph& InGraph)
	: Graph(InGraph)
	, Column(GraphBuilder::FirstColumn)
{
}

UEdGraph& FGraphBuilder::AddFunction(UBlueprint& Blueprint, const TCHAR* Name, UClass* SignatureClass)
{
	UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(
		&Blueprint, Name, UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(&Blueprint, Graph, SignatureClass == nullptr, SignatureClass);
	return *Graph;
}

UK2Node_EditablePinBase& FGraphBuilder::GetEntry() const
{
	return *FBlueprintEditorUtils::GetEntryNode(&Graph);
}

UK2Node_EditablePinBase& FGraphBuilder::GetResult() const
{
	UK2Node_EditablePinBase& Result = *FBlueprintEditorUtils::FindOrCreateFunctionResultNode(&GetEntry());
	Result.NodePosX = Column * GraphBuilder::ColumnWidth;
	return Result;
}

template <typename NodeType, typename SetUpType>
NodeType& FGraphBuilder::Add(SetUpType&& SetUp)
{
	FGraphNodeCreator<NodeType> Creator(Graph);
	NodeType* const Node = Creator.CreateNode();
	SetUp(*Node);
	Node->NodePosX = Column++ * GraphBuilder::ColumnWidth;
	Node->NodePosY = Row * GraphBuilder::RowHeight;
	Creator.Finalize();
	return *Node;
}

UEdGraphNode& FGraphBuilder::Get(const TCHAR* Variable)
{
	return Add<UK2Node_VariableGet>(
		[Variable](UK2Node_VariableGet& Node) { Node.VariableReference.SetSelfMember(Variable); });
}

UEdGraphNode& FGraphBuilder::Set(const TCHAR* Variable, const TCHAR* Value)
{
	UEdGraphNode& Set = Add<UK2Node_VariableSet>(
		[Variable](UK2Node_VariableSet& Node) { Node.VariableReference.SetSelfMember(Variable); });
	if (Value)
	{
		SetPin(Set, Variable, Value);
	}
	return Set;
}

UEdGraphNode& FGraphBuilder::Call(UClass* Class, const TCHAR* Function)
{
	return Add<UK2Node_CallFunction>(
		[Class, Function](UK2Node_CallFunction& Node) { Node.SetFromFunction(Class->FindFunctionByName(Function)); });
}

UEdGraphNode& FGraphBuilder::CallParent(UClass* Class, const TCHAR* Function)
{
	return Add<UK2Node_CallParentFunction>([Class, Function](UK2Node_CallParentFunction& Node) {
		Node.SetFromFunction(Class->FindFunctionByName(Function));
	});
}

UEdGraphNode& FGraphBuilder::Event(UClass* Class, const TCHAR* Function)
{
	return Add<UK2Node_Event>([Class, Function](UK2Node_Event& Node) {
		Node.EventReference.SetExternalMember(Function, Class);
		Node.bOverrideFunction = true;
	});
}

UK2Node_EditablePinBase& FGraphBuilder::CustomEvent(const TCHAR* Name)
{
	return Add<UK2Node_CustomEvent>([Name](UK2Node_CustomEvent& Node) { Node.CustomFunctionName = Name; });
}

UEdGraphNode& FGraphBuilder::Branch()
{
	return Add<UK2Node_IfThenElse>([](UK2Node_IfThenElse&) {});
}

UEdGraphNode& FGraphBuilder::Sequence(int32 NumWays)
{
	UK2Node_ExecutionSequence& Node = Add<UK2Node_ExecutionSequence>([](UK2Node_ExecutionSequence&) {});
	for (int32 Way = 2; Way < NumWays; ++Way) // it is made with two
	{
		Node.AddInputPin();
	}
	return Node;
}

void FGraphBuilder::CommentRow(const TCHAR* Text, int32 CommentedRow, int32 NumColumns)
{
	constexpr int32 Margin = 48;
	UEdGraphNode& Node = Add<UEdGraphNode_Comment>([](UEdGraphNode_Comment&) {});
	Node.NodeComment = Text;
	Node.NodePosX = GraphBuilder::FirstColumn * GraphBuilder::ColumnWidth - Margin;
	Node.NodePosY = CommentedRow * GraphBuilder::RowHeight - Margin;
	Node.NodeWidth = NumColumns * GraphBuilder::ColumnWidth;
	Node.NodeHeight = GraphBuilder::RowHeight - Margin;
}

void FGraphBuilder::NextRow()
{
	Column = GraphBuilder::FirstColumn;
	++Row;
}

void FGraphBuilder::Link(const UEdGraphNode& From, const TCHAR* Output, const UEdGraphNode& To, const TCHAR* Input)
{
	GraphBuilder::FindPin(From, Output, EGPD_Output).MakeLinkTo(&GraphBuilder::FindPin(To, Input, EGPD_Input));
}

void FGraphBuilder::Then(const UEdGraphNode& From, const UEdGraphNode& To, const TCHAR* Output)
{
	Link(From, Output, To, TEXT("execute"));
}

void FGraphBuilder::SetPin(const UEdGraphNode& Node, const TCHAR* Pin, const TCHAR* Value)
{
	GetDefault<UEdGraphSchema_K2>()->TrySetDefaultValue(GraphBuilder::FindPin(Node, Pin, EGPD_Input), Value);
}
