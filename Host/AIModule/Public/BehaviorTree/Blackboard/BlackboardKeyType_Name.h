#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Name.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Name"))
class AIMODULE_API UBlackboardKeyType_Name : public UBlackboardKeyType
{
	GENERATED_BODY()
};
