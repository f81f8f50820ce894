#pragma once

#include "CoreMinimal.h"

class UBlueprint;
struct FEdGraphPinType;

/** What can be made in a Blueprint. The engine takes names and types that break the Blueprint, or end the process. */
namespace KestrelBlueprintMembers
{
/** As long as the editor's own name fields allow. */
constexpr int32 MaxNameLength = 100;

/** Whether a text can name a variable, a function or a parameter. It may contain spaces. */
bool CanBeMemberName(const FString& Text);
/** Whether no variable, function, event, graph or component of the Blueprint or of a parent has the name. */
bool IsNameFree(const UBlueprint& Blueprint, const FString& Name);
/** Why no variable or function of the name can be made, as a sentence; empty when it can. */
FString FindNameProblem(const UBlueprint& Blueprint, const FString& Name);
/**
 * Why no variable or parameter can be of the type, as a sentence; empty when one can: a struct names its struct, a real
 * number its precision, and what is looked up in a container has a hash.
 */
FString FindTypeProblem(const FEdGraphPinType& PinType);
/** "enum" stands in lists of types alone; variables of enums are bytes, and the compiler makes no others. */
void StoreEnumsAsBytes(FEdGraphPinType& PinType);
}
