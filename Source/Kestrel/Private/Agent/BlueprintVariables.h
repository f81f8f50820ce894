#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class UBlueprint;
class UClass;

/**
 * The values that a Blueprint's class gives to its variables. A compile takes a description's default value over only
 * for a variable that is new; for one that was there before, the class has to be told.
 */
namespace KestrelBlueprintVariables
{
/** The variables that are compiled already and that the section gives a value. */
TArray<FName> FindCompiled(const UBlueprint& Blueprint, const FJsonObject& Variables);
/**
 * Loads the Blueprints that are children of the class, and theirs. What is loaded only after a default was changed has
 * the new one, which nothing tells from a value of its own when the change is undone.
 */
void LoadChildren(const UClass& Class);
/** Writes their default values into the class, which has to be compiled. Children that had the old one follow. */
void WriteDefaults(const UBlueprint& Blueprint, const TArray<FName>& Names);
}
