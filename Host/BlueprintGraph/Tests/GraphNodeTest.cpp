#include "FunctionGraphTest.h"
#include "K2Node_CallParentFunction.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_Self.h"

namespace GraphNodeTest
{
using K2 = UEdGraphSchema_K2;
using FNames = std::vector<std::string>;

class FGraphNodeTest : public FFunctionGraphTest
{
protected:
	FGraphNodeTest()
		: FFunctionGraphTest(TEXT("/Game/BP_Nodes"))
	{
	}

	UK2Node_Event& AddEvent(const TCHAR* Function) const
	{
		FGraphNodeCreator<UK2Node_Event> Creator(*Graph);
		UK2Node_Event* const Node = Creator.CreateNode();
		Node->EventReference.SetExternalMember(Function, AGraphTestActor::StaticClass());
		Node->bOverrideFunction = true;
		Creator.Finalize();
		return *Node;
	}
	static FNames GetVisiblePins(const UEdGraphNode& Node)
	{
		FNames Names;
		for (const UEdGraphPin* const Each : Node.Pins)
		{
			if (!Each->bHidden)
			{
				Names.push_back(ToUtf8(Each->PinName.ToString()));
			}
		}
		return Names;
	}
	static std::string GetTitleOfKind(const UEdGraphNode& Node, ENodeTitleType::Type Kind)
	{
		return ToUtf8(Node.GetNodeTitle(Kind).ToString());
	}
};

TEST_F(FGraphNodeTest, CallHasAPinForEachParameterAndTheReturnValueLast)
{
	UK2Node_CallFunction& Call = *AddCall(*Graph, AGraphTestActor::StaticClass(), TEXT("AddUp"));
	EXPECT_EQ(GetPins(Call), (FNames{ "execute", "then", "self", "First", "Second", "Mood", "ReturnValue" }));
	EXPECT_EQ(ToUtf8(Pin(Call, TEXT("First")).DefaultValue), "0");
	EXPECT_EQ(ToUtf8(Pin(Call, TEXT("Second")).DefaultValue), "7") << "the C++ default";
	EXPECT_EQ(ToUtf8(Pin(Call, TEXT("Mood")).DefaultValue), "Calm");
	EXPECT_EQ(Pin(Call, TEXT("ReturnValue")).Direction, EGPD_Output);
	EXPECT_EQ(GetTitle(Call), "Add Up\nTarget is Graph Test Actor");
	EXPECT_EQ(GetTitleOfKind(Call, ENodeTitleType::ListView), "Add Up");
	EXPECT_EQ(ToUtf8(Call.GetTooltipText().ToString()), "Adds up what it gets.");
	EXPECT_FALSE(Call.IsNodePure());

	UK2Node_CallFunction& Split = *AddCall(*Graph, AGraphTestActor::StaticClass(), TEXT("Split"));
	EXPECT_EQ(Pin(Split, TEXT("Numbers")).Direction, EGPD_Input);
	EXPECT_EQ(Pin(Split, TEXT("Both")).Direction, EGPD_Input) << "a reference that goes in";
	EXPECT_EQ(Pin(Split, TEXT("OutLeft")).Direction, EGPD_Output);
}

TEST_F(FGraphNodeTest, PureAndStaticCallsShowOnlyWhatCanBeConnected)
{
	UK2Node_CallFunction& Pure = *AddCall(*Graph, AGraphTestActor::StaticClass(), TEXT("GetWeight"));
	EXPECT_EQ(GetVisiblePins(Pure), (FNames{ "self", "ReturnValue" }));
	EXPECT_TRUE(Pure.IsNodePure());
	EXPECT_FALSE(Pure.GetExecPin());
	EXPECT_EQ(GetTitleOfKind(Pure, ENodeTitleType::MenuTitle), "Weight (kg)");

	UK2Node_CallFunction& Static = *AddCall(*Graph, AGraphTestActor::StaticClass(), TEXT("Announce"));
	EXPECT_EQ(GetVisiblePins(Static), (FNames{ "execute", "then", "What" })) << "no target and no world";
	EXPECT_EQ(Pin(Static, TEXT("self")).DefaultObject.Get(), GetDefault<AGraphTestActor>());
	EXPECT_NE(Pure.GetNodeTitleColor(), Static.GetNodeTitleColor());
}

TEST_F(FGraphNodeTest, CallOfAnUnknownFunctionKeepsItsNameAndHasNoPins)
{
	FGraphNodeCreator<UK2Node_CallFunction> Creator(*Graph);
	UK2Node_CallFunction& Call = *Creator.CreateNode();
	Call.SetFromFunction(nullptr);
	Call.FunctionReference.SetExternalMember(TEXT("Gone"), AActor::StaticClass());
	Creator.Finalize();
	EXPECT_FALSE(Call.GetTargetFunction());
	EXPECT_TRUE(Call.Pins.IsEmpty());
	EXPECT_EQ(GetTitle(Call), "Gone");
}

TEST_F(FGraphNodeTest, CallOfTheParentHasNoTargetAndSaysWhoseItIs)
{
	FGraphNodeCreator<UK2Node_CallParentFunction> Creator(*Graph);
	UK2Node_CallParentFunction& Call = *Creator.CreateNode();
	Call.SetFromFunction(nullptr);
	EXPECT_TRUE(Call.GetFunctionName().IsNone());
	Call.SetFromFunction(AGraphTestActor::StaticClass()->FindFunctionByName(TEXT("MayPass")));
	Creator.Finalize();
	EXPECT_EQ(GetVisiblePins(Call), (FNames{ "execute", "then", "Who", "OutReason", "ReturnValue" }));
	EXPECT_EQ(GetTitle(Call), "Parent: May Pass");
	EXPECT_FALSE(Call.FunctionReference.IsSelfContext());
}

TEST_F(FGraphNodeTest, EventHasTheInputsOfItsFunctionAsOutputs)
{
	UK2Node_Event& Event = AddEvent(TEXT("OnKnocked"));
	EXPECT_EQ(GetPins(Event), (FNames{ "OutputDelegate", "then", "By", "Force" }));
	for (const UEdGraphPin* const Each : Event.Pins)
	{
		EXPECT_EQ(Each->Direction, EGPD_Output);
	}
	EXPECT_EQ(GetTitle(Event), "Event On Knocked");
	EXPECT_EQ(ToUtf8(Event.GetFunctionName().ToString()), "OnKnocked");
	EXPECT_FALSE(Event.IsInterfaceEventNode());
	EXPECT_FALSE(Event.GetExecPin()) << "nothing leads to an event";

	UK2Node_Event& Unknown = AddEvent(TEXT("OnNothing"));
	EXPECT_EQ(GetPins(Unknown), (FNames{ "OutputDelegate", "then" }));
	EXPECT_EQ(GetTitle(Unknown), "Event OnNothing");
}

TEST_F(FGraphNodeTest, CustomEventsGetNamesOfTheirOwnAndPinsThatAreAdded)
{
	UK2Node_CustomEvent& First = Add<UK2Node_CustomEvent>();
	UK2Node_CustomEvent& Second = Add<UK2Node_CustomEvent>();
	EXPECT_FALSE(First.CustomFunctionName.IsNone());
	EXPECT_NE(First.CustomFunctionName, Second.CustomFunctionName);
	First.CustomFunctionName = TEXT("Explode");
	EXPECT_EQ(GetTitle(First), "Explode\nCustom Event");
	EXPECT_EQ(GetTitleOfKind(First, ENodeTitleType::ListView), "Explode");
	EXPECT_TRUE(First.IsEditable());

	UEdGraphPin* const Force = First.CreateUserDefinedPin(TEXT("Force"), MakeType(K2::PC_Int), EGPD_Input);
	EXPECT_EQ(Force->Direction, EGPD_Output) << "an event has outputs only, whatever is asked for";
	EXPECT_EQ(ToUtf8(First.CreateUserDefinedPin(TEXT("Force"), MakeType(K2::PC_Int), EGPD_Output)->PinName.ToString()),
		"Force_0");
	First.UserDefinedPins[0]->PinDefaultValue = TEXT("12");
	First.ReconstructNode();
	EXPECT_EQ(GetPins(First), (FNames{ "OutputDelegate", "then", "Force", "Force_0" }));
	EXPECT_EQ(ToUtf8(Pin(First, TEXT("Force")).DefaultValue), "12");
}

TEST_F(FGraphNodeTest, VariableNodesCarryTheValueInItsType)
{
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Health"), MakeType(K2::PC_Int));
	UK2Node_VariableGet& Get = *AddVariableNode<UK2Node_VariableGet>(*Graph, TEXT("Health"));
	UK2Node_VariableSet& Set = *AddVariableNode<UK2Node_VariableSet>(*Graph, TEXT("Health"));
	EXPECT_EQ(GetPins(Get), (FNames{ "Health", "self" }));
	EXPECT_EQ(GetPins(Set), (FNames{ "execute", "then", "Health", "self", "Output_Get" }));
	EXPECT_EQ(GetVisiblePins(Get), (FNames{ "Health" })) << "the Blueprint's own variable needs no target";
	EXPECT_EQ(Get.GetValuePin()->PinType.PinCategory, K2::PC_Int);
	EXPECT_EQ(ToUtf8(Pin(Set, TEXT("Health")).DefaultValue), "0");
	EXPECT_EQ(GetTitle(Get), "Get Health");
	EXPECT_EQ(GetTitle(Set), "Set Health");
	EXPECT_EQ(Get.GetNodeTitleColor(), GetDefault<K2>()->GetPinTypeColor(MakeType(K2::PC_Int)));

	UK2Node_VariableGet& Gone = *AddVariableNode<UK2Node_VariableGet>(*Graph, TEXT("Gone"));
	EXPECT_FALSE(Gone.GetValuePin());
	EXPECT_EQ(GetTitle(Gone), "Get");
	EXPECT_EQ(GetTitle(*AddVariableNode<UK2Node_VariableSet>(*Graph, TEXT("Gone"))), "Set");

	FGraphNodeCreator<UK2Node_VariableGet> Creator(*Graph);
	UK2Node_VariableGet& Foreign = *Creator.CreateNode();
	Foreign.VariableReference.SetExternalMember(TEXT("Speed"), AGraphTestActor::StaticClass());
	Creator.Finalize();
	EXPECT_EQ(GetVisiblePins(Foreign), (FNames{ "Speed", "self" })) << "another object's variable needs a target";
	EXPECT_EQ(Foreign.GetVariableSourceClass(), AGraphTestActor::StaticClass());
}

TEST_F(FGraphNodeTest, LocalVariablesBelongToTheirFunction)
{
	TArray<UK2Node_FunctionEntry*> Entries;
	Graph->GetNodesOfClass(Entries);
	FBPVariableDescription Local;
	Local.VarName = TEXT("Sum");
	Local.VarType = MakeType(K2::PC_String);
	Entries[0]->LocalVariables.Add(Local);
	const auto AddLocal = [this](const TCHAR* Name) {
		FGraphNodeCreator<UK2Node_VariableGet> Creator(*Graph);
		UK2Node_VariableGet* const Node = Creator.CreateNode();
		Node->VariableReference.SetLocalMember(Name, TEXT("DoThings"), FGuid());
		Creator.Finalize();
		return Node;
	};
	const UK2Node_VariableGet* const Known = AddLocal(TEXT("Sum"));
	EXPECT_EQ(GetPins(*Known), (FNames{ "Sum" })) << "a local variable has no target";
	EXPECT_EQ(Known->GetValuePin()->PinType.PinCategory, K2::PC_String);
	EXPECT_TRUE(AddLocal(TEXT("Other"))->Pins.IsEmpty());
}

TEST_F(FGraphNodeTest, SequenceKeepsTheWaysThatWereAdded)
{
	UK2Node_ExecutionSequence& Sequence = Add<UK2Node_ExecutionSequence>();
	EXPECT_EQ(GetPins(Sequence), (FNames{ "execute", "then_0", "then_1" }));
	Sequence.AddInputPin();
	UK2Node_IfThenElse& Branch = Add<UK2Node_IfThenElse>();
	Pin(Sequence, TEXT("then_2")).MakeLinkTo(&Pin(Branch, TEXT("execute")));
	const FGuid Id = Pin(Sequence, TEXT("then_2")).PinId;
	Sequence.ReconstructNode();
	EXPECT_EQ(GetPins(Sequence), (FNames{ "execute", "then_0", "then_1", "then_2" }));
	EXPECT_EQ(Pin(Sequence, TEXT("then_2")).PinId, Id);
	EXPECT_EQ(Pin(Branch, TEXT("execute")).LinkedTo, (TArray<UEdGraphPin*>{ &Pin(Sequence, TEXT("then_2")) }));
	EXPECT_EQ(GetTitle(Sequence), "Sequence");
	EXPECT_EQ(Sequence.GetNodeTitleColor(), Branch.GetNodeTitleColor()) << "both are about flow";
}

TEST_F(FGraphNodeTest, ReconstructionKeepsValuesAndOrphansOnlyWhatIsLinked)
{
	UK2Node_CustomEvent& Event = Add<UK2Node_CustomEvent>();
	Event.CreateUserDefinedPin(TEXT("Linked"), MakeType(K2::PC_Boolean), EGPD_Output);
	Event.CreateUserDefinedPin(TEXT("Free"), MakeType(K2::PC_Boolean), EGPD_Output);
	UK2Node_IfThenElse& Branch = Add<UK2Node_IfThenElse>();
	Pin(Event, TEXT("Linked")).MakeLinkTo(&Pin(Branch, TEXT("Condition")));
	Event.UserDefinedPins.Empty();
	Event.ReconstructNode();
	EXPECT_EQ(GetPins(Event), (FNames{ "OutputDelegate", "then", "Linked" }));
	EXPECT_TRUE(Pin(Event, TEXT("Linked")).bOrphanedPin);
	EXPECT_EQ(Pin(Branch, TEXT("Condition")).LinkedTo, (TArray<UEdGraphPin*>{ &Pin(Event, TEXT("Linked")) }));

	UK2Node_IfThenElse& Plain = Add<UK2Node_IfThenElse>();
	EXPECT_EQ(ToUtf8(Pin(Plain, TEXT("Condition")).DefaultValue), "true");
	Pin(Plain, TEXT("Condition")).DefaultValue = TEXT("false");
	Plain.ReconstructNode();
	EXPECT_EQ(ToUtf8(Pin(Plain, TEXT("Condition")).DefaultValue), "false");
	EXPECT_EQ(ToUtf8(Pin(Plain, TEXT("Condition")).AutogeneratedDefaultValue), "true");
	EXPECT_EQ(GetTitle(Plain), "Branch");
}

TEST_F(FGraphNodeTest, SecondReturnNodeGetsThePinsOfTheFirst)
{
	UK2Node_FunctionResult& First = Add<UK2Node_FunctionResult>();
	First.CreateUserDefinedPin(TEXT("Sum"), MakeType(K2::PC_Int), EGPD_Output);
	First.bIsEditable = true;
	UK2Node_FunctionResult& Second = Add<UK2Node_FunctionResult>();
	EXPECT_EQ(GetPins(Second), (FNames{ "execute", "Sum" }));
	EXPECT_EQ(Pin(Second, TEXT("Sum")).Direction, EGPD_Input) << "a function's output goes into its return node";
	EXPECT_TRUE(Second.IsEditable());
	EXPECT_EQ(First.GetAllResultNodes().Num(), 2);
	// Of its own, not shared.
	Second.UserDefinedPins[0]->PinName = TEXT("Other");
	EXPECT_EQ(ToUtf8(First.UserDefinedPins[0]->PinName.ToString()), "Sum");
}

TEST_F(FGraphNodeTest, SelfHasTheColourOfObjects)
{
	UK2Node_Self& Self = Add<UK2Node_Self>();
	EXPECT_EQ(GetTitle(Self), "Self-Reference");
	EXPECT_EQ(Self.GetNodeTitleColor(), GetDefault<K2>()->GetPinTypeColor(Pin(Self, TEXT("self")).PinType));
	EXPECT_NE(Self.GetNodeTitleColor(), AddEvent(TEXT("OnKnocked")).GetNodeTitleColor());
}
}
