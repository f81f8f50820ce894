#pragma once

#include "Containers/UnrealString.h"
#include "Interpreter/PyRef.h"

/** Text between UTF-16 and Python's code points. Lone surrogates pass in both directions. */
namespace PyText
{
FPyRef ToPython(FStringView Text);
/** The characters of a str, at most MaxChars of them. */
FString ToText(PyObject* Str, Py_ssize_t MaxChars = PY_SSIZE_T_MAX);
/** What str() or repr() makes of the object, or the name of its type if that fails. Leaves no error behind. */
FString Describe(PyObject* Object);
}
