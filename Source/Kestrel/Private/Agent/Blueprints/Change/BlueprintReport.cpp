#include "Agent/Blueprints/Change/BlueprintReport.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace BlueprintReport
{
constexpr int32 MaxNameLength = 200; // names come from the document, which may hold anything

FString Shorten(const FString& Name)
{
	return Name.Len() > MaxNameLength ? Name.Left(MaxNameLength) + TEXT("...") : Name;
}
}

FKestrelBlueprintReport::FScope::FScope(FKestrelBlueprintReport& InReport, const TCHAR* Key, const FString& Name)
	: Report(InReport)
{
	Report.Scopes.Emplace(Key, BlueprintReport::Shorten(Name));
}

FKestrelBlueprintReport::FScope::~FScope()
{
	Report.Scopes.Pop();
}

void FKestrelBlueprintReport::Skip(const FString& Reason)
{
	if (Listed.Num() == MaxListed)
	{
		++NumUnlisted;
		return;
	}
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	for (const TPair<const TCHAR*, FString>& Scope : Scopes)
	{
		Object->SetStringField(Scope.Key, Scope.Value);
	}
	Object->SetStringField(TEXT("Reason"), Reason);
	Listed.Add(MakeShared<FJsonValueObject>(Object));
}

void FKestrelBlueprintReport::Skip(const TCHAR* Key, const FString& Name, const FString& Reason)
{
	const FScope Scope(*this, Key, Name);
	Skip(Reason);
}

void FKestrelBlueprintReport::AddTo(FJsonObject& Result) const
{
	TArray<TSharedPtr<FJsonValue>> Values = Listed;
	if (NumUnlisted > 0)
	{
		const TSharedRef<FJsonObject> Rest = MakeShared<FJsonObject>();
		Rest->SetStringField(TEXT("Reason"), FString::Printf(TEXT("%d more are not listed."), NumUnlisted));
		Values.Add(MakeShared<FJsonValueObject>(Rest));
	}
	if (!Values.IsEmpty())
	{
		Result.SetArrayField(TEXT("Skipped"), Values);
	}
}
