#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Class.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Class"))
class AIMODULE_API UBlackboardKeyType_Class : public UBlackboardKeyType
{
	GENERATED_BODY()

public:
	/** Values are children of this class. */
	UPROPERTY(Category = Blackboard, EditAnywhere, meta = (AllowAbstract = "1"))
	TObjectPtr<UClass> BaseClass = UObject::StaticClass();
};
