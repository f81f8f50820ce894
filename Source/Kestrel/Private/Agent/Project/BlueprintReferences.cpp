#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Project/BlueprintSearch.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Project/SearchReview.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/PlatformTime.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Misc/ScopedSlowTask.h"
#include "Templates/Casts.h"

#define LOCTEXT_NAMESPACE "Kestrel"

namespace BlueprintReferences
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

/** Searches one Blueprint. */
class FSearch
{
public:
	FSearch(const UBlueprint& InBlueprint, FKestrelNameNeedle& InNeedle, FValues& InResults)
		: Blueprint(InBlueprint)
		, Needle(InNeedle)
		, Results(InResults)
		, BlueprintName(InBlueprint.GetName())
		, FilePath(FKestrelFindUtils::GetBlueprintFilePath(&InBlueprint))
	{
	}

	void Run()
	{
		if (Needle.IsIn(BlueprintName))
		{
			AddMatch(TEXT("Blueprint File"));
		}
		for (const UEdGraph* Graph : Blueprint.UbergraphPages)
		{
			SearchNodes(Graph);
		}
		for (const UEdGraph* Graph : Blueprint.FunctionGraphs)
		{
			if (Graph && Needle.IsIn(Graph->GetFName()))
			{
				AddMatch(TEXT("Function"), Graph->GetName());
			}
			SearchNodes(Graph);
		}
		for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
		{
			if (Needle.IsIn(Variable.VarName))
			{
				AddMatch(TEXT("Variable"), Variable.VarName.ToString());
			}
		}
	}

private:
	void SearchNodes(const UEdGraph* Graph)
	{
		if (!Graph)
		{
			return;
		}
		for (const UEdGraphNode* Node : Graph->Nodes)
		{
			if (Node) // null for one whose class is gone
			{
				SearchNode(*Node);
			}
		}
	}

	void SearchNode(const UEdGraphNode& Node)
	{
		const FString Title = Node.GetNodeTitle(ENodeTitleType::FullTitle).ToString();
		if (Needle.IsIn(Title))
		{
			AddMatch(TEXT("Node Title"), Title);
		}
		if (Needle.IsIn(Node.NodeComment))
		{
			AddMatch(TEXT("Node Comment"), Node.NodeComment);
		}
		for (const UEdGraphPin* Pin : Node.Pins)
		{
			if (Pin && Needle.IsIn(Pin->PinName))
			{
				AddMatch(TEXT("Pin"), Pin->PinName.ToString());
			}
		}
	}

	void AddMatch(const TCHAR* Type, const TOptional<FString>& Name = TOptional<FString>())
	{
		const TSharedRef<FJsonObject> Match = MakeShared<FJsonObject>();
		Match->SetStringField(TEXT("Type"), Type);
		if (Name.IsSet())
		{
			Match->SetStringField(TEXT("Name"), Name.GetValue());
		}
		Match->SetStringField(TEXT("Blueprint"), BlueprintName);
		Match->SetStringField(TEXT("Path"), FilePath);
		Results.Add(MakeShared<FJsonValueObject>(Match));
	}

	const UBlueprint& Blueprint;
	FKestrelNameNeedle& Needle;
	FValues& Results;
	const FString BlueprintName;
	const FString FilePath;
};

/** Those of the project's own content. */
TArray<FAssetData> ListBlueprints()
{
	return KestrelBlueprintLookup::ListAssets(*UBlueprint::StaticClass())
		.FilterByPredicate(
			[](const FAssetData& Asset) { return Asset.PackageName.ToString().StartsWith(TEXT("/Game/")); });
}
}

bool FKestrelNameNeedle::IsIn(FName Name)
{
	if (const bool* Known = Names.Find(Name))
	{
		return *Known;
	}
	return Names.Add(Name, IsIn(Name.ToString()));
}

FKestrelBlueprintSearch::FKestrelBlueprintSearch(const FString& Text)
	: Needle(Text)
{
}

bool FKestrelBlueprintSearch::Step(double Deadline)
{
	if (!Filter.IsSet() && !List())
	{
		return false;
	}
	if (!bFiltered)
	{
		bFiltered = Filter->Step(Deadline);
		return bFiltered && Assets.IsEmpty();
	}
	while (NextAsset < Assets.Num())
	{
		SearchNext(); // at least one, however late it is
		if (FPlatformTime::Seconds() >= Deadline)
		{
			break;
		}
	}
	return NextAsset == Assets.Num();
}

bool FKestrelBlueprintSearch::List()
{
	if (IAssetRegistry::Get()->IsLoadingAssets())
	{
		return false;
	}
	Assets = BlueprintReferences::ListBlueprints();
	Filter.Emplace(Needle.GetText(), Assets);
	return true;
}

/** What has no file is only in memory, and nobody else's. */
bool FKestrelBlueprintSearch::MayRead(const FString& File)
{
	if (File.IsEmpty())
	{
		return true;
	}
	FString Folder = FPaths::GetPath(File);
	if (!Folder.Equals(LastFolder, ESearchCase::CaseSensitive))
	{
		RealLastFolder = KestrelNativeFile::ResolveLinks(Folder);
		LastFolder = MoveTemp(Folder);
	}
	// The links of a folder's path are those of all its files.
	const bool bPlain = !RealLastFolder.IsEmpty() &&
						FPlatformFileManager::Get().GetPlatformFile().IsSymlink(*File) == ESymlinkResult::NonSymlink;
	return Review.MayRead(
		File, bPlain ? RealLastFolder / FPaths::GetCleanFilename(File) : KestrelNativeFile::ResolveLinks(File));
}

void FKestrelBlueprintSearch::SearchNext()
{
	const FAssetData& Asset = Assets[NextAsset++];
	if (!MayRead(Filter->GetFile(Asset.PackageName)))
	{
		return;
	}
	const bool bLoaded = Asset.IsAssetLoaded();
	if (!bLoaded && !Filter->MayMatch(Asset.PackageName))
	{
		return;
	}
	NumLoaded += bLoaded ? 0 : 1;
	if (const UBlueprint* Blueprint = Cast<UBlueprint>(Asset.GetAsset()))
	{
		BlueprintReferences::FSearch(*Blueprint, Needle, References).Run();
	}
}

float FKestrelBlueprintSearch::GetProgress() const
{
	constexpr float FilterShare = 0.3f; // of the time, where most packages are not loaded
	const float Searched = static_cast<float>(NextAsset) / static_cast<float>(FMath::Max(Assets.Num(), 1));
	return Filter.IsSet() ? FilterShare * Filter->GetProgress() + (1.0f - FilterShare) * Searched : -1.0f;
}

void FKestrelBlueprintSearch::Report(FJsonObject& Result) const
{
	Result.SetArrayField(TEXT("blueprint_references"), References);
	Review.Report(Result, TEXT("blueprints_not_searched"));
}

void FKestrelFindUtils::FindInAllBlueprintFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result)
{
	constexpr double SecondsPerReport = 0.1;
	if (IAssetRegistry::Get()->IsLoadingAssets())
	{
		IAssetRegistry::Get()->WaitForCompletion();
	}
	FScopedSlowTask Progress(1.0f, LOCTEXT("SearchingBlueprints", "Searching the Blueprints..."));
	Progress.MakeDialogDelayed(1.0f); // seconds
	FKestrelBlueprintSearch Search(ReferenceString);
	float Reported = 0.0f;
	while (!Search.Step(FPlatformTime::Seconds() + SecondsPerReport))
	{
		const float Done = FMath::Max(Search.GetProgress(), Reported);
		Progress.EnterProgressFrame(Done - Reported);
		Reported = Done;
	}
	Search.Report(*Result);
}

void FKestrelFindUtils::FindInBlueprint(
	UBlueprint* Blueprint, const FString& ReferenceString, TArray<TSharedPtr<FJsonValue>>& Results)
{
	if (Blueprint)
	{
		FKestrelNameNeedle Needle(ReferenceString);
		BlueprintReferences::FSearch(*Blueprint, Needle, Results).Run();
	}
}

FString FKestrelFindUtils::GetBlueprintFilePath(const UBlueprint* Blueprint)
{
	if (!Blueprint)
	{
		return TEXT("Invalid Blueprint");
	}
	const FString PackagePath = FPackageName::GetLongPackagePath(Blueprint->GetPathName());
	FString File = PackagePath / Blueprint->GetName() + TEXT(".uasset");
	// Content of plugins keeps its mount point, so that it can be told apart.
	if (!File.RemoveFromStart(TEXT("/Game/")))
	{
		File.RemoveFromStart(TEXT("/"));
	}
	return FPaths::Combine(FPaths::ProjectContentDir(), File);
}

#undef LOCTEXT_NAMESPACE
