#include "Agent/Blueprints/Change/BlueprintGraphWriter.h"

#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/Change/BlueprintReport.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Engine/MemberReference.h"
#include "K2Node_CallFunction.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"

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
	// Undo only reverts transactional objects.
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

FKestrelLinkedPins::FKey FKestrelLinkedPins::MakeKey(const UEdGraphPin& Pin)
{
	return FKey(Pin.GetOwningNode(), Pin.PinName);
}

bool FKestrelLinkedPins::Contains(const UEdGraphPin& Pin) const
{
	return Keys.Contains(MakeKey(Pin));
}

void FKestrelLinkedPins::Add(const UEdGraphPin& Pin)
{
	Keys.Add(MakeKey(Pin));
}

FKestrelGraphWriter::FKestrelGraphWriter(
	UEdGraph& InGraph, FKestrelBlueprintReport& InReport, FKestrelLinkedPins& InLinkedPins)
	: Graph(InGraph)
	, Report(InReport)
	, LinkedPins(InLinkedPins)
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
		Report.Skip(TEXT("A node needs \"Class\" and \"Properties\"."));
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
	Report.Skip(FString::Printf(TEXT("Nodes of the class '%s' cannot be made, only %s, %s and %s."), *Class.Left(200),
		Kinds[0].Name, Kinds[1].Name, Kinds[2].Name));
	return nullptr;
}

UEdGraphNode* FKestrelGraphWriter::CreateVariableNode(const FJsonObject& Properties, UClass* NodeClass) const
{
	const FName Variable = BlueprintGraphWriter::GetName(Properties, TEXT("VariableName"));
	if (Variable.IsNone())
	{
		Report.Skip(TEXT("The node needs the \"VariableName\"."));
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
		Report.Skip(TEXT("The node needs the \"FunctionName\"."));
		return nullptr;
	}
	UK2Node_CallFunction* Node = BlueprintGraphWriter::MakeNode<UK2Node_CallFunction>(Graph, NodeClass);
	if (const UFunction* Function = UKismetSystemLibrary::StaticClass()->FindFunctionByName(Name))
	{
		Node->SetFromFunction(Function);
	}
	else
	{
		Report.Skip(FString::Printf(
			TEXT("KismetSystemLibrary has no function '%s': the node calls nothing."), *Name.ToString()));
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
		if (Value.IsValid() && Value->TryGetObject(Setting))
		{
			bChanged |= ModifyPin(Node, **Setting);
		}
		else
		{
			Report.Skip(TEXT("A pin is described by an object."));
		}
	}
	return bChanged;
}

bool FKestrelGraphWriter::ModifyPin(UEdGraphNode& Node, const FJsonObject& Setting)
{
	const FName PinName = BlueprintGraphWriter::GetName(Setting, TEXT("PinName"));
	if (PinName.IsNone())
	{
		Report.Skip(TEXT("A pin needs its \"PinName\"."));
		return false;
	}
	const FKestrelBlueprintReport::FScope Scope(Report, TEXT("Pin"), PinName.ToString());
	UEdGraphPin* Pin = Node.FindPin(PinName);
	if (!Pin)
	{
		Report.Skip(TEXT("The node has no such pin."));
		return false;
	}
	FString Value;
	bool bChanged = Setting.TryGetStringField(TEXT("Value"), Value);
	if (bChanged)
	{
		SetValue(*Pin, Value);
	}
	else if (Setting.HasField(TEXT("Value")))
	{
		Report.Skip(TEXT("The value has to be a string."));
	}
	FString Direction;
	if (Setting.TryGetStringField(TEXT("Direction"), Direction))
	{
		Pin->Direction = Direction.Equals(TEXT("Input"), ESearchCase::IgnoreCase) ? EGPD_Input : EGPD_Output;
		bChanged = true;
	}
	for (const TSharedPtr<FJsonValue>& Each : BlueprintGraphWriter::GetArray(Setting, TEXT("Connections")))
	{
		const TSharedPtr<FJsonObject>* Connection = nullptr;
		if (Each.IsValid() && Each->TryGetObject(Connection))
		{
			bChanged |= LinkDescribed(*Pin, **Connection);
		}
		else
		{
			Report.Skip(TEXT("A connection is described by an object."));
		}
	}
	return bChanged;
}

void FKestrelGraphWriter::SetValue(UEdGraphPin& Pin, const FString& Value)
{
	using FSchema = UEdGraphSchema_K2;
	Pin.DefaultValue = Value;
	const FName Category = Pin.PinType.PinCategory;
	const bool bElsewhere = Category == FSchema::PC_Object || Category == FSchema::PC_Class ||
							Category == FSchema::PC_Interface || Category == FSchema::PC_Text;
	if (bElsewhere && !Value.IsEmpty())
	{
		Report.Skip(FString::Printf(
			TEXT("The value was stored, but pins of the type '%s' do not use it: link the pin instead."),
			*Category.ToString()));
	}
}

bool FKestrelGraphWriter::LinkDescribed(UEdGraphPin& Pin, const FJsonObject& Connection)
{
	FString Title;
	const FName PinName = BlueprintGraphWriter::GetName(Connection, TEXT("Pin"));
	if (PinName.IsNone() || !Connection.TryGetStringField(TEXT("Node"), Title))
	{
		Report.Skip(TEXT("A connection needs \"Node\" and \"Pin\"."));
		return false;
	}
	const FKestrelBlueprintReport::FScope Scope(Report, TEXT("Link"), Title + TEXT(".") + PinName.ToString());
	const UEdGraphNode* Node = FindNodeByTitle(Title);
	if (!Node)
	{
		Report.Skip(TEXT("The graph has no node of this title."));
		return false;
	}
	UEdGraphPin* Target = Node->FindPin(PinName);
	if (!Target)
	{
		Report.Skip(TEXT("The linked node has no such pin."));
		return false;
	}
	if (Target == &Pin) // the engine takes a link of a pin to itself for a fault of ours
	{
		Report.Skip(TEXT("A pin cannot be linked to itself."));
		return false;
	}
	return LinkPins(Pin, *Target);
}

/**
 * As when a wire is dragged in the editor: where only one link can be, a new one takes the place of what the graph had,
 * or nothing could be put between two nodes. A link that the editor would not allow is made as it is described, but not
 * at the cost of a wire that works.
 */
bool FKestrelGraphWriter::LinkPins(UEdGraphPin& Pin, UEdGraphPin& Target)
{
	const UEdGraphSchema* Schema = Graph.GetSchema();
	const FPinConnectionResponse Answer =
		Schema ? Schema->CanCreateConnection(&Pin, &Target) : FPinConnectionResponse();
	// Anything else is a refusal, or needs a further node in between.
	const bool bPossible =
		Answer.Response == CONNECT_RESPONSE_MAKE || Answer.Response == CONNECT_RESPONSE_BREAK_OTHERS_A ||
		Answer.Response == CONNECT_RESPONSE_BREAK_OTHERS_B || Answer.Response == CONNECT_RESPONSE_BREAK_OTHERS_AB;
	if (!bPossible && (HasLinkInTheWay(Pin) || HasLinkInTheWay(Target)))
	{
		Report.Skip(FString::Printf(
			TEXT("The link is not possible (%s), and the pins' present links were kept."), *Answer.Message.ToString()));
		return false;
	}
	if (!bPossible)
	{
		Report.Skip(FString::Printf(
			TEXT("The link was made as described, but will not compile (%s)."), *Answer.Message.ToString()));
	}
	for (UEdGraphPin* End : { &Pin, &Target })
	{
		if (HasLinkInTheWay(*End))
		{
			End->BreakAllPinLinks();
		}
		LinkedPins.Add(*End);
	}
	Pin.MakeLinkTo(&Target);
	return true;
}

/** Whether the pin has a link that is not of this document, and can have only one. */
bool FKestrelGraphWriter::HasLinkInTheWay(const UEdGraphPin& Pin) const
{
	const bool bExecution = Pin.PinType.PinCategory == UEdGraphSchema_K2::PC_Exec;
	const bool bOneLink = bExecution == (Pin.Direction == EGPD_Output);
	return bOneLink && !Pin.LinkedTo.IsEmpty() && !LinkedPins.Contains(Pin);
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
	FKestrelBlueprintReport Report;
	FKestrelLinkedPins LinkedPins;
	return Graph && Description.IsValid() ? FKestrelGraphWriter(*Graph, Report, LinkedPins).CreateNode(*Description)
										  : nullptr;
}

bool FKestrelBlueprintUtils::ModifyNodeProperties(UEdGraphNode* Node, const FJsonObject& Description, UEdGraph* Graph)
{
	FKestrelBlueprintReport Report;
	FKestrelLinkedPins LinkedPins;
	return Node && Graph && FKestrelGraphWriter(*Graph, Report, LinkedPins).ModifyNode(*Node, Description);
}
