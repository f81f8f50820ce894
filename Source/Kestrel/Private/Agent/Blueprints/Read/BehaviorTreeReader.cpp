#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "BehaviorTree/BTCompositeNode.h"
#include "BehaviorTree/BTDecorator.h"
#include "BehaviorTree/BTService.h"
#include "BehaviorTree/BTTaskNode.h"
#include "BehaviorTree/BehaviorTree.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Enum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_NativeEnum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Object.h"
#include "BehaviorTree/BlackboardData.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectPtr.h"

namespace BehaviorTreeReader
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

/** Levels of composites that are described, so that a broken asset cannot use up the stack. */
constexpr int32 MaxDepth = 100;

FString NameOf(const UObject* Object)
{
	return Object ? Object->GetName() : FName().ToString();
}

void Append(FValues& Values, const TSharedRef<FJsonObject>& Object)
{
	Values.Add(MakeShared<FJsonValueObject>(Object));
}

void SetKeyDetails(const UBlackboardKeyType* KeyType, FJsonObject& Key)
{
	if (const UBlackboardKeyType_Object* ObjectKey = Cast<UBlackboardKeyType_Object>(KeyType))
	{
		Key.SetStringField(TEXT("BaseClass"), NameOf(ObjectKey->BaseClass));
	}
	else if (const UBlackboardKeyType_Enum* EnumKey = Cast<UBlackboardKeyType_Enum>(KeyType))
	{
		Key.SetStringField(TEXT("EnumType"), NameOf(EnumKey->EnumType));
	}
	else if (const UBlackboardKeyType_NativeEnum* NativeEnumKey = Cast<UBlackboardKeyType_NativeEnum>(KeyType))
	{
		Key.SetStringField(TEXT("EnumType"), NameOf(NativeEnumKey->EnumType));
	}
}

TSharedRef<FJsonObject> DescribeKey(const FBlackboardEntry& Entry)
{
	const TSharedRef<FJsonObject> Key = MakeShared<FJsonObject>();
	Key->SetStringField(TEXT("Name"), Entry.EntryName.ToString());
	Key->SetBoolField(TEXT("IsInstanceSynced"), !!Entry.bInstanceSynced);
	const UBlackboardKeyType* KeyType = Entry.KeyType;
	Key->SetStringField(TEXT("Type"), NameOf(KeyType ? KeyType->GetClass() : nullptr));
	SetKeyDetails(KeyType, *Key);
	return Key;
}

TSharedRef<FJsonObject> DescribeBlackboard(const UBlackboardData& Blackboard)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("Name"), Blackboard.GetName());
	Object->SetStringField(TEXT("Path"), Blackboard.GetPathName());
	FValues Keys;
	for (const FBlackboardEntry& Entry : Blackboard.Keys)
	{
		Append(Keys, DescribeKey(Entry));
	}
	Object->SetArrayField(TEXT("Keys"), Keys);
	return Object;
}

TSharedRef<FJsonObject> BeginNode(const UBTNode& Node, const TCHAR* NodeType)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("NodeType"), NodeType);
	Object->SetStringField(TEXT("Type"), Node.GetClass()->GetName());
	Object->SetStringField(TEXT("NodeName"), Node.GetNodeName());
	return Object;
}

void EndNode(const UBTNode& Node, FJsonObject& Object)
{
	Object.SetObjectField(TEXT("Properties"), KestrelBlueprintDocument::DescribeVariables(Node));
}

void AppendServices(const TArray<TObjectPtr<UBTService>>& Services, FValues& Values)
{
	for (const UBTService* Service : Services)
	{
		if (Service)
		{
			const TSharedRef<FJsonObject> Object = BeginNode(*Service, TEXT("Service"));
			Object->SetStringField(TEXT("ServiceName"), Service->GetNodeName());
			EndNode(*Service, *Object);
			Append(Values, Object);
		}
	}
}

void AppendDecorators(const TArray<TObjectPtr<UBTDecorator>>& Decorators, FValues& Values)
{
	for (const UBTDecorator* Decorator : Decorators)
	{
		if (Decorator)
		{
			const TSharedRef<FJsonObject> Object = BeginNode(*Decorator, TEXT("Decorator"));
			Object->SetBoolField(TEXT("IsInversed"), Decorator->IsInversed());
			Object->SetStringField(TEXT("FlowAbortMode"),
				StaticEnum<EBTFlowAbortMode::Type>()->GetNameStringByValue(Decorator->GetFlowAbortMode()));
			EndNode(*Decorator, *Object);
			Append(Values, Object);
		}
	}
}

/** The task does not know its parent before a tree runs. */
TSharedRef<FJsonObject> DescribeTask(const UBTTaskNode& Task, const UBTCompositeNode& Parent)
{
	const TSharedRef<FJsonObject> Object = BeginNode(Task, TEXT("Task"));
	Object->SetStringField(TEXT("ParentNode"), Parent.GetNodeName());
	EndNode(Task, *Object);
	return Object;
}

/** Describes composites with what is below them, each once: only a broken asset has one in two places. */
class FHierarchy
{
public:
	TSharedRef<FJsonObject> DescribeRoot(const UBehaviorTree& Tree)
	{
		Seen.Add(Tree.RootNode);
		return DescribeComposite(*Tree.RootNode, Tree.RootDecorators, 1);
	}

private:
	/** @param OwnDecorators  those of a root, which no link leads to */
	TSharedRef<FJsonObject> DescribeComposite(
		const UBTCompositeNode& Composite, const TArray<TObjectPtr<UBTDecorator>>& OwnDecorators, int32 Depth)
	{
		const TSharedRef<FJsonObject> Object = BeginNode(Composite, TEXT("Composite"));
		EndNode(Composite, *Object);
		FValues AuxiliaryNodes;
		FValues Children;
		AppendServices(Composite.Services, AuxiliaryNodes);
		AppendDecorators(OwnDecorators, AuxiliaryNodes);
		for (const FBTCompositeChild& Child : Composite.Children)
		{
			if (!Child.ChildComposite && Child.ChildTask)
			{
				AppendServices(Child.ChildTask->Services, AuxiliaryNodes);
			}
			AppendDecorators(Child.Decorators, AuxiliaryNodes);
			AppendChild(Child, Composite, Depth, Children);
		}
		Object->SetArrayField(TEXT("AuxiliaryNodes"), AuxiliaryNodes);
		Object->SetArrayField(TEXT("Children"), Children);
		return Object;
	}

	void AppendChild(const FBTCompositeChild& Child, const UBTCompositeNode& Parent, int32 Depth, FValues& Children)
	{
		if (const UBTCompositeNode* Composite = Child.ChildComposite)
		{
			bool bIsKnown = false;
			Seen.Add(Composite, &bIsKnown);
			if (!bIsKnown && Depth < MaxDepth)
			{
				Append(Children, DescribeComposite(*Composite, {}, Depth + 1));
			}
		}
		else if (const UBTTaskNode* Task = Child.ChildTask)
		{
			Append(Children, DescribeTask(*Task, Parent));
		}
	}

	TSet<const UBTCompositeNode*> Seen;
};
}

FString FKestrelBlueprintUtils::ReadBehaviorTree(const FString& BehaviorTreeName)
{
	return ReadBehaviorTree(FKestrelAssetFinder().Find(*UBehaviorTree::StaticClass(), BehaviorTreeName));
}

FString FKestrelBlueprintUtils::ReadBehaviorTree(const FKestrelAssetAddress& Address)
{
	FString Error;
	const UBehaviorTree* Tree = KestrelBlueprintLookup::LoadBehaviorTree(Address, Error);
	if (!Tree)
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(Error));
	}
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Name"), Tree->GetName());
	Document->SetStringField(TEXT("Path"), Tree->GetPathName());
	if (const UBlackboardData* Blackboard = Tree->BlackboardAsset)
	{
		Document->SetObjectField(TEXT("Blackboard"), BehaviorTreeReader::DescribeBlackboard(*Blackboard));
	}
	if (Tree->RootNode)
	{
		Document->SetObjectField(TEXT("RootNode"), BehaviorTreeReader::FHierarchy().DescribeRoot(*Tree));
	}
	return SerializeJson(Document);
}
