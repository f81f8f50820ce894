#include "Agent/Project/ProjectSearch.h"

#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"

FKestrelProjectSearch::FKestrelProjectSearch(const FString& InReferenceString)
	: ReferenceString(InReferenceString)
	, Sources(InReferenceString)
{
}

bool FKestrelProjectSearch::Step(double Deadline)
{
	return Sources.Step(Deadline);
}

void FKestrelProjectSearch::Finish()
{
	Sources.Finish();
}

FString FKestrelProjectSearch::MakeText()
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("reference_string"), ReferenceString);
	Sources.Report(*Result);
	FKestrelFindUtils::FindInAllBlueprintFiles(ReferenceString, Result);
	return KestrelJson::ToCondensedText(Result.ToSharedRef());
}
