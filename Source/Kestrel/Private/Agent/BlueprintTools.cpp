#include "Agent/Agent.h"
#include "Agent/JsonText.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Agent/ToolInput.h"
#include "Dom/JsonObject.h"

FString FAgent::UseCreateBlueprintTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	FString Name;
	FString ParentClassName;
	if (!KestrelTools::ReadFields(Input,
			{ { TEXT("BPPath"), &Path }, { TEXT("BPName"), &Name }, { TEXT("BPParentClassName"), &ParentClassName } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Creating Blueprint File ..."));
	return FKestrelBlueprintUtils::CreateBlueprintAsset(Path, Name, ParentClassName);
}

FString FAgent::UseReadBlueprintTool(const FString& Id, const FJsonObject& Input)
{
	FString Name;
	FString DataSubset;
	if (!KestrelTools::ReadFields(Input, { { TEXT("blueprint_name"), &Name } }))
	{
		return TEXT("Error: Missing required fields: blueprint_name");
	}
	if (!KestrelTools::ReadFields(Input, { { TEXT("data_subset"), &DataSubset } }))
	{
		return TEXT("Error: Missing required fields: data_subset");
	}
	KestrelTools::ShowStatus(TEXT("Reading Blueprint Asset ..."));
	return FKestrelBlueprintUtils::ReadBlueprint(Name, DataSubset);
}

FString FAgent::UseModifyBlueprintTool(const FString& Id, const FJsonObject& Input)
{
	FString Name;
	FString Updates;
	if (!KestrelTools::ReadFields(Input, { { TEXT("blueprint_name"), &Name } }))
	{
		return TEXT("Error: Missing required fields - blueprint_name");
	}
	if (!KestrelTools::ReadFields(Input, { { TEXT("updates"), &Updates } }))
	{
		return TEXT("Error: Missing required fields - updates");
	}
	KestrelTools::ShowStatus(TEXT("Modifying Blueprint File ..."));
	const FString Document = FKestrelBlueprintUtils::ModifyBlueprint(Name, Updates);
	const TSharedPtr<FJsonObject> Result = KestrelJson::ParseObject(Document);
	FString Error;
	const bool bFailed = Result.IsValid() && Result->TryGetStringField(TEXT("Error"), Error);
	// The document as a whole tells what was done to each variable and function.
	return bFailed ? TEXT("Error: ") + Error : Document;
}

FString FAgent::UseReadBehaviorTreeTool(const FString& Id, const FJsonObject& Input)
{
	FString Name;
	if (!KestrelTools::ReadFields(Input, { { TEXT("behavior_tree_name"), &Name } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Reading Behavior Tree File ..."));
	return FKestrelBlueprintUtils::ReadBehaviorTree(Name);
}

FString FAgent::UseSaveAndCompileAllDirtyBlueprintsTool(const FString& Id, const FJsonObject& Input)
{
	KestrelTools::ShowStatus(TEXT("Saving and compiling all dirty blueprints ..."));
	return FKestrelBlueprintUtils::SaveAndCompileAllDirtyBlueprints();
}
