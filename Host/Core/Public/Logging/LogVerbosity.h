#pragma once

#include "HAL/Platform.h"

namespace ELogVerbosity
{
enum Type : uint8
{
	NoLogging = 0,
	Fatal,
	Error,
	Warning,
	Display,
	Log,
	Verbose,
	VeryVerbose,
	All = VeryVerbose,
};
}

const TCHAR* ToString(ELogVerbosity::Type Verbosity);
