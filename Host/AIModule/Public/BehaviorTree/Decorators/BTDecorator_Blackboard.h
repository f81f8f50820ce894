#pragma once

#include "BehaviorTree/Decorators/BTDecorator_BlackboardBase.h"
#include "BTDecorator_Blackboard.generated.h"

/** When the condition is evaluated again. */
UENUM()
namespace EBTBlackboardRestart
{
enum Type : int
{
	ValueChange,
	ResultChange,
};
}

/** What is asked of a value that is set or not. */
UENUM()
namespace EBasicKeyOperation
{
enum Type : int
{
	Set,
	NotSet,
};
}

/** A condition on the value of a key: whether it is set, or how it compares. */
UCLASS(HideCategories = (Condition))
class AIMODULE_API UBTDecorator_Blackboard : public UBTDecorator_BlackboardBase
{
	GENERATED_BODY()

public:
	UBTDecorator_Blackboard(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

protected:
	// What the value is compared with.
	UPROPERTY(Category = Blackboard, EditAnywhere)
	int32 IntValue = 0;

	UPROPERTY(Category = Blackboard, EditAnywhere)
	float FloatValue = 0.0f;

	UPROPERTY(Category = Blackboard, EditAnywhere)
	FString StringValue;

	UPROPERTY()
	FString CachedDescription;

	/** The operation, of whichever kind the key's type has. */
	UPROPERTY()
	uint8 OperationType = EBasicKeyOperation::Set;

	UPROPERTY(Category = FlowControl, EditAnywhere)
	TEnumAsByte<EBTBlackboardRestart::Type> NotifyObserver = EBTBlackboardRestart::ResultChange;

	UPROPERTY(Category = Blackboard, EditAnywhere)
	TEnumAsByte<EBasicKeyOperation::Type> BasicOperation = EBasicKeyOperation::Set;
};
