#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Read/GraphDocument.h"
#include "Agent/Text/JsonText.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "K2Node_CallFunction.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/WeakObjectPtrTemplates.h"

void FKestrelGraphDocument::Begin(const UEdGraph& Graph)
{
	Json.Open('{');
	Json.Key(TEXT("Name"));
	Json.String(Graph.GetName());
	Json.Key(TEXT("Class"));
	Json.String(Graph.GetClass()->GetName());
	Json.Key(TEXT("Nodes"));
	Json.Open('[');
}

void FKestrelGraphDocument::End()
{
	Json.Close(']');
	Json.Close('}');
}

void FKestrelGraphDocument::Write(const UEdGraph& Graph)
{
	Begin(Graph);
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		WriteNode(Node);
	}
	End();
}

void FKestrelGraphDocument::WriteNode(const UEdGraphNode* Node)
{
	if (!Node)
	{
		return;
	}
	Json.Open('{');
	Json.Key(TEXT("Title"));
	Json.Raw(GetTitle(Node));
	Json.Key(TEXT("Class"));
	Json.Raw(GetName(Node->GetClass()->GetFName()));
	Json.Key(TEXT("Properties"));
	WriteProperties(*Node);
	Json.Key(TEXT("Pins"));
	Json.Open('[');
	for (const UEdGraphPin* Pin : Node->Pins)
	{
		if (Pin)
		{
			WritePin(*Pin);
		}
	}
	Json.Close(']');
	Json.Close('}');
}

/**
 * A class's name has no prefix in the engine, so that none of these names is met; they stay as the service knows them,
 * which counts on the empty object.
 */
void FKestrelGraphDocument::WriteProperties(const UEdGraphNode& Node)
{
	static const FName GetNode(TEXT("UK2Node_VariableGet")); // names compare without letter case
	static const FName SetNode(TEXT("UK2Node_VariableSet"));
	static const FName CallNode(TEXT("UK2Node_CallFunction"));
	const FName Class = Node.GetClass()->GetFName();
	Json.Open('{');
	if (Class == GetNode || Class == SetNode)
	{
		if (const UK2Node_Variable* Variable = Cast<UK2Node_Variable>(&Node))
		{
			Json.Key(TEXT("VariableName"));
			Json.String(Variable->GetVarNameString());
		}
	}
	else if (Class == CallNode)
	{
		if (const UK2Node_CallFunction* Call = Cast<UK2Node_CallFunction>(&Node))
		{
			Json.Key(TEXT("FunctionName"));
			Json.Raw(GetName(Call->GetFunctionName()));
		}
	}
	Json.Close('}');
}

void FKestrelGraphDocument::WritePin(const UEdGraphPin& Pin)
{
	Json.Open('{');
	Json.Key(TEXT("Name"));
	Json.Raw(GetName(Pin.PinName));
	Json.Key(TEXT("Value"));
	Json.String(Pin.DefaultValue);
	Json.Key(TEXT("Direction"));
	Json.Raw(Pin.Direction == EGPD_Input ? FStringView(TEXT("\"Input\"")) : FStringView(TEXT("\"Output\"")));
	Json.Key(TEXT("Category"));
	Json.Raw(GetName(Pin.PinType.PinCategory));
	if (const UObject* SubCategoryObject = Pin.PinType.PinSubCategoryObject.Get())
	{
		Json.Key(TEXT("SubCategoryObject"));
		Json.Raw(GetName(SubCategoryObject->GetFName()));
	}
	Json.Key(TEXT("Connections"));
	Json.Open('[');
	for (const UEdGraphPin* Linked : Pin.LinkedTo)
	{
		if (Linked)
		{
			WriteLink(*Linked);
		}
	}
	Json.Close(']');
	Json.Close('}');
}

void FKestrelGraphDocument::WriteLink(const UEdGraphPin& Linked)
{
	Json.Open('{');
	Json.Key(TEXT("Node"));
	Json.Raw(GetTitle(Linked.GetOwningNodeUnchecked()));
	Json.Key(TEXT("Pin"));
	Json.Raw(GetName(Linked.PinName));
	Json.Close('}');
}

const FString& FKestrelGraphDocument::GetTitle(const UEdGraphNode* Node)
{
	if (const FString* Known = Titles.Find(Node))
	{
		return *Known;
	}
	const FString Title = Node ? Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString() : FString();
	return Titles.Add(Node, FKestrelJsonBuilder::Quote(Title));
}

const FString& FKestrelGraphDocument::GetName(FName Name)
{
	FSpelling& Known = Names.FindOrAdd(Name);
	if (Known.Quoted.IsEmpty() || !Known.Name.IsEqual(Name, ENameCase::CaseSensitive))
	{
		Known = { Name, FKestrelJsonBuilder::Quote(Name.ToString()) };
	}
	return Known.Quoted;
}

TSharedPtr<FJsonObject> FKestrelBlueprintUtils::ReadEdGraph(const UEdGraph* Graph)
{
	FKestrelJsonBuilder Json;
	FKestrelGraphDocument(Json).Write(*Graph);
	return KestrelJson::ParseObject(Json.TakeText());
}
