#pragma once

#include "Containers/UnrealString.h"
#include "Interpreter/PyRef.h"

class FProperty;
class UObject;
class UStruct;

/** Where variables lie: in an object, or in a struct's value. */
struct FPyContainer
{
	UStruct* Struct = nullptr;
	void* Memory = nullptr;
	UObject* Object = nullptr; // null for a struct's value

	/** Of a wrapper. False with an exception set. */
	bool Set(PyObject* Self);
};

/** The variables of objects and structs. */
namespace PyProperties
{
/**
 * get_editor_property(name): what a details panel or a Blueprint shows, by its name in C++ or in Python.
 */
PyObject* GetEditorProperty(PyObject* Self, PyObject* Arguments, PyObject* Keywords);
/** set_editor_property(name, value): tells the object before and after, if the value differs. */
PyObject* SetEditorProperty(PyObject* Self, PyObject* Arguments, PyObject* Keywords);
/** set_editor_properties(values): a dict of them. */
PyObject* SetEditorProperties(PyObject* Self, PyObject* Values);

/** The descriptor of a variable that is an attribute: the object is not told of a change. */
FPyRef MakeAttribute(const FProperty& Property);

bool Prepare();
void Forget();
}
