#pragma once

#include "BehaviorTree/BTCompositeNode.h"
#include "BTComposite_SimpleParallel.generated.h"

/** What happens to the background when the main task has ended. */
UENUM()
namespace EBTParallelMode
{
enum Type : int
{
	AbortBackground,
	WaitForBackground,
};
}

/** Runs a task, its first child, and a branch beside it, its second. */
UCLASS()
class AIMODULE_API UBTComposite_SimpleParallel : public UBTCompositeNode
{
	GENERATED_BODY()

public:
	UBTComposite_SimpleParallel(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(EditInstanceOnly, Category = Parallel)
	TEnumAsByte<EBTParallelMode::Type> FinishMode = EBTParallelMode::AbortBackground;
};
