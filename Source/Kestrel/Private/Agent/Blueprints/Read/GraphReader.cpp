#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "K2Node_CallFunction.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/WeakObjectPtrTemplates.h"

namespace GraphReader
{
constexpr int32 MaxPinMembers = 6; // a graph has very many pins: room that grows with each member would cost twice

/** What many places of a document say. They share the value: none changes once it is made. */
class FSharedValues
{
public:
	/** Titles are put together from many parts, and each node's is asked for once for each of its links. */
	TSharedPtr<FJsonValue> GetTitle(const UEdGraphNode* Node)
	{
		if (const TSharedPtr<FJsonValue>* Known = Titles.Find(Node))
		{
			return *Known;
		}
		const FString Title = Node ? Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString() : FString();
		return Titles.Add(Node, MakeShared<FJsonValueString>(Title));
	}

	/** Names are spelt as they are, although the engine takes two spellings for the same name. */
	TSharedPtr<FJsonValue> GetName(const FName& Name)
	{
		FSpelling& Known = Names.FindOrAdd(Name);
		if (!Known.Value || !Known.Name.IsEqual(Name, ENameCase::CaseSensitive))
		{
			Known = { Name, MakeShared<FJsonValueString>(Name.ToString()) };
		}
		return Known.Value;
	}

	TSharedPtr<FJsonValue> GetDirection(const UEdGraphPin& Pin) const
	{
		return Pin.Direction == EGPD_Input ? Input : Output;
	}

private:
	struct FSpelling
	{
		FName Name;
		TSharedPtr<FJsonValue> Value;
	};

	TMap<const UEdGraphNode*, TSharedPtr<FJsonValue>> Titles;
	TMap<FName, FSpelling> Names;
	const TSharedPtr<FJsonValue> Input = MakeShared<FJsonValueString>(TEXT("Input"));
	const TSharedPtr<FJsonValue> Output = MakeShared<FJsonValueString>(TEXT("Output"));
};

/**
 * A class's name has no prefix in the engine, so that none of these names is met; they stay as the service knows them,
 * which counts on the empty object.
 */
TSharedRef<FJsonObject> DescribeProperties(const UEdGraphNode& Node)
{
	const TSharedRef<FJsonObject> Properties = MakeShared<FJsonObject>();
	const FString Class = Node.GetClass()->GetName();
	if (Class.Equals(TEXT("UK2Node_VariableGet"), ESearchCase::IgnoreCase))
	{
		if (const UK2Node_VariableGet* Get = Cast<UK2Node_VariableGet>(&Node))
		{
			Properties->SetStringField(TEXT("VariableName"), Get->GetVarNameString());
		}
	}
	else if (Class.Equals(TEXT("UK2Node_VariableSet"), ESearchCase::IgnoreCase))
	{
		if (const UK2Node_VariableSet* Set = Cast<UK2Node_VariableSet>(&Node))
		{
			Properties->SetStringField(TEXT("VariableName"), Set->GetVarNameString());
		}
	}
	else if (Class.Equals(TEXT("UK2Node_CallFunction"), ESearchCase::IgnoreCase))
	{
		if (const UK2Node_CallFunction* Call = Cast<UK2Node_CallFunction>(&Node))
		{
			Properties->SetStringField(TEXT("FunctionName"), Call->GetFunctionName().ToString());
		}
	}
	return Properties;
}

TSharedRef<FJsonObject> DescribeConnection(const UEdGraphPin& Linked, FSharedValues& Shared)
{
	const TSharedRef<FJsonObject> Connection = MakeShared<FJsonObject>();
	Connection->SetField(TEXT("Node"), Shared.GetTitle(Linked.GetOwningNodeUnchecked()));
	Connection->SetField(TEXT("Pin"), Shared.GetName(Linked.PinName));
	return Connection;
}

TSharedRef<FJsonObject> DescribePin(const UEdGraphPin& Pin, FSharedValues& Shared)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->Values.Reserve(MaxPinMembers);
	Object->SetField(TEXT("Name"), Shared.GetName(Pin.PinName));
	Object->SetStringField(TEXT("Value"), Pin.DefaultValue);
	Object->SetField(TEXT("Direction"), Shared.GetDirection(Pin));
	Object->SetField(TEXT("Category"), Shared.GetName(Pin.PinType.PinCategory));
	if (const UObject* SubCategoryObject = Pin.PinType.PinSubCategoryObject.Get())
	{
		Object->SetField(TEXT("SubCategoryObject"), Shared.GetName(SubCategoryObject->GetFName()));
	}
	TArray<TSharedPtr<FJsonValue>> Connections;
	Connections.Reserve(Pin.LinkedTo.Num());
	for (const UEdGraphPin* Linked : Pin.LinkedTo)
	{
		if (Linked)
		{
			Connections.Add(MakeShared<FJsonValueObject>(DescribeConnection(*Linked, Shared)));
		}
	}
	Object->SetArrayField(TEXT("Connections"), MoveTemp(Connections));
	return Object;
}

TSharedRef<FJsonObject> DescribeNode(const UEdGraphNode& Node, FSharedValues& Shared)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetField(TEXT("Title"), Shared.GetTitle(&Node));
	Object->SetField(TEXT("Class"), Shared.GetName(Node.GetClass()->GetFName()));
	Object->SetObjectField(TEXT("Properties"), DescribeProperties(Node));
	TArray<TSharedPtr<FJsonValue>> Pins;
	Pins.Reserve(Node.Pins.Num());
	for (const UEdGraphPin* Pin : Node.Pins)
	{
		if (Pin)
		{
			Pins.Add(MakeShared<FJsonValueObject>(DescribePin(*Pin, Shared)));
		}
	}
	Object->SetArrayField(TEXT("Pins"), MoveTemp(Pins));
	return Object;
}
}

TSharedPtr<FJsonObject> FKestrelBlueprintUtils::ReadEdGraph(const UEdGraph* Graph)
{
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Name"), Graph->GetName());
	Document->SetStringField(TEXT("Class"), Graph->GetClass()->GetName());
	GraphReader::FSharedValues Shared;
	TArray<TSharedPtr<FJsonValue>> Nodes;
	Nodes.Reserve(Graph->Nodes.Num());
	for (const UEdGraphNode* Node : Graph->Nodes)
	{
		if (Node) // null for one whose class is gone
		{
			Nodes.Add(MakeShared<FJsonValueObject>(GraphReader::DescribeNode(*Node, Shared)));
		}
	}
	Document->SetArrayField(TEXT("Nodes"), MoveTemp(Nodes));
	return Document;
}
