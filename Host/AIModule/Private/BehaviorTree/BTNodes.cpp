#include "BehaviorTree/BTCompositeNode.h"
#include "BehaviorTree/BTDecorator.h"
#include "BehaviorTree/BTService.h"
#include "BehaviorTree/BTTaskNode.h"
#include "BehaviorTree/BehaviorTree.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "BehaviorTree/BlackboardData.h"

FString UBehaviorTreeTypes::GetShortTypeName(const UObject* Ob)
{
	FString Name = Ob->GetClass()->GetName();
	if (Ob->GetClass()->HasAnyClassFlags(CLASS_CompiledFromBlueprint))
	{
		Name.RemoveFromEnd(TEXT("_C"), ESearchCase::CaseSensitive);
		return Name;
	}
	int32 Underscore = INDEX_NONE;
	return Name.FindChar(TEXT('_'), Underscore) ? Name.Mid(Underscore + 1) : Name;
}

FString UBehaviorTreeTypes::DescribeFlowAbortMode(EBTFlowAbortMode::Type FlowAbortMode)
{
	return FName::NameToDisplayString(StaticEnum<EBTFlowAbortMode::Type>()->GetNameStringByValue(FlowAbortMode), false);
}

FString UBTNode::GetNodeName() const
{
	return NodeName.IsEmpty() ? UBehaviorTreeTypes::GetShortTypeName(this) : NodeName;
}

UBlackboardData* UBTNode::GetBlackboardAsset() const
{
	const UBehaviorTree* const Tree = TreeAsset ? TreeAsset.Get() : GetTypedOuter<UBehaviorTree>();
	return Tree ? Tree->BlackboardAsset.Get() : nullptr;
}

UBTCompositeNode::UBTCompositeNode(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bApplyDecoratorScope(false)
{
}

UBTNode* UBTCompositeNode::GetChildNode(int32 Index) const
{
	if (!Children.IsValidIndex(Index))
	{
		return nullptr;
	}
	const FBTCompositeChild& Child = Children[Index];
	return Child.ChildComposite ? static_cast<UBTNode*>(Child.ChildComposite) : static_cast<UBTNode*>(Child.ChildTask);
}

UBTTaskNode::UBTTaskNode(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bIgnoreRestartSelf(false)
{
}

UBTService::UBTService(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bCallTickOnSearchStart(false)
	, bRestartTimerOnEachActivation(false)
{
}

UBTDecorator::UBTDecorator(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bInverseCondition(false)
{
}
