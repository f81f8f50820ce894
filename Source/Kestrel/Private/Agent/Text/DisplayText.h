#pragma once

#include "CoreMinimal.h"

/**
 * Strings of the service, shown where a person decides.
 *
 * A name may hold characters that are not seen, or that change how others are seen: line breaks, control characters,
 * marks that reverse the direction of writing, heaps of accents. They are shown as escapes, in brackets (U+27E8 and
 * U+27E9): LF, CR, TAB, or the character's number ("U+202E"). Brackets of the text's own, and those that look like
 * them, are escaped as well, so that no text can look like another one.
 */
namespace KestrelDisplayText
{
/**
 * For a name or value on a line of its own. Spaces are shown as their number where there are several in a row, or where
 * they begin or end the name.
 */
KESTREL_API FString EscapeLine(const FString& Text);
/**
 * For a text of several lines, a script for instance: its line breaks and tabs stay. After the escape of anything else
 * that ends a line for some compilers and interpreters, a carriage return alone for instance, a new line begins.
 */
KESTREL_API FString EscapeLines(const FString& Text);
/**
 * For prose, in which marks and joiners of other scripts are part of words: only control characters and what changes
 * the direction of writing are escaped. Line breaks and tabs stay.
 */
KESTREL_API FString EscapeDirections(const FString& Text);
/**
 * The letters with which a name could pass for another one: those of another alphabet in a word with Latin letters or
 * in a word that has nothing but look-alikes of them, and Latin letters in a special style (full width, mathematical).
 *
 * @return the number ("U+043E") of each, in order, with spaces between; empty for a name that is what it looks like
 */
FString FindLookAlikes(const FString& Text);
/** A text of at most so many characters, and a few: the middle of a longer one is left out. */
FString Elide(const FString& Text, int32 MaxLength = 400);
/**
 * Whether a change is of a size that a person would read, and that is compared line by line while nobody notices: at
 * most 4 million characters and 100,000 lines, before and after together.
 */
bool IsWorthComparing(const FString& Before, const FString& After);
}
