#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"

namespace BlueprintFunctionsTest
{
using FUtils = FKestrelBlueprintUtils;

/** Single quotes stand for double ones, as far as no text has any. */
TSharedPtr<FJsonObject> Parse(const FString& Text)
{
	return KestrelJson::ParseObject(Text.Replace(TEXT("'"), TEXT("\"")));
}

/** Applies an array of functions. @return the messages, a line each */
FString Modify(UBlueprint* Blueprint, const FString& Functions)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	FUtils::ModifyBlueprintFunctions(
		Blueprint, Parse(TEXT("{'F':") + Functions + TEXT("}"))->GetArrayField(TEXT("F")), Result);
	TArray<FString> Lines;
	for (const TSharedPtr<FJsonValue>& Message : Result->GetArrayField(TEXT("FunctionModifications")))
	{
		Lines.Add(Message->AsString());
	}
	return FString::Join(Lines, TEXT("\n"));
}

UEdGraph* FindGraph(const UBlueprint& Blueprint, const TCHAR* Name)
{
	for (UEdGraph* Graph : Blueprint.FunctionGraphs)
	{
		if (Graph->GetName().Equals(Name))
		{
			return Graph;
		}
	}
	return nullptr;
}

/** "name type>Title.Pin" for each pin that is shown, a node a line with its place. */
FString DescribeNodes(const UEdGraph& Graph)
{
	TArray<FString> Lines;
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		FString Line = Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString() +
					   FString::Printf(TEXT(" %d,%d:"), Node->NodePosX, Node->NodePosY);
		for (const UEdGraphPin* Pin : Node->Pins)
		{
			if (Pin->bHidden)
			{
				continue;
			}
			Line += TEXT(" ") + Pin->PinName.ToString() + (Pin->PinType.IsArray() ? TEXT("[]") : TEXT(""));
			for (const UEdGraphPin* Linked : Pin->LinkedTo)
			{
				Line += TEXT(">") + Linked->GetOwningNode()->GetNodeTitle(ENodeTitleType::FullTitle).ToString() +
						TEXT(".") + Linked->PinName.ToString();
			}
		}
		Lines.Add(Line);
	}
	return FString::Join(Lines, TEXT("\n"));
}

struct FCase
{
	const TCHAR* What;
	const TCHAR* Functions;
	const TCHAR* Messages;
	const TCHAR* Graph; // of the function "Heal"; empty when there is none
};

/** Each on a Blueprint of its own, which has a variable "Health". */
const FCase Cases[] = {
	{ TEXT("makes a function with inputs and outputs"),
		TEXT("[{'Name':'Heal','InParams':[{'Name':'By','Type':'IntProperty'},{'Name':'By','Type':'ArrayProperty',"
			 "'InnerType':{'Type':'StrProperty'}}],'OutParams':[{'Name':'Done','Type':'boolproperty'},"
			 "{'Name':'by','Type':'IntProperty'}]}]"),
		TEXT("Created new function: Heal"),
		TEXT("Heal 0,0: then>Return Node.execute By By_0[]\nReturn Node 256,0: execute>Heal.then Done by_1") },
	{ TEXT("leaves out parameters that cannot be, and makes no result node for them"),
		TEXT("[{'Name':'Heal','InParams':[{'Name':'A','Type':'Number'},{'Type':'IntProperty'},5,"
			 "{'Name':'x.y','Type':'IntProperty'},{'Name':'B','Type':'NameProperty'}],"
			 "'OutParams':[{'Name':'C','Type':'StructProperty','StructType':'No'}]}]"),
		TEXT("Invalid variable type for variable: A\nInvalid variable type for variable: \n"
			 "Invalid variable type for variable: \nInvalid variable type for variable: x.y\n"
			 "Invalid variable type for variable: C\nCreated new function: Heal"),
		TEXT("Heal 0,0: then B") },
	{ TEXT("says what an entry lacks, and goes on"),
		TEXT("[5,{},{'Name':{}},{'Name':'EventGraph'},{'Name':'Health'},{'Name':'a.b'},{'Name':''},"
			 "{'Name':'ReceiveTick'},{'Name':'Heal'}]"),
		TEXT("Function entry missing 'Name' field.\nFunction entry missing 'Name' field.\n"
			 "Function entry missing 'Name' field.\nFailed to create function graph for: EventGraph\n"
			 "Failed to create function graph for: Health\nFailed to create function graph for: a.b\n"
			 "Failed to create function graph for: \nFailed to create function graph for: ReceiveTick\n"
			 "Created new function: Heal"),
		TEXT("Heal 0,0: then") },
	{ TEXT("finds a function in other letters, and gives it no parameters"),
		TEXT("[{'Name':'Heal'},{'Name':'HEAL','InParams':[{'Name':'By','Type':'IntProperty'}]},"
			 "{'Name':'heal','EdGraph':{'Nodes':[]}},{'Name':'heal','EdGraph':{'Nodes':[{'Class':"
			 "'UK2Node_CallFunction','Properties':{'FunctionName':'PrintString'}}]}}]"),
		TEXT("Created new function: Heal\nModified existing function: heal"),
		TEXT("Heal 0,0: then\nPrint String 400,0: execute then InString bPrintToScreen bPrintToLog TextColor Duration "
			 "Key") },
	{ TEXT("makes nodes of the three kinds and links them by their titles"),
		TEXT("[{'Name':'Heal','InParams':[{'Name':'By','Type':'IntProperty'}],'EdGraph':{'Nodes':["
			 "{'Class':'uk2node_variableset','Location':{'X':300,'Y':40},'Properties':{'VariableName':'health','Pins':["
			 "{'PinName':'execute','Connections':[{'Node':'heal','Pin':'THEN'}]},"
			 "{'PinName':'Health','Connections':[{'Node':'Heal','Pin':'By'},{'Node':'No','Pin':'By'},"
			 "{'Node':'Heal','Pin':'No'}]},{'Value':'1'},{'PinName':'No','Value':'1'}]}},"
			 "{'Class':'UK2Node_VariableGet','Properties':{'VariableName':'Health'}},"
			 "{'Class':'UK2Node_CallFunction','Properties':{'FunctionName':'printstring','Pins':["
			 "{'PinName':'execute','Connections':[{'Node':'Set Health','Pin':'then'}]}]}},"
			 "{'Class':'K2Node_VariableGet','Properties':{'VariableName':'Health'}},"
			 "{'Class':'UK2Node_VariableGet'},{'Class':'UK2Node_CallFunction','Properties':{}},7]}}]"),
		TEXT("Created new function: Heal"),
		TEXT(
			"Heal 0,0: then>Set Health.execute By>Set Health.Health\n"
			"Set Health 300,40: execute>Heal.then then>Print String.execute Health>Heal.By Output_Get\n"
			"Get Health 700,40: Health\n"
			"Print String 1100,40: execute>Set Health.then then InString bPrintToScreen bPrintToLog TextColor Duration "
			"Key") },
	{ TEXT("lets described nodes come before the result"),
		TEXT("[{'Name':'Heal','OutParams':[{'Name':'Done','Type':'BoolProperty'}],'EdGraph':{'Nodes':["
			 "{'Class':'UK2Node_CallFunction','Location':{'X':1e300,'Y':-1e300},'Properties':{'FunctionName':"
			 "'PrintText','Pins':[{'PinName':'execute','Connections':[{'Node':'Heal','Pin':'then'}]},"
			 "{'PinName':'then','Connections':[{'Node':'return node','Pin':'execute'}]}]}},"
			 "{'Class':'UK2Node_CallFunction','Location':{'X':1},'Properties':{'FunctionName':'NoSuchFunction'}}]}}]"),
		TEXT("Created new function: Heal"),
		TEXT("Heal 0,0: then>Print Text.execute\nReturn Node 256,0: execute>Print Text.then Done\n"
			 "Print Text 2147483647,-2147483647: execute>Heal.then then>Return Node.execute InText bPrintToScreen "
			 "bPrintToLog TextColor Duration Key\nNone 2147483647,-2147483647:") },
};
}

DEFINE_SPEC(FKestrelBlueprintFunctionsSpec, "Kestrel.BlueprintFunctions", KestrelTest::Flags)
void FKestrelBlueprintFunctionsSpec::Define()
{
	using namespace BlueprintFunctionsTest;

	for (const FCase& Case : Cases)
	{
		It(Case.What, [this, &Case]() {
			const FKestrelTestContent Content;
			UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Functions"));
			TSharedPtr<FJsonObject> Ignored = MakeShared<FJsonObject>();
			FUtils::ModifyBlueprintVariables(
				Blueprint, *Parse(TEXT("{'Health':{'Type':{'Category':'int'}}}")), Ignored);
			const FString Messages = Modify(Blueprint, Case.Functions);
			KestrelTest::TestSameText(*this, TEXT("messages"), Messages, Case.Messages);
			const UEdGraph* Graph = FindGraph(*Blueprint, TEXT("Heal"));
			KestrelTest::TestSameText(*this, TEXT("graph"), Graph ? DescribeNodes(*Graph) : FString(), Case.Graph);
			TestTrue(
				TEXT("the event graph is in its place"), Blueprint->UbergraphPages[0]->GetName() == TEXT("EventGraph"));
		});
	}

	It("compile and read the same after they were saved", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_Saved"));
		const FString Request = FString(TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':100}},"
											 "'Functions':")) +
								Cases[4].Functions + TEXT("}");
		FUtils::ModifyBlueprint(TEXT("BP_Saved"), Request.Replace(TEXT("'"), TEXT("\"")));
		TestTrue(TEXT("compiled"), FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Saved"))->Status == BS_UpToDate);
		const FString Before = FUtils::ReadBlueprint(TEXT("BP_Saved"), TEXT("All"));
		TestTrue(TEXT("has the function"), Before.Contains(TEXT("\"Name\":\"Heal\"")));
		Content.Unload();
		KestrelTest::TestSameText(
			*this, TEXT("reopened"), FUtils::ReadBlueprint(TEXT("BP_Saved"), TEXT("All")), Before);
	});

	It("put a node between two others of a function that was there before", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Between"));
		Modify(Blueprint, TEXT("[{'Name':'Heal','EdGraph':{'Nodes':[{'Class':'UK2Node_CallFunction','Properties':{"
							   "'FunctionName':'PrintString','Pins':[{'PinName':'execute','Connections':[{'Node':"
							   "'Heal','Pin':'then'}]}]}}]}}]"));
		Modify(Blueprint, TEXT("[{'Name':'Heal','EdGraph':{'Nodes':[{'Class':'UK2Node_CallFunction','Properties':{"
							   "'FunctionName':'PrintText','Pins':[{'PinName':'execute','Connections':[{'Node':'Heal',"
							   "'Pin':'then'}]},{'PinName':'then','Connections':[{'Node':'Print String','Pin':"
							   "'execute'}]}]}}]}}]"));
		const FString Nodes = DescribeNodes(*FindGraph(*Blueprint, TEXT("Heal")));
		TestTrue(TEXT("the entry leads to the new node"), Nodes.Contains(TEXT("then>Print Text.execute\n")));
		TestTrue(
			TEXT("which leads to the old one"), Nodes.Contains(TEXT("execute>Heal.then then>Print String.execute")));
	});

	It("take pins as described, be it sensible or not", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Pins"));
		UEdGraph* Graph = Blueprint->UbergraphPages[0];
		const TSharedPtr<FJsonObject> Print =
			Parse(TEXT("{'Class':'UK2Node_CallFunction','Properties':{'FunctionName':'PrintString'}}"));
		UEdGraphNode* First = FUtils::CreateEdGraphNode(Print, Graph);
		UEdGraphNode* Second = FUtils::CreateEdGraphNode(Print, Graph);
		UEdGraphNode* Third = FUtils::CreateEdGraphNode(Print, Graph);
		TestTrue(TEXT("changed"),
			FUtils::ModifyNodeProperties(Third,
				*Parse(TEXT("{'Properties':{'Comment':'Says it','Pins':[{'PinName':'duration','Value':'no number',"
							"'Direction':'output'},{'PinName':'then','Direction':'INPUT','Connections':["
							"{'Node':'print string','Pin':'execute'}]}]}}")),
				Graph));
		KestrelTest::TestSameText(*this, TEXT("comment"), Third->NodeComment, TEXT("Says it"));
		const UEdGraphPin* Duration = Third->FindPin(TEXT("Duration"));
		KestrelTest::TestSameText(*this, TEXT("value"), Duration->DefaultValue, TEXT("no number"));
		TestTrue(TEXT("directions"),
			Duration->Direction == EGPD_Output && Third->FindPin(TEXT("then"))->Direction == EGPD_Input);
		TestTrue(TEXT("linked to the first of that title"), First->FindPin(TEXT("execute"))->LinkedTo.Num() == 1 &&
																Second->FindPin(TEXT("execute"))->LinkedTo.Num() == 0);
		TestFalse(TEXT("nothing to change"),
			FUtils::ModifyNodeProperties(First, *Parse(TEXT("{'Properties':{'Pins':[{'PinName':'No'}]}}")), Graph) ||
				FUtils::ModifyNodeProperties(First, *Parse(TEXT("{'Pins':[{'PinName':'then'}]}")), Graph));
	});

	It("need a Blueprint", [this]() {
		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		TestFalse(TEXT("functions"), FUtils::ModifyBlueprintFunctions(nullptr, {}, Result));
		KestrelTest::TestSameText(*this, TEXT("error"), KestrelJson::ToCondensedText(Result.ToSharedRef()),
			TEXT("{\"Error\":\"Invalid Blueprint provided.\"}"));
		TestFalse(TEXT("variables"), FUtils::ModifyBlueprintVariables(nullptr, *Result, Result));
	});
}
