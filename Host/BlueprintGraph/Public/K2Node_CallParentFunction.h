#pragma once

#include "K2Node_CallFunction.h"
#include "K2Node_CallParentFunction.generated.h"

/** Calls what the function that it stands in overrides. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_CallParentFunction : public UK2Node_CallFunction
{
	GENERATED_BODY()

public:
	void SetFromFunction(const UFunction* Function) override;
	void AllocateDefaultPins() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
};
