#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"

namespace BlueprintReportTest
{
using FUtils = FKestrelBlueprintUtils;

/** Single quotes stand for double ones. */
TSharedPtr<FJsonObject> Modify(const TCHAR* Name, const FString& Request)
{
	return KestrelJson::ParseObject(FUtils::ModifyBlueprint(Name, Request.Replace(TEXT("'"), TEXT("\""))));
}

/** An object a line, its members with bars between them. */
FString ToLines(const FJsonObject& Result, const TCHAR* Field)
{
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	Result.TryGetArrayField(Field, Values);
	TArray<FString> Lines;
	for (int32 Index = 0; Values && Index < Values->Num(); ++Index)
	{
		TArray<FString> Members;
		for (const auto& Pair : (*Values)[Index]->AsObject()->Values)
		{
			Members.Add(FString(*Pair.Key) + TEXT("=") + Pair.Value->AsString());
		}
		Lines.Add(FString::Join(Members, TEXT("|")));
	}
	return FString::Join(Lines, TEXT("\n"));
}

FString GetKeys(const FJsonObject& Result)
{
	TArray<FString> Keys;
	Result.Values.GetKeys(Keys);
	return FString::Join(Keys, TEXT(" "));
}

struct FCase
{
	const TCHAR* Request;
	const TCHAR* Skipped;
};

/** Each in a Blueprint that has the variable "Health", the string "Line", and an empty function "Heal". */
const FCase Cases[] = {
	{ TEXT("{'Graphs':[],'Variables':[],'Functions':{}}"),
		TEXT("Section=Graphs|Reason=Only \"Variables\" and \"Functions\" of a document are applied.\n"
			 "Section=Variables|Reason=It has to be an object.\nSection=Functions|Reason=It has to be an array.") },
	{ TEXT("{'Variables':{'A':5,'Heal':{'Type':{'Category':'int'}},'B':{'Type':{'Category':'struct',"
		   "'SubCategoryObject':'NoSuch'}},'Health':{'Tooltip':5,'SaveGame':[],'DefaultValue':7}}}"),
		TEXT("Entry=A|Reason=A variable is described by an object.\n"
			 "Entry=Heal|Reason=The Blueprint or one of its parents has a member of this name.\n"
			 "Entry=B|Reason=The type 'struct' names its struct by path or name, and none was found.\n"
			 "Entry=Health|Setting=SaveGame|Reason=It has to be true or false.\n"
			 "Entry=Health|Setting=DefaultValue|Reason=Variables have no such setting.") },
	{ TEXT("{'Variables':{'Health':{'Value':'seven'}}}"),
		TEXT("Entry=Health|Setting=Value|Reason='seven' is no value of the variable's type.") },
	{ TEXT("{'Functions':[{},{'Name':'Heal','InParams':[]},{'Name':'New','InParams':[{'Name':'By','Type':'No'}],"
		   "'EdGraph':{}},{'Name':'x.y'}]}"),
		TEXT("Entry=1|Reason=A function needs its \"Name\".\n"
			 "Entry=Heal|Reason=The function exists. Only new functions are given parameters.\n"
			 "Entry=New|Parameter=By|Reason=No type is given.\n"
			 "Entry=New|Reason=\"EdGraph\" needs an array \"Nodes\".\n"
			 "Entry=x.y|Reason=A name has 1 to 100 letters, digits, spaces and underscores, and is not 'None'.") },
	{ TEXT("{'Functions':[{'Name':'Heal','EdGraph':{'Nodes':[5,{'Class':'K2Node_Event','Properties':{}},"
		   "{'Class':'UK2Node_VariableGet','Properties':{}},{'Class':'UK2Node_CallFunction','Properties':{"
		   "'FunctionName':'PrintText','Pins':[{'Value':'1'},{'PinName':'No'},{'PinName':'InText','Value':'Hello'},"
		   "{'PinName':'Duration','Value':{}},{'PinName':'execute','Connections':[5,{'Node':'Heal'},"
		   "{'Node':'Nowhere','Pin':'then'},{'Node':'Heal','Pin':'No'}]}]}}]}}]}"),
		TEXT("Entry=Heal|Node=1 ()|Reason=A node is described by an object.\n"
			 "Entry=Heal|Node=2 (K2Node_Event)|Reason=Nodes of the class 'K2Node_Event' cannot be made, only "
			 "UK2Node_VariableGet, UK2Node_VariableSet and UK2Node_CallFunction.\n"
			 "Entry=Heal|Node=3 (UK2Node_VariableGet)|Reason=The node needs the \"VariableName\".\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Reason=A pin needs its \"PinName\".\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=No|Reason=The node has no such pin.\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=InText|Reason=The value was stored, but pins of the type "
			 "'text' do not use it: link the pin instead.\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=Duration|Reason=The value has to be a string.\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=execute|Reason=A connection is described by an object.\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=execute|Reason=A connection needs \"Node\" and \"Pin\".\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=execute|Link=Nowhere.then|Reason=The graph has no node of "
			 "this title.\n"
			 "Entry=Heal|Node=4 (UK2Node_CallFunction)|Pin=execute|Link=Heal.No|Reason=The linked node has no such "
			 "pin.") },
};

const UEdGraphNode* FindNode(const UBlueprint& Blueprint, const TCHAR* Function, const TCHAR* Title)
{
	for (const UEdGraph* Graph : Blueprint.FunctionGraphs)
	{
		for (const UEdGraphNode* Node : Graph->Nodes)
		{
			if (Graph->GetName().Equals(Function) &&
				Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString().Equals(Title))
			{
				return Node;
			}
		}
	}
	return nullptr;
}

/** "Title.Pin" of what a pin is linked to. */
FString GetLinks(const UEdGraphNode* Node, const TCHAR* PinName)
{
	const UEdGraphPin* Pin = Node ? Node->FindPin(PinName) : nullptr;
	TArray<FString> Links;
	for (int32 Index = 0; Pin && Index < Pin->LinkedTo.Num(); ++Index)
	{
		const UEdGraphPin& Linked = *Pin->LinkedTo[Index];
		Links.Add(Linked.GetOwningNode()->GetNodeTitle(ENodeTitleType::FullTitle).ToString() + TEXT(".") +
				  Linked.PinName.ToString());
	}
	return FString::Join(Links, TEXT(" "));
}

const TCHAR* const Start = TEXT("{'Variables':{'Health':{'Type':{'Category':'int'}},'Line':{'Type':{'Category':"
								"'string'}}},'Functions':[{'Name':'Heal'}]}");
}

DEFINE_SPEC(FKestrelBlueprintReportSpec, "Kestrel.BlueprintReport", KestrelTest::Flags)
void FKestrelBlueprintReportSpec::Define()
{
	using namespace BlueprintReportTest;

	It("names each part of a document that was not applied, and why", [this]() {
		for (const FCase& Case : Cases)
		{
			const FKestrelTestContent Content;
			Content.CreateBlueprint(TEXT("BP_Report"));
			KestrelTest::TestSameText(*this, TEXT("nothing skipped"), GetKeys(*Modify(TEXT("BP_Report"), Start)),
				TEXT("VariableModifications FunctionModifications Success"));
			KestrelTest::TestSameText(
				*this, Case.Request, ToLines(*Modify(TEXT("BP_Report"), Case.Request), TEXT("Skipped")), Case.Skipped);
		}
	});

	It("stays short for a document of which nothing can be applied", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_Short"));
		TArray<FString> Entries;
		for (int32 Index = 0; Index < 5000; ++Index)
		{
			Entries.Add(FString::Printf(TEXT("'V%d':{'%s':1}"), Index, *FString::ChrN(500, u'k')));
		}
		const TSharedPtr<FJsonObject> Result =
			Modify(TEXT("BP_Short"), TEXT("{'Variables':{") + FString::Join(Entries, TEXT(",")) + TEXT("}}"));
		TestEqual(TEXT("listed"), Result->GetArrayField(TEXT("Skipped")).Num(), 201);
	});

	It("has the compiler's messages with their nodes", [this]() {
		AddExpectedError(TEXT("Could not find a variable named"), EAutomationExpectedErrorFlags::Contains, 0);
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_Messages"));
		const TSharedPtr<FJsonObject> Result = Modify(TEXT("BP_Messages"),
			TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':'seven'}},'Functions':[{'Name':'Heal',"
				 "'EdGraph':{'Nodes':[{'Class':'UK2Node_VariableGet','Properties':{'VariableName':'Missing'}}]}}]}"));
		KestrelTest::TestSameText(*this, TEXT("members"), GetKeys(*Result),
			TEXT("VariableModifications FunctionModifications Success CompileErrors CompileWarnings"));
		const TArray<TSharedPtr<FJsonValue>>* Errors = nullptr;
		if (TestTrue(TEXT("errors"), Result->TryGetArrayField(TEXT("CompileErrors"), Errors)))
		{
			const TSharedPtr<FJsonObject> Error = (*Errors)[0]->AsObject();
			KestrelTest::TestSameText(*this, TEXT("graph"), Error->GetStringField(TEXT("Graph")), TEXT("Heal"));
			KestrelTest::TestSameText(*this, TEXT("node"), Error->GetStringField(TEXT("Node")), TEXT("Get"));
			TestTrue(TEXT("message"), Error->GetStringField(TEXT("Message")).Contains(TEXT("Missing")));
		}
	});

	It("keeps a wire whose place a link cannot take", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Wires"));
		Modify(TEXT("BP_Wires"),
			TEXT(
				"{'Variables':{'Health':{'Type':{'Category':'int'}},'Line':{'Type':{'Category':'string'}}},'Functions':"
				"[{'Name':'Heal','InParams':[{'Name':'By','Type':'IntProperty'}],'EdGraph':{'Nodes':[{'Class':"
				"'UK2Node_VariableSet','Properties':{'VariableName':'Health','Pins':[{'PinName':'execute',"
				"'Connections':[{'Node':'Heal','Pin':'then'}]},{'PinName':'Health','Connections':[{'Node':'Heal',"
				"'Pin':'By'}]}]}}]}}]}"));
		const TSharedPtr<FJsonObject> Result = Modify(TEXT("BP_Wires"),
			TEXT("{'Functions':[{'Name':'Heal','EdGraph':{'Nodes':[{'Class':'UK2Node_VariableGet','Properties':{"
				 "'VariableName':'Line','Pins':[{'PinName':'Line','Connections':[{'Node':'Set Health','Pin':'Health'},"
				 "{'Node':'Heal','Pin':'then'}]}]}}]}}]}"));
		KestrelTest::TestSameText(*this, TEXT("value"),
			GetLinks(FindNode(*Blueprint, TEXT("Heal"), TEXT("Set Health")), TEXT("Health")), TEXT("Heal.By"));
		KestrelTest::TestSameText(*this, TEXT("execution"),
			GetLinks(FindNode(*Blueprint, TEXT("Heal"), TEXT("Heal")), TEXT("then")), TEXT("Set Health.execute"));
		const FString Skipped = ToLines(*Result, TEXT("Skipped"));
		TestTrue(TEXT("told"),
			Skipped.Contains(TEXT("|Pin=Line|Link=Set Health.Health|Reason=The link is not possible (")) &&
				Skipped.Contains(TEXT("|Pin=Line|Link=Heal.then|Reason=The link is not possible (")));
	});

	It("replaces no link of the same document, in whichever entry it is", [this]() {
		AddExpectedError(TEXT("[Compiler]"), EAutomationExpectedErrorFlags::Contains, 0);
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Entries"));
		const FString Entry = TEXT("{'Name':'Heal','EdGraph':{'Nodes':[{'Class':'UK2Node_CallFunction','Properties':{"
								   "'FunctionName':'%s','Pins':[{'PinName':'execute','Connections':[{'Node':'Heal',"
								   "'Pin':'then'}]}]}}]}}");
		Modify(TEXT("BP_Entries"), TEXT("{'Functions':[") + Entry.Replace(TEXT("%s"), TEXT("PrintString")) +
									   TEXT(",{'Name':'Other'},") + Entry.Replace(TEXT("%s"), TEXT("PrintText")) +
									   TEXT("]}"));
		KestrelTest::TestSameText(*this, TEXT("links"),
			GetLinks(FindNode(*Blueprint, TEXT("Heal"), TEXT("Heal")), TEXT("then")),
			TEXT("Print String.execute Print Text.execute"));
	});
}
