#pragma once

#include "Containers/UnrealString.h"
#include "Interpreter/PyRef.h"

class UClass;
class UObject;

/** "unreal.Object": a reference to an object. It keeps the object from being collected, not from being destroyed. */
class FPyObject
{
public:
	/** The base of all types of objects. */
	static PyTypeObject* GetBaseType();
	static bool Prepare(PyObject* UnrealModule);
	static void Forget();

	/** None for null. */
	static FPyRef Wrap(UObject* Object);
	static bool Check(PyObject* Value);
	/** Null, with an exception set, when the object is gone or this is not the game thread. */
	static UObject* Get(PyObject* Self);

	/** new_object(type, outer=None, name="") */
	static PyObject* New(PyObject* Module, PyObject* Arguments, PyObject* Keywords);
};

/** Sets an exception whose text is made in the host. */
void RaisePython(PyObject* ExceptionType, const FString& Message);
/** False, with an exception set, elsewhere than on the game thread: reflection is for that one alone. */
bool CheckPythonIsInGameThread();
