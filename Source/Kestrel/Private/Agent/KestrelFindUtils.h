#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** Finds where a name or a text occurs in the project. Letter case does not count. */
class FKestrelFindUtils
{
public:
	/**
	 * Searches everything, on the game thread.
	 *
	 * @return a condensed JSON object with "reference_string", "cpp_references" and "blueprint_references"
	 */
	static FString FindInAllFiles(const FString& ReferenceString);

	/**
	 * Sets "cpp_references" on Result: an object with "Type", "Name" and "Path" (full) for each .cpp and .h file below
	 * the project's Source and Plugins folders that has the text in it. A file that cannot be read has nothing in it.
	 */
	static void FindInAllCppFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result);

	/** Sets "blueprint_references" on Result: the matches inside Blueprints. */
	static void FindInAllBlueprintFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result);
};
