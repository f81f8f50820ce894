#pragma once

#include "K2Node_FunctionTerminator.h"
#include "K2Node_FunctionResult.generated.h"

/** Where a function ends: its input pins are the function's outputs. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_FunctionResult : public UK2Node_FunctionTerminator
{
	GENERATED_BODY()

public:
	TArray<UK2Node_FunctionResult*> GetAllResultNodes() const;
	/** A second result node gets the pins of the first. */
	void PostPlacedNewNode() override;
	void AllocateDefaultPins() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;

protected:
	EEdGraphPinDirection GetUserPinDirection() const override { return EGPD_Input; }
};
