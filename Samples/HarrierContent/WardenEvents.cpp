#include "Assets.h"
#include "GameFramework/Character.h"
#include "GraphBuilder.h"
#include "K2Node_EditablePinBase.h"
#include "Kismet/KismetMathLibrary.h"
#include "Kismet/KismetStringLibrary.h"
#include "Kismet/KismetSystemLibrary.h"

namespace WardenEvents
{
using namespace HarrierContent;

/** Wakes up, takes up its post, and counts the round. */
void AddBeginPlay(FGraphBuilder& Graph, const UEdGraphNode& BeginPlay)
{
	UEdGraphNode& Sequence = Graph.Sequence(3);
	UEdGraphNode& Awake = Graph.Get(TEXT("bAwake"));
	UEdGraphNode& Branch = Graph.Branch();
	UEdGraphNode& Print = Graph.Call(UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	FGraphBuilder::SetPin(Print, TEXT("InString"), TEXT("The warden is up"));
	UEdGraphNode& WakeUp = Graph.Set(TEXT("bAwake"), TEXT("true"));
	Graph.NextRow();
	UEdGraphNode& Place = Graph.Call(AActor::StaticClass(), TEXT("K2_GetActorLocation"));
	UEdGraphNode& Home = Graph.Set(TEXT("Home"));
	Graph.NextRow();
	UEdGraphNode& Rounds = Graph.Get(TEXT("Rounds"));
	UEdGraphNode& Sum = Graph.Call(UKismetMathLibrary::StaticClass(), TEXT("Add_IntInt"));
	UEdGraphNode& SetRounds = Graph.Set(TEXT("Rounds"));
	FGraphBuilder::Then(BeginPlay, Sequence);
	FGraphBuilder::Then(Sequence, Branch, TEXT("then_0"));
	FGraphBuilder::Then(Sequence, Home, TEXT("then_1"));
	FGraphBuilder::Then(Sequence, SetRounds, TEXT("then_2"));
	FGraphBuilder::Link(Awake, TEXT("bAwake"), Branch, TEXT("Condition"));
	FGraphBuilder::Then(Branch, Print);
	FGraphBuilder::Then(Branch, WakeUp, TEXT("else"));
	FGraphBuilder::Link(Place, TEXT("ReturnValue"), Home, TEXT("Home"));
	FGraphBuilder::Link(Rounds, TEXT("Rounds"), Sum, TEXT("A"));
	FGraphBuilder::Link(Sum, TEXT("ReturnValue"), SetRounds, TEXT("Rounds"));
}

/** Challenges whoever comes near, and keeps the quarry. */
void AddOverlap(FGraphBuilder& Graph, UBlueprint& Blueprint, const UEdGraphNode& Overlap)
{
	UEdGraphNode& Keep = Graph.Set(TEXT("Quarry"));
	UEdGraphNode& Motto = Graph.Get(TEXT("Motto"));
	UEdGraphNode& Loud = Graph.Call(UKismetStringLibrary::StaticClass(), TEXT("ToUpper"));
	UEdGraphNode& Challenge = Graph.Call(Blueprint.SkeletonGeneratedClass, TEXT("Challenge"));
	FGraphBuilder::Then(Overlap, Keep);
	FGraphBuilder::Link(Overlap, TEXT("OtherActor"), Keep, TEXT("Quarry"));
	FGraphBuilder::Then(Keep, Challenge);
	FGraphBuilder::Link(Motto, TEXT("Motto"), Loud, TEXT("SourceString"));
	FGraphBuilder::Link(Loud, TEXT("ReturnValue"), Challenge, TEXT("Words"));
}

/** Raised by others: tires the warden, and once it is tired it rests. */
void AddAlarm(FGraphBuilder& Graph)
{
	UK2Node_EditablePinBase& Alarm = Graph.CustomEvent(TEXT("RaiseAlarm"));
	Alarm.CreateUserDefinedPin(TEXT("Effort"), RealType(), EGPD_Output);
	Alarm.CreateUserDefinedPin(TEXT("bLoud"), TypeOf(UEdGraphSchema_K2::PC_Boolean), EGPD_Output);
	UEdGraphNode& Range = Graph.Get(TEXT("SightRange"));
	UEdGraphNode& Left = Graph.Call(UKismetMathLibrary::StaticClass(), TEXT("Subtract_DoubleDouble"));
	UEdGraphNode& SetRange = Graph.Set(TEXT("SightRange"));
	UEdGraphNode& Branch = Graph.Branch();
	UEdGraphNode& Destroy = Graph.Call(AActor::StaticClass(), TEXT("SetLifeSpan"));
	FGraphBuilder::SetPin(Destroy, TEXT("InLifespan"), TEXT("2.5"));
	FGraphBuilder::Then(Alarm, SetRange);
	FGraphBuilder::Link(Range, TEXT("SightRange"), Left, TEXT("A"));
	FGraphBuilder::Link(Alarm, TEXT("Effort"), Left, TEXT("B"));
	FGraphBuilder::Link(Left, TEXT("ReturnValue"), SetRange, TEXT("SightRange"));
	FGraphBuilder::Then(SetRange, Branch);
	FGraphBuilder::Link(Alarm, TEXT("bLoud"), Branch, TEXT("Condition"));
	FGraphBuilder::Then(Branch, Destroy, TEXT("else"));
}

/** What the interface tells of, and what others have told. */
void AddSighted(FGraphBuilder& Graph)
{
	UEdGraphNode& Sighted = Graph.Event(FindClass(TEXT("/Script/Harrier.Watcher")), TEXT("OnSighted"));
	UEdGraphNode& Chase = Graph.Set(TEXT("Mood"), TEXT("Chasing"));
	UEdGraphNode& Keep = Graph.Set(TEXT("Quarry"));
	UEdGraphNode& Print = Graph.Call(UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	FGraphBuilder::Then(Sighted, Chase);
	FGraphBuilder::Then(Chase, Keep);
	FGraphBuilder::Link(Sighted, TEXT("Walker"), Keep, TEXT("Quarry"));
	FGraphBuilder::Then(Keep, Print);
}
}

void HarrierContent::MakeWardenEvents(UBlueprint& Warden)
{
	UEdGraph& Page = *Warden.UbergraphPages[0];
	FGraphBuilder Graph(Page);
	WardenEvents::AddBeginPlay(Graph, *Page.Nodes[0]);
	Graph.NextRow();
	WardenEvents::AddOverlap(Graph, Warden, *Page.Nodes[1]);
	Graph.NextRow();
	WardenEvents::AddAlarm(Graph);
	Graph.NextRow();
	WardenEvents::AddSighted(Graph);
	constexpr int32 RowOfRounds = 2;
	Graph.CommentRow(TEXT("Rounds: one more each night"), RowOfRounds, 3);
}
