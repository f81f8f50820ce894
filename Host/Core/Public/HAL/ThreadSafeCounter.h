#pragma once

#include "HAL/Platform.h"

#include <atomic>

/** A number that any thread may change. */
class FThreadSafeCounter
{
public:
	/** @return the number afterwards */
	int32 Increment() { return ++Counter; }
	/** @return the number before */
	int32 Add(int32 Amount) { return Counter.fetch_add(Amount); }
	int32 Set(int32 Value) { return Counter.exchange(Value); }
	int32 GetValue() const { return Counter; }

private:
	std::atomic<int32> Counter = 0;
};
