#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class UBlueprint;

namespace KestrelBlueprintCompileLog
{
/**
 * Compiles and collects garbage.
 *
 * @param OutMessages  gets "CompileErrors" and "CompileWarnings", each unless empty: objects with "Graph" and "Node",
 *                     for a message about a node, and "Message"
 */
void Compile(UBlueprint& Blueprint, FJsonObject& OutMessages);
}
