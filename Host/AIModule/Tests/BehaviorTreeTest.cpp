#include "BehaviorTree/BehaviorTree.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "BehaviorTree/BTDecorator.h"
#include "BehaviorTree/BTService.h"
#include "BehaviorTree/BTTaskNode.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Enum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Int.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_NativeEnum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Object.h"
#include "BehaviorTree/BlackboardData.h"
#include "BehaviorTree/Composites/BTComposite_Selector.h"
#include "BehaviorTree/Composites/BTComposite_Sequence.h"
#include "BehaviorTree/Decorators/BTDecorator_Blackboard.h"
#include "BehaviorTree/Decorators/BTDecorator_Cooldown.h"
#include "BehaviorTree/Services/BTService_DefaultFocus.h"
#include "BehaviorTree/Tasks/BTTask_MoveTo.h"
#include "BehaviorTree/Tasks/BTTask_RunBehavior.h"
#include "BehaviorTree/Tasks/BTTask_Wait.h"
#include "GameFramework/Actor.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectIterator.h"
#include "UObject/UnrealType.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace
{
/** Names of keys, and the classes of their types. */
std::vector<std::string> Describe(const TArray<FBlackboardEntry>& Keys)
{
	std::vector<std::string> Texts;
	for (const FBlackboardEntry& Entry : Keys)
	{
		Texts.push_back(ToUtf8(Entry.EntryName.ToString()) + " " +
						(Entry.KeyType ? ToUtf8(Entry.KeyType->GetClass()->GetName()) : "none"));
	}
	return Texts;
}

/** A project of its own. */
class BehaviorTreeTest : public testing::Test
{
protected:
	BehaviorTreeTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject")); }
	~BehaviorTreeTest() override
	{
		ForgetAll();
		FModuleManager::Get().UnloadModule("AssetRegistry");
		FPaths::SetProjectFilePath(FString());
	}

	template <typename AssetType>
	static AssetType* Make(const TCHAR* PackageName)
	{
		return NewObject<AssetType>(CreatePackage(PackageName), FName(*FPackageName::GetShortName(PackageName)),
			RF_Public | RF_Standalone | RF_Transactional);
	}

	template <typename KeyType>
	static KeyType* AddKey(UBlackboardData& Data, const TCHAR* Name)
	{
		FBlackboardEntry Entry;
		Entry.EntryName = Name;
		KeyType* const Type = NewObject<KeyType>(&Data);
		Entry.KeyType = Type;
		Data.Keys.Add(Entry);
		return Type;
	}

	static FString FileOf(const UObject* Asset)
	{
		return FPackageName::LongPackageNameToFilename(Asset->GetPackage()->GetName(), TEXT(".uasset"));
	}

	static FString Save(const UObject* Asset)
	{
		FSavePackageArgs Args;
		Args.TopLevelFlags = RF_Standalone;
		EXPECT_TRUE(UPackage::SavePackage(Asset->GetPackage(), nullptr, *FileOf(Asset), Args));
		FString Text;
		FFileHelper::LoadFileToString(Text, *FileOf(Asset));
		return Text;
	}

	template <typename AssetType>
	static AssetType* Load(const TCHAR* PackageName)
	{
		return LoadObject<AssetType>(
			nullptr, *FString::Printf(TEXT("%s.%s"), PackageName, *FPackageName::GetShortName(PackageName)));
	}

	/** As if the editor were restarted. */
	static void ForgetAll()
	{
		for (TObjectIterator<UBehaviorTree> It; It; ++It)
		{
			It->ClearFlags(RF_Standalone);
		}
		for (TObjectIterator<UBlackboardData> It; It; ++It)
		{
			It->ClearFlags(RF_Standalone);
		}
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	}

	/** A selector with a service; below it a sequence behind two decorators, and a task. */
	static UBehaviorTree* MakeTree(UBlackboardData* Data)
	{
		UBehaviorTree* const Tree = Make<UBehaviorTree>(TEXT("/Game/AI/BT_Guard"));
		Tree->BlackboardAsset = Data;
		Tree->RootNode = NewObject<UBTComposite_Selector>(Tree);
		Tree->RootNode->Services.Add(NewObject<UBTService_DefaultFocus>(Tree));
		FBTCompositeChild& Rounds = Tree->RootNode->Children.AddDefaulted_GetRef();
		Rounds.ChildComposite = NewObject<UBTComposite_Sequence>(Tree);
		Rounds.ChildComposite->NodeName = TEXT("Rounds");
		Rounds.Decorators.Add(NewObject<UBTDecorator_Blackboard>(Tree));
		UBTDecorator* const Cooldown = NewObject<UBTDecorator_Cooldown>(Tree);
		Cooldown->GetClass()
			->FindPropertyByName(TEXT("FlowAbortMode"))
			->ImportText_InContainer(TEXT("LowerPriority"), Cooldown, Cooldown, PPF_None);
		Rounds.Decorators.Add(Cooldown);
		Rounds.ChildComposite->Children.AddDefaulted_GetRef().ChildTask = NewObject<UBTTask_MoveTo>(Tree);
		UBTTask_Wait* const Wait = NewObject<UBTTask_Wait>(Tree);
		Wait->WaitTime = 1.5f;
		Tree->RootNode->Children.AddDefaulted_GetRef().ChildTask = Wait;
		return Tree;
	}

	static void ExpectTree(const UBehaviorTree* Tree)
	{
		ASSERT_TRUE(Tree && Tree->RootNode && Tree->RootNode->Services.Num() == 1);
		ASSERT_EQ(Tree->RootNode->GetChildrenNum(), 2);
		const FBTCompositeChild& Rounds = Tree->RootNode->Children[0];
		ASSERT_TRUE(Rounds.ChildComposite && !Rounds.ChildTask && Rounds.Decorators.Num() == 2);
		EXPECT_EQ(ToUtf8(Rounds.ChildComposite->GetNodeName()), "Rounds");
		EXPECT_EQ(Rounds.Decorators[1]->GetFlowAbortMode(), EBTFlowAbortMode::LowerPriority);
		EXPECT_FALSE(Rounds.Decorators[1]->IsInversed());
		const UBTTask_Wait* const Wait = Cast<UBTTask_Wait>(Tree->RootNode->GetChildNode(1));
		ASSERT_TRUE(Wait);
		EXPECT_EQ(Wait->WaitTime, 1.5f);
		EXPECT_EQ(Wait->GetOuter(), Tree);
		EXPECT_EQ(Wait->GetParentNode(), nullptr) << "nobody has set the tree up";
		EXPECT_EQ(Wait->GetBlackboardAsset(), Tree->BlackboardAsset);
		EXPECT_EQ(Tree->RootNode->GetChildNode(2), nullptr);
	}

	const FScratchDirectory Folder;
};
}

TEST_F(BehaviorTreeTest, IsSavedLoadedAndCopiedWithItsBlackboard)
{
	UBlackboardData* const Data = Make<UBlackboardData>(TEXT("/Game/AI/BB_Guard"));
	AddKey<UBlackboardKeyType_Int>(*Data, TEXT("Rounds"));
	Data->Keys[1].bInstanceSynced = true;
	UBehaviorTree* const Tree = MakeTree(Data);
	ExpectTree(Tree);
	const FString DataText = Save(Data);
	const FString TreeText = Save(Tree);

	const UBehaviorTree* const Copy = DuplicateObject<UBehaviorTree>(Tree, GetTransientPackage());
	ExpectTree(Copy);
	EXPECT_NE(Copy->RootNode, Tree->RootNode);

	ForgetAll();
	FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry").Get().WaitForCompletion();
	TArray<FAssetData> Assets;
	IAssetRegistry::Get()->GetAssetsByClass(UBehaviorTree::StaticClass()->GetClassPathName(), Assets);
	ASSERT_EQ(Assets.Num(), 1);
	EXPECT_FALSE(Assets[0].IsAssetLoaded());
	const UBehaviorTree* const Loaded = Cast<UBehaviorTree>(Assets[0].GetAsset());
	ExpectTree(Loaded);
	ASSERT_TRUE(Loaded->BlackboardAsset);
	EXPECT_EQ(Describe(Loaded->BlackboardAsset->Keys),
		(std::vector<std::string>{ "SelfActor BlackboardKeyType_Object", "Rounds BlackboardKeyType_Int" }));
	EXPECT_TRUE(Loaded->BlackboardAsset->Keys[1].bInstanceSynced);
	EXPECT_FALSE(Loaded->GetPackage()->IsDirty());
	EXPECT_EQ(ToUtf8(Save(Loaded->BlackboardAsset)), ToUtf8(DataText));
	EXPECT_EQ(ToUtf8(Save(Loaded)), ToUtf8(TreeText)) << "same content, same bytes";
}

TEST_F(BehaviorTreeTest, NodesAreCalledAfterTheirClassUnlessTheyHaveAName)
{
	const struct
	{
		const UClass* Class;
		const char* Name;
	} Cases[] = {
		{ UBTComposite_Selector::StaticClass(), "Selector" },
		{ UBTTask_MoveTo::StaticClass(), "Move To" },
		{ UBTTask_RunBehavior::StaticClass(), "Run Behavior" },
		{ UBTDecorator_Blackboard::StaticClass(), "Blackboard Based Condition" },
		{ UBTService_DefaultFocus::StaticClass(), "Set default focus" },
	};
	for (const auto& [Class, Name] : Cases)
	{
		UBTNode* const Node = NewObject<UBTNode>(GetTransientPackage(), Class);
		EXPECT_EQ(ToUtf8(Node->GetNodeName()), Name);
	}
	UBTNode* const Wait = NewObject<UBTTask_Wait>();
	Wait->NodeName.Empty();
	EXPECT_EQ(ToUtf8(Wait->GetNodeName()), "Wait") << "the class is BTTask_Wait";
	EXPECT_EQ(Wait->GetBlackboardAsset(), nullptr);
	EXPECT_EQ(ToUtf8(StaticEnum<EBTFlowAbortMode::Type>()->GetNameStringByValue(EBTFlowAbortMode::Both)), "Both");
	EXPECT_EQ(ToUtf8(UBehaviorTreeTypes::DescribeFlowAbortMode(EBTFlowAbortMode::LowerPriority)), "Lower Priority");
}

TEST_F(BehaviorTreeTest, BlackboardKnowsTheKeysOfItsParents)
{
	UBlackboardData* const Grandparent = Make<UBlackboardData>(TEXT("/Game/BB_A"));
	AddKey<UBlackboardKeyType_Int>(*Grandparent, TEXT("A"));
	UBlackboardData* const Parent = Make<UBlackboardData>(TEXT("/Game/BB_B"));
	AddKey<UBlackboardKeyType_Int>(*Parent, TEXT("B"));
	Parent->Parent = Grandparent;
	Parent->PostEditChange();
	UBlackboardData* const Child = Make<UBlackboardData>(TEXT("/Game/BB_C"));
	AddKey<UBlackboardKeyType_Int>(*Child, TEXT("C"));
	Child->Parent = Parent;
	for (const UBlackboardData* const Data : { Grandparent, Parent, Child })
	{
		Save(Data);
	}
	ForgetAll();

	UBlackboardData* const Loaded = Load<UBlackboardData>(TEXT("/Game/BB_C"));
	ASSERT_TRUE(Loaded);
	EXPECT_EQ(Describe(Loaded->Keys), (std::vector<std::string>{ "C BlackboardKeyType_Int" }));
	EXPECT_EQ(Describe(Loaded->ParentKeys), (std::vector<std::string>{ "SelfActor BlackboardKeyType_Object",
												"A BlackboardKeyType_Int", "B BlackboardKeyType_Int" }));
	EXPECT_EQ(Loaded->GetNumKeys(), 4);
	EXPECT_TRUE(Loaded->IsRelatedTo(*Loaded->Parent->Parent) && Loaded->Parent->Parent->IsRelatedTo(*Loaded));

	Loaded->Parent->Parent->Parent = Loaded;
	Loaded->PostEditChange();
	EXPECT_FALSE(Loaded->Parent) << "a parent of itself";
	EXPECT_EQ(Describe(Loaded->Keys).back(), "SelfActor BlackboardKeyType_Object");
}

TEST_F(BehaviorTreeTest, EnumKeysFindWhatTheyAreNamedAfterAndReplaceTheOlderKind)
{
	UBlackboardData* const Data = Make<UBlackboardData>(TEXT("/Game/BB_Enums"));
	const UBlackboardKeyType_Object* const Self = Cast<UBlackboardKeyType_Object>(Data->Keys[0].KeyType.Get());
	ASSERT_TRUE(Self);
	EXPECT_EQ(Self->BaseClass, AActor::StaticClass());
	EXPECT_EQ(AddKey<UBlackboardKeyType_Object>(*Data, TEXT("Any"))->BaseClass, UObject::StaticClass());
	UEnum* const Enum = StaticEnum<EBTFlowAbortMode::Type>();
	AddKey<UBlackboardKeyType_NativeEnum>(*Data, TEXT("Old"))->EnumName = Enum->GetName();
	AddKey<UBlackboardKeyType_Enum>(*Data, TEXT("Lost"))->EnumName = TEXT("ENoSuchEnum");
	Save(Data);
	ForgetAll();

	const UBlackboardData* const Loaded = Load<UBlackboardData>(TEXT("/Game/BB_Enums"));
	ASSERT_TRUE(Loaded);
	const UBlackboardKeyType_Enum* const Old = Cast<UBlackboardKeyType_Enum>(Loaded->Keys[2].KeyType.Get());
	ASSERT_TRUE(Old);
	EXPECT_EQ(Old->EnumType, Enum);
	EXPECT_TRUE(Old->bIsEnumNameValid);
	const UBlackboardKeyType_Enum* const Lost = Cast<UBlackboardKeyType_Enum>(Loaded->Keys[3].KeyType.Get());
	ASSERT_TRUE(Lost);
	EXPECT_FALSE(Lost->EnumType || Lost->bIsEnumNameValid);
}
