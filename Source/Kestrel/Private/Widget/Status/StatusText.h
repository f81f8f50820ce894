#pragma once

#include "Agent/KestrelAgentState.h"
#include "CoreMinimal.h"

/** How the conversation is going, in words. */
namespace KestrelStatusText
{
/** Minutes and seconds, with hours when there are some: "0:42", "1:02:03". */
KESTREL_API FString DescribeSeconds(double Seconds);
/** One line, the most important first; empty while there is no conversation. */
KESTREL_API FText MakeLine();
/** The same on a line each, with what the numbers mean. */
FText MakeToolTip();
}
