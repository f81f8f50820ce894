#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "BehaviorTree/BehaviorTree.h"
#include "BehaviorTree/BehaviorTreeTypes.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_NativeEnum.h"
#include "BehaviorTree/BlackboardData.h"
#include "BehaviorTree/Composites/BTComposite_Sequence.h"
#include "Dom/JsonObject.h"
#include "Misc/Guid.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"
#include "UObject/Package.h"

namespace BehaviorTreeReaderTest
{
/** An asset that was made and not saved, under a name of its own; forgotten with this. */
template <typename AssetType>
class TScopedAsset
{
public:
	TScopedAsset() { FAssetRegistryModule::AssetCreated(Asset); }
	~TScopedAsset()
	{
		FAssetRegistryModule::AssetDeleted(Asset);
		Asset->ClearFlags(RF_Public | RF_Standalone);
	}
	UE_NONCOPYABLE(TScopedAsset)

	AssetType* operator->() const { return Asset; }
	AssetType* Get() const { return Asset; }

private:
	const FString Name = TEXT("Test_") + FGuid::NewGuid().ToString();
	AssetType* const Asset = NewObject<AssetType>(
		CreatePackage(*(TEXT("/Game/") + Name)), FName(*Name), RF_Public | RF_Standalone | RF_Transactional);
};

using FScopedTree = TScopedAsset<UBehaviorTree>;

TSharedPtr<FJsonObject> Read(const FScopedTree& Tree)
{
	return KestrelJson::ParseObject(FKestrelBlueprintUtils::ReadBehaviorTree(Tree->GetName().ToLower()));
}

/** The composites, one inside the other, with their first children's. */
int32 CountLevels(const TSharedPtr<FJsonObject>& Node)
{
	const TArray<TSharedPtr<FJsonValue>>* Children = nullptr;
	const bool bHasChild = Node->TryGetArrayField(TEXT("Children"), Children) && Children->Num() > 0;
	return bHasChild ? 1 + CountLevels((*Children)[0]->AsObject()) : 1;
}

UBTCompositeNode* AddLevel(UBTCompositeNode& Parent)
{
	UBTCompositeNode* Child = NewObject<UBTComposite_Sequence>(Parent.GetOuter());
	Parent.Children.AddDefaulted_GetRef().ChildComposite = Child;
	return Child;
}
}

DEFINE_SPEC(FKestrelBehaviorTreeReaderSpec, "Kestrel.BehaviorTreeReader", KestrelTest::Flags)
void FKestrelBehaviorTreeReaderSpec::Define()
{
	using namespace BehaviorTreeReaderTest;

	It("says which tree is missing", [this]() {
		KestrelTest::TestSameText(*this, TEXT("document"), FKestrelBlueprintUtils::ReadBehaviorTree(TEXT("BT_None")),
			TEXT("{\"Error\":\"BehaviorTree 'BT_None' not found.\"}"));
	});

	It("leaves out what a tree does not have", [this]() {
		const FScopedTree Tree;
		const TSharedPtr<FJsonObject> Document = Read(Tree);
		if (TestTrue(TEXT("document"), Document.IsValid()))
		{
			TestEqual(TEXT("members"), Document->Values.Num(), 2);
			KestrelTest::TestSameText(*this, TEXT("name"), Document->GetStringField(TEXT("Name")), Tree->GetName());
		}
	});

	It("names the enum of an older kind of key, and a key without type", [this]() {
		const FScopedTree Tree;
		const TScopedAsset<UBlackboardData> Blackboard;
		UBlackboardKeyType_NativeEnum* KeyType = NewObject<UBlackboardKeyType_NativeEnum>(Blackboard.Get());
		KeyType->EnumType = StaticEnum<EBTFlowAbortMode::Type>();
		Blackboard->Keys.AddDefaulted_GetRef().KeyType = KeyType;
		Blackboard->Keys.AddDefaulted();
		Tree->BlackboardAsset = Blackboard.Get();
		const TSharedPtr<FJsonObject> Document = Read(Tree);
		const TArray<TSharedPtr<FJsonValue>> Keys =
			Document->GetObjectField(TEXT("Blackboard"))->GetArrayField(TEXT("Keys"));
		if (TestEqual(TEXT("keys"), Keys.Num(), 3)) // the first is the one that every blackboard has
		{
			KestrelTest::TestSameText(*this, TEXT("enum"),
				KestrelJson::ToCondensedText(Keys[1]->AsObject().ToSharedRef()),
				TEXT("{\"Name\":\"None\",\"IsInstanceSynced\":false,\"Type\":\"BlackboardKeyType_NativeEnum\","
					 "\"EnumType\":\"EBTFlowAbortMode\"}"));
			KestrelTest::TestSameText(*this, TEXT("none"),
				KestrelJson::ToCondensedText(Keys[2]->AsObject().ToSharedRef()),
				TEXT("{\"Name\":\"None\",\"IsInstanceSynced\":false,\"Type\":\"None\"}"));
		}
	});

	It("survives composites that lead to each other, are missing or go too deep", [this]() {
		const FScopedTree Tree;
		Tree->RootNode = NewObject<UBTComposite_Sequence>(Tree.Get());
		UBTCompositeNode* Below = AddLevel(*Tree->RootNode);
		Below->Children.AddDefaulted_GetRef().ChildComposite = Tree->RootNode;
		Below->Children.AddDefaulted();
		TestEqual(TEXT("levels of a circle"), CountLevels(Read(Tree)->GetObjectField(TEXT("RootNode"))), 2);

		Below->Children.Empty();
		for (int32 Level = 0; Level < 20'000; ++Level)
		{
			Below = AddLevel(*Below);
		}
		TestEqual(TEXT("levels of a deep tree"), CountLevels(Read(Tree)->GetObjectField(TEXT("RootNode"))), 100);
	});
}
