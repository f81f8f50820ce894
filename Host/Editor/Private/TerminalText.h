#pragma once

#include "CoreMinimal.h"

/**
 * A string for the terminal, in which nothing can move the cursor, change colours or reverse the direction of writing:
 * such characters are printed as escapes. Newlines and tabs stay.
 */
FString MakeTerminalText(const FString& Text);
