#pragma once

#include "CoreMinimal.h"

#include <string>

/** For comparisons with literals, and for messages. */
inline std::string ToUtf8(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}
