#include "Agent/Blueprints/Read/BlueprintRead.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Class.h"

/** Documents that are written piece by piece, held against objects that the engine writes. */
namespace BlueprintReadTest
{
TSharedRef<FJsonObject> DescribePin(const UEdGraphPin& Pin)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("Name"), Pin.PinName.ToString());
	Object->SetStringField(TEXT("Value"), Pin.DefaultValue);
	Object->SetStringField(TEXT("Direction"), Pin.Direction == EGPD_Input ? TEXT("Input") : TEXT("Output"));
	Object->SetStringField(TEXT("Category"), Pin.PinType.PinCategory.ToString());
	if (const UObject* SubCategoryObject = Pin.PinType.PinSubCategoryObject.Get())
	{
		Object->SetStringField(TEXT("SubCategoryObject"), SubCategoryObject->GetName());
	}
	TArray<TSharedPtr<FJsonValue>> Connections;
	for (const UEdGraphPin* Linked : Pin.LinkedTo)
	{
		const TSharedRef<FJsonObject> Connection = MakeShared<FJsonObject>();
		Connection->SetStringField(
			TEXT("Node"), Linked->GetOwningNode()->GetNodeTitle(ENodeTitleType::FullTitle).ToString());
		Connection->SetStringField(TEXT("Pin"), Linked->PinName.ToString());
		Connections.Add(MakeShared<FJsonValueObject>(Connection));
	}
	Object->SetArrayField(TEXT("Connections"), Connections);
	return Object;
}

TSharedRef<FJsonObject> DescribeGraph(const UEdGraph& Graph)
{
	TArray<TSharedPtr<FJsonValue>> Nodes;
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		TArray<TSharedPtr<FJsonValue>> Pins;
		for (const UEdGraphPin* Pin : Node->Pins)
		{
			Pins.Add(MakeShared<FJsonValueObject>(DescribePin(*Pin)));
		}
		const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetStringField(TEXT("Title"), Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString());
		Object->SetStringField(TEXT("Class"), Node->GetClass()->GetName());
		Object->SetObjectField(TEXT("Properties"), MakeShared<FJsonObject>());
		Object->SetArrayField(TEXT("Pins"), Pins);
		Nodes.Add(MakeShared<FJsonValueObject>(Object));
	}
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Name"), Graph.GetName());
	Document->SetStringField(TEXT("Class"), Graph.GetClass()->GetName());
	Document->SetArrayField(TEXT("Nodes"), Nodes);
	return Document;
}

/** The section "Graphs" as an answer has it. */
FString DescribeGraphs(const UBlueprint& Blueprint)
{
	TArray<TSharedPtr<FJsonValue>> Graphs;
	for (const UEdGraph* Graph : Blueprint.UbergraphPages)
	{
		Graphs.Add(MakeShared<FJsonValueObject>(DescribeGraph(*Graph)));
	}
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Name"), Blueprint.GetName());
	Document->SetStringField(TEXT("Path"), Blueprint.GetPathName());
	Document->SetArrayField(TEXT("graphs"), Graphs);
	return KestrelJson::ToCondensedText(Document);
}

void AddNodes(UBlueprint& Blueprint, int32 Num, FKestrelDice& Dice)
{
	const TCHAR* const Texts[] = { TEXT(""), TEXT("plain"), TEXT("\"\\/\b\f\n\r\t"), TEXT("\x01\x1f\x7f"),
		TEXT("Tsch\u00fc\u00df \u6bbf"), TEXT("1.5,2.5") };
	UEdGraph& Graph = *Blueprint.UbergraphPages[0];
	for (int32 Index = 0; Index < Num; ++Index)
	{
		FGraphNodeCreator<UK2Node_CallFunction> Calls(Graph);
		UK2Node_CallFunction* Call = Calls.CreateNode();
		Call->SetFromFunction(UKismetSystemLibrary::StaticClass()->FindFunctionByName(TEXT("PrintString")));
		Calls.Finalize();
		FGraphNodeCreator<UK2Node_CustomEvent> Events(Graph);
		UK2Node_CustomEvent* Event = Events.CreateNode();
		Event->CustomFunctionName = FName(*FString::Printf(TEXT("Odd \u00dc\"%d"), Dice.Roll(Num)));
		Events.Finalize();
		for (UEdGraphPin* Pin : Call->Pins)
		{
			Pin->DefaultValue = Dice.Pick(Texts);
		}
		UEdGraphNode* Target = Graph.Nodes[Dice.Roll(Graph.Nodes.Num())];
		UEdGraphPin* To = Target->FindPin(UEdGraphSchema_K2::PN_Execute);
		if (To)
		{
			Event->FindPinChecked(UEdGraphSchema_K2::PN_Then)->MakeLinkTo(To);
		}
	}
}

FKestrelAssetAddress GetAddress(const UBlueprint& Blueprint)
{
	return { Blueprint.GetName(), Blueprint.GetPathName() };
}
}

DEFINE_SPEC(FKestrelBlueprintReadSpec, "Kestrel.BlueprintRead", KestrelTest::Flags)
void FKestrelBlueprintReadSpec::Define()
{
	using namespace BlueprintReadTest;

	It("writes what the engine would write, in slices and at once", [this]() {
		const FKestrelTestContent Content;
		FKestrelDice Dice;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Read"));
		AddNodes(*Blueprint, 20, Dice);
		const FString Expected = DescribeGraphs(*Blueprint);
		KestrelTest::TestSameText(
			*this, TEXT("at once"), FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Read"), TEXT("graphs")), Expected);
		FKestrelBlueprintRead Read(GetAddress(*Blueprint), TEXT("graphs"));
		int32 NumSteps = 1;
		float Progress = Read.GetProgress();
		while (!Read.Step(0.0))
		{
			TestTrue(TEXT("progress grows"), Read.GetProgress() >= Progress);
			Progress = Read.GetProgress();
			++NumSteps;
		}
		TestTrue(TEXT("a slice for each node"), NumSteps > 40);
		KestrelTest::TestSameText(*this, TEXT("in slices"), Read.TakeText(), Expected);
		const UEdGraph& Graph = *Blueprint->UbergraphPages[0];
		KestrelTest::TestSameText(*this, TEXT("as an object"),
			KestrelJson::ToCondensedText(FKestrelBlueprintUtils::ReadEdGraph(&Graph).ToSharedRef()),
			KestrelJson::ToCondensedText(DescribeGraph(Graph)));
	});

	It("reads the Blueprint that is there at the end when it changes meanwhile", [this]() {
		const FKestrelTestContent Content;
		FKestrelDice Dice;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Changed"));
		AddNodes(*Blueprint, 5, Dice);
		FKestrelBlueprintRead Read(GetAddress(*Blueprint), TEXT("Graphs"));
		for (int32 Step = 0; !Read.Step(0.0); ++Step)
		{
			UEdGraph& Graph = *Blueprint->UbergraphPages[0];
			if (Step % 4 == 3)
			{
				Graph.RemoveNode(Graph.Nodes.Last());
			}
		}
		KestrelTest::TestSameText(*this, TEXT("document"), Read.TakeText(),
			FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Changed"), TEXT("Graphs")));
	});

	It("begins again when a node has taken the place of another", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Replaced"));
		UEdGraph& Graph = *Blueprint->UbergraphPages[0];
		FKestrelBlueprintRead Read(GetAddress(*Blueprint), TEXT("Graphs"));
		for (int32 Step = 0; !Read.Step(0.0); ++Step)
		{
			if (Step == 2)
			{
				Graph.RemoveNode(Graph.Nodes[0]);
				FGraphNodeCreator<UK2Node_CustomEvent> Events(Graph);
				Events.CreateNode()->CustomFunctionName = TEXT("Instead");
				Events.Finalize();
			}
		}
		KestrelTest::TestSameText(*this, TEXT("document"), Read.TakeText(),
			FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Replaced"), TEXT("Graphs")));
	});

	It("keeps the place of a section that is asked for in other letters", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Keys"));
		TSharedRef<FJsonObject> Expected = MakeShared<FJsonObject>();
		Expected->SetStringField(TEXT("Name"), TEXT("BP_Keys"));
		Expected->SetStringField(TEXT("Path"), Blueprint->GetPathName());
		Expected->SetStringField(TEXT("nAME"), TEXT("BP_Keys"));
		KestrelTest::TestSameText(*this, TEXT("document"),
			FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Keys"), TEXT("nAME")),
			KestrelJson::ToCondensedText(Expected));
	});
}
