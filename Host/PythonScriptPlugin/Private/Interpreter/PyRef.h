#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <utility>

/** Owns one reference to a Python object, or none. It is used and destroyed with the interpreter's lock held. */
class FPyRef
{
public:
	FPyRef() = default;
	FPyRef(const FPyRef& Other)
		: Object(Py_XNewRef(Other.Object))
	{
	}
	FPyRef(FPyRef&& Other)
		: Object(Other.Release())
	{
	}
	~FPyRef() { Py_XDECREF(Object); }
	FPyRef& operator=(FPyRef Other)
	{
		std::swap(Object, Other.Object);
		return *this;
	}

	/** Takes over a reference, such as most functions of Python return. */
	static FPyRef Steal(PyObject* Object) { return FPyRef(Object); }
	/** Adds a reference of its own. */
	static FPyRef Borrow(PyObject* Object) { return FPyRef(Py_XNewRef(Object)); }

	PyObject* Get() const { return Object; }
	/** Hands the reference over, such as functions of a Python module do. */
	PyObject* Release() { return std::exchange(Object, nullptr); }
	explicit operator bool() const { return Object != nullptr; }

private:
	explicit FPyRef(PyObject* InObject)
		: Object(InObject)
	{
	}

	PyObject* Object = nullptr;
};

/** Holds the interpreter's lock. */
class FPyLock
{
public:
	FPyLock()
		: State(PyGILState_Ensure())
	{
	}
	~FPyLock() { PyGILState_Release(State); }
	UE_NONCOPYABLE(FPyLock)

private:
	const PyGILState_STATE State;
};
