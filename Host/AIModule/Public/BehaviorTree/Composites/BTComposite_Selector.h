#pragma once

#include "BehaviorTree/BTCompositeNode.h"
#include "BTComposite_Selector.generated.h"

/** Tries its children until one succeeds. */
UCLASS()
class AIMODULE_API UBTComposite_Selector : public UBTCompositeNode
{
	GENERATED_BODY()

public:
	UBTComposite_Selector(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());
};
