#pragma once

#include "CoreMinimal.h"

/** Whether an active timer runs again. */
enum class EActiveTimerReturnType : uint8
{
	Stop,
	Continue,
};

/** @param InCurrentTime application time in seconds  @param InDeltaTime seconds since this timer last ran */
DECLARE_DELEGATE_RetVal_TwoParams(EActiveTimerReturnType, FWidgetActiveTimerDelegate, double, float);
