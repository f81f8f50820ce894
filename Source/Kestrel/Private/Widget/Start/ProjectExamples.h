#pragma once

#include "CoreMinimal.h"

/** Prompts that this project makes sense of, for somebody who does not know yet what to write. */
namespace KestrelProjectExamples
{
/**
 * Three of them: reading, searching, changing. They name a class of the project's own and one of its Blueprints, as far
 * as there are some; the asset registry may still be looking for them. It looks at a few files only, so it takes
 * milliseconds in a project of any size.
 */
KESTREL_API TArray<FString> Find();
}
