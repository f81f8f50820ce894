#pragma once

#include "CoreMinimal.h"
#include "Types/WidgetActiveTimerDelegate.h"

/** A timer of a widget: its period, its function and when it is due. The widget owns it and runs it while painted. */
class FActiveTimerHandle
{
public:
	/** Times are application time, in seconds. The first run is one full period from Now. */
	FActiveTimerHandle(float InTickPeriod, FWidgetActiveTimerDelegate InTickFunction, double Now);
	UE_NONCOPYABLE(FActiveTimerHandle)

	/** Runs the function if it is due. The next due time counts from this run, so time missed is not made up for. */
	EActiveTimerReturnType ExecuteIfPending(double CurrentTime);
	double GetNextExecutionTime() const { return NextExecutionTime; }

private:
	const float TickPeriod;
	const FWidgetActiveTimerDelegate TickFunction;
	double LastExecutionTime;
	double NextExecutionTime;
};
