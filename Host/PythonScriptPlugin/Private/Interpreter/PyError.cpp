#include "Interpreter/PyError.h"

#include "Interpreter/PyTimeLimit.h"
#include "Values/PyText.h"

namespace PyError
{
PyObject* Formatter = nullptr;

FString Shorten(FString Text)
{
	Text.TrimEndInline();
	if (Text.Len() <= FPyError::MaxUnits)
	{
		return Text;
	}
	// The end names the error, the beginning where it happened.
	constexpr int32 Half = FPyError::MaxUnits / 2;
	return FString::Printf(TEXT("%s\n... (%d characters left out)\n%s"), *Text.Left(Half),
		Text.Len() - FPyError::MaxUnits, *Text.Right(Half));
}

/** Runs code of the script, as exceptions describe themselves: so it can fail, and its time limit starts again. */
FString Format(PyObject* Exception)
{
	const FPyTimeLimit Limit(FPyTimeLimit::GetConfiguredSeconds());
	const FPyRef Text = FPyRef::Steal(Formatter ? PyObject_CallOneArg(Formatter, Exception) : PyObject_Repr(Exception));
	if (Text && PyUnicode_Check(Text.Get()))
	{
		return PyText::ToText(Text.Get());
	}
	PyErr_Clear();
	return FString::Printf(TEXT("%s (which could not be described)"), *FString(Py_TYPE(Exception)->tp_name));
}
}

void FPyError::Prepare(PyObject* UnrealModule)
{
	PyError::Formatter = PyObject_GetAttrString(UnrealModule, "_format_error");
}

void FPyError::Forget()
{
	Py_CLEAR(PyError::Formatter);
}

FString FPyError::Take()
{
	PyObject* Type = nullptr;
	PyObject* Value = nullptr;
	PyObject* Traceback = nullptr;
	PyErr_Fetch(&Type, &Value, &Traceback);
	if (!Type)
	{
		return TEXT("The script failed without an exception");
	}
	PyErr_NormalizeException(&Type, &Value, &Traceback);
	if (Traceback)
	{
		PyException_SetTraceback(Value, Traceback);
	}
	const FPyRef OwnedType = FPyRef::Steal(Type);
	const FPyRef OwnedValue = FPyRef::Steal(Value);
	const FPyRef OwnedTraceback = FPyRef::Steal(Traceback);
	return PyError::Shorten(PyError::Format(Value));
}
