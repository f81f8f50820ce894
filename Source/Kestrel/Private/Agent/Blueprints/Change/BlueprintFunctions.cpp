#include "Agent/Blueprints/Change/BlueprintFunctions.h"

#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/Change/BlueprintGraphWriter.h"
#include "Agent/Blueprints/Change/BlueprintMembers.h"
#include "Agent/Blueprints/Change/BlueprintMessages.h"
#include "Agent/Blueprints/Change/BlueprintReport.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "UObject/Class.h"
#include "UObject/ObjectPtr.h"

namespace BlueprintFunctions
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

const TCHAR* const InParamsKey = TEXT("InParams");
const TCHAR* const OutParamsKey = TEXT("OutParams");

UEdGraph* FindGraph(const UBlueprint& Blueprint, const FString& Name)
{
	const FName Wanted = KestrelBlueprintDocument::ToName(Name); // names compare without letter case
	const TObjectPtr<UEdGraph>* Found = Blueprint.FunctionGraphs.FindByPredicate(
		[Wanted](const TObjectPtr<UEdGraph>& Graph) { return Graph && Graph->GetFName() == Wanted; });
	return Found ? Found->Get() : nullptr;
}

/** Applies the section of one document to one Blueprint. */
class FWriter
{
public:
	FWriter(UBlueprint& InBlueprint, FKestrelBlueprintReport& InReport)
		: Blueprint(InBlueprint)
		, Report(InReport)
	{
	}

	/** @param Number  of the entry, from 1 */
	void Write(const TSharedPtr<FJsonValue>& Value, int32 Number)
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		FString Name;
		if (!Value.IsValid() || !Value->TryGetObject(Entry) || !(*Entry)->TryGetStringField(TEXT("Name"), Name))
		{
			Messages.Add(TEXT("Function entry missing 'Name' field."));
			Report.Skip(TEXT("Entry"), FString::FromInt(Number), TEXT("A function needs its \"Name\"."));
			return;
		}
		const FKestrelBlueprintReport::FScope Scope(Report, TEXT("Entry"), Name);
		UEdGraph* Existing = FindGraph(Blueprint, Name);
		if (Existing && ((*Entry)->HasField(InParamsKey) || (*Entry)->HasField(OutParamsKey)))
		{
			Report.Skip(TEXT("The function exists. Only new functions are given parameters."));
		}
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
		const FString Problem = KestrelBlueprintMembers::FindNameProblem(Blueprint, Name);
		if (!Problem.IsEmpty())
		{
			Messages.Add(TEXT("Failed to create function graph for: "), Name);
			Report.Skip(Problem);
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
		for (const FUserPinInfo& Input : ReadParameters(Entry, InParamsKey))
		{
			EntryNode->CreateUserDefinedPin(Input.PinName, Input.PinType, EGPD_Output);
		}
		for (const FUserPinInfo& Output : ReadParameters(Entry, OutParamsKey))
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
			const FString Problem = KestrelBlueprintMembers::CanBeMemberName(Name)
										? KestrelBlueprintMembers::FindTypeProblem(Type)
										: FString(TEXT("A parameter needs a name that variables can have."));
			if (!Problem.IsEmpty())
			{
				Messages.AddInvalidType(Name);
				Report.Skip(TEXT("Parameter"), Name, Problem);
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
		if (!Entry.HasField(TEXT("EdGraph")))
		{
			return false;
		}
		if (!Entry.TryGetObjectField(TEXT("EdGraph"), GraphDescription) ||
			!(*GraphDescription)->TryGetArrayField(TEXT("Nodes"), Nodes))
		{
			Report.Skip(TEXT("\"EdGraph\" needs an array \"Nodes\"."));
			return false;
		}
		FKestrelGraphWriter GraphWriter(Graph, Report, LinkedPins);
		bool bAdded = false;
		for (int32 Index = 0; Index < Nodes->Num(); ++Index)
		{
			bAdded |= AddNode(GraphWriter, (*Nodes)[Index], Index + 1);
		}
		return bAdded;
	}

	/** @param Number  of the node among those described, from 1 */
	bool AddNode(FKestrelGraphWriter& GraphWriter, const TSharedPtr<FJsonValue>& Value, int32 Number)
	{
		const TSharedPtr<FJsonObject>* Description = nullptr;
		FString Class;
		const bool bObject = Value.IsValid() && Value->TryGetObject(Description);
		if (bObject)
		{
			(*Description)->TryGetStringField(TEXT("Class"), Class);
		}
		const FKestrelBlueprintReport::FScope Scope(
			Report, TEXT("Node"), FString::Printf(TEXT("%d (%s)"), Number, *Class));
		if (!bObject)
		{
			Report.Skip(TEXT("A node is described by an object."));
			return false;
		}
		UEdGraphNode* Node = GraphWriter.CreateNode(**Description);
		if (Node)
		{
			GraphWriter.ModifyNode(*Node, **Description);
		}
		return Node != nullptr;
	}

	UBlueprint& Blueprint;
	FKestrelBlueprintReport& Report;
	FKestrelLinkedPins LinkedPins;
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
	FKestrelBlueprintReport Report;
	const bool bChanged = KestrelBlueprintFunctions::Modify(*Blueprint, Functions, *Result, Report);
	Report.AddTo(*Result);
	return bChanged;
}

bool KestrelBlueprintFunctions::Modify(UBlueprint& Blueprint, const TArray<TSharedPtr<FJsonValue>>& Functions,
	FJsonObject& Result, FKestrelBlueprintReport& Report)
{
	BlueprintFunctions::FWriter Writer(Blueprint, Report);
	for (int32 Index = 0; Index < Functions.Num(); ++Index)
	{
		Writer.Write(Functions[Index], Index + 1);
	}
	if (Writer.HasChanged())
	{
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(&Blueprint);
	}
	Result.SetArrayField(TEXT("FunctionModifications"), Writer.GetMessages());
	return Writer.HasChanged();
}
