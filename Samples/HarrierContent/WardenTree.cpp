#include "Assets.h"
#include "BehaviorTree/BTDecorator.h"
#include "BehaviorTree/BTService.h"
#include "BehaviorTree/BTTaskNode.h"
#include "BehaviorTree/BehaviorTree.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Bool.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Class.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Enum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Float.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Int.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Name.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Object.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Rotator.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_String.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Vector.h"
#include "BehaviorTree/BlackboardData.h"
#include "BehaviorTree/Composites/BTComposite_Selector.h"
#include "BehaviorTree/Composites/BTComposite_Sequence.h"
#include "BehaviorTree/Composites/BTComposite_SimpleParallel.h"
#include "BehaviorTree/Decorators/BTDecorator_Blackboard.h"
#include "BehaviorTree/Decorators/BTDecorator_Cooldown.h"
#include "BehaviorTree/Decorators/BTDecorator_Loop.h"
#include "BehaviorTree/Services/BTService_DefaultFocus.h"
#include "BehaviorTree/Tasks/BTTask_MoveTo.h"
#include "BehaviorTree/Tasks/BTTask_Wait.h"
#include "GameFramework/Pawn.h"

namespace WardenTree
{
using namespace HarrierContent;

template <typename KeyType>
KeyType& AddKey(UBlackboardData& Blackboard, const TCHAR* Name)
{
	KeyType* const Type = NewObject<KeyType>(&Blackboard);
	FBlackboardEntry& Entry = Blackboard.Keys.AddDefaulted_GetRef();
	Entry.EntryName = Name;
	Entry.KeyType = Type;
	return *Type;
}

/** One key of each type. */
UBlackboardData& MakeBlackboard()
{
	UBlackboardData& Blackboard = *MakeAsset<UBlackboardData>(TEXT("/Game/AI/BB_Warden"));
	AddKey<UBlackboardKeyType_Object>(Blackboard, TEXT("Quarry")).BaseClass = APawn::StaticClass();
	AddKey<UBlackboardKeyType_Vector>(Blackboard, TEXT("LastSeen"));
	AddKey<UBlackboardKeyType_Rotator>(Blackboard, TEXT("Facing"));
	AddKey<UBlackboardKeyType_Enum>(Blackboard, TEXT("Mood")).EnumType =
		CastChecked<UEnum>(Find(TEXT("/Script/Harrier.EWardenMood")));
	AddKey<UBlackboardKeyType_Enum>(Blackboard, TEXT("Weather"));
	AddKey<UBlackboardKeyType_Bool>(Blackboard, TEXT("bAlarm"));
	Blackboard.Keys.Last().bInstanceSynced = true;
	AddKey<UBlackboardKeyType_Int>(Blackboard, TEXT("Rounds"));
	AddKey<UBlackboardKeyType_Float>(Blackboard, TEXT("Patience"));
	AddKey<UBlackboardKeyType_Name>(Blackboard, TEXT("Post"));
	AddKey<UBlackboardKeyType_String>(Blackboard, TEXT("Motto"));
	AddKey<UBlackboardKeyType_Class>(Blackboard, TEXT("Prey")).BaseClass = AActor::StaticClass();
	return Blackboard;
}

template <typename NodeType>
NodeType* MakeNode(UBehaviorTree& Tree, const TCHAR* Name = nullptr)
{
	NodeType* const Node = NewObject<NodeType>(&Tree);
	if (Name)
	{
		Node->NodeName = Name;
	}
	return Node;
}

/** Goes after the quarry while it is seen, at most every few seconds. */
void AddChase(UBehaviorTree& Tree)
{
	FBTCompositeChild& Chase = Tree.RootNode->Children.AddDefaulted_GetRef();
	Chase.ChildComposite = MakeNode<UBTComposite_Sequence>(Tree, TEXT("Chase"));
	UBTDecorator* const HasQuarry = MakeNode<UBTDecorator_Blackboard>(Tree, TEXT("Has Quarry"));
	SetValue(*HasQuarry, TEXT("BlackboardKey"), TEXT("(SelectedKeyName=\"Quarry\")"));
	SetValue(*HasQuarry, TEXT("FlowAbortMode"), TEXT("LowerPriority"));
	Chase.Decorators.Add(HasQuarry);
	Chase.Decorators.Add(MakeNode<UBTDecorator_Cooldown>(Tree));
	UBTService* const Focus = MakeNode<UBTService_DefaultFocus>(Tree);
	SetValue(*Focus, TEXT("BlackboardKey"), TEXT("(SelectedKeyName=\"Quarry\")"));
	Chase.ChildComposite->Services.Add(Focus);
	UBTTaskNode* const Move = MakeNode<UBTTask_MoveTo>(Tree);
	SetValue(*Move, TEXT("BlackboardKey"), TEXT("(SelectedKeyName=\"Quarry\")"));
	Chase.ChildComposite->Children.AddDefaulted_GetRef().ChildTask = Move;
}

/** Walks the rounds: three times, with a rest after each, looking about all the while. */
void AddRounds(UBehaviorTree& Tree)
{
	FBTCompositeChild& Rounds = Tree.RootNode->Children.AddDefaulted_GetRef();
	Rounds.ChildComposite = MakeNode<UBTComposite_SimpleParallel>(Tree);
	UBTDecorator* const Calm = MakeNode<UBTDecorator_Blackboard>(Tree, TEXT("No Alarm"));
	SetValue(*Calm, TEXT("BlackboardKey"), TEXT("(SelectedKeyName=\"bAlarm\")"));
	SetValue(*Calm, TEXT("bInverseCondition"), TEXT("True"));
	Rounds.Decorators.Add(Calm);
	UBTTask_MoveTo* const Walk = MakeNode<UBTTask_MoveTo>(Tree, TEXT("Walk On"));
	Walk->AcceptableRadius = 80.0f;
	Rounds.ChildComposite->Children.AddDefaulted_GetRef().ChildTask = Walk;

	FBTCompositeChild& Rest = Rounds.ChildComposite->Children.AddDefaulted_GetRef();
	Rest.ChildComposite = MakeNode<UBTComposite_Selector>(Tree, TEXT("Rest"));
	Rest.Decorators.Add(MakeNode<UBTDecorator_Loop>(Tree));
	UBTTask_Wait* const Wait = MakeNode<UBTTask_Wait>(Tree);
	Wait->WaitTime = 2.5f;
	Wait->Services.Add(MakeNode<UBTService_DefaultFocus>(Tree, TEXT("Look About")));
	Rest.ChildComposite->Children.AddDefaulted_GetRef().ChildTask = Wait;
}
}

void HarrierContent::MakeWardenTree()
{
	UBlackboardData& Blackboard = WardenTree::MakeBlackboard();
	UBehaviorTree& Tree = *MakeAsset<UBehaviorTree>(TEXT("/Game/AI/BT_Warden"));
	Tree.BlackboardAsset = &Blackboard;
	Tree.RootNode = WardenTree::MakeNode<UBTComposite_Selector>(Tree);
	WardenTree::AddChase(Tree);
	WardenTree::AddRounds(Tree);
	Save(Blackboard);
	Save(Tree);
}
