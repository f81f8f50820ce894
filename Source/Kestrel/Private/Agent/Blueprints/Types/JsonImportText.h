#pragma once

#include "CoreMinimal.h"

class FJsonValue;
struct FEdGraphPinType;

namespace KestrelJson
{
/**
 * A JSON value as the text that a property of the type is read from.
 *
 * A string is taken as it is, null is the empty text; numbers and booleans are written as the engine does, objects as
 * "(X=…,Y=…)", or for a map as "((Key, Value),…)", arrays as "(…,…)", or for a struct as its members in order. What is
 * nested deeper than any property is left out.
 */
FString ToImportText(const FJsonValue& Value, const FEdGraphPinType& Type);
/**
 * The same as a variable's description has it. The compiler reads that as it reads pins, where vectors and rotators are
 * "1,2,3", transforms three of these with bars between, and colours have all of their members.
 */
FString ToDefaultText(const FJsonValue& Value, const FEdGraphPinType& Type);
}
