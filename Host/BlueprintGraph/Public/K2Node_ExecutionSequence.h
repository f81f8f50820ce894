#pragma once

#include "K2Node.h"
#include "K2Node_ExecutionSequence.generated.h"

/** Goes several ways, one after the other. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_ExecutionSequence : public UK2Node
{
	GENERATED_BODY()

public:
	void AllocateDefaultPins() override;
	void ReallocatePinsDuringReconstruction(TArray<UEdGraphPin*>& OldPins) override;
	FLinearColor GetNodeTitleColor() const override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
	/** Adds one more way. */
	void AddInputPin();

private:
	FName GetPinNameGivenIndex(int32 Index) const;
};
