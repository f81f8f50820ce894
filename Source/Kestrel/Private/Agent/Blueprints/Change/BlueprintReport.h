#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;

/**
 * What a document asked for and was not done, each with its reason, in the order in which it was tried.
 *
 * The result of a modification has it as "Skipped": [{"Entry": "Heal", "Node": "2 (UK2Node_CallFunction)",
 * "Pin": "Duration", "Reason": "…"}].
 */
class FKestrelBlueprintReport
{
public:
	/** What the code that follows is about. Scopes stand inside each other, as the parts of the document do. */
	class FScope
	{
	public:
		FScope(FKestrelBlueprintReport& InReport, const TCHAR* Key, const FString& Name);
		~FScope();
		UE_NONCOPYABLE(FScope)

	private:
		FKestrelBlueprintReport& Report;
	};

	/** @param Reason  a sentence without the names of the scopes */
	void Skip(const FString& Reason);
	/** The same of one part of what the innermost scope names. */
	void Skip(const TCHAR* Key, const FString& Name, const FString& Reason);

	/** Sets "Skipped", unless everything was done. */
	void AddTo(FJsonObject& Result) const;

private:
	// A document of any size gets an answer of a few thousand words at most.
	static constexpr int32 MaxListed = 200;

	TArray<TPair<const TCHAR*, FString>> Scopes;
	TArray<TSharedPtr<FJsonValue>> Listed;
	int32 NumUnlisted = 0;
};
