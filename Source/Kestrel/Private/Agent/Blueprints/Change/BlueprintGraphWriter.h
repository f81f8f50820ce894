#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FKestrelBlueprintReport;
class UBlueprint;
class UClass;
class UEdGraph;
class UEdGraphNode;
class UEdGraphPin;

/** The pins that one document has linked: what it links is not replaced by the rest of it. */
class FKestrelLinkedPins
{
public:
	/** @return whether the document has linked the pin before */
	bool Contains(const UEdGraphPin& Pin) const;
	void Add(const UEdGraphPin& Pin);

private:
	// By name: the engine recreates the pins of a node whenever a function is added.
	using FKey = TPair<const UEdGraphNode*, FName>;
	static FKey MakeKey(const UEdGraphPin& Pin);

	TSet<FKey> Keys;
};

/**
 * Adds described nodes to one graph, and sets and links their pins. What it has seen of the graph it remembers, so that
 * many nodes take no longer each than one. It lives shorter than the call that makes it.
 */
class FKestrelGraphWriter
{
public:
	/** @param InLinkedPins  shared by all that is written for one document */
	FKestrelGraphWriter(UEdGraph& InGraph, FKestrelBlueprintReport& InReport, FKestrelLinkedPins& InLinkedPins);
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
	void SetValue(UEdGraphPin& Pin, const FString& Value);
	bool LinkDescribed(UEdGraphPin& Pin, const FJsonObject& Connection);
	bool LinkPins(UEdGraphPin& Pin, UEdGraphPin& Target);
	bool HasLinkInTheWay(const UEdGraphPin& Pin) const;
	UEdGraphNode* FindNodeByTitle(const FString& Title);

	UEdGraph& Graph;
	FKestrelBlueprintReport& Report;
	FKestrelLinkedPins& LinkedPins;
	TMap<FString, UEdGraphNode*> FirstOfTitle; // of the first NumTitled nodes; case-insensitive
	int32 NumTitled = 0;
	const UEdGraphNode* Rightmost = nullptr; // of the first NumMeasured nodes
	int32 NumMeasured = 0;
};
