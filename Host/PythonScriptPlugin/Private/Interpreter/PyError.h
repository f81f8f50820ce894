#pragma once

#include "Containers/UnrealString.h"
#include "Interpreter/PyRef.h"

/** The exception that has ended a piece of Python. */
class FPyError
{
public:
	/** Ceiling of an error's text, in UTF-16 units. */
	static constexpr int32 MaxUnits = 256 * 1024;

	/** Learns the function "_format_error" of the prelude; without one only the exception's own text is given. */
	static void Prepare(PyObject* UnrealModule);
	static void Forget();
	/** Takes the exception that is set, and tells it with its traceback, without a line break at the end. */
	static FString Take();
};
