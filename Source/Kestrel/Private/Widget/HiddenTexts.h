#pragma once

#include "CoreMinimal.h"

/** What never reaches the screen of a message: the service's own tool names, and its markers for bold text. */
namespace KestrelHiddenTexts
{
/** Replaces every occurrence of each key by its value, without regard to case, in the order of the map. */
FString Replace(const FString& Text, const TMap<FString, FString>& Replacements);
FString Remove(const FString& Message);
/** For code in a line of text, whose asterisks are its own. */
FString RemoveToolNames(const FString& Code);
}
