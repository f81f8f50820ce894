#pragma once

#include "CoreMinimal.h"

/**
 * What nodes show beside the names that their package holds: the words that their classes add.
 *
 * A package need not be loaded to learn that a word is in none of its titles, as long as each class of its nodes is one
 * of those that are listed here. Titles are as the editor shows them in English.
 */
namespace KestrelNodeTitles
{
/** Whether all that a node of the class shows is names of its package, names that these lead to, and added words. */
bool IsKnownClass(FName Class);
/** The words that known classes add to titles and pins, in lower case. */
const TArray<FString>& GetAddedWords();
}
