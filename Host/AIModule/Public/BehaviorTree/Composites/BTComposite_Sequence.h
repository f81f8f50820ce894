#pragma once

#include "BehaviorTree/BTCompositeNode.h"
#include "BTComposite_Sequence.generated.h"

/** Runs its children until one fails. */
UCLASS()
class AIMODULE_API UBTComposite_Sequence : public UBTCompositeNode
{
	GENERATED_BODY()

public:
	UBTComposite_Sequence(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());
};
