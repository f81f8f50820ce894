#include "BehaviorTree/Blackboard/BlackboardKeyType_Enum.h"

#include "UObject/Class.h"

UBlackboardKeyType_Enum::UBlackboardKeyType_Enum(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bIsEnumNameValid(false)
{
}

void UBlackboardKeyType_Enum::FindEnum()
{
	if (UEnum* const Found = EnumName.IsEmpty() ? nullptr : FindFirstObject<UEnum>(*EnumName))
	{
		EnumType = Found;
		bIsEnumNameValid = true;
		return;
	}
	bIsEnumNameValid = false;
}

void UBlackboardKeyType_Enum::PostLoad()
{
	Super::PostLoad();
	FindEnum();
}

#if WITH_EDITOR
void UBlackboardKeyType_Enum::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	FindEnum();
}
#endif
