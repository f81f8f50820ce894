#include "Agent/Project/SearchReview.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace SearchReview
{
constexpr int32 MaxPaths = 100; // of those that are told
const TCHAR* const Reason = TEXT("These were not searched: reading them needs the user's approval.");
}

bool FKestrelSearchReview::MayRead(const FString& FullPath, const FString& RealPath)
{
	if (Reviewer.Review(FullPath, RealPath).Cautions.IsEmpty())
	{
		return true;
	}
	++NumLeftOut;
	if (Paths.Num() < SearchReview::MaxPaths)
	{
		Paths.Add(FullPath);
	}
	return false;
}

void FKestrelSearchReview::Report(FJsonObject& Result, const TCHAR* Field) const
{
	if (NumLeftOut == 0)
	{
		return;
	}
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FString& Path : Paths)
	{
		Values.Add(MakeShared<FJsonValueString>(Path));
	}
	const TSharedRef<FJsonObject> LeftOut = MakeShared<FJsonObject>();
	LeftOut->SetNumberField(TEXT("count"), NumLeftOut);
	LeftOut->SetStringField(TEXT("reason"), SearchReview::Reason);
	LeftOut->SetArrayField(TEXT("paths"), Values);
	Result.SetObjectField(Field, LeftOut);
}
