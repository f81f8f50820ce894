#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "BlackboardKeyType.generated.h"

/** What values a key of a blackboard has. */
UCLASS(EditInlineNew, Abstract, CollapseCategories, AutoExpandCategories = (Blackboard))
class AIMODULE_API UBlackboardKeyType : public UObject
{
	GENERATED_BODY()
};
