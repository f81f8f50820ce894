#include "BlueprintParts.h"

#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Engine/SimpleConstructionScript.h"

#define LOCTEXT_NAMESPACE "MyBlueprint"

namespace BlueprintParts
{
const FColor ComponentColor(0, 168, 242);

void AddSection(TArray<FBlueprintPart>& Parts, const FText& Heading, TArray<FBlueprintPart>&& Section)
{
	if (Section.IsEmpty())
	{
		return;
	}
	FBlueprintPart Part;
	Part.Name = Heading.ToString();
	Parts.Add(Part);
	Parts.Append(MoveTemp(Section));
}

FBlueprintPart Make(EBlueprintPart Kind, const FString& Name, int32 Depth = 1)
{
	FBlueprintPart Part;
	Part.Kind = Kind;
	Part.Name = Name;
	Part.Depth = Depth;
	return Part;
}

TArray<FBlueprintPart> OfGraphs(const TArray<TObjectPtr<UEdGraph>>& Graphs, EBlueprintPart Kind)
{
	TArray<FBlueprintPart> Parts;
	for (UEdGraph* const Graph : Graphs)
	{
		if (Graph)
		{
			Parts.Add(Make(Kind, Graph->GetName()));
			Parts.Last().Graph = Graph;
		}
	}
	return Parts;
}

TArray<FBlueprintPart> OfVariables(const UBlueprint& Blueprint)
{
	TArray<FBlueprintPart> Parts;
	for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
	{
		FBlueprintPart Part = Make(EBlueprintPart::Variable, Variable.VarName.ToString());
		Part.Type = UEdGraphSchema_K2::TypeToText(Variable.VarType).ToString();
		Part.Color = GetDefault<UEdGraphSchema_K2>()->GetPinTypeColor(Variable.VarType);
		Parts.Add(Part);
	}
	return Parts;
}

void AddComponent(TArray<FBlueprintPart>& Parts, const USCS_Node& Node, int32 Depth)
{
	FBlueprintPart Part = Make(EBlueprintPart::Component, Node.GetVariableName().ToString(), Depth);
	Part.Type = Node.ComponentClass ? Node.ComponentClass->GetDisplayNameText().ToString() : FString();
	Part.Color = ComponentColor;
	Parts.Add(Part);
	for (const USCS_Node* const Child : Node.GetChildNodes())
	{
		AddComponent(Parts, *Child, Depth + 1);
	}
}

TArray<FBlueprintPart> OfComponents(const UBlueprint& Blueprint)
{
	TArray<FBlueprintPart> Parts;
	if (const USimpleConstructionScript* const Script = Blueprint.SimpleConstructionScript)
	{
		for (const USCS_Node* const Node : Script->GetRootNodes())
		{
			AddComponent(Parts, *Node, 1);
		}
	}
	return Parts;
}

TArray<FBlueprintPart> OfInterfaces(const UBlueprint& Blueprint)
{
	TArray<FBlueprintPart> Parts;
	for (const FBPInterfaceDescription& Description : Blueprint.ImplementedInterfaces)
	{
		if (Description.Interface)
		{
			Parts.Add(Make(EBlueprintPart::Interface, Description.Interface->GetDisplayNameText().ToString()));
			for (FBlueprintPart& Function : OfGraphs(Description.Graphs, EBlueprintPart::Function))
			{
				Function.Depth = 2;
				Parts.Add(Function);
			}
		}
	}
	return Parts;
}
}

bool FBlueprintPart::operator==(const FBlueprintPart& Other) const
{
	return Kind == Other.Kind && Name.Equals(Other.Name) && Type.Equals(Other.Type) && Color == Other.Color &&
		   Depth == Other.Depth && Graph == Other.Graph;
}

TArray<FBlueprintPart> FBlueprintParts::Of(const UBlueprint& Blueprint)
{
	using namespace BlueprintParts;
	TArray<FBlueprintPart> Parts;
	AddSection(Parts, LOCTEXT("Graphs", "Graphs"), OfGraphs(Blueprint.UbergraphPages, EBlueprintPart::Graph));
	AddSection(Parts, LOCTEXT("Functions", "Functions"), OfGraphs(Blueprint.FunctionGraphs, EBlueprintPart::Function));
	AddSection(Parts, LOCTEXT("Interfaces", "Interfaces"), OfInterfaces(Blueprint));
	AddSection(Parts, LOCTEXT("Macros", "Macros"), OfGraphs(Blueprint.MacroGraphs, EBlueprintPart::Macro));
	AddSection(Parts, LOCTEXT("Components", "Components"), OfComponents(Blueprint));
	AddSection(Parts, LOCTEXT("Variables", "Variables"), OfVariables(Blueprint));
	return Parts;
}

#undef LOCTEXT_NAMESPACE
