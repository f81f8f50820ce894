#include "Agent/Project/KestrelFindUtils.h"

#include "Agent/Project/ProjectSearch.h"
#include "Agent/Project/SourceSearch.h"
#include "Dom/JsonObject.h"

FString FKestrelFindUtils::FindInAllFiles(const FString& ReferenceString)
{
	FKestrelProjectSearch Search(ReferenceString);
	Search.Finish();
	return Search.TakeText();
}

void FKestrelFindUtils::FindInAllCppFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result)
{
	FKestrelSourceSearch Search(ReferenceString);
	Search.Finish();
	Search.Report(*Result);
}
