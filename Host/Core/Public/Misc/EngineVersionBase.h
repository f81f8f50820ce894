#pragma once

#include "HAL/Platform.h"

enum class EVersionComponent
{
	Major,
	Minor,
	Patch,
	Changelist,
	Branch,
};
