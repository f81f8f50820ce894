#include "Types/PyUnrealModule.h"

#include "Interpreter/PyOutput.h"
#include "Types/PyFunctions.h"
#include "Types/PyObject.h"
#include "Types/PyStruct.h"
#include "Types/PyTypes.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "Values/PyConversion.h"
#include "Values/PyProperties.h"
#include "Values/PyText.h"

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

/** _find_type(name): None when there is no such type. */
PyObject* FindType(PyObject*, PyObject* Name)
{
	if (!CheckPythonIsInGameThread())
	{
		return nullptr;
	}
	FPyRef Type = FPyTypes::Find(PyText::Describe(Name));
	return Type || PyErr_Occurred() ? Type.Release() : Py_NewRef(Py_None);
}

PyObject* ListTypes(PyObject*, PyObject*)
{
	return CheckPythonIsInGameThread() ? FPyTypes::ListNames().Release() : nullptr;
}

PyObject* GetTransientPackageObject(PyObject*, PyObject*)
{
	return CheckPythonIsInGameThread() ? FPyObject::Wrap(GetTransientPackage()).Release() : nullptr;
}

/** _find_object(outer, name, type): an object in memory, or None. */
PyObject* FindObjectInMemory(PyObject*, PyObject* Arguments)
{
	PyObject* Outer = nullptr;
	PyObject* Name = nullptr;
	PyObject* Type = nullptr;
	if (!CheckPythonIsInGameThread() || !PyArg_ParseTuple(Arguments, "OUO", &Outer, &Name, &Type))
	{
		return nullptr;
	}
	UClass* const Class = FPyTypes::ToClass(Type);
	UObject* const OuterObject = Outer != Py_None && FPyObject::Check(Outer) ? FPyObject::Get(Outer) : nullptr;
	if (!Class || (Outer != Py_None && !OuterObject))
	{
		PyErr_SetString(PyExc_TypeError, "outer must be an object or None, and type a class");
		return nullptr;
	}
	return FPyObject::Wrap(StaticFindObject(Class, OuterObject, *PyText::ToText(Name))).Release();
}

/** _load_object(name, type): an object, loaded if need be, or None. */
PyObject* LoadObjectOrFind(PyObject*, PyObject* Arguments)
{
	PyObject* Name = nullptr;
	PyObject* Type = nullptr;
	if (!CheckPythonIsInGameThread() || !PyArg_ParseTuple(Arguments, "UO", &Name, &Type))
	{
		return nullptr;
	}
	UClass* const Class = FPyTypes::ToClass(Type);
	if (!Class)
	{
		PyErr_SetString(PyExc_TypeError, "type must be a class");
		return nullptr;
	}
	return FPyObject::Wrap(StaticLoadObject(Class, nullptr, *PyText::ToText(Name))).Release();
}

/** get_default_object(type) */
PyObject* GetDefaultObjectOf(PyObject*, PyObject* Type)
{
	UClass* const Class = CheckPythonIsInGameThread() ? FPyTypes::ToClass(Type) : nullptr;
	if (!Class && !PyErr_Occurred())
	{
		PyErr_SetString(PyExc_TypeError, "get_default_object: 'type' must be a class");
	}
	return Class ? FPyObject::Wrap(Class->GetDefaultObject()).Release() : nullptr;
}

PyMethodDef Functions[] = {
	{ "new_object", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&FPyObject::New)),
		METH_VARARGS | METH_KEYWORDS,
		"new_object(type, outer=None, name='') -- None stands for the transient package." },
	{ "get_default_object", &GetDefaultObjectOf, METH_O, "get_default_object(type) -> Object" },
	{ "get_transient_package", &GetTransientPackageObject, METH_NOARGS, "get_transient_package() -> Package" },
	{ "_find_object", &FindObjectInMemory, METH_VARARGS, nullptr },
	{ "_load_object", &LoadObjectOrFind, METH_VARARGS, nullptr },
	{ "_find_type", &FindType, METH_O, nullptr },
	{ "_list_types", &ListTypes, METH_NOARGS, nullptr },
	{ "log", &Log, METH_O, "log(arg) -- Writes to the log, as information." },
	{ "log_warning", &LogWarning, METH_O, "log_warning(arg) -- Writes to the log, as a warning." },
	{ "log_error", &LogError, METH_O, "log_error(arg) -- Writes to the log, as an error." },
	{ "_write_log", &WriteLog, METH_VARARGS, nullptr },
	{ nullptr, nullptr, 0, nullptr },
};

constexpr const char* ModuleDoc =
	"The editor's classes, structs and enums, made from their reflection when they are asked for.\n\n"
	"Names are those of C++ without prefix; members and functions are in snake_case, bAutoApprove is auto_approve.\n"
	"Values are copies: a list, set, dict or struct that was read from a variable is written back to change it.";

PyModuleDef Definition = { PyModuleDef_HEAD_INIT, "unreal", ModuleDoc, -1, Functions, nullptr, nullptr, nullptr,
	nullptr };

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
	const bool bMade = PyDict_SetItemString(PyImport_GetModuleDict(), "unreal", Module.Get()) == 0 &&
					   PyUnrealModule::RunPrelude() && PyProperties::Prepare() && PyFunctions::Prepare() &&
					   FPyObject::Prepare(Module.Get()) && FPyStruct::Prepare(Module.Get()) &&
					   FPyTypes::Prepare(Module.Get()) && PyConversion::Prepare(Module.Get());
	return bMade ? Module : FPyRef();
}

void FPyUnrealModule::Forget()
{
	PyConversion::Forget();
	FPyTypes::Forget();
	FPyStruct::Forget();
	FPyObject::Forget();
	PyFunctions::Forget();
	PyProperties::Forget();
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
