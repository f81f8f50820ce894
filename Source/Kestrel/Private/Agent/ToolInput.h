#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** What the tools have in common: how they read what they are given, and how they say what they do. */
namespace KestrelTools
{
/** A field that a tool cannot do without, and where its text goes. */
struct FField
{
	const TCHAR* Name;
	FString* Text;
};

/** @return false when a field is missing or is no text; a number counts as its text */
bool ReadFields(const FJsonObject& Input, const TArray<FField>& Fields);

const TCHAR* const MissingFields = TEXT("Error: Missing required fields");
const TCHAR* const MissingPath = TEXT("Error: Missing required path field");

/** A line in the panel; one that ends in "..." moves until the next one. */
void ShowStatus(const TCHAR* Text);
}
