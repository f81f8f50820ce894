#pragma once

#include "HAL/Platform.h"

enum class EJson
{
	None,
	Null,
	String,
	Number,
	Boolean,
	Array,
	Object,
};
