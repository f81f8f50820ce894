#pragma once

#include "CoreMinimal.h"

namespace KestrelMarkdown
{
/**
 * Where a link leads: "(address)" or "(address "title")", after the "]" that ends its text.
 *
 * @param Source  begins with "("
 * @return the length up to the last bracket; 0 if there is none
 */
int32 ReadLinkTarget(FStringView Source, FString& OutAddress);

/**
 * An address in angle brackets: "<https://a.example/b>".
 *
 * @param Source  begins with "<"
 * @return the length with both brackets; 0 if there is none
 */
int32 ReadAngleAddress(FStringView Source, FString& OutAddress);
}
