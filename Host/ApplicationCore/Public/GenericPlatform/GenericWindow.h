#pragma once

#include "CoreMinimal.h"

/** A window of the operating system. An SWindow without one exists all the same: it is laid out, but not shown. */
class FGenericWindow
{
public:
	virtual ~FGenericWindow() = default;
};
