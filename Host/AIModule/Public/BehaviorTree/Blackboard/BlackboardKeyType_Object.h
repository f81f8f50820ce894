#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Object.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Object"))
class AIMODULE_API UBlackboardKeyType_Object : public UBlackboardKeyType
{
	GENERATED_BODY()

public:
	/** Values are objects of this class. */
	UPROPERTY(Category = Blackboard, EditAnywhere, meta = (AllowAbstract = "1"))
	TObjectPtr<UClass> BaseClass = UObject::StaticClass();
};
