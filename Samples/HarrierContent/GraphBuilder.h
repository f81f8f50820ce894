#pragma once

#include "EdGraph/EdGraph.h"

class UBlueprint;
class UClass;
class UFunction;
class UK2Node_EditablePinBase;
struct FEdGraphPinType;

/** Puts nodes into a graph, each row from left to right, and links them. */
class FGraphBuilder
{
public:
	explicit FGraphBuilder(UEdGraph& InGraph);

	/** A graph for a new function; with SignatureClass, for one that overrides the function of that class. */
	static UEdGraph& AddFunction(UBlueprint& Blueprint, const TCHAR* Name, UClass* SignatureClass = nullptr);
	/** The node where the function of the graph begins. */
	UK2Node_EditablePinBase& GetEntry() const;
	/** The node where it ends, right of all that has been added; made when there is none. */
	UK2Node_EditablePinBase& GetResult() const;

	UEdGraphNode& Get(const TCHAR* Variable);
	UEdGraphNode& Set(const TCHAR* Variable, const TCHAR* Value = nullptr);
	UEdGraphNode& Call(UClass* Class, const TCHAR* Function);
	UEdGraphNode& CallParent(UClass* Class, const TCHAR* Function);
	UEdGraphNode& Event(UClass* Class, const TCHAR* Function);
	UK2Node_EditablePinBase& CustomEvent(const TCHAR* Name);
	UEdGraphNode& Branch();
	UEdGraphNode& Sequence(int32 NumWays);
	/** A box behind the first nodes of a row, with a text. */
	void CommentRow(const TCHAR* Text, int32 CommentedRow, int32 NumColumns);
	/** The next nodes stand in a row below. */
	void NextRow();

	/** Asserts that both pins are there. */
	static void Link(const UEdGraphNode& From, const TCHAR* Output, const UEdGraphNode& To, const TCHAR* Input);
	/** Goes on from one node to the next: their exec pins. */
	static void Then(const UEdGraphNode& From, const UEdGraphNode& To, const TCHAR* Output = TEXT("then"));
	static void SetPin(const UEdGraphNode& Node, const TCHAR* Pin, const TCHAR* Value);

private:
	template <typename NodeType, typename SetUpType>
	NodeType& Add(SetUpType&& SetUp);

	UEdGraph& Graph;
	int32 Column = 0;
	int32 Row = 0;
};
