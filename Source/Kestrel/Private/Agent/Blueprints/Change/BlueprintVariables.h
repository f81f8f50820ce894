#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FKestrelBlueprintReport;
class UBlueprint;
class UClass;

/**
 * Makes and changes variables, and the values that a Blueprint's class gives to them. A compile takes a description's
 * default value over only for a variable that is new; for one that was there before, the class has to be told.
 */
namespace KestrelBlueprintVariables
{
/** A variable that was given a value. */
struct FWrittenValue
{
	FName Variable;
	FString OldText; // the description's, before
};

struct FOutcome
{
	bool bChanged = false;
	TArray<FWrittenValue> Values;
};

/** FKestrelBlueprintUtils::ModifyBlueprintVariables, with a report of what was not done. */
FOutcome Modify(
	UBlueprint& Blueprint, const FJsonObject& Variables, FJsonObject& Result, FKestrelBlueprintReport& Report);
/** The variables that are compiled already and that the section is to give a value. */
TArray<FName> FindCompiled(const UBlueprint& Blueprint, const FJsonObject& Variables);
/**
 * Loads the Blueprints that are children of the class, and theirs. What is loaded only after a default was changed has
 * the new one, which nothing tells from a value of its own when the change is undone.
 */
void LoadChildren(const UClass& Class);
/**
 * Writes the values of variables that were Compiled before into the class, which has to be compiled again. Children
 * that had the old one follow. A value that is none of the variable's type changes neither class nor description.
 */
void WriteDefaults(UBlueprint& Blueprint, const TArray<FWrittenValue>& Values, const TArray<FName>& Compiled,
	FKestrelBlueprintReport& Report);
}
