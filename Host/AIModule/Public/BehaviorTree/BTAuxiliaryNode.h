#pragma once

#include "BehaviorTree/BTNode.h"
#include "BTAuxiliaryNode.generated.h"

/** What is attached to a node, or to the link to it. */
UCLASS(Abstract)
class AIMODULE_API UBTAuxiliaryNode : public UBTNode
{
	GENERATED_BODY()
};
