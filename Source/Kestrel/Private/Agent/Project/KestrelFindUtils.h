#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;
class UBlueprint;

/** Finds where a name or a text occurs in the project. Letter case is ignored. */
class KESTREL_API FKestrelFindUtils
{
public:
	/**
	 * Searches everything, on the game thread.
	 *
	 * @return a condensed JSON object with "reference_string", "cpp_references" and "blueprint_references"; and with
	 *         what was not searched, if there is any
	 */
	static FString FindInAllFiles(const FString& ReferenceString);

	/**
	 * Sets "cpp_references" on Result: an object with "Type", "Name" and "Path" (full) for each .cpp and .h file below
	 * the project's Source and Plugins folders that has the text in it. A file that cannot be read has nothing in it.
	 * Files above 64 MB are left out; "cpp_files_not_searched" has the paths of the first hundred, if there are any.
	 * What may not be read without approval is left out as well: "cpp_not_searched" (FKestrelSearchReview::Report).
	 */
	static void FindInAllCppFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result);

	/**
	 * Sets "blueprint_references" on Result: the matches of all Blueprints of the project's content. Loads them, but
	 * for those that may not be read without approval: "blueprints_not_searched" (FKestrelSearchReview::Report).
	 */
	static void FindInAllBlueprintFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result);

	/**
	 * Adds an object with "Type", "Name" (but for the Blueprint itself), "Blueprint" and "Path" for each name that has
	 * the text in it: the Blueprint's, nodes' titles and comments, pins', functions', variables'. The empty text is in
	 * all of them.
	 */
	static void FindInBlueprint(
		UBlueprint* Blueprint, const FString& ReferenceString, TArray<TSharedPtr<FJsonValue>>& Results);

	/** The asset's file, whether or not it has been saved; "Invalid Blueprint" for null. */
	static FString GetBlueprintFilePath(const UBlueprint* Blueprint);
};
