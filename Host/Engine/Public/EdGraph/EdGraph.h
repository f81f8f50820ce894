#pragma once

#include "EdGraph/EdGraphNode.h"
#include "Templates/SubclassOf.h"
#include "EdGraph.generated.h"

class UEdGraphSchema;

/** Nodes and the links between their pins. */
UCLASS()
class ENGINE_API UEdGraph : public UObject
{
	GENERATED_BODY()

public:
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnGraphChanged, UEdGraph*);

	/** What kind of graph it is: which links can be made, which nodes are made with it. */
	UPROPERTY()
	TSubclassOf<UEdGraphSchema> Schema;

	/** In the order in which they were added. */
	UPROPERTY()
	TArray<TObjectPtr<UEdGraphNode>> Nodes;

	UPROPERTY()
	uint8 bEditable : 1;

	UPROPERTY()
	uint8 bAllowDeletion : 1;

	UPROPERTY()
	uint8 bAllowRenaming : 1;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> SubGraphs;

	UPROPERTY()
	FGuid GraphGuid;

	/** Of the interface's function that the graph implements. */
	UPROPERTY()
	FGuid InterfaceGuid;

	UEdGraph(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** The default object of Schema; null without one. */
	const UEdGraphSchema* GetSchema() const;

	/**
	 * Appends the node and tells who listens; nothing more. The node's outer must be this graph.
	 */
	virtual void AddNode(UEdGraphNode* NodeToAdd, bool bUserAction = false, bool bSelectNewNode = true);
	/** Takes the node out, with its links unless told not to. False when it is not in the graph. */
	bool RemoveNode(UEdGraphNode* NodeToRemove, bool bBreakAllLinks = true, bool bAlwaysMarkDirty = true);
	template <class NodeType>
	bool GetNodesOfClass(TArray<NodeType*>& OutNodes) const
	{
		for (UEdGraphNode* const Node : Nodes)
		{
			if (NodeType* const Wanted = Cast<NodeType>(Node))
			{
				OutNodes.Add(Wanted);
			}
		}
		return OutNodes.Num() > 0;
	}
	/** The graph and the graphs within it, with theirs. */
	void GetAllChildrenGraphs(TArray<UEdGraph*>& Graphs) const;
	virtual void NotifyGraphChanged();
	FOnGraphChanged& OnGraphChanged() { return GraphChanged; }
	/** A place right of everything that is in the graph. */
	FVector2D GetGoodPlaceForNewNode() const;

	/** For compilers: adds a bare node. */
	template <typename NodeType>
	NodeType* CreateIntermediateNode()
	{
		return static_cast<NodeType*>(CreateNode(NodeType::StaticClass(), false, false));
	}

protected:
	template <typename NodeType>
	friend struct FGraphNodeCreator;

	UEdGraphNode* CreateNode(TSubclassOf<UEdGraphNode> NodeClass, bool bFromUI, bool bSelectNewNode);

private:
	FOnGraphChanged GraphChanged;
};

/** Makes a node: CreateNode, then what the node is about, then Finalize, which gives it an identity and its pins. */
template <typename NodeType>
struct FGraphNodeCreator
{
	explicit FGraphNodeCreator(UEdGraph& InGraph)
		: Graph(InGraph)
	{
	}
	~FGraphNodeCreator() { checkf(bPlaced, TEXT("Created node was not finalized in a FGraphNodeCreator<>")); }
	UE_NONCOPYABLE(FGraphNodeCreator)

	NodeType* CreateNode(bool bSelectNewNode = true, TSubclassOf<NodeType> NodeClass = NodeType::StaticClass())
	{
		bPlaced = false;
		Node = static_cast<NodeType*>(Graph.CreateNode(NodeClass.Get(), false, bSelectNewNode));
		return Node;
	}
	NodeType* CreateUserInvokedNode(
		bool bSelectNewNode = true, TSubclassOf<NodeType> NodeClass = NodeType::StaticClass())
	{
		bPlaced = false;
		Node = static_cast<NodeType*>(Graph.CreateNode(NodeClass.Get(), true, bSelectNewNode));
		return Node;
	}
	void Finalize()
	{
		checkf(!bPlaced, TEXT("Finalize without CreateNode"));
		Node->CreateNewGuid();
		Node->PostPlacedNewNode();
		if (Node->Pins.Num() == 0)
		{
			Node->AllocateDefaultPins();
		}
		bPlaced = true;
	}

private:
	UEdGraph& Graph;
	NodeType* Node = nullptr;
	bool bPlaced = true;
};
