#pragma once

#include "CoreMinimal.h"

/** An open menu. */
class IMenu
{
public:
	virtual ~IMenu() = default;

	/** Closes it, and what was summoned out of it. */
	virtual void Dismiss() = 0;
};
