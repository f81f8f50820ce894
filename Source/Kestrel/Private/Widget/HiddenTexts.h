#pragma once

#include "CoreMinimal.h"

/** What never reaches the screen of a message: the service's own tool names, and its markers for bold text. */
namespace KestrelHiddenTexts
{
FString Remove(const FString& Message);
/** For code in a line of text, whose asterisks are its own. */
FString RemoveToolNames(const FString& Code);
}
