#pragma once

#include "CoreMinimal.h"

/** A window of the operating system. An SWindow without one exists all the same: it is laid out, but not shown. */
class FGenericWindow
{
public:
	virtual ~FGenericWindow() = default;

	/** How many pixels a Slate unit is wide and high. */
	virtual float GetDPIScaleFactor() const { return 1.0f; }
};
