#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Project/SearchReview.h"
#include "AssetRegistry/AssetData.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Misc/ScopedSlowTask.h"
#include "Templates/Casts.h"

#define LOCTEXT_NAMESPACE "Kestrel"

namespace BlueprintReferences
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

/** Whether texts have the searched one in them. Names are few and met often, so what they gave is kept. */
class FNeedle
{
public:
	explicit FNeedle(const FString& InText)
		: Text(InText)
	{
	}

	/** The engine does not find the empty text, which is in every text. */
	bool IsIn(const FString& Candidate) const { return Text.IsEmpty() || Candidate.Contains(Text); }

	bool IsIn(FName Name)
	{
		if (const bool* Known = Names.Find(Name))
		{
			return *Known;
		}
		return Names.Add(Name, IsIn(Name.ToString()));
	}

private:
	const FString Text;
	TMap<FName, bool> Names;
};

/** Searches one Blueprint. */
class FSearch
{
public:
	FSearch(const UBlueprint& InBlueprint, FNeedle& InNeedle, FValues& InResults)
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
	FNeedle& Needle;
	FValues& Results;
	const FString BlueprintName;
	const FString FilePath;
};

/** What has no file is only in memory, and nobody else's. */
bool MayRead(FKestrelSearchReview& Review, const FAssetData& Asset)
{
	const FString File = KestrelBlueprintPackage::GetFileName(Asset.PackageName.ToString());
	return File.IsEmpty() || Review.MayRead(File, KestrelNativeFile::ResolveLinks(File));
}

/** Those of the project's own content. */
TArray<FAssetData> ListBlueprints()
{
	return KestrelBlueprintLookup::ListAssets(*UBlueprint::StaticClass())
		.FilterByPredicate(
			[](const FAssetData& Asset) { return Asset.PackageName.ToString().StartsWith(TEXT("/Game/")); });
}
}

void FKestrelFindUtils::FindInAllBlueprintFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result)
{
	const TArray<FAssetData> Assets = BlueprintReferences::ListBlueprints();
	FScopedSlowTask Progress(
		static_cast<float>(Assets.Num()), LOCTEXT("SearchingBlueprints", "Searching the Blueprints..."));
	Progress.MakeDialogDelayed(1.0f); // seconds
	BlueprintReferences::FNeedle Needle(ReferenceString);
	BlueprintReferences::FValues References;
	FKestrelSearchReview Review;
	for (const FAssetData& Asset : Assets)
	{
		Progress.EnterProgressFrame();
		const UBlueprint* Blueprint =
			BlueprintReferences::MayRead(Review, Asset) ? Cast<UBlueprint>(Asset.GetAsset()) : nullptr;
		if (Blueprint)
		{
			BlueprintReferences::FSearch(*Blueprint, Needle, References).Run();
		}
	}
	Result->SetArrayField(TEXT("blueprint_references"), References);
	Review.Report(*Result, TEXT("blueprints_not_searched"));
}

void FKestrelFindUtils::FindInBlueprint(
	UBlueprint* Blueprint, const FString& ReferenceString, TArray<TSharedPtr<FJsonValue>>& Results)
{
	if (Blueprint)
	{
		BlueprintReferences::FNeedle Needle(ReferenceString);
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
