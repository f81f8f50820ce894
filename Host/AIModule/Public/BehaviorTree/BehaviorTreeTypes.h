#pragma once

#include "CoreMinimal.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "BehaviorTreeTypes.generated.h"

class UBlackboardKeyType;

/** What is broken off when a decorator's condition changes while the tree runs. */
UENUM()
namespace EBTFlowAbortMode
{
enum Type : int
{
	None,
	LowerPriority,
	Self,
	Both,
};
}

/** Names a key of the blackboard that the node's tree uses. */
USTRUCT(BlueprintType)
struct AIMODULE_API FBlackboardKeySelector
{
	GENERATED_BODY()

	UPROPERTY(EditInstanceOnly, BlueprintReadWrite, Category = Blackboard)
	FName SelectedKeyName;

	/** Of the key that was found by the name; none before. */
	UPROPERTY(Transient, EditInstanceOnly, BlueprintReadWrite, Category = Blackboard)
	TSubclassOf<UBlackboardKeyType> SelectedKeyType;
};

struct AIMODULE_API UBehaviorTreeTypes
{
	/** "BTTask_Wait" → "Wait"; of a Blueprint's class the Blueprint's name. */
	static FString GetShortTypeName(const UObject* Ob);
	/** For users: "Lower Priority". */
	static FString DescribeFlowAbortMode(EBTFlowAbortMode::Type FlowAbortMode);
};
