#include "Agent/Agent.h"
#include "Agent/BlueprintDocument.h"
#include "Agent/BlueprintPackage.h"
#include "Agent/BlueprintVariables.h"
#include "Agent/JsonText.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Agent/TransactionLookup.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Engine/Blueprint.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "ScopedTransaction.h"
#include "UObject/StrongObjectPtr.h"

namespace BlueprintModify
{
/** @return whether anything has changed */
bool ApplyVariables(
	UBlueprint& Blueprint, const FJsonObject& Request, TSharedPtr<FJsonObject>& Result, TArray<FName>& OutRewritten)
{
	const TSharedPtr<FJsonObject>* Variables = nullptr;
	if (!Request.TryGetObjectField(TEXT("Variables"), Variables))
	{
		return false;
	}
	OutRewritten = KestrelBlueprintVariables::FindCompiled(Blueprint, **Variables);
	if (!OutRewritten.IsEmpty())
	{
		KestrelBlueprintVariables::LoadChildren(*Blueprint.GeneratedClass.Get());
	}
	return FKestrelBlueprintUtils::ModifyBlueprintVariables(&Blueprint, **Variables, Result);
}

bool ApplyFunctions(UBlueprint& Blueprint, const FJsonObject& Request, TSharedPtr<FJsonObject>& Result)
{
	const TArray<TSharedPtr<FJsonValue>>* Functions = nullptr;
	return Request.TryGetArrayField(TEXT("Functions"), Functions) &&
		   FKestrelBlueprintUtils::ModifyBlueprintFunctions(&Blueprint, *Functions, Result);
}

TSharedRef<FJsonObject> Apply(UBlueprint& Blueprint, const FJsonObject& Request)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	TArray<FName> Rewritten;
	const bool bVariables = ApplyVariables(Blueprint, Request, Result, Rewritten);
	const bool bFunctions = ApplyFunctions(Blueprint, Request, Result);
	if (!bVariables && !bFunctions)
	{
		Result->SetStringField(TEXT("Message"), TEXT("No modifications were made to the Blueprint."));
		return Result.ToSharedRef();
	}
	const TStrongObjectPtr<UBlueprint> Kept(&Blueprint); // compiling collects garbage
	FKismetEditorUtilities::CompileBlueprint(&Blueprint);
	KestrelBlueprintVariables::WriteDefaults(Blueprint, Rewritten);
	if (!KestrelBlueprintPackage::Save(Blueprint, RF_Standalone))
	{
		return KestrelBlueprintDocument::MakeError(TEXT("Failed to save modified Blueprint."));
	}
	Result->SetStringField(TEXT("Success"), TEXT("Blueprint modified, compiled, and saved successfully."));
	return Result.ToSharedRef();
}
}

FString FKestrelBlueprintUtils::ModifyBlueprint(const FString& BlueprintName, const FString& Modifications)
{
	const TSharedPtr<FJsonObject> Request = KestrelJson::ParseObject(Modifications);
	if (!Request.IsValid())
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(TEXT("Failed to parse modification JSON.")));
	}
	UBlueprint* Blueprint = GetBlueprintFromtBlueprintName(BlueprintName);
	if (!Blueprint)
	{
		return SerializeJson(KestrelBlueprintDocument::MakeBlueprintNotFound(BlueprintName));
	}
	const FString ConversationId = FAgent::Get().GetConversationId();
	const FScopedTransaction Transaction(FText::FromString(GetKestrelTransactionName(ConversationId)));
	return SerializeJson(BlueprintModify::Apply(*Blueprint, *Request));
}
