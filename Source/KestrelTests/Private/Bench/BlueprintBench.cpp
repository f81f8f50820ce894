#include "Bench/BlueprintBench.h"

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Read/BlueprintRead.h"
#include "Agent/Project/BlueprintSearch.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Engine/Blueprint.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "K2Node_CallFunction.h"
#include "Kismet/KismetSystemLibrary.h"

namespace KestrelBlueprintBench
{
constexpr int32 NumReadNodes = 2000;
constexpr int32 LinksPerNode = 5;

int32 Scale(int32 Number, double Size)
{
	return FMath::Max(1, static_cast<int32>(Number * Size + 0.5));
}

void FillGraph(UEdGraph& Graph, int32 NumNodes)
{
	TArray<UEdGraphNode*> Nodes;
	for (int32 Index = 0; Index < NumNodes; ++Index)
	{
		FGraphNodeCreator<UK2Node_CallFunction> Creator(Graph);
		UK2Node_CallFunction* Node = Creator.CreateNode();
		Node->SetFromFunction(UKismetSystemLibrary::StaticClass()->FindFunctionByName(TEXT("PrintString")));
		Creator.Finalize();
		Nodes.Add(Node);
	}
	for (int32 Index = 0; Index < NumNodes; ++Index)
	{
		for (int32 Link = 1; Link <= LinksPerNode; ++Link)
		{
			Nodes[Index]
				->FindPinChecked(UEdGraphSchema_K2::PN_Then)
				->MakeLinkTo(Nodes[(Index + Link) % NumNodes]->FindPinChecked(UEdGraphSchema_K2::PN_Execute));
		}
	}
}

/** @return its name */
FString MakeLargeBlueprint(int32 NumNodes)
{
	const FString Name = FString::Printf(TEXT("BP_Large%d"), NumNodes);
	if (!FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Name))
	{
		FKestrelBlueprintUtils::CreateBlueprintAsset(TEXT("/Game"), Name, TEXT("Actor"));
		FillGraph(*FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Name)->UbergraphPages[0], NumNodes);
	}
	return Name;
}

double LongestStep = 0.0;

void RunInSteps(IKestrelSlicedWork& Work)
{
	LongestStep = 0.0;
	for (bool bDone = false; !bDone;)
	{
		const uint64 Start = FPlatformTime::Cycles64();
		bDone = Work.Step(0.0); // a deadline that is over: as little as possible
		LongestStep = FMath::Max(LongestStep, FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - Start));
	}
}

constexpr int32 NumVariables = 1000;
constexpr int32 NumFunctions = 200;
constexpr int32 NodesPerFunction = 20;

FString GetModifiedName(int32 Run)
{
	return FString::Printf(TEXT("BP_Modified%d"), Run);
}

template <typename MakeType>
FString JoinMany(int32 Num, MakeType Make)
{
	TArray<FString> Elements;
	for (int32 Index = 0; Index < Num; ++Index)
	{
		Elements.Add(Make(Index));
	}
	return FString::Join(Elements, TEXT(","));
}

/** One behind the other, as the flow of a function goes. */
FString MakeNode(int32 Index)
{
	const FString Link = Index > 0 ? FString() : FString(TEXT("{\"Node\":\"Return Node\",\"Pin\":\"execute\"}"));
	return FString::Printf(TEXT("{\"Class\":\"UK2Node_CallFunction\",\"Properties\":{\"FunctionName\":\"PrintString\","
								"\"Comment\":\"Step %d\",\"Pins\":[{\"PinName\":\"InString\",\"Value\":\"%d\"},"
								"{\"PinName\":\"then\",\"Connections\":[%s]}]}}"),
		Index, Index, *Link);
}

FString MakeDocument(double Size)
{
	const FString Variables = JoinMany(Scale(NumVariables, Size), [](int32 Index) {
		return FString::Printf(
			TEXT("\"Value%d\":{\"Type\":{\"Category\":\"int\"},\"Value\":%d,\"SaveGame\":true}"), Index, Index);
	});
	const FString Nodes = JoinMany(NodesPerFunction, MakeNode);
	const FString Functions = JoinMany(Scale(NumFunctions, Size), [&Nodes](int32 Index) {
		return FString::Printf(
				   TEXT("{\"Name\":\"Function%d\",\"InParams\":[{\"Name\":\"In\",\"Type\":\"IntProperty\"}],"
						"\"OutParams\":[{\"Name\":\"Out\",\"Type\":\"IntProperty\"}],\"EdGraph\":{\"Nodes\":["),
				   Index) +
			   Nodes + TEXT("]}}");
	});
	return TEXT("{\"Variables\":{") + Variables + TEXT("},\"Functions\":[") + Functions + TEXT("]}");
}

}

FString KestrelBlueprintBench::ReadBlueprint(int32 Run, double Size)
{
	const FString Name = MakeLargeBlueprint(Scale(NumReadNodes, Size));
	return FString::Printf(TEXT("%d characters"), FKestrelBlueprintUtils::ReadBlueprint(Name, TEXT("Graphs")).Len());
}

FString KestrelBlueprintBench::ReadInSteps(int32 Run, double Size)
{
	const FString Name = MakeLargeBlueprint(Scale(NumReadNodes * 10, Size));
	const FString Path = FString::Printf(TEXT("/Game/%s.%s"), *Name, *Name);
	FKestrelBlueprintRead Read(FKestrelAssetAddress{ Name, Path }, TEXT("Graphs"));
	RunInSteps(Read);
	return FString::Printf(TEXT("%d characters"), Read.TakeText().Len());
}

FString KestrelBlueprintBench::LookUpBlueprint(int32 Run, double Size)
{
	if (Run == 0)
	{
		IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
		FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("bp_thing100")); // loads it
	}
	const UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("bp_thing100"));
	return Blueprint ? Blueprint->GetPathName() : TEXT("not found");
}

FString KestrelBlueprintBench::ScanContent(int32 Run, double Size)
{
	IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
	TArray<FAssetData> Assets;
	IAssetRegistry::Get()->GetAssetsByClass(UBlueprint::StaticClass()->GetClassPathName(), Assets);
	return FString::Printf(TEXT("%d Blueprints"), Assets.Num());
}

FString KestrelBlueprintBench::FindInBlueprints(int32 Run, double Size)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	FKestrelFindUtils::FindInAllBlueprintFiles(TEXT("thing199"), Result);
	return FString::Printf(TEXT("%d matches"), Result->GetArrayField(TEXT("blueprint_references")).Num());
}

void KestrelBlueprintBench::PrepareFindInFiles(int32 Run, double Size)
{
	IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
}

void KestrelBlueprintBench::PrepareFindAgain(int32 Run, double Size)
{
	constexpr float SettlingSeconds = 4.0f; // nothing is kept of files that have just been written
	if (Run == 0)
	{
		FPlatformProcess::Sleep(SettlingSeconds);
		PrepareFindInFiles(Run, Size);
		FindInBlueprints(Run, Size);
	}
}

void KestrelBlueprintBench::PrepareFindInMemory(int32 Run, double Size)
{
	TSharedPtr<FJsonObject> Everything = MakeShared<FJsonObject>();
	if (Run == 0)
	{
		PrepareFindInFiles(Run, Size);
		FKestrelFindUtils::FindInAllBlueprintFiles(TEXT("event"), Everything); // loads them, for their nodes
	}
}

FString KestrelBlueprintBench::FindInSteps(int32 Run, double Size)
{
	IAssetRegistry::Get()->WaitForCompletion();
	FKestrelBlueprintSearch Search(TEXT("thing199"));
	RunInSteps(Search);
	FJsonObject Result;
	Search.Report(Result);
	return FString::Printf(TEXT("%d matches"), Result.GetArrayField(TEXT("blueprint_references")).Num());
}

double KestrelBlueprintBench::GetLongestStep()
{
	return LongestStep;
}

FString KestrelBlueprintBench::ModifyBlueprint(int32 Run, double Size)
{
	const FString Name = GetModifiedName(Run);
	FKestrelBlueprintUtils::ModifyBlueprint(Name, MakeDocument(Size));
	const UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Name);
	return FString::Printf(
		TEXT("%d variables, %d functions"), Blueprint->NewVariables.Num(), Blueprint->FunctionGraphs.Num() - 1);
}

void KestrelBlueprintBench::PrepareModify(int32 Run, double Size)
{
	GEditor->ResetTransaction(FText());
	FKestrelBlueprintUtils::CreateBlueprintAsset(TEXT("/Game"), GetModifiedName(Run), TEXT("Actor"));
}

FString KestrelBlueprintBench::UndoModification(int32 Run, double Size)
{
	const bool bUndone = GEditor->UndoTransaction();
	const UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(GetModifiedName(Run));
	return FString::Printf(
		TEXT("%s, %d variables left"), bUndone ? TEXT("undone") : TEXT("not undone"), Blueprint->NewVariables.Num());
}

void KestrelBlueprintBench::PrepareUndo(int32 Run, double Size)
{
	PrepareModify(Run, Size);
	ModifyBlueprint(Run, Size);
}
