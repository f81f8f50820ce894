#pragma once

#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "K2Node.generated.h"

class UBlueprint;

/** A node of a Blueprint's graph. */
UCLASS(Abstract)
class BLUEPRINTGRAPH_API UK2Node : public UEdGraphNode
{
	GENERATED_BODY()

public:
	/**
	 * Recreates the pins; links and values are kept by name. A linked pin that is no longer created stays, orphaned.
	 */
	void ReconstructNode() override;
	/** Recreates the pins; by default as for a new node. */
	virtual void ReallocatePinsDuringReconstruction(TArray<UEdGraphPin*>& OldPins) { AllocateDefaultPins(); }

	/** Without exec pins: evaluated when a value is asked for. */
	virtual bool IsNodePure() const { return false; }
	UEdGraphPin* GetExecPin() const;
	UBlueprint* GetBlueprint() const;
	/** The class that "self" is: the skeleton of the Blueprint, or what it was compiled to. Null outside of one. */
	UClass* GetBlueprintClassFromNode() const;

protected:
	/** What a Blueprint is compiled to, instead of its skeleton; any other class as it is. */
	static UClass* GetAuthoritativeClass(UClass* Class);

private:
	/** Link, value and looks of the old pin. */
	static void TakeOver(UEdGraphPin& NewPin, UEdGraphPin& OldPin);
};
