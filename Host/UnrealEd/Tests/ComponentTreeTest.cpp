#include "BlueprintTestSupport.h"
#include "Components/PrimitiveComponent.h"
#include "Engine/SCS_Node.h"

namespace ComponentTreeTest
{
class FComponentTreeTest : public BlueprintTest
{
protected:
	static std::vector<std::string> GetNames(const TArray<USCS_Node*>& Nodes)
	{
		std::vector<std::string> Names;
		for (const USCS_Node* const Node : Nodes)
		{
			Names.push_back(ToUtf8(Node->GetVariableName().ToString()));
		}
		return Names;
	}
};

TEST_F(FComponentTreeTest, AComponentTakesThePlaceOfTheRootThatAnActorStartsWith)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Tree"));
	USimpleConstructionScript& Script = *Blueprint->SimpleConstructionScript;
	EXPECT_EQ(Script.GetBlueprint(), Blueprint);
	EXPECT_EQ(GetNames(Script.GetRootNodes()), (std::vector<std::string>{ "DefaultSceneRoot" }));
	USCS_Node* const Lamp = Script.CreateNode(USceneComponent::StaticClass(), TEXT("Lamp"));
	EXPECT_EQ(Script.FindSCSNode(TEXT("Lamp")), nullptr) << "not before it is added";
	Script.AddNode(Lamp);
	Script.AddNode(Lamp);
	EXPECT_EQ(GetNames(Script.GetRootNodes()), (std::vector<std::string>{ "Lamp" }));
	USCS_Node* const Bulb = Script.CreateNode(USceneComponent::StaticClass(), NAME_None);
	Lamp->AddChildNode(Bulb, true);
	EXPECT_EQ(GetNames(Lamp->GetChildNodes()), (std::vector<std::string>{ "Scene" })) << "named after its class";
	EXPECT_EQ(GetNames(Script.GetAllNodes()), (std::vector<std::string>{ "Lamp", "Scene" }));
	EXPECT_EQ(Bulb->GetSCS(), &Script);
	EXPECT_TRUE(Lamp->IsRootNode());
	EXPECT_FALSE(Bulb->IsRootNode());
}

TEST_F(FComponentTreeTest, NamesAreKeptApartAndCanBeChanged)
{
	USimpleConstructionScript& Script = *Make(TEXT("/Game/BP_Names"))->SimpleConstructionScript;
	USCS_Node* const First = Script.CreateNode(USceneComponent::StaticClass(), TEXT("Lamp"));
	Script.AddNode(First);
	USCS_Node* const Second = Script.CreateNode(USceneComponent::StaticClass(), TEXT("Lamp"));
	EXPECT_EQ(ToUtf8(Second->GetVariableName().ToString()), "Lamp1");
	EXPECT_NE(First->ComponentTemplate, Second->ComponentTemplate);
	First->SetVariableName(TEXT("Torch"), true);
	EXPECT_EQ(ToUtf8(First->ComponentTemplate->GetName()), "Torch_GEN_VARIABLE");
	EXPECT_EQ(Script.FindSCSNode(TEXT("torch")), First);
	EXPECT_EQ(Script.FindSCSNode(TEXT("Lamp")), nullptr);
}

TEST_F(FComponentTreeTest, OnlyComponentsThatCanExistAreMade)
{
	USimpleConstructionScript& Script = *Make(TEXT("/Game/BP_Refused"))->SimpleConstructionScript;
	EXPECT_EQ(Script.CreateNode(nullptr, TEXT("A")), nullptr);
	EXPECT_EQ(Script.CreateNode(AActor::StaticClass(), TEXT("A")), nullptr);
	EXPECT_EQ(Script.CreateNode(UPrimitiveComponent::StaticClass(), TEXT("A")), nullptr) << "an abstract class";
}

TEST_F(FComponentTreeTest, BlueprintsKnowTheirParentsAndTheirState)
{
	UBlueprint* const Parent = Make(TEXT("/Game/BP_Parent"));
	UBlueprint* const Child = Make(TEXT("/Game/BP_Child"), Parent->GeneratedClass);
	TArray<UBlueprint*> Line;
	EXPECT_TRUE(UBlueprint::GetBlueprintHierarchyFromClass(Child->GeneratedClass, Line));
	EXPECT_EQ(Line, (TArray<UBlueprint*>{ Child, Parent }));
	EXPECT_TRUE(Child->IsUpToDate());
	FBlueprintEditorUtils::AddMemberVariable(Child, TEXT("Health"), MakeType(UEdGraphSchema_K2::PC_Int));
	EXPECT_TRUE(Child->IsPossiblyDirty());
	Parent->Status = BS_Error;
	Line.Reset();
	EXPECT_FALSE(UBlueprint::GetBlueprintHierarchyFromClass(Child->GeneratedClass, Line));
	FBPVariableDescription& Variable = Child->NewVariables[0];
	Variable.SetMetaData(TEXT("Tooltip"), TEXT("How alive it is"));
	Variable.SetMetaData(TEXT("Tooltip"), TEXT("How alive"));
	EXPECT_TRUE(Variable.HasMetaData(TEXT("tooltip")));
	EXPECT_EQ(ToUtf8(Variable.GetMetaData(TEXT("Tooltip"))), "How alive");
	Variable.RemoveMetaData(TEXT("Tooltip"));
	Variable.RemoveMetaData(TEXT("Tooltip"));
	EXPECT_FALSE(Variable.HasMetaData(TEXT("Tooltip")));
}
}
