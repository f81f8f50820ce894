#pragma once

#include "BehaviorTree/Blackboard/BlackboardKeyType.h"
#include "BlackboardKeyType_Enum.generated.h"

UCLASS(EditInlineNew, meta = (DisplayName = "Enum"))
class AIMODULE_API UBlackboardKeyType_Enum : public UBlackboardKeyType
{
	GENERATED_BODY()

public:
	UBlackboardKeyType_Enum(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Null until one is chosen. */
	UPROPERTY(Category = Blackboard, EditAnywhere)
	TObjectPtr<UEnum> EnumType;

	/** Of an enum in C++, which wins over EnumType. */
	UPROPERTY(Category = Blackboard, EditAnywhere)
	FString EnumName;

	UPROPERTY(Category = Blackboard, VisibleDefaultsOnly)
	uint8 bIsEnumNameValid : 1;

	void PostLoad() override;
#if WITH_EDITOR
	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
#endif

private:
	void FindEnum();
};
