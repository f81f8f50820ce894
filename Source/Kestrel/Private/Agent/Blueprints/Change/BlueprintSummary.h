#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class UBlueprint;

namespace KestrelBlueprintSummary
{
/**
 * What a modification document would change, a line for each variable and function: "+ variable Toll: Integer = 3",
 * "~ function Open: 2 nodes added (get Toll, call PrintString)". What the modification leaves out is left out here.
 *
 * Names and values are as they stand in the document; whoever shows them escapes them.
 *
 * @param Blueprint  tells what is new; null when it is not loaded, and then lines begin with "*" instead
 */
KESTREL_API TArray<FString> Describe(const FJsonObject& Request, const UBlueprint* Blueprint);
}
