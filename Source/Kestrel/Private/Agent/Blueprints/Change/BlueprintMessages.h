#pragma once

#include "Dom/JsonValue.h"

/** What was done in a Blueprint and what was not, in the order in which it was tried. */
class FKestrelBlueprintMessages
{
public:
	/** @param Name  of the variable, function or parameter; the message ends with it */
	void Add(const TCHAR* Message, const FString& Name = FString())
	{
		Values.Add(MakeShared<FJsonValueString>(Message + Name));
	}

	void AddInvalidType(const FString& Name) { Add(TEXT("Invalid variable type for variable: "), Name); }

	const TArray<TSharedPtr<FJsonValue>>& GetValues() const { return Values; }

private:
	TArray<TSharedPtr<FJsonValue>> Values;
};
