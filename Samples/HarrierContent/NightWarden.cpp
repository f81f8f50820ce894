#include "Assets.h"
#include "Components/SphereComponent.h"
#include "GraphBuilder.h"
#include "K2Node_EditablePinBase.h"

namespace NightWarden
{
/** Says what the parent says. */
void OverrideChallenge(UBlueprint& Blueprint)
{
	FGraphBuilder Graph(FGraphBuilder::AddFunction(Blueprint, TEXT("Challenge"), Blueprint.ParentClass));
	UEdGraphNode& Parent = Graph.CallParent(Blueprint.ParentClass, TEXT("Challenge"));
	FGraphBuilder::Then(Graph.GetEntry(), Parent);
	FGraphBuilder::Link(Graph.GetEntry(), TEXT("Words"), Parent, TEXT("Words"));
}
}

/** The warden with a lamp: a child Blueprint, with an overridden function and another default. */
void HarrierContent::MakeNightWarden()
{
	UClass* const Parent = FindClass(TEXT("/Game/Blueprints/BP_Warden.BP_Warden_C"));
	UBlueprint& Blueprint = *MakeBlueprint(TEXT("/Game/Blueprints/BP_NightWarden"), Parent);
	AddVariables(Blueprint, { { TEXT("bLit"), TypeOf(UEdGraphSchema_K2::PC_Boolean), TEXT("") },
								{ TEXT("Oil"), RealType(), TEXT("60.25") } });
	AddComponent(Blueprint, USphereComponent::StaticClass(), TEXT("Glow"));
	NightWarden::OverrideChallenge(Blueprint);
	Compile(Blueprint);
	SetValue(*Blueprint.GeneratedClass->GetDefaultObject(), TEXT("Rounds"), TEXT("9"));
	Save(Blueprint);
}
