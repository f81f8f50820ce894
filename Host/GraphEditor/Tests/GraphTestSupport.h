#pragma once

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphNode_Comment.h"
#include "EdGraphSchema_K2.h"
#include "UObject/Package.h"

#include <gtest/gtest.h>
#include <string>

/** A graph of plain nodes, with pins as a test needs them. */
class FGraphTest : public testing::Test
{
protected:
	FGraphTest()
		: Graph(*NewObject<UEdGraph>(GetTransientPackage(), NAME_None, RF_Transactional))
	{
		Graph.Schema = UEdGraphSchema_K2::StaticClass();
		Graph.AddToRoot();
	}
	~FGraphTest() override
	{
		if (!bGone)
		{
			Graph.RemoveFromRoot();
		}
	}

	/** The graph is not there any more. */
	void DestroyGraph()
	{
		bGone = true;
		Graph.RemoveFromRoot();
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	}

	template <typename NodeType = UEdGraphNode>
	NodeType& AddNode(int32 X, int32 Y) const
	{
		NodeType* const Node = NewObject<NodeType>(&Graph, NAME_None, RF_Transactional);
		Node->NodePosX = X;
		Node->NodePosY = Y;
		Graph.AddNode(Node);
		return *Node;
	}
	static UEdGraphPin& AddInput(UEdGraphNode& Node, FName Category, const TCHAR* Name = TEXT("In"))
	{
		return *Node.CreatePin(EGPD_Input, Category, Name);
	}
	static UEdGraphPin& AddOutput(UEdGraphNode& Node, FName Category, const TCHAR* Name = TEXT("Out"))
	{
		return *Node.CreatePin(EGPD_Output, Category, Name);
	}
	static std::string ToUtf8(const FString& Text) { return TCHAR_TO_UTF8(*Text); }

	UEdGraph& Graph;

private:
	bool bGone = false;
};
