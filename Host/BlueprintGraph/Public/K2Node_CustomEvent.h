#pragma once

#include "K2Node_Event.h"
#include "K2Node_CustomEvent.generated.h"

/** An event that the Blueprint declares itself. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_CustomEvent : public UK2Node_Event
{
	GENERATED_BODY()

public:
	UPROPERTY()
	bool bCallInEditor = false;

	UK2Node_CustomEvent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	void PostPlacedNewNode() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
};
