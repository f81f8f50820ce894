#pragma once

#include "CoreMinimal.h"

namespace KestrelMarkdown
{
/**
 * The character that an entity stands for: one of those that occur in prose ("&lt;", "&hellip;"), or one with a number
 * ("&#8230;", "&#x2026;").
 *
 * @param Source  begins with "&"
 * @return the length of the entity; 0 if there is none
 */
int32 ReadEntity(FStringView Source, FString& OutText);

/** A text in which "\" before punctuation stands for the mark itself, and entities ("&amp;") for their characters. */
FString Unescape(FStringView Source);
}
