#include "Agent/Agent.h"
#include "Agent/Blueprints/Change/BlueprintSummary.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Read/BlueprintRead.h"
#include "Agent/Blueprints/Types/TypeLookup.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolPlan.h"
#include "BehaviorTree/BehaviorTree.h"
#include "Dom/JsonObject.h"
#include "Engine/Blueprint.h"
#include "UObject/UObjectGlobals.h"

#define LOCTEXT_NAMESPACE "KestrelBlueprintTools"

namespace BlueprintTools
{
const FKestrelToolField FolderPath = { TEXT("BPPath"), EKestrelFieldType::Text,
	TEXT("The content folder of the new Blueprint, as /Game/Doors.") };
const FKestrelToolField NewName = { TEXT("BPName"), EKestrelFieldType::Text, TEXT("The new Blueprint's name.") };
const FKestrelToolField ParentClassName = { TEXT("BPParentClassName"), EKestrelFieldType::Text,
	TEXT("The parent class: a name, as Actor, or a class path.") };

// The three tools word a missing name in three ways.
const FKestrelToolField ReadName = { TEXT("blueprint_name"), EKestrelFieldType::Text, TEXT("The Blueprint's name."),
	EKestrelPresence::Required, TEXT("Error: Missing required fields: blueprint_name") };
const FKestrelToolField DataSubset = { TEXT("data_subset"), EKestrelFieldType::Text,
	TEXT("The part of the Blueprint to read."), EKestrelPresence::Required,
	TEXT("Error: Missing required fields: data_subset") };
const FKestrelToolField ModifiedName = { ReadName.Name, EKestrelFieldType::Text, ReadName.Description,
	EKestrelPresence::Required, TEXT("Error: Missing required fields - blueprint_name") };
const FKestrelToolField Updates = { TEXT("updates"), EKestrelFieldType::Text,
	TEXT("The modifications: a JSON document as a string."), EKestrelPresence::Required,
	TEXT("Error: Missing required fields - updates") };
const FKestrelToolField TreeName = { TEXT("behavior_tree_name"), EKestrelFieldType::Text,
	TEXT("The behavior tree's name.") };

void PlanCreate(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Caution(LOCTEXT("NewAssetStays", "cannot be undone"));
	const FString PackageName = Plan.Input.Get(FolderPath) / Plan.Input.Get(NewName);
	// A parent that is not found fails first, and to find it may mean to load it.
	if (KestrelTypeLookup::FindClassInMemory(Plan.Input.Get(ParentClassName)))
	{
		// It runs all the same, as a tool before may make room.
		Plan.Refusal = FKestrelBlueprintUtils::PredictCreation(Plan.Input.Get(FolderPath), Plan.Input.Get(NewName));
	}
	if (!Plan.SetNewAsset(View, PackageName))
	{
		Plan.Target = PackageName;
	}
	Plan.Target += FString::Printf(TEXT(" (%s)"), *Plan.Input.Get(ParentClassName));
}

FString ApplyCreate(const FKestrelToolPlan& Plan)
{
	return FKestrelBlueprintUtils::CreateBlueprintAsset(
		Plan.Input.Get(FolderPath), Plan.Input.Get(NewName), Plan.Input.Get(ParentClassName));
}

void PlanRead(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.SetAsset(View, &UBlueprint::StaticClass, Plan.Input.Get(ReadName));
}

TSharedRef<IKestrelTextWork> BeginRead(const FKestrelToolPlan& Plan)
{
	return MakeShared<FKestrelBlueprintRead>(Plan.Asset, Plan.Input.Get(DataSubset));
}

/** Whether a string in a JSON document holds a NUL, which is always escaped there. A backslash is only in strings. */
bool HoldsNul(const FString& Json)
{
	for (int32 Index = 0; Index < Json.Len(); ++Index)
	{
		if (Json[Index] != TEXT('\\'))
		{
			continue;
		}
		++Index; // what is escaped begins no escape itself
		if (FCString::Strncmp(*Json + Index, TEXT("u0000"), 5) == 0)
		{
			return true;
		}
	}
	return false;
}

void PlanModify(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	constexpr int32 MaxLength = 256 * 1024; // indented, a text may be a hundred times as long; nobody reads longer ones
	Plan.SetAsset(View, &UBlueprint::StaticClass, Plan.Input.Get(ModifiedName));
	const FString& Text = Plan.Input.Get(Updates);
	if (HoldsNul(Text))
	{
		Plan.Refuse(KestrelTools::MakeNulError(Updates));
	}
	const TSharedPtr<FJsonObject> Document = Text.Len() <= MaxLength ? KestrelJson::ParseObject(Text) : nullptr;
	if (Document.IsValid())
	{
		// One that is not loaded is not loaded for this.
		Plan.Summary =
			KestrelBlueprintSummary::Describe(*Document, FindObject<UBlueprint>(nullptr, *Plan.Asset.ObjectPath));
	}
	Plan.SetChange(View, FString(), Document.IsValid() ? KestrelJson::ToPrettyText(Document.ToSharedRef()) : Text);
}

FString ApplyModify(const FKestrelToolPlan& Plan)
{
	FAgent::Get().OfferUndoOfThisConversation();
	const FString Document = FKestrelBlueprintUtils::ModifyBlueprint(
		Plan.Asset, Plan.Input.Get(Updates), GetKestrelTransactionName(FAgent::Get().GetConversationId()));
	const TSharedPtr<FJsonObject> Result = KestrelJson::ParseObject(Document);
	FString Error;
	if (!Result.IsValid() || !Result->TryGetStringField(TEXT("Error"), Error))
	{
		// The document as a whole tells what was done to each variable and function.
		return Document;
	}
	FString Reason;
	Result->TryGetStringField(TEXT("Reason"), Reason);
	return TEXT("Error: ") + Error + (Reason.IsEmpty() ? Reason : TEXT(" ") + Reason);
}

void PlanReadTree(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.SetAsset(View, &UBehaviorTree::StaticClass, Plan.Input.Get(TreeName));
}

FString ApplyReadTree(const FKestrelToolPlan& Plan)
{
	return FKestrelBlueprintUtils::ReadBehaviorTree(Plan.Asset);
}

void PlanSave(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Caution(LOCTEXT("SavedStays", "saves your own unsaved changes too"));
	Plan.SetUnsavedAssets(View);
}

FString ApplySave(const FKestrelToolPlan&)
{
	return FKestrelBlueprintUtils::SaveAndCompileAllDirtyBlueprints();
}
}

void KestrelTools::AddBlueprintTools(TArray<FKestrelTool>& OutTools)
{
	using namespace BlueprintTools;
	OutTools.Add({ KestrelToolNames::CreateBlueprint, EKestrelToolKind::Create,
		LOCTEXT("CreateBlueprint", "Create the Blueprint"), TEXT("Creates a Blueprint with a parent class."),
		{ FolderPath, NewName, ParentClassName }, MissingRequiredFields, TEXT("Creating Blueprint File ..."),
		EKestrelNameInPanel::Hidden, PlanCreate, ApplyCreate });
	OutTools.Add({ KestrelToolNames::ReadBlueprint, EKestrelToolKind::Read, LOCTEXT("ReadAsset", "Read the asset"),
		TEXT("Reads a Blueprint as a JSON document."), { ReadName, DataSubset }, MissingRequiredFields,
		TEXT("Reading Blueprint Asset ..."), EKestrelNameInPanel::Hidden, PlanRead, nullptr, EKestrelAnswers::AtOnce,
		BeginRead });
	OutTools.Add({ KestrelToolNames::ModifyBlueprint, EKestrelToolKind::Change,
		LOCTEXT("ModifyBlueprint", "Change the Blueprint"),
		TEXT("Adds and changes variables, functions and nodes of a Blueprint."), { ModifiedName, Updates },
		MissingRequiredFields, TEXT("Modifying Blueprint File ..."), EKestrelNameInPanel::Shown, PlanModify,
		ApplyModify });
	OutTools.Add({ KestrelToolNames::ReadBehaviorTree, EKestrelToolKind::Read, LOCTEXT("ReadTree", "Read the asset"),
		TEXT("Reads a behavior tree and its blackboard as a JSON document."), { TreeName }, MissingRequiredFields,
		TEXT("Reading Behavior Tree File ..."), EKestrelNameInPanel::Hidden, PlanReadTree, ApplyReadTree });
	OutTools.Add({ KestrelToolNames::SaveAndCompileBlueprints, EKestrelToolKind::Change,
		LOCTEXT("SaveBlueprints", "Save and compile all changed Blueprints"),
		TEXT("Saves all unsaved Blueprints and compiles them."), {}, nullptr,
		TEXT("Saving and compiling all dirty blueprints ..."), EKestrelNameInPanel::Hidden, PlanSave, ApplySave });
}

#undef LOCTEXT_NAMESPACE
