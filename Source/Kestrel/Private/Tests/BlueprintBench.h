#pragma once

#include "CoreMinimal.h"

/** What becomes slow in projects with many or large Blueprints. Each answers with what it came to, in words. */
namespace KestrelBlueprintBench
{
/** All of a Blueprint with 2,000 nodes and 10,000 links. */
FString ReadBlueprint(int32 Run);
/** Half of it: what grows faster than its input shows against the whole. */
FString ReadHalfBlueprint(int32 Run);
/** One Blueprint by its name, among all of the project. */
FString LookUpBlueprint(int32 Run);
/** The content as the editor looks at it when it starts. */
FString ScanContent(int32 Run);
}
