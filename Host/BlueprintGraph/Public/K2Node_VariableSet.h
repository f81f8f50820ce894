#pragma once

#include "K2Node_Variable.h"
#include "K2Node_VariableSet.generated.h"

/** Writes a variable. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_VariableSet : public UK2Node_Variable
{
	GENERATED_BODY()

public:
	void AllocateDefaultPins() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
	/** "Output_Get": the value as it was written. */
	static FName GetVariableOutputPinName();
};
