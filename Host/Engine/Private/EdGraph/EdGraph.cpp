#include "EdGraph/EdGraph.h"

#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"

namespace EdGraphImpl
{
constexpr int32 TypicalNodeWidth = 240; // graph units
constexpr int32 Gap = 80;
}

UEdGraph::UEdGraph(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bEditable(true)
	, bAllowDeletion(true)
	, bAllowRenaming(true)
{
}

const UEdGraphSchema* UEdGraph::GetSchema() const
{
	return Schema ? GetDefault<UEdGraphSchema>(Schema) : nullptr;
}

void UEdGraph::AddNode(UEdGraphNode* NodeToAdd, bool bUserAction, bool bSelectNewNode)
{
	checkf(NodeToAdd->GetOuter() == this, TEXT("%s lies in another graph than the one it is added to"),
		*NodeToAdd->GetPathName());
	Nodes.Add(NodeToAdd);
	NotifyGraphChanged();
}

bool UEdGraph::RemoveNode(UEdGraphNode* NodeToRemove, bool bBreakAllLinks, bool bAlwaysMarkDirty)
{
	Modify(bAlwaysMarkDirty);
	if (Nodes.Remove(NodeToRemove) == 0)
	{
		return false;
	}
	if (bBreakAllLinks)
	{
		NodeToRemove->BreakAllNodeLinks();
	}
	NotifyGraphChanged();
	return true;
}

void UEdGraph::GetAllChildrenGraphs(TArray<UEdGraph*>& Graphs) const
{
	for (UEdGraph* const Graph : SubGraphs)
	{
		if (Graph)
		{
			Graphs.Add(Graph);
			Graph->GetAllChildrenGraphs(Graphs);
		}
	}
}

void UEdGraph::NotifyGraphChanged()
{
	GraphChanged.Broadcast(this);
}

FVector2D UEdGraph::GetGoodPlaceForNewNode() const
{
	FVector2D Place(0.0, 0.0);
	for (const UEdGraphNode* const Node : Nodes)
	{
		const int32 Width = FMath::Max(Node->NodeWidth, EdGraphImpl::TypicalNodeWidth);
		Place.X = FMath::Max(Place.X, static_cast<double>(Node->NodePosX + Width + EdGraphImpl::Gap));
	}
	return Place;
}

UEdGraphNode* UEdGraph::CreateNode(TSubclassOf<UEdGraphNode> NodeClass, bool bFromUI, bool bSelectNewNode)
{
	UEdGraphNode* const Node = NewObject<UEdGraphNode>(this, NodeClass, NAME_None, RF_Transactional);
	if (HasAnyFlags(RF_Transient))
	{
		Node->SetFlags(RF_Transient);
	}
	AddNode(Node, bFromUI, bSelectNewNode);
	return Node;
}
