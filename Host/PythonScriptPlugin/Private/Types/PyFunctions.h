#pragma once

#include "Interpreter/PyRef.h"

class UFunction;

/** Functions that can be called by reflection. */
namespace PyFunctions
{
/** The method of a function; a static one is called without an object. */
FPyRef MakeMethod(const UFunction& Function);
/** call_method(name, args=(), kwargs={}): any function, Blueprint callable or not. */
PyObject* CallMethod(PyObject* Self, PyObject* Arguments, PyObject* Keywords);

bool Prepare();
void Forget();
}
