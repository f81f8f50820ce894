#pragma once

#include "Agent/Work/SlicedWork.h"
#include "CoreMinimal.h"

/** Work in slices that comes to a text: a tool's result, for instance. */
class IKestrelTextWork : public IKestrelSlicedWork
{
public:
	/** At the end, once. */
	virtual FString TakeText() = 0;
};
