#include "Agent/Blueprints/Assets/BlueprintCompileLog.h"
#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/Change/BlueprintFunctions.h"
#include "Agent/Blueprints/Change/BlueprintReport.h"
#include "Agent/Blueprints/Change/BlueprintVariables.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Engine/Blueprint.h"
#include "ScopedTransaction.h"
#include "Templates/SubclassOf.h"
#include "UObject/ObjectMacros.h"
#include "UObject/StrongObjectPtr.h"

namespace BlueprintModify
{
const TCHAR* const VariablesKey = TEXT("Variables");
const TCHAR* const FunctionsKey = TEXT("Functions");

/** Applies one request to one Blueprint. */
class FModification
{
public:
	FModification(UBlueprint& InBlueprint, const FJsonObject& InRequest)
		: Blueprint(InBlueprint)
		, Request(InRequest)
	{
		Request.TryGetObjectField(VariablesKey, Variables);
		Request.TryGetArrayField(FunctionsKey, Functions);
	}

	/** Whether there is anything to apply. */
	bool IsEmpty() const
	{
		return !(Variables && !(*Variables)->Values.IsEmpty()) && !(Functions && !Functions->IsEmpty());
	}

	TSharedRef<FJsonObject> Run()
	{
		ReportUnknown();
		ApplyVariables();
		const bool bFunctionsChanged =
			Functions && KestrelBlueprintFunctions::Modify(Blueprint, *Functions, *Result, Report);
		if (!Written.bChanged && !bFunctionsChanged)
		{
			Result->SetStringField(TEXT("Message"), TEXT("No modifications were made to the Blueprint."));
			Report.AddTo(*Result);
			return Result;
		}
		return CompileAndSave();
	}

private:
	void ReportUnknown()
	{
		for (const auto& Pair : Request.Values)
		{
			const FString Key(*Pair.Key);
			if (!Key.Equals(VariablesKey, ESearchCase::IgnoreCase) &&
				!Key.Equals(FunctionsKey, ESearchCase::IgnoreCase))
			{
				Report.Skip(
					TEXT("Section"), Key, TEXT("Only \"Variables\" and \"Functions\" of a document are applied."));
			}
		}
		if (!Variables && Request.HasField(VariablesKey))
		{
			Report.Skip(TEXT("Section"), VariablesKey, TEXT("It has to be an object."));
		}
		if (!Functions && Request.HasField(FunctionsKey))
		{
			Report.Skip(TEXT("Section"), FunctionsKey, TEXT("It has to be an array."));
		}
	}

	void ApplyVariables()
	{
		if (!Variables)
		{
			return;
		}
		Compiled = KestrelBlueprintVariables::FindCompiled(Blueprint, **Variables);
		if (!Compiled.IsEmpty())
		{
			KestrelBlueprintVariables::LoadChildren(*Blueprint.GeneratedClass.Get());
		}
		Written = KestrelBlueprintVariables::Modify(Blueprint, **Variables, *Result, Report);
	}

	TSharedRef<FJsonObject> CompileAndSave()
	{
		const TStrongObjectPtr<UBlueprint> Kept(&Blueprint); // compiling collects garbage
		FJsonObject CompileMessages;
		KestrelBlueprintCompileLog::Compile(Blueprint, CompileMessages);
		KestrelBlueprintVariables::WriteDefaults(Blueprint, Written.Values, Compiled, Report);
		const KestrelBlueprintPackage::FOutcome Saved = KestrelBlueprintPackage::Save(Blueprint, RF_Standalone);
		if (!Saved.bSaved)
		{
			const TSharedRef<FJsonObject> Error =
				KestrelBlueprintDocument::MakeError(TEXT("Failed to save modified Blueprint."));
			Error->SetStringField(TEXT("Reason"), Saved.Reason);
			return Error;
		}
		Result->SetStringField(TEXT("Success"), TEXT("Blueprint modified, compiled, and saved successfully."));
		Report.AddTo(*Result);
		for (const auto& Pair : CompileMessages.Values)
		{
			Result->SetField(FString(*Pair.Key), Pair.Value);
		}
		if (!Saved.Reason.IsEmpty())
		{
			Result->SetStringField(TEXT("SourceControl"), Saved.Reason);
		}
		return Result;
	}

	UBlueprint& Blueprint;
	const FJsonObject& Request;
	const TSharedPtr<FJsonObject>* Variables = nullptr;
	const TArray<TSharedPtr<FJsonValue>>* Functions = nullptr;
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	FKestrelBlueprintReport Report;
	TArray<FName> Compiled; // variables that the class had before, and that are to get a value
	KestrelBlueprintVariables::FOutcome Written;
};
}

FString FKestrelBlueprintUtils::ModifyBlueprint(
	const FString& BlueprintName, const FString& Modifications, const FString& TransactionTitle)
{
	return ModifyBlueprint(
		FKestrelAssetFinder().Find(*UBlueprint::StaticClass(), BlueprintName), Modifications, TransactionTitle);
}

FString FKestrelBlueprintUtils::ModifyBlueprint(
	const FKestrelAssetAddress& Address, const FString& Modifications, const FString& TransactionTitle)
{
	const TSharedPtr<FJsonObject> Request = KestrelJson::ParseObject(Modifications);
	if (!Request.IsValid())
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(TEXT("Failed to parse modification JSON.")));
	}
	FString Error;
	UBlueprint* Blueprint = KestrelBlueprintLookup::LoadBlueprint(Address, Error);
	if (!Blueprint)
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(Error));
	}
	BlueprintModify::FModification Modification(*Blueprint, *Request);
	// Before anything is changed: what cannot be written would be left half done.
	const FString Refusal = Modification.IsEmpty() ? FString() : KestrelBlueprintPackage::CheckOut(*Blueprint);
	if (!Refusal.IsEmpty())
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(
			FString::Printf(TEXT("Blueprint '%s' was not modified. %s"), *Address.Name, *Refusal)));
	}
	const FScopedTransaction Transaction(FText::FromString(TransactionTitle));
	return SerializeJson(Modification.Run());
}
