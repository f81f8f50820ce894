#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Int.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Int"))
class AIMODULE_API UBlackboardKeyType_Int : public UBlackboardKeyType
{
	GENERATED_BODY()
};
