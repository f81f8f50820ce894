#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Vector.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Vector"))
class AIMODULE_API UBlackboardKeyType_Vector : public UBlackboardKeyType
{
	GENERATED_BODY()
};
