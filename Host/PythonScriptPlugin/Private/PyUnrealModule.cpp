#include "PyUnrealModule.h"

#include "PyOutput.h"
#include "PyText.h"

namespace PyUnrealModule
{
constexpr const char PreludeSource[] =
#include "Prelude.py.inl"
	;

/** The module; null before Make and after Forget. */
PyObject* Module = nullptr;

PyObject* LogAs(EPythonLogOutputType Type, PyObject* Value)
{
	FPyOutput::Log(Type, PyText::Describe(Value));
	Py_RETURN_NONE;
}

PyObject* Log(PyObject*, PyObject* Value)
{
	return LogAs(EPythonLogOutputType::Info, Value);
}

PyObject* LogWarning(PyObject*, PyObject* Value)
{
	return LogAs(EPythonLogOutputType::Warning, Value);
}

PyObject* LogError(PyObject*, PyObject* Value)
{
	return LogAs(EPythonLogOutputType::Error, Value);
}

/** _write_log(is_error, text) */
PyObject* WriteLog(PyObject*, PyObject* Arguments)
{
	int bError = 0;
	PyObject* Text = nullptr;
	if (!PyArg_ParseTuple(Arguments, "pU", &bError, &Text))
	{
		return nullptr;
	}
	const Py_ssize_t Length = PyUnicode_GET_LENGTH(Text);
	const Py_ssize_t Room = FPyOutput::GetRoom();
	FPyOutput::Write(bError ? EPythonLogOutputType::Error : EPythonLogOutputType::Info, PyText::ToText(Text, Room));
	FPyOutput::CountLeftOut(FMath::Max<Py_ssize_t>(0, Length - Room));
	return PyLong_FromSsize_t(Length);
}

PyMethodDef Functions[] = {
	{ "log", &Log, METH_O, "log(arg) -- Writes to the log, as information." },
	{ "log_warning", &LogWarning, METH_O, "log_warning(arg) -- Writes to the log, as a warning." },
	{ "log_error", &LogError, METH_O, "log_error(arg) -- Writes to the log, as an error." },
	{ "_write_log", &WriteLog, METH_VARARGS, nullptr },
	{ nullptr, nullptr, 0, nullptr },
};

PyModuleDef Definition = { PyModuleDef_HEAD_INIT, "unreal", "The editor's classes, structs and enums.", -1, Functions,
	nullptr, nullptr, nullptr, nullptr };

FPyRef CallPrelude(const char* Function)
{
	return FPyRef::Steal(PyObject_CallMethod(Module, Function, nullptr));
}

bool RunPrelude()
{
	const FPyRef Code = FPyRef::Steal(Py_CompileString(PreludeSource, "<unreal>", Py_file_input));
	PyObject* const Globals = PyModule_GetDict(Module);
	if (!Code || PyDict_SetItemString(Globals, "__builtins__", PyEval_GetBuiltins()) < 0)
	{
		return false;
	}
	return static_cast<bool>(FPyRef::Steal(PyEval_EvalCode(Code.Get(), Globals, Globals)));
}
}

FPyRef FPyUnrealModule::Make()
{
	FPyRef Module = FPyRef::Steal(PyModule_Create(&PyUnrealModule::Definition));
	if (!Module)
	{
		return FPyRef();
	}
	PyUnrealModule::Module = Py_NewRef(Module.Get());
	const bool bMade =
		PyDict_SetItemString(PyImport_GetModuleDict(), "unreal", Module.Get()) == 0 && PyUnrealModule::RunPrelude();
	return bMade ? Module : FPyRef();
}

void FPyUnrealModule::Forget()
{
	Py_CLEAR(PyUnrealModule::Module);
}

void FPyUnrealModule::BeginCommand()
{
	const FPyRef None = PyUnrealModule::CallPrelude("_begin_command");
	PyErr_Clear();
}

bool FPyUnrealModule::HasOtherThreads()
{
	const FPyRef Answer = PyUnrealModule::CallPrelude("_has_other_threads");
	PyErr_Clear();
	return !Answer || Answer.Get() != Py_False;
}
