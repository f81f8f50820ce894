#pragma once

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Read/GraphDocument.h"
#include "Agent/Text/JsonBuilder.h"
#include "Agent/Work/TextWork.h"
#include "CoreMinimal.h"
#include "UObject/WeakObjectPtrTemplates.h"

class FJsonObject;
class UBlueprint;
class UBlueprintGeneratedClass;
class UEdGraph;

/**
 * Reads a Blueprint, as FKestrelBlueprintUtils::ReadBlueprint does at once, a few nodes at a time. When the Blueprint's
 * graphs change between two steps, the work begins again; after some times it is done in one step.
 */
class KESTREL_API FKestrelBlueprintRead final : public IKestrelTextWork
{
public:
	/** @param InDataSubset  "All", or the name of the one section to read beside "Name" and "Path" */
	FKestrelBlueprintRead(const FKestrelAssetAddress& InAddress, const FString& InDataSubset);
	UE_NONCOPYABLE(FKestrelBlueprintRead)

	bool Step(double Deadline) override;
	float GetProgress() const override;

	/** At the end, once: the document, or an object with "Error". */
	FString TakeText() override;

private:
	friend class FKestrelBlueprintSections;

	/** A graph whose document belongs into the text of all others. */
	struct FPlace
	{
		int32 Offset = 0; // in the text without graphs
		TWeakObjectPtr<const UEdGraph> Graph;
		uint32 NodesHash = 0; // of which nodes it has, in which order
	};

	/** Loads the Blueprint and writes all but its graphs. */
	void Start();
	void Fail(const FString& Error);
	/** Whether the graphs are those that the work began with. */
	bool AreGraphsAsBefore() const;
	void Reset();
	/** Writes a node, or what lies between two graphs. @return false at the end */
	bool WriteNext();

	const FKestrelAssetAddress Address;
	const FString DataSubset;
	FString Frame; // the document without the graphs
	TArray<FPlace> Places;
	FKestrelJsonBuilder Json;
	FKestrelGraphDocument Graphs{ Json };
	int32 NumStarts = 0;
	int32 NextPlace = 0;
	int32 NextNode = INDEX_NONE; // of the graph at that place; negative before it has begun
	int32 NumNodes = 0;          // of all graphs
	int32 NumCharacters = 0;     // that they take, roughly
	int32 NumWritten = 0;
	bool bDone = false;
};
