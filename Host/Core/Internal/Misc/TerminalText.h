#pragma once

#include "CoreMinimal.h"

/**
 * A string for the terminal, in which nothing can move the cursor, change colours, break a line, reverse the direction
 * of writing or hide: such characters are printed as escapes. Newlines and tabs stay, and so do the joiners that emoji
 * and some languages are written with. Whatever a project, a service or a script has a part in goes through it.
 */
FString MakeTerminalText(const FString& Text);
