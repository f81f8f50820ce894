#pragma once

#include "Interpreter/PyRef.h"

class FProperty;

/**
 * Values between variables and Python.
 *
 * Types are not guessed: a str is no number, a number no enumerator. Arrays, sets and maps are copied into a list, a
 * set and a dict.
 */
namespace PyConversion
{
/** All elements of the variable at Value. Null with an exception set when it fails. */
FPyRef ToPython(const FProperty& Property, const void* Value);
/** False, with an exception set, when the variable cannot have the value; it may be half changed then. */
bool FromPython(const FProperty& Property, PyObject* Object, void* Value);

bool Prepare(PyObject* UnrealModule);
void Forget();
}
