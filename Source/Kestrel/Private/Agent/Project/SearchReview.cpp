#include "Agent/Project/SearchReview.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Misc/Paths.h"

namespace SearchReview
{
constexpr int32 MaxPaths = 100; // of those that are told
const TCHAR* const Reason = TEXT("These were not searched: reading them needs the user's approval.");
}

bool FKestrelSearchReview::Judge(const FString& FullPath, const FString& RealPath) const
{
	return Reviewer.Review(FullPath, RealPath, EKestrelReviewFor::Reading).Cautions.IsEmpty();
}

bool FKestrelSearchReview::MayReadByRules(const FString& FullPath, const FString& RealPath) const
{
	if (!Rules.MayRestrict())
	{
		return true;
	}
	const FKestrelPathReview Review = Reviewer.Review(FullPath, RealPath, EKestrelReviewFor::Reading);
	return !Rules.RestrictReading(FKestrelToolPlace::Of(Review, FString()));
}

bool FKestrelSearchReview::JudgeByFolder(const FString& RealPath)
{
	FString Folder = FPaths::GetPath(RealPath);
	if (!Folder.Equals(LastFolder))
	{
		bMayReadLastFolder = Judge(RealPath, RealPath);
		LastFolder = MoveTemp(Folder);
	}
	return bMayReadLastFolder;
}

bool FKestrelSearchReview::MayRead(const FString& FullPath, const FString& RealPath)
{
	// The names of sources and assets say nothing, but for links and names that may stand for others.
	int32 Tilde = INDEX_NONE;
	const bool bIsOrdinary = FullPath.Equals(RealPath) && !FullPath.FindChar(TEXT('~'), Tilde);
	if ((bIsOrdinary ? JudgeByFolder(RealPath) : Judge(FullPath, RealPath)) && MayReadByRules(FullPath, RealPath))
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
