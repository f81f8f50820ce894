#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Bool.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Bool"))
class AIMODULE_API UBlackboardKeyType_Bool : public UBlackboardKeyType
{
	GENERATED_BODY()
};
