#pragma once

#include "K2Node_Variable.h"
#include "K2Node_VariableGet.generated.h"

/** Reads a variable. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_VariableGet : public UK2Node_Variable
{
	GENERATED_BODY()

public:
	bool IsNodePure() const override { return true; }
	void AllocateDefaultPins() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
};
