#pragma once

#include "Agent/Work/SlicedWork.h"
#include "CoreMinimal.h"

/** A tool at work, in slices. */
class FKestrelToolWork : public IKestrelSlicedWork
{
public:
	/** The tool's result, once, at the end; a text that begins with "Error:" is a failure. */
	virtual FString GetResult() = 0;
};
