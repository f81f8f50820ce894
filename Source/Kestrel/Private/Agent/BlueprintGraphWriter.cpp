#include "Agent/BlueprintGraphWriter.h"

#include "Agent/BlueprintDocument.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_CallFunction.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"

namespace BlueprintGraphWriter
{
// Graph units. Nodes have no width before they are painted; few are wider than this.
constexpr int32 UsualNodeWidth = 320;
constexpr int32 NodeGap = 80;

int64 GetRightEdge(const UEdGraphNode& Node)
{
	return static_cast<int64>(Node.NodePosX) + FMath::Max(Node.NodeWidth, UsualNodeWidth);
}

int32 ToCoordinate(double Value)
{
	constexpr double Limit = MAX_int32;
	return FMath::IsFinite(Value) ? static_cast<int32>(FMath::Clamp(Value, -Limit, Limit)) : 0;
}

FName GetName(const FJsonObject& Object, const TCHAR* Field)
{
	FString Text;
	Object.TryGetStringField(Field, Text);
	return KestrelBlueprintDocument::ToName(Text);
}

template <typename NodeType>
NodeType* MakeNode(UEdGraph& Graph, UClass* NodeClass)
{
	// Only transactional objects are taken back by undo.
	return NewObject<NodeType>(&Graph, NodeClass, NAME_None, RF_Transactional);
}

/** References by the variable's identity survive that it is renamed. */
void ReferToVariable(FMemberReference& Reference, const UBlueprint* Blueprint, FName Variable)
{
	const int32 Index =
		Blueprint ? FBlueprintEditorUtils::FindNewVariableIndex(Blueprint, Variable) : static_cast<int32>(INDEX_NONE);
	if (Index == INDEX_NONE)
	{
		Reference.SetSelfMember(Variable);
		return;
	}
	Reference.SetSelfMember(Blueprint->NewVariables[Index].VarName, Blueprint->NewVariables[Index].VarGuid);
}

const TArray<TSharedPtr<FJsonValue>>& GetArray(const FJsonObject& Object, const TCHAR* Field)
{
	static const TArray<TSharedPtr<FJsonValue>> Empty;
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	return Object.TryGetArrayField(Field, Array) ? *Array : Empty;
}
}

FKestrelGraphWriter::FKestrelGraphWriter(UEdGraph& InGraph)
	: Graph(InGraph)
{
}

UEdGraphNode* FKestrelGraphWriter::CreateNode(const FJsonObject& Description)
{
	struct FKind
	{
		const TCHAR* Name;
		UClass* NodeClass;
		UEdGraphNode* (FKestrelGraphWriter::*Create)(const FJsonObject& Properties, UClass* NodeClass) const;
	};
	// The names carry the prefix that the classes' own names are without.
	const FKind Kinds[] = {
		{ TEXT("UK2Node_VariableGet"), UK2Node_VariableGet::StaticClass(), &FKestrelGraphWriter::CreateVariableNode },
		{ TEXT("UK2Node_VariableSet"), UK2Node_VariableSet::StaticClass(), &FKestrelGraphWriter::CreateVariableNode },
		{ TEXT("UK2Node_CallFunction"), UK2Node_CallFunction::StaticClass(), &FKestrelGraphWriter::CreateCallNode },
	};
	FString Class;
	const TSharedPtr<FJsonObject>* Properties = nullptr;
	if (!Description.TryGetStringField(TEXT("Class"), Class) ||
		!Description.TryGetObjectField(TEXT("Properties"), Properties))
	{
		return nullptr;
	}
	for (const FKind& Kind : Kinds)
	{
		if (!Class.Equals(Kind.Name, ESearchCase::IgnoreCase))
		{
			continue;
		}
		UEdGraphNode* Node = (this->*Kind.Create)(**Properties, Kind.NodeClass);
		if (Node)
		{
			Graph.Modify();
			Place(*Node, Description);
			Graph.AddNode(Node);
			Node->CreateNewGuid();
			Node->PostPlacedNewNode();
			Node->AllocateDefaultPins();
		}
		return Node;
	}
	return nullptr;
}

UEdGraphNode* FKestrelGraphWriter::CreateVariableNode(const FJsonObject& Properties, UClass* NodeClass) const
{
	const FName Variable = BlueprintGraphWriter::GetName(Properties, TEXT("VariableName"));
	if (Variable.IsNone())
	{
		return nullptr;
	}
	UK2Node_Variable* Node = BlueprintGraphWriter::MakeNode<UK2Node_Variable>(Graph, NodeClass);
	BlueprintGraphWriter::ReferToVariable(
		Node->VariableReference, FBlueprintEditorUtils::FindBlueprintForGraph(&Graph), Variable);
	return Node;
}

UEdGraphNode* FKestrelGraphWriter::CreateCallNode(const FJsonObject& Properties, UClass* NodeClass) const
{
	const FName Name = BlueprintGraphWriter::GetName(Properties, TEXT("FunctionName"));
	if (Name.IsNone())
	{
		return nullptr;
	}
	UK2Node_CallFunction* Node = BlueprintGraphWriter::MakeNode<UK2Node_CallFunction>(Graph, NodeClass);
	if (const UFunction* Function = UKismetSystemLibrary::StaticClass()->FindFunctionByName(Name))
	{
		Node->SetFromFunction(Function);
	}
	return Node;
}

void FKestrelGraphWriter::Place(UEdGraphNode& Node, const FJsonObject& Description)
{
	const TSharedPtr<FJsonObject>* Location = nullptr;
	double X = 0.0;
	double Y = 0.0;
	if (Description.TryGetObjectField(TEXT("Location"), Location) && (*Location)->TryGetNumberField(TEXT("X"), X) &&
		(*Location)->TryGetNumberField(TEXT("Y"), Y))
	{
		Node.NodePosX = BlueprintGraphWriter::ToCoordinate(X);
		Node.NodePosY = BlueprintGraphWriter::ToCoordinate(Y);
		return;
	}
	PlaceBesideOthers(Node);
}

void FKestrelGraphWriter::PlaceBesideOthers(UEdGraphNode& Node)
{
	for (; NumMeasured < Graph.Nodes.Num(); ++NumMeasured)
	{
		const UEdGraphNode* Other = Graph.Nodes[NumMeasured];
		if (Other &&
			(!Rightmost || BlueprintGraphWriter::GetRightEdge(*Other) > BlueprintGraphWriter::GetRightEdge(*Rightmost)))
		{
			Rightmost = Other;
		}
	}
	if (Rightmost)
	{
		const int64 X = BlueprintGraphWriter::GetRightEdge(*Rightmost) + BlueprintGraphWriter::NodeGap;
		Node.NodePosX = static_cast<int32>(FMath::Min<int64>(X, MAX_int32));
		Node.NodePosY = Rightmost->NodePosY;
	}
}

bool FKestrelGraphWriter::ModifyNode(UEdGraphNode& Node, const FJsonObject& Description)
{
	const TSharedPtr<FJsonObject>* Properties = nullptr;
	if (!Description.TryGetObjectField(TEXT("Properties"), Properties))
	{
		return false;
	}
	bool bChanged = false;
	Node.Modify();
	FString Comment;
	if ((*Properties)->TryGetStringField(TEXT("Comment"), Comment))
	{
		Node.NodeComment = Comment;
		Node.bCommentBubbleVisible = !Comment.IsEmpty(); // or nobody sees it
		bChanged = true;
	}
	for (const TSharedPtr<FJsonValue>& Value : BlueprintGraphWriter::GetArray(**Properties, TEXT("Pins")))
	{
		const TSharedPtr<FJsonObject>* Setting = nullptr;
		bChanged |= Value.IsValid() && Value->TryGetObject(Setting) && ModifyPin(Node, **Setting);
	}
	return bChanged;
}

bool FKestrelGraphWriter::ModifyPin(UEdGraphNode& Node, const FJsonObject& Setting)
{
	const FName PinName = BlueprintGraphWriter::GetName(Setting, TEXT("PinName"));
	UEdGraphPin* Pin = PinName.IsNone() ? nullptr : Node.FindPin(PinName);
	if (!Pin)
	{
		return false;
	}
	bool bChanged = Setting.TryGetStringField(TEXT("Value"), Pin->DefaultValue);
	FString Direction;
	if (Setting.TryGetStringField(TEXT("Direction"), Direction))
	{
		Pin->Direction = Direction.Equals(TEXT("Input"), ESearchCase::IgnoreCase) ? EGPD_Input : EGPD_Output;
		bChanged = true;
	}
	for (const TSharedPtr<FJsonValue>& Value : BlueprintGraphWriter::GetArray(Setting, TEXT("Connections")))
	{
		const TSharedPtr<FJsonObject>* Connection = nullptr;
		bChanged |= Value.IsValid() && Value->TryGetObject(Connection) && LinkPin(*Pin, **Connection);
	}
	return bChanged;
}

bool FKestrelGraphWriter::LinkPin(UEdGraphPin& Pin, const FJsonObject& Connection)
{
	FString Title;
	const FName PinName = BlueprintGraphWriter::GetName(Connection, TEXT("Pin"));
	if (PinName.IsNone() || !Connection.TryGetStringField(TEXT("Node"), Title))
	{
		return false;
	}
	const UEdGraphNode* Node = FindNodeByTitle(Title);
	UEdGraphPin* Target = Node ? Node->FindPin(PinName) : nullptr;
	if (!Target || Target == &Pin) // the engine takes a link of a pin to itself for a fault of ours
	{
		return false;
	}
	MakeRoomForLink(Pin);
	MakeRoomForLink(*Target);
	Pin.MakeLinkTo(Target);
	return true;
}

/**
 * As when a wire is dragged in the editor: where only one link can be, a new one takes the place of what the graph had,
 * or nothing could be put between two nodes. What one document links is not replaced by the rest of it.
 */
void FKestrelGraphWriter::MakeRoomForLink(UEdGraphPin& Pin)
{
	const bool bExecution = Pin.PinType.PinCategory == UEdGraphSchema_K2::PC_Exec;
	const bool bOneLink = bExecution == (Pin.Direction == EGPD_Output);
	bool bLinkedBefore = false;
	LinkedPins.Add(&Pin, &bLinkedBefore);
	if (bOneLink && !bLinkedBefore)
	{
		Pin.BreakAllPinLinks();
	}
}

UEdGraphNode* FKestrelGraphWriter::FindNodeByTitle(const FString& Title)
{
	for (; NumTitled < Graph.Nodes.Num(); ++NumTitled)
	{
		if (UEdGraphNode* Node = Graph.Nodes[NumTitled])
		{
			const FString NodeTitle = Node->GetNodeTitle(ENodeTitleType::FullTitle).ToString();
			if (!FirstOfTitle.Contains(NodeTitle))
			{
				FirstOfTitle.Add(NodeTitle, Node);
			}
		}
	}
	return FirstOfTitle.FindRef(Title);
}

UEdGraphNode* FKestrelBlueprintUtils::CreateEdGraphNode(const TSharedPtr<FJsonObject>& Description, UEdGraph* Graph)
{
	return Graph && Description.IsValid() ? FKestrelGraphWriter(*Graph).CreateNode(*Description) : nullptr;
}

bool FKestrelBlueprintUtils::ModifyNodeProperties(UEdGraphNode* Node, const FJsonObject& Description, UEdGraph* Graph)
{
	return Node && Graph && FKestrelGraphWriter(*Graph).ModifyNode(*Node, Description);
}
