#pragma once

#include "Agent/Text/JsonBuilder.h"
#include "CoreMinimal.h"

class UEdGraph;
class UEdGraphNode;
class UEdGraphPin;

/** Writes the documents of graphs: "Name", "Class" and "Nodes" with their pins and links. */
class FKestrelGraphDocument
{
public:
	explicit FKestrelGraphDocument(FKestrelJsonBuilder& InJson)
		: Json(InJson)
	{
	}

	void Begin(const UEdGraph& Graph);
	/** @param Node  null, for one whose class is gone, is left out */
	void WriteNode(const UEdGraphNode* Node);
	void End();
	void Write(const UEdGraph& Graph);

	/** To be called before nodes may change: their titles are kept while they are written. */
	void ForgetNodes() { Titles.Empty(); }

private:
	struct FSpelling
	{
		FName Name;
		FString Quoted;
	};

	void WriteProperties(const UEdGraphNode& Node);
	void WritePin(const UEdGraphPin& Pin);
	void WriteLink(const UEdGraphPin& Linked);
	/** Titles are put together from many parts, and each node's is asked for once for each of its links. */
	const FString& GetTitle(const UEdGraphNode* Node);
	/** Names are spelt as they are, although the engine takes two spellings for the same name. */
	const FString& GetName(FName Name);

	FKestrelJsonBuilder& Json;
	// As JSON strings.
	TMap<const UEdGraphNode*, FString> Titles;
	TMap<FName, FSpelling> Names;
};
