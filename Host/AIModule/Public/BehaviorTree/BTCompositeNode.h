#pragma once

#include "BehaviorTree/BTNode.h"
#include "Containers/EnumAsByte.h"
#include "BTCompositeNode.generated.h"

class UBTDecorator;
class UBTService;
class UBTTaskNode;

UENUM()
namespace EBTDecoratorLogic
{
enum Type : int
{
	Invalid,
	Test, // the next decorator
	And,
	Or,
	Not,
};
}

/** A step in how decorators are put together, operators before what they join. */
USTRUCT()
struct FBTDecoratorLogic
{
	GENERATED_BODY()

	UPROPERTY()
	TEnumAsByte<EBTDecoratorLogic::Type> Operation = EBTDecoratorLogic::Invalid;

	/** Of operands. */
	UPROPERTY()
	uint16 Number = 0;
};

/** A link to a child: one of composite and task is set. */
USTRUCT()
struct FBTCompositeChild
{
	GENERATED_BODY()

	UPROPERTY()
	TObjectPtr<UBTCompositeNode> ChildComposite;

	UPROPERTY()
	TObjectPtr<UBTTaskNode> ChildTask;

	UPROPERTY()
	TArray<TObjectPtr<UBTDecorator>> Decorators;

	/** Empty: all of them must hold. */
	UPROPERTY()
	TArray<FBTDecoratorLogic> DecoratorOps;
};

/** A node that decides which of its children comes next. */
UCLASS(Abstract)
class AIMODULE_API UBTCompositeNode : public UBTNode
{
	GENERATED_BODY()

public:
	UBTCompositeNode(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY()
	TArray<FBTCompositeChild> Children;

	UPROPERTY()
	TArray<TObjectPtr<UBTService>> Services;

	/** Whether decorators stop to matter when the execution has left the node. */
	UPROPERTY(EditDefaultsOnly, Category = Composite)
	uint8 bApplyDecoratorScope : 1;

	/** Null for a number that no child has, and for a link that leads to nothing. */
	UBTNode* GetChildNode(int32 Index) const;
	int32 GetChildrenNum() const { return Children.Num(); }
};
