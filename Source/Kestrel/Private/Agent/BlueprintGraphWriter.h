#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class UBlueprint;
class UEdGraph;
class UEdGraphNode;
class UEdGraphPin;

/**
 * Adds described nodes to one graph, and sets and links their pins. What it has seen of the graph it remembers, so that
 * many nodes take no longer each than one. It lives shorter than the call that makes it.
 */
class FKestrelGraphWriter
{
public:
	explicit FKestrelGraphWriter(UEdGraph& InGraph);
	UE_NONCOPYABLE(FKestrelGraphWriter)

	/** @return null when the description's "Class" is of no kind that can be made, or what it needs is missing */
	UEdGraphNode* CreateNode(const FJsonObject& Description);
	/** @return whether anything of the description was applied */
	bool ModifyNode(UEdGraphNode& Node, const FJsonObject& Description);

private:
	UEdGraphNode* CreateVariableNode(const FJsonObject& Properties, UClass* NodeClass) const;
	UEdGraphNode* CreateCallNode(const FJsonObject& Properties, UClass* NodeClass) const;
	void Place(UEdGraphNode& Node, const FJsonObject& Description);
	void PlaceBesideOthers(UEdGraphNode& Node);
	bool ModifyPin(UEdGraphNode& Node, const FJsonObject& Setting);
	bool LinkPin(UEdGraphPin& Pin, const FJsonObject& Connection);
	UEdGraphNode* FindNodeByTitle(const FString& Title);

	UEdGraph& Graph;
	TMap<FString, UEdGraphNode*> FirstOfTitle; // of the first NumTitled nodes; letter case does not count
	int32 NumTitled = 0;
	const UEdGraphNode* Rightmost = nullptr; // of the first NumMeasured nodes
	int32 NumMeasured = 0;
};
