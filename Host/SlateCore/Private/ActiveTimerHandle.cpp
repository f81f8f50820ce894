#include "Application/ActiveTimerHandle.h"

FActiveTimerHandle::FActiveTimerHandle(float InTickPeriod, FWidgetActiveTimerDelegate InTickFunction, double Now)
	: TickPeriod(InTickPeriod)
	, TickFunction(MoveTemp(InTickFunction))
	, LastExecutionTime(Now)
	, NextExecutionTime(Now + InTickPeriod)
{
}

EActiveTimerReturnType FActiveTimerHandle::ExecuteIfPending(double CurrentTime)
{
	if (!TickFunction.IsBound())
	{
		return EActiveTimerReturnType::Stop;
	}
	if (CurrentTime < NextExecutionTime)
	{
		return EActiveTimerReturnType::Continue;
	}
	const float SecondsSinceLastRun = static_cast<float>(CurrentTime - LastExecutionTime);
	LastExecutionTime = CurrentTime;
	NextExecutionTime = CurrentTime + TickPeriod;
	return TickFunction.Execute(CurrentTime, SecondsSinceLastRun);
}
