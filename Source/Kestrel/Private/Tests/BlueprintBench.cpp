#include "Tests/BlueprintBench.h"

#include "Agent/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_CallFunction.h"
#include "Kismet/KismetSystemLibrary.h"

namespace KestrelBlueprintBench
{
constexpr int32 LinksPerNode = 5;

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

FString ReadBlueprintOf(int32 NumNodes)
{
	const FString Name = FString::Printf(TEXT("BP_Large%d"), NumNodes);
	if (!FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Name))
	{
		FKestrelBlueprintUtils::CreateBlueprintAsset(TEXT("/Game"), Name, TEXT("Actor"));
		FillGraph(*FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Name)->UbergraphPages[0], NumNodes);
	}
	return FString::Printf(TEXT("%d characters"), FKestrelBlueprintUtils::ReadBlueprint(Name, TEXT("Graphs")).Len());
}
}

FString KestrelBlueprintBench::ReadBlueprint(int32 Run)
{
	return ReadBlueprintOf(2000);
}

FString KestrelBlueprintBench::ReadHalfBlueprint(int32 Run)
{
	return ReadBlueprintOf(1000);
}

FString KestrelBlueprintBench::LookUpBlueprint(int32 Run)
{
	if (Run == 0)
	{
		IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
		FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("bp_thing15000")); // loads it
	}
	const UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("bp_thing15000"));
	return Blueprint ? Blueprint->GetPathName() : TEXT("not found");
}

FString KestrelBlueprintBench::ScanContent(int32 Run)
{
	IAssetRegistry::Get()->ScanPathsSynchronous({ TEXT("/Game") }, true);
	TArray<FAssetData> Assets;
	IAssetRegistry::Get()->GetAssetsByClass(UBlueprint::StaticClass()->GetClassPathName(), Assets);
	return FString::Printf(TEXT("%d Blueprints"), Assets.Num());
}
