#pragma once

#include "BlueprintGraphTestTypes.h"
#include "BlueprintTestSupport.h"

/** A function graph of an actor's Blueprint. */
class FFunctionGraphTest : public BlueprintTest
{
protected:
	explicit FFunctionGraphTest(const TCHAR* Package)
		: Blueprint(Make(Package, AGraphTestActor::StaticClass()))
		, Graph(AddFunction(Blueprint, TEXT("DoThings"), true))
	{
	}

	template <typename NodeType>
	NodeType& Add() const
	{
		FGraphNodeCreator<NodeType> Creator(*Graph);
		NodeType* const Node = Creator.CreateNode();
		Creator.Finalize();
		return *Node;
	}
	static UEdGraphPin& Pin(const UEdGraphNode& Node, const TCHAR* Name) { return *Node.FindPinChecked(Name); }

	UBlueprint* const Blueprint;
	UEdGraph* const Graph;
};
