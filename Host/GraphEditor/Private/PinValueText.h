#pragma once

#include "CoreMinimal.h"

class UEdGraphPin;

/** What stands beside an input that nothing is linked to. */
class FPinValueText
{
public:
	/** No more characters than this are shown. */
	static constexpr int32 MaxLength = 28;

	/** False for pins that have no value of their own to show. */
	static bool HasValue(const UEdGraphPin& Pin);
	/** Short, in one line: "1.5", "(0, 0, 90)", "self", an asset's name. */
	static FString Get(const UEdGraphPin& Pin);
};
