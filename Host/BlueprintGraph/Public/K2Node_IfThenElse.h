#pragma once

#include "K2Node.h"
#include "K2Node_IfThenElse.generated.h"

/** Goes one of two ways. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_IfThenElse : public UK2Node
{
	GENERATED_BODY()

public:
	void AllocateDefaultPins() override;
	FLinearColor GetNodeTitleColor() const override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
};
