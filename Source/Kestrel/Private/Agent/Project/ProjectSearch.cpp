#include "Agent/Project/ProjectSearch.h"

#include "Agent/Text/JsonText.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"

FKestrelProjectSearch::FKestrelProjectSearch(const FString& InReferenceString)
	: ReferenceString(InReferenceString)
	, Sources(InReferenceString)
	, Blueprints(InReferenceString)
{
}

bool FKestrelProjectSearch::Step(double Deadline)
{
	if (!Sources.IsElsewhere() && !Sources.Step(Deadline))
	{
		return false;
	}
	bHasBlueprints = bHasBlueprints || Blueprints.Step(Deadline);
	return bHasBlueprints && Sources.Step(Deadline);
}

float FKestrelProjectSearch::GetProgress() const
{
	return FMath::Min(Sources.GetProgress(), bHasBlueprints ? 1.0f : Blueprints.GetProgress());
}

void FKestrelProjectSearch::Finish()
{
	Sources.Finish();
	if (IAssetRegistry::Get()->IsLoadingAssets())
	{
		IAssetRegistry::Get()->WaitForCompletion();
	}
	if (!bHasBlueprints)
	{
		Blueprints.Finish();
		bHasBlueprints = true;
	}
}

FString FKestrelProjectSearch::TakeText()
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("reference_string"), ReferenceString);
	Sources.Report(*Result);
	Blueprints.Report(*Result);
	return KestrelJson::ToCondensedText(Result.ToSharedRef());
}
