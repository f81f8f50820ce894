#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_NativeEnum.generated.h"

/** Superseded by the enum key; a loaded blackboard has that one in its place. */
UCLASS(EditInlineNew, HideDropdown, meta = (DisplayName = "Native Enum"))
class AIMODULE_API UBlackboardKeyType_NativeEnum : public UBlackboardKeyType
{
	GENERATED_BODY()

public:
	UPROPERTY(Category = Blackboard, EditDefaultsOnly)
	FString EnumName;

	UPROPERTY()
	TObjectPtr<UEnum> EnumType;
};
