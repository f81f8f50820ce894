#include "Agent/BlueprintGraphWriter.h"
#include "Agent/BlueprintMembers.h"
#include "Agent/BlueprintMessages.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/BlueprintEditorUtils.h"

namespace BlueprintFunctions
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

UEdGraph* FindGraph(const UBlueprint& Blueprint, const FString& Name)
{
	const TObjectPtr<UEdGraph>* Found =
		Blueprint.FunctionGraphs.FindByPredicate([&Name](const TObjectPtr<UEdGraph>& Graph) {
			return Graph && Graph->GetName().Equals(Name, ESearchCase::IgnoreCase);
		});
	return Found ? Found->Get() : nullptr;
}

/** Applies the section of one document to one Blueprint. */
class FWriter
{
public:
	explicit FWriter(UBlueprint& InBlueprint)
		: Blueprint(InBlueprint)
	{
	}

	void Write(const TSharedPtr<FJsonValue>& Value)
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		FString Name;
		if (!Value.IsValid() || !Value->TryGetObject(Entry) || !(*Entry)->TryGetStringField(TEXT("Name"), Name))
		{
			Messages.Add(TEXT("Function entry missing 'Name' field."));
			return;
		}
		UEdGraph* Existing = FindGraph(Blueprint, Name);
		UEdGraph* Graph = Existing ? Existing : Create(Name, **Entry);
		if (Graph && AddNodes(*Graph, **Entry))
		{
			bChanged = true;
			if (Existing)
			{
				Messages.Add(TEXT("Modified existing function: "), Name);
			}
		}
	}

	const FValues& GetMessages() const { return Messages.GetValues(); }
	bool HasChanged() const { return bChanged; }

private:
	UEdGraph* Create(const FString& Name, const FJsonObject& Entry)
	{
		// The engine would rename whatever has the name, be it the event graph.
		if (!KestrelBlueprintMembers::CanBeName(Name) || !KestrelBlueprintMembers::IsNameFree(Blueprint, Name))
		{
			Messages.Add(TEXT("Failed to create function graph for: "), Name);
			return nullptr;
		}
		Blueprint.Modify();
		UEdGraph* Graph = FBlueprintEditorUtils::CreateNewGraph(
			&Blueprint, FName(*Name), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
		check(Graph);
		constexpr bool bUserCreated = false;
		FBlueprintEditorUtils::AddFunctionGraph<UClass>(&Blueprint, Graph, bUserCreated, nullptr);
		AddParameters(*Graph, Entry);
		Messages.Add(TEXT("Created new function: "), Name);
		bChanged = true;
		return Graph;
	}

	void AddParameters(const UEdGraph& Graph, const FJsonObject& Entry)
	{
		UK2Node_EditablePinBase* EntryNode = FBlueprintEditorUtils::GetEntryNode(&Graph);
		check(EntryNode);
		for (const FUserPinInfo& Input : ReadParameters(Entry, TEXT("InParams")))
		{
			EntryNode->CreateUserDefinedPin(Input.PinName, Input.PinType, EGPD_Output);
		}
		for (const FUserPinInfo& Output : ReadParameters(Entry, TEXT("OutParams")))
		{
			// Functions without outputs have none.
			UK2Node_FunctionResult* ResultNode = FBlueprintEditorUtils::FindOrCreateFunctionResultNode(EntryNode);
			ResultNode->CreateUserDefinedPin(FindFreeName(*EntryNode, Output.PinName), Output.PinType, EGPD_Input);
		}
	}

	/** The engine looks at the pins of one node; parameters of a function have one name each, be they in or out. */
	static FName FindFreeName(const UK2Node_EditablePinBase& EntryNode, FName Name)
	{
		while (EntryNode.FindPin(Name))
		{
			Name.SetNumber(Name.GetNumber() + 1);
		}
		return Name;
	}

	/** Those that can be made; the others are told. */
	TArray<FUserPinInfo> ReadParameters(const FJsonObject& Entry, const TCHAR* Field)
	{
		TArray<FUserPinInfo> Parameters;
		const FValues* Values = nullptr;
		if (!Entry.TryGetArrayField(Field, Values))
		{
			return Parameters;
		}
		for (const TSharedPtr<FJsonValue>& Value : *Values)
		{
			const TSharedPtr<FJsonObject>* Description = nullptr;
			FString Name;
			FEdGraphPinType Type;
			if (Value.IsValid() && Value->TryGetObject(Description))
			{
				(*Description)->TryGetStringField(TEXT("Name"), Name);
				Type = FKestrelBlueprintUtils::GetVarEdGraphPinTypeFromJSonObject(Description);
			}
			if (!KestrelBlueprintMembers::CanBeName(Name) || !KestrelBlueprintMembers::IsUsableType(Type))
			{
				Messages.AddInvalidType(Name);
				continue;
			}
			FUserPinInfo& Parameter = Parameters.Emplace_GetRef();
			Parameter.PinName = FName(*Name);
			Parameter.PinType = Type;
		}
		return Parameters;
	}

	/** @return whether there was a node among the descriptions that could be made */
	bool AddNodes(UEdGraph& Graph, const FJsonObject& Entry)
	{
		const TSharedPtr<FJsonObject>* GraphDescription = nullptr;
		const FValues* Nodes = nullptr;
		if (!Entry.TryGetObjectField(TEXT("EdGraph"), GraphDescription) ||
			!(*GraphDescription)->TryGetArrayField(TEXT("Nodes"), Nodes))
		{
			return false;
		}
		FKestrelGraphWriter GraphWriter(Graph);
		bool bAdded = false;
		for (const TSharedPtr<FJsonValue>& Value : *Nodes)
		{
			const TSharedPtr<FJsonObject>* Description = nullptr;
			UEdGraphNode* Node =
				Value.IsValid() && Value->TryGetObject(Description) ? GraphWriter.CreateNode(**Description) : nullptr;
			if (Node)
			{
				GraphWriter.ModifyNode(*Node, **Description);
				bAdded = true;
			}
		}
		return bAdded;
	}

	UBlueprint& Blueprint;
	FKestrelBlueprintMessages Messages;
	bool bChanged = false;
};
}

bool FKestrelBlueprintUtils::ModifyBlueprintFunctions(
	UBlueprint* Blueprint, const TArray<TSharedPtr<FJsonValue>>& Functions, TSharedPtr<FJsonObject>& Result)
{
	check(Result.IsValid());
	if (!Blueprint)
	{
		Result->SetStringField(TEXT("Error"), TEXT("Invalid Blueprint provided."));
		return false;
	}
	BlueprintFunctions::FWriter Writer(*Blueprint);
	for (const TSharedPtr<FJsonValue>& Value : Functions)
	{
		Writer.Write(Value);
	}
	if (Writer.HasChanged())
	{
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(Blueprint);
	}
	Result->SetArrayField(TEXT("FunctionModifications"), Writer.GetMessages());
	return Writer.HasChanged();
}
