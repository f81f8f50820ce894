#pragma once

#include "Interpreter/PyRef.h"

class UScriptStruct;

/** "unreal.StructBase": a struct's value of the script's own. What is read from a variable is a copy. */
class FPyStruct
{
public:
	/** The base of all types of structs. */
	static PyTypeObject* GetBaseType();
	static bool Prepare(PyObject* UnrealModule);
	static void Forget();

	static FPyRef Copy(UScriptStruct* Struct, const void* Value);
	static bool Check(PyObject* Value);
	static UScriptStruct* GetStruct(PyObject* Self);
	static void* GetMemory(PyObject* Self);
};
