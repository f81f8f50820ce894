#pragma once

#include "CoreMinimal.h"

/** The text of a build.ninja. */
class FNinjaFile
{
public:
	struct FStep
	{
		FString Rule;
		TArray<FString> Outputs;
		TArray<FString> Inputs;
		TArray<FString> ImplicitInputs; // also make the step run, but are not on the command line
		TArray<FString> OrderOnly;      // must be there first
		TArray<TPair<FString, FString>> Variables;
	};

	void Variable(const TCHAR* Name, const FString& Value);
	/** Lines are "name = value". */
	void Rule(const TCHAR* Name, std::initializer_list<FString> Lines);
	void Step(const FStep& Step);
	const FString& GetText() const { return Text; }

	/** A text that is shown as it is. */
	static FString Escape(const FString& Text) { return Text.Replace(TEXT("$"), TEXT("$$")); }
	/** Ninja runs commands through a shell, and expands dollars itself: words that come through both unharmed. */
	static FString Quote(const FString& Word);
	static FString Quote(const TArray<FString>& Words);

private:
	static FString EscapePath(const FString& Path);
	void AddPaths(const TCHAR* Separator, const TArray<FString>& Paths);

	FString Text;
};
