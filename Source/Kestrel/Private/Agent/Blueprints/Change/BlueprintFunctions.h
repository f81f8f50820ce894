#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;
class FKestrelBlueprintReport;
class UBlueprint;

namespace KestrelBlueprintFunctions
{
/**
 * FKestrelBlueprintUtils::ModifyBlueprintFunctions, with a report of what was not done.
 *
 * @return whether anything has changed
 */
bool Modify(UBlueprint& Blueprint, const TArray<TSharedPtr<FJsonValue>>& Functions, FJsonObject& Result,
	FKestrelBlueprintReport& Report);
}
