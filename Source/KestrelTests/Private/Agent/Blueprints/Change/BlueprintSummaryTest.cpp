#include "Agent/Blueprints/Change/BlueprintSummary.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"

namespace BlueprintSummaryTest
{
const TCHAR* const Request = TEXT(R"({
	"Variables": {
		"Toll": { "Type": { "Category": "int" }, "Value": 3, "Private": true },
		"Names": { "Type": { "Category": "string", "Container": "Array" } },
		"Owner": { "Type": { "Category": "object", "SubCategoryObject": "/Script/Engine.Actor" } },
		"Prices": { "Type": { "Category": "name", "Container": "Map", "ValueType": { "Category": "bool" } } },
		"Greeting": { "Value": "hello", "Category": "Talk" },
		"At": { "Value": { "X": 1 } },
		"Broken": 7
	},
	"Functions": [
		{ "Name": "Open", "InParams": [ { "Name": "Amount", "Type": "IntProperty" },
			{ "Name": "Who", "Type": "ArrayProperty", "InnerType": { "Type": "ObjectProperty", "PropertyClass": "Actor" } } ],
			"OutParams": [ { "Name": "Done", "Type": "BoolProperty" } ] },
		{ "Name": "close", "InParams": [ { "Name": "Ignored", "Type": "IntProperty" } ],
			"EdGraph": { "Nodes": [
				{ "Class": "UK2Node_VariableGet", "Properties": { "VariableName": "Toll" } },
				{ "Class": "UK2Node_CallFunction", "Properties": { "FunctionName": "PrintString" } } ] } },
		{ "EdGraph": {} }
	]
})");
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelBlueprintSummaryTest, "Kestrel.BlueprintSummary.NamesWhatChanges", KestrelTest::Flags)
bool FKestrelBlueprintSummaryTest::RunTest(const FString& Parameters)
{
	const FKestrelTestContent Content;
	UBlueprint& Blueprint = *Content.CreateBlueprint(TEXT("BP_Summary"));
	FBlueprintEditorUtils::AddMemberVariable(
		&Blueprint, TEXT("Greeting"), KestrelTest::MakePinType(UEdGraphSchema_K2::PC_String));
	UEdGraph* Graph = FBlueprintEditorUtils::CreateNewGraph(
		&Blueprint, TEXT("Close"), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(&Blueprint, Graph, false, nullptr);
	const TSharedPtr<FJsonObject> Request = KestrelJson::ParseObject(BlueprintSummaryTest::Request);
	if (!TestTrue(TEXT("is a document"), Request.IsValid()))
	{
		return true;
	}
	const FString Lines = FString::Join(KestrelBlueprintSummary::Describe(*Request, &Blueprint), TEXT("\n"));
	KestrelTest::TestSameText(*this, TEXT("lines"), Lines,
		TEXT("+ variable Toll: Integer = 3 (Private true)\n"
			 "+ variable Names: Array of String\n"
			 "+ variable Owner: Actor\n"
			 "+ variable Prices: Map of Name to Boolean\n"
			 "~ variable Greeting = \"hello\" (Category \"Talk\")\n"
			 "+ variable At = {\"X\":1}\n"
			 "+ function Open(Amount: Integer, Who: Array of Actor) -> Done: Boolean\n"
			 "~ function close: 2 nodes added (get Toll, call PrintString)"));
	KestrelTest::TestSameText(*this, TEXT("not loaded"), KestrelBlueprintSummary::Describe(*Request, nullptr)[4],
		TEXT("* variable Greeting = \"hello\" (Category \"Talk\")"));
	return true;
}
