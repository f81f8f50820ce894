#include "FunctionGraphTest.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_Self.h"

namespace SchemaTest
{
using K2 = UEdGraphSchema_K2;

class FSchemaTest : public FFunctionGraphTest
{
protected:
	FSchemaTest()
		: FFunctionGraphTest(TEXT("/Game/BP_Schema"))
	{
	}

	ECanCreateConnectionResponse Ask(UEdGraphPin& A, UEdGraphPin& B) const
	{
		return Schema.CanCreateConnection(&A, &B).Response;
	}
	std::string GetRefusal(UEdGraphPin& A, UEdGraphPin& B) const
	{
		const FPinConnectionResponse Answer = Schema.CanCreateConnection(&A, &B);
		return Answer.Response == CONNECT_RESPONSE_DISALLOW ? ToUtf8(Answer.Message.ToString()) : "allowed";
	}

	const K2& Schema = *GetDefault<K2>();
};

TEST_F(FSchemaTest, ExecutionLeavesAPinOnceAndReachesItFromMany)
{
	UK2Node_IfThenElse& First = Add<UK2Node_IfThenElse>();
	UK2Node_IfThenElse& Second = Add<UK2Node_IfThenElse>();
	UK2Node_IfThenElse& Third = Add<UK2Node_IfThenElse>();
	UEdGraphPin& Then = Pin(First, TEXT("then"));
	UEdGraphPin& Else = Pin(First, TEXT("else"));
	EXPECT_EQ(Ask(Then, Pin(Second, TEXT("execute"))), CONNECT_RESPONSE_MAKE);
	EXPECT_TRUE(Schema.TryCreateConnection(&Then, &Pin(Second, TEXT("execute"))));
	EXPECT_EQ(Ask(Else, Pin(Second, TEXT("execute"))), CONNECT_RESPONSE_MAKE) << "a second way to the same node";

	// In either order the pin that execution leaves is the one to lose its link.
	EXPECT_EQ(Ask(Then, Pin(Third, TEXT("execute"))), CONNECT_RESPONSE_BREAK_OTHERS_A);
	EXPECT_EQ(Ask(Pin(Third, TEXT("execute")), Then), CONNECT_RESPONSE_BREAK_OTHERS_B);
	EXPECT_TRUE(Schema.TryCreateConnection(&Pin(Third, TEXT("execute")), &Then));
	EXPECT_EQ(Then.LinkedTo, (TArray<UEdGraphPin*>{ &Pin(Third, TEXT("execute")) }));
	EXPECT_TRUE(Pin(Second, TEXT("execute")).LinkedTo.IsEmpty());
}

TEST_F(FSchemaTest, AValueReachesManyPinsAndAPinGetsOneValue)
{
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Open"), MakeType(K2::PC_Boolean));
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Shut"), MakeType(K2::PC_Boolean));
	UEdGraphPin& Open = Pin(*AddVariableNode<UK2Node_VariableGet>(*Graph, TEXT("Open")), TEXT("Open"));
	UEdGraphPin& Shut = Pin(*AddVariableNode<UK2Node_VariableGet>(*Graph, TEXT("Shut")), TEXT("Shut"));
	UEdGraphPin& First = Pin(Add<UK2Node_IfThenElse>(), TEXT("Condition"));
	UEdGraphPin& Second = Pin(Add<UK2Node_IfThenElse>(), TEXT("Condition"));
	EXPECT_TRUE(Schema.TryCreateConnection(&Open, &First));
	EXPECT_EQ(Ask(Open, Second), CONNECT_RESPONSE_MAKE);
	EXPECT_EQ(Ask(Shut, First), CONNECT_RESPONSE_BREAK_OTHERS_B);
	EXPECT_EQ(Ask(First, Shut), CONNECT_RESPONSE_BREAK_OTHERS_A);
	EXPECT_TRUE(Schema.TryCreateConnection(&Shut, &First));
	EXPECT_EQ(First.LinkedTo, (TArray<UEdGraphPin*>{ &Shut }));
	EXPECT_TRUE(Open.LinkedTo.IsEmpty());
}

TEST_F(FSchemaTest, RefusesLinksThatMakeNoSenseAndSaysWhy)
{
	UK2Node_IfThenElse& Branch = Add<UK2Node_IfThenElse>();
	UK2Node_IfThenElse& Other = Add<UK2Node_IfThenElse>();
	UK2Node_Self& Self = Add<UK2Node_Self>();
	UEdGraphPin& Then = Pin(Branch, TEXT("then"));
	EXPECT_EQ(GetRefusal(Then, Pin(Branch, TEXT("execute"))), "Both are on the same node");
	EXPECT_EQ(GetRefusal(Then, Pin(Other, TEXT("then"))), "Directions are not compatible");
	EXPECT_EQ(GetRefusal(Pin(Branch, TEXT("execute")), Pin(Other, TEXT("execute"))), "Directions are not compatible");
	EXPECT_EQ(GetRefusal(Then, Pin(Other, TEXT("Condition"))), "Exec is not compatible with Boolean.");
	EXPECT_EQ(GetRefusal(Pin(Other, TEXT("Condition")), Pin(Self, TEXT("self"))),
		"Self Object Reference is not compatible with Boolean.")
		<< "the output is named first, whichever pin was dragged";
	UEdGraphPin& Fixed = Pin(Other, TEXT("execute"));
	Fixed.bNotConnectable = true;
	EXPECT_EQ(GetRefusal(Then, Fixed), "The pin cannot be connected");
	Fixed.bNotConnectable = false;
	Fixed.bOrphanedPin = true;
	EXPECT_EQ(GetRefusal(Then, Fixed), "The pin cannot be connected") << "its parameter is gone";
	EXPECT_FALSE(Schema.TryCreateConnection(&Then, &Fixed));
	EXPECT_TRUE(Then.LinkedTo.IsEmpty());
}

TEST_F(FSchemaTest, SelfIsTheBlueprintThatTheNodeIsIn)
{
	UEdGraphPin& Self = Pin(Add<UK2Node_Self>(), TEXT("self"));
	UK2Node_CallFunction* const OfActor = AddCall(*Graph, AActor::StaticClass(), TEXT("SetLifeSpan"));
	UK2Node_CallFunction* const OfPawn = AddCall(*Graph, APawn::StaticClass(), TEXT("GetController"));
	ASSERT_TRUE(OfActor->FindPin(TEXT("self")));
	ASSERT_TRUE(OfPawn->FindPin(TEXT("self")));
	EXPECT_EQ(Ask(Self, Pin(*OfActor, TEXT("self"))), CONNECT_RESPONSE_MAKE);
	EXPECT_EQ(GetRefusal(Self, Pin(*OfPawn, TEXT("self"))),
		"Self Object Reference is not compatible with Pawn Object Reference.");
}

TEST_F(FSchemaTest, NamesPinsAsAUserReadsThem)
{
	UK2Node_IfThenElse& Branch = Add<UK2Node_IfThenElse>();
	UK2Node_ExecutionSequence& Sequence = Add<UK2Node_ExecutionSequence>();
	UK2Node_CallFunction& Call = *AddCall(*Graph, AGraphTestActor::StaticClass(), TEXT("AddUp"));
	const struct
	{
		UEdGraphNode& Node;
		const TCHAR* Pin;
		const char* Name;
	} Cases[] = {
		{ Branch, TEXT("execute"), "" },
		{ Branch, TEXT("then"), "true" },
		{ Branch, TEXT("else"), "false" },
		{ Branch, TEXT("Condition"), "Condition" },
		{ Sequence, TEXT("then_1"), "Then 1" },
		{ Call, TEXT("then"), "" },
		{ Call, TEXT("ReturnValue"), "Return Value" },
		{ Call, TEXT("self"), "Target" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(Schema.GetPinDisplayName(&Pin(Case.Node, Case.Pin)).ToString()), Case.Name)
			<< ToUtf8(Case.Pin);
	}
	EXPECT_EQ(ToUtf8(K2::GetFriendlyGraphName(*Graph).ToString()), "Do Things");
	EXPECT_EQ(ToUtf8(K2::GetFriendlySignatureName(AGraphTestActor::StaticClass()->FindFunctionByName(TEXT("GetWeight")))
						 .ToString()),
		"Weight (kg)");
}

TEST_F(FSchemaTest, EventsAreFunctionsOfABlueprintWithoutOutputs)
{
	const struct
	{
		const TCHAR* Function;
		bool bEvent;
	} Cases[] = {
		{ TEXT("OnKnocked"), true },
		{ TEXT("MayPass"), false }, // has outputs
		{ TEXT("AddUp"), false },   // native
		{ TEXT("GetWeight"), false },
		{ TEXT("Announce"), false },
		{ TEXT("ReceiveTick"), true },
		{ TEXT("UserConstructionScript"), true },
		{ TEXT("NoSuchFunction"), false },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(K2::FunctionCanBePlacedAsEvent(AGraphTestActor::StaticClass()->FindFunctionByName(Case.Function)),
			Case.bEvent)
			<< ToUtf8(Case.Function);
	}
}

TEST_F(FSchemaTest, GraphOfAnOverrideGetsTheSignatureOfItsParent)
{
	UEdGraph* const Override =
		FBlueprintEditorUtils::CreateNewGraph(Blueprint, TEXT("MayPass"), UEdGraph::StaticClass(), K2::StaticClass());
	Schema.CreateFunctionGraphTerminators(*Override, AGraphTestActor::StaticClass());
	ASSERT_EQ(Override->Nodes.Num(), 2);
	EXPECT_EQ(GetPins(*Override->Nodes[0]), (std::vector<std::string>{ "then", "Who" }));
	EXPECT_EQ(GetPins(*Override->Nodes[1]), (std::vector<std::string>{ "execute", "OutReason", "ReturnValue" }));
	EXPECT_EQ(Pin(*Override->Nodes[0], TEXT("then")).LinkedTo[0], &Pin(*Override->Nodes[1], TEXT("execute")));
	EXPECT_EQ(GetTitle(*Override->Nodes[0]), "May Pass");
	EXPECT_EQ(GetTitle(*Override->Nodes[1]), "Return Node");
	EXPECT_GT(Override->Nodes[1]->NodePosX, Override->Nodes[0]->NodePosX);

	UEdGraph* const Nothing =
		FBlueprintEditorUtils::CreateNewGraph(Blueprint, TEXT("OnKnocked"), UEdGraph::StaticClass(), K2::StaticClass());
	Schema.CreateFunctionGraphTerminators(*Nothing, AGraphTestActor::StaticClass());
	ASSERT_EQ(Nothing->Nodes.Num(), 1) << "without outputs nothing is returned";
	EXPECT_EQ(GetPins(*Nothing->Nodes[0]), (std::vector<std::string>{ "then", "By", "Force" }));
}

TEST_F(FSchemaTest, GraphOfACopiedSignatureHasPinsThatCanBeChanged)
{
	UEdGraph* const Copy =
		FBlueprintEditorUtils::CreateNewGraph(Blueprint, TEXT("Like"), UEdGraph::StaticClass(), K2::StaticClass());
	Schema.CreateFunctionGraphTerminators(*Copy, AGraphTestActor::StaticClass()->FindFunctionByName(TEXT("AddUp")));
	ASSERT_EQ(Copy->Nodes.Num(), 2);
	UK2Node_FunctionEntry* const Entry = CastChecked<UK2Node_FunctionEntry>(Copy->Nodes[0]);
	EXPECT_EQ(GetPins(*Entry), (std::vector<std::string>{ "then", "First", "Second", "Mood" }));
	EXPECT_EQ(Entry->UserDefinedPins.Num(), 3);
	EXPECT_EQ(CastChecked<UK2Node_FunctionResult>(Copy->Nodes[1])->UserDefinedPins.Num(), 1);

	EXPECT_FALSE(Entry->IsEditable());
	Schema.MarkFunctionEntryAsEditable(Copy, true);
	EXPECT_TRUE(Entry->IsEditable());
	EXPECT_TRUE(CastChecked<UK2Node_FunctionResult>(Copy->Nodes[1])->IsEditable());
	Schema.AddExtraFunctionFlags(Copy, FUNC_BlueprintPure);
	Schema.AddExtraFunctionFlags(Copy, FUNC_Private);
	EXPECT_EQ(Entry->GetExtraFlags(), static_cast<int32>(FUNC_BlueprintPure | FUNC_Private));
	Schema.AddExtraFunctionFlags(nullptr, FUNC_Static);
}
}
