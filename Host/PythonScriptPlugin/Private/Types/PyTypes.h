#pragma once

#include "Interpreter/PyRef.h"

class FString;
class UClass;
class UEnum;
class UField;
class UScriptStruct;

/**
 * The Python types of reflected ones: made when they are asked for, from nothing but reflection.
 *
 * A class derives from its parent's type. Variables that Blueprints see are attributes, functions that Blueprints can
 * call are methods.
 */
class FPyTypes
{
public:
	static bool Prepare(PyObject* UnrealModule);
	static void Forget();

	/** Each gives a borrowed reference, or null with an exception set. */
	static PyTypeObject* GetType(UClass* Class);
	static PyTypeObject* GetType(UScriptStruct* Struct);
	static PyTypeObject* GetType(UEnum* Enum);

	/** The reflected type behind a Python type or the nearest of its bases; null when there is none. */
	static UClass* ToClass(PyTypeObject* Type);
	static UScriptStruct* ToStruct(PyTypeObject* Type);
	static UEnum* ToEnum(PyTypeObject* Type);
	/** The class that a script means by a type or by an object that is a class; null when it means none. */
	static UClass* ToClass(PyObject* TypeOrObject);

	/** The type that a script calls "unreal.<Name>"; none, without an exception, when there is no such thing. */
	static FPyRef Find(const FString& Name);
	/** The names that Find knows. */
	static FPyRef ListNames();
};
