#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownBlock.h"

/** What never reaches the screen of a message: the service's own tool names, and its markers for bold text. */
namespace KestrelHiddenTexts
{
/** Replaces every occurrence of each key by its value, without regard to case, in the order of the map. */
FString Replace(const FString& Text, const TMap<FString, FString>& Replacements);
FString Remove(const FString& Message);
/**
 * The same for a text in several styles, in which a name may be in two of them. The asterisks of code stay.
 *
 * @return spans that are not empty
 */
FMarkdownText Remove(const FMarkdownText& Text);
}
