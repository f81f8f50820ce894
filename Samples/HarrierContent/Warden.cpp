#include "Assets.h"
#include "Components/SphereComponent.h"
#include "GameFramework/Character.h"
#include "GraphBuilder.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_FunctionEntry.h"
#include "Kismet/KismetMathLibrary.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"

namespace Warden
{
using namespace HarrierContent;
using FSchema = UEdGraphSchema_K2;

/** One of each category of pins, and of each container. */
TArray<FVariable> GetVariables()
{
	UObject* const Mood = Find(TEXT("/Script/Harrier.EWardenMood"));
	UClass* const Actor = AActor::StaticClass();
	const FEdGraphPinType Name = TypeOf(FSchema::PC_Name);
	const FEdGraphPinType Vector = TypeOf(FSchema::PC_Struct, TBaseStructure<FVector>::Get());
	return {
		{ TEXT("bAwake"), TypeOf(FSchema::PC_Boolean), TEXT("true") },
		{ TEXT("Rank"), TypeOf(FSchema::PC_Byte), TEXT("3") },
		{ TEXT("Mood"), TypeOf(FSchema::PC_Byte, Mood), TEXT("Searching") },
		{ TEXT("Rounds"), TypeOf(FSchema::PC_Int), TEXT("4") },
		{ TEXT("Steps"), TypeOf(FSchema::PC_Int64), TEXT("5000000000") },
		{ TEXT("SightRange"), RealType(), TEXT("1500.5") },
		{ TEXT("Stamina"), RealType(FSchema::PC_Float), TEXT("0.75") },
		{ TEXT("Post"), Name, TEXT("NorthGate") },
		{ TEXT("Motto"), TypeOf(FSchema::PC_String), TEXT("Nothing passes") },
		{ TEXT("Greeting"), TypeOf(FSchema::PC_Text), TEXT("") },
		{ TEXT("Home"), Vector, TEXT("100.000000,-20.500000,0.000000") },
		{ TEXT("Facing"), TypeOf(FSchema::PC_Struct, TBaseStructure<FRotator>::Get()), TEXT("") },
		{ TEXT("Quarry"), TypeOf(FSchema::PC_Object, Actor), TEXT("") },
		{ TEXT("Relief"), TypeOf(FSchema::PC_Interface, FindClass(TEXT("/Script/Harrier.Watcher"))), TEXT("") },
		{ TEXT("Mind"), TypeOf(FSchema::PC_Class, FindClass(TEXT("/Script/Harrier.WardenController"))), TEXT("") },
		{ TEXT("Horn"), TypeOf(FSchema::PC_SoftObject, UObject::StaticClass()), TEXT("") },
		{ TEXT("Spare"), TypeOf(FSchema::PC_SoftClass, Actor), TEXT("") },
		{ TEXT("Path"), In(EPinContainerType::Array, Vector), TEXT("") },
		{ TEXT("Alarms"), In(EPinContainerType::Array, Name), TEXT("(\"North\",\"South\")") },
		{ TEXT("Seen"), In(EPinContainerType::Set, Name), TEXT("") },
		{ TEXT("Beats"), MapOf(Name, TypeOf(FSchema::PC_Int)), TEXT("") },
		{ TEXT("Friends"), MapOf(Name, TypeOf(FSchema::PC_Object, Actor)), TEXT("") },
	};
}

/** Whether a walker is near, and how far away. */
void AddMeasure(UBlueprint& Blueprint)
{
	FGraphBuilder Graph(FGraphBuilder::AddFunction(Blueprint, TEXT("Measure")));
	UK2Node_EditablePinBase& Entry = Graph.GetEntry();
	Entry.CreateUserDefinedPin(TEXT("Walker"), TypeOf(FSchema::PC_Object, AActor::StaticClass()), EGPD_Output);
	Entry.CreateUserDefinedPin(TEXT("Factor"), RealType(), EGPD_Output);
	UEdGraphNode& Distance = Graph.Call(AActor::StaticClass(), TEXT("GetDistanceTo"));
	UEdGraphNode& Scaled = Graph.Call(UKismetMathLibrary::StaticClass(), TEXT("Multiply_DoubleDouble"));
	UEdGraphNode& Range = Graph.Get(TEXT("SightRange"));
	UEdGraphNode& Near = Graph.Call(UKismetMathLibrary::StaticClass(), TEXT("Less_DoubleDouble"));
	UK2Node_EditablePinBase& Result = Graph.GetResult();
	Result.CreateUserDefinedPin(TEXT("ReturnValue"), TypeOf(FSchema::PC_Boolean), EGPD_Input);
	Result.CreateUserDefinedPin(TEXT("Distance"), RealType(), EGPD_Input);
	FGraphBuilder::Link(Entry, TEXT("Walker"), Distance, TEXT("OtherActor"));
	FGraphBuilder::Link(Distance, TEXT("ReturnValue"), Scaled, TEXT("A"));
	FGraphBuilder::Link(Entry, TEXT("Factor"), Scaled, TEXT("B"));
	FGraphBuilder::Link(Scaled, TEXT("ReturnValue"), Near, TEXT("A"));
	FGraphBuilder::Link(Range, TEXT("SightRange"), Near, TEXT("B"));
	FGraphBuilder::Link(Near, TEXT("ReturnValue"), Result, TEXT("ReturnValue"));
	FGraphBuilder::Link(Scaled, TEXT("ReturnValue"), Result, TEXT("Distance"));
}

/** A pure function. */
void AddGetAlertness(UBlueprint& Blueprint)
{
	FGraphBuilder Graph(FGraphBuilder::AddFunction(Blueprint, TEXT("GetAlertness")));
	CastChecked<UK2Node_FunctionEntry>(&Graph.GetEntry())->AddExtraFlags(FUNC_BlueprintPure | FUNC_Const);
	Graph.GetResult().CreateUserDefinedPin(TEXT("ReturnValue"), RealType(), EGPD_Input);
	FGraphBuilder::Link(Graph.Get(TEXT("SightRange")), TEXT("SightRange"), Graph.GetResult(), TEXT("ReturnValue"));
}

void AddChallenge(UBlueprint& Blueprint)
{
	FGraphBuilder Graph(FGraphBuilder::AddFunction(Blueprint, TEXT("Challenge")));
	Graph.GetEntry().CreateUserDefinedPin(TEXT("Words"), TypeOf(FSchema::PC_String), EGPD_Output);
	UEdGraphNode& Print = Graph.Call(UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	FGraphBuilder::Then(Graph.GetEntry(), Print);
	FGraphBuilder::Link(Graph.GetEntry(), TEXT("Words"), Print, TEXT("InString"));
}
}

/** The character that walks the rounds: every kind of variable, functions, components, an interface, an event graph. */
void HarrierContent::MakeWarden()
{
	UBlueprint& Blueprint = *MakeBlueprint(TEXT("/Game/Blueprints/BP_Warden"), ACharacter::StaticClass());
	AddVariables(Blueprint, Warden::GetVariables());
	AddComponent(Blueprint, USphereComponent::StaticClass(), TEXT("Reach"));
	AddComponent(Blueprint, FindClass(TEXT("/Script/Harrier.HealthComponent")), TEXT("Health"));
	Warden::AddMeasure(Blueprint);
	Warden::AddGetAlertness(Blueprint);
	Warden::AddChallenge(Blueprint);
	FBlueprintEditorUtils::ImplementNewInterface(
		&Blueprint, FindClass(TEXT("/Script/Harrier.Watcher"))->GetClassPathName());
	FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(&Blueprint);
	MakeWardenEvents(Blueprint);
	Compile(Blueprint);
	Save(Blueprint);
}
