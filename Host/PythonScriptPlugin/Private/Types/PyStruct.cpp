#include "Types/PyStruct.h"

#include "Types/PyNames.h"
#include "Types/PyObject.h"
#include "Types/PyTypes.h"
#include "UObject/GCObject.h"
#include "UObject/UnrealType.h"
#include "Values/PyConversion.h"
#include "Values/PyProperties.h"
#include "Values/PyText.h"

#include <cstdlib>
#include <mutex>

namespace PyStructWrapper
{
struct FInstance
{
	PyObject_HEAD UScriptStruct* Struct;
	void* Memory;
};

PyTypeObject* BaseType = nullptr;

FInstance* ToInstance(PyObject* Self)
{
	return reinterpret_cast<FInstance*>(Self);
}

/** Keeps what the values refer to, and the structs that say how to free them. */
class FKeeper final : public FGCObject
{
public:
	void Add(const FInstance* Instance)
	{
		const std::lock_guard Lock(Mutex);
		Instances.Add(Instance);
	}
	void Remove(const FInstance* Instance)
	{
		const std::lock_guard Lock(Mutex);
		Instances.Remove(Instance);
	}
	void AddReferencedObjects(FReferenceCollector& Collector) override
	{
		const std::lock_guard Lock(Mutex);
		for (const FInstance* Instance : Instances)
		{
			Collector.AddReferencedObject(Instance->Struct);
			Instance->Struct->CollectReferences(Instance->Memory, Collector);
		}
	}
	FString GetReferencerName() const override { return TEXT("Python structs"); }

private:
	std::mutex Mutex;
	TSet<const FInstance*> Instances;
};

FKeeper* Keeper = nullptr;

/** The value is the struct's default. */
FPyRef Make(PyTypeObject* Type, UScriptStruct* Struct)
{
	FPyRef Self = FPyRef::Steal(Type->tp_alloc(Type, 0));
	if (Self)
	{
		const size_t Alignment = static_cast<size_t>(FMath::Max(Struct->GetMinAlignment(), 16));
		const size_t Size = static_cast<size_t>(FMath::Max(Struct->GetStructureSize(), 1));
		FInstance* const Instance = ToInstance(Self.Get());
		Instance->Struct = Struct;
		Instance->Memory = std::aligned_alloc(Alignment, (Size + Alignment - 1) / Alignment * Alignment);
		Struct->InitializeStruct(Instance->Memory);
		Keeper->Add(Instance);
	}
	return Self;
}

PyObject* Allocate(PyTypeObject* Type, PyObject*, PyObject*)
{
	UScriptStruct* const Struct = CheckPythonIsInGameThread() ? FPyTypes::ToStruct(Type) : nullptr;
	if (!Struct && !PyErr_Occurred())
	{
		RaisePython(PyExc_TypeError, TEXT("This type has no struct"));
	}
	return Struct ? Make(Type, Struct).Release() : nullptr;
}

void Deallocate(PyObject* Self)
{
	PyTypeObject* const Type = Py_TYPE(Self);
	const FInstance* const Instance = ToInstance(Self);
	if (Keeper)
	{
		Keeper->Remove(Instance);
	}
	if (Instance->Memory)
	{
		Instance->Struct->DestroyStruct(Instance->Memory);
		std::free(Instance->Memory);
	}
	Type->tp_free(Self);
	Py_DECREF(Type);
}

/** The variables that a script can give, those of the parent first. */
TArray<FProperty*> GetFields(const UStruct* Struct)
{
	TArray<FProperty*> Fields;
	if (Struct->GetSuperStruct())
	{
		Fields = GetFields(Struct->GetSuperStruct());
	}
	for (TFieldIterator<FProperty> It(Struct, EFieldIterationFlags::None); It; ++It)
	{
		if (It->HasAnyPropertyFlags(CPF_Edit | CPF_BlueprintVisible))
		{
			Fields.Add(*It);
		}
	}
	return Fields;
}

bool SetField(PyObject* Self, const FProperty& Property, PyObject* Value)
{
	return PyConversion::FromPython(Property, Value, Property.ContainerPtrToValuePtr<void>(ToInstance(Self)->Memory));
}

bool SetNamedField(PyObject* Self, const TArray<FProperty*>& Fields, PyObject* Name, PyObject* Value)
{
	const FString NameText = PyText::Describe(Name);
	FProperty* const* const Field =
		Fields.FindByPredicate([&NameText](const FProperty* Each) { return PyNames::GetName(*Each).Equals(NameText); });
	if (!Field)
	{
		RaisePython(PyExc_TypeError,
			FString::Printf(TEXT("%s has no field '%s'"), *ToInstance(Self)->Struct->GetName(), *NameText));
		return false;
	}
	return SetField(Self, **Field, Value);
}

int Initialize(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	const TArray<FProperty*> Fields = GetFields(ToInstance(Self)->Struct);
	if (PyTuple_GET_SIZE(Arguments) > Fields.Num())
	{
		RaisePython(PyExc_TypeError,
			FString::Printf(TEXT("%s has only %d fields"), *ToInstance(Self)->Struct->GetName(), Fields.Num()));
		return -1;
	}
	for (Py_ssize_t Index = 0; Index < PyTuple_GET_SIZE(Arguments); ++Index)
	{
		if (!SetField(Self, *Fields[static_cast<int32>(Index)], PyTuple_GET_ITEM(Arguments, Index)))
		{
			return -1;
		}
	}
	PyObject* Name = nullptr;
	PyObject* Value = nullptr;
	Py_ssize_t Position = 0;
	while (Keywords && PyDict_Next(Keywords, &Position, &Name, &Value))
	{
		if (!SetNamedField(Self, Fields, Name, Value))
		{
			return -1;
		}
	}
	return 0;
}

FString Export(PyObject* Self)
{
	const FInstance& Instance = *ToInstance(Self);
	FString Text;
	// Compared with itself, every member is written.
	Instance.Struct->ExportText(Text, Instance.Memory, Instance.Memory, nullptr, PPF_None, nullptr);
	return Text;
}

PyObject* ExportText(PyObject* Self, PyObject*)
{
	return CheckPythonIsInGameThread() ? PyText::ToPython(Export(Self)).Release() : nullptr;
}

PyObject* Represent(PyObject* Self)
{
	const FString Name = ToInstance(Self)->Struct->GetName();
	return CheckPythonIsInGameThread()
			   ? PyText::ToPython(FString::Printf(TEXT("<Struct '%s' %s>"), *Name, *Export(Self))).Release()
			   : nullptr;
}

PyObject* ImportText(PyObject* Self, PyObject* Text)
{
	if (!CheckPythonIsInGameThread() || !PyUnicode_Check(Text))
	{
		PyErr_SetString(PyExc_TypeError, "import_text: a text is needed");
		return nullptr;
	}
	const FInstance& Instance = *ToInstance(Self);
	const FString Content = PyText::ToText(Text);
	const TCHAR* const End =
		Instance.Struct->ImportText(*Content, Instance.Memory, nullptr, PPF_None, nullptr, Instance.Struct->GetName());
	if (!End)
	{
		RaisePython(PyExc_ValueError,
			FString::Printf(TEXT("'%s' is no value for the struct '%s'"), *Content, *Instance.Struct->GetName()));
		return nullptr;
	}
	Py_RETURN_NONE;
}

PyObject* MakeCopy(PyObject* Self, PyObject*)
{
	return CheckPythonIsInGameThread() ? FPyStruct::Copy(ToInstance(Self)->Struct, ToInstance(Self)->Memory).Release()
									   : nullptr;
}

PyObject* ToTuple(PyObject* Self, PyObject*)
{
	if (!CheckPythonIsInGameThread())
	{
		return nullptr;
	}
	const TArray<FProperty*> Fields = GetFields(ToInstance(Self)->Struct);
	FPyRef Tuple = FPyRef::Steal(PyTuple_New(Fields.Num()));
	for (int32 Index = 0; Tuple && Index < Fields.Num(); ++Index)
	{
		FPyRef Value = PyConversion::ToPython(
			*Fields[Index], Fields[Index]->ContainerPtrToValuePtr<void>(ToInstance(Self)->Memory));
		if (!Value)
		{
			return nullptr;
		}
		PyTuple_SET_ITEM(Tuple.Get(), Index, Value.Release());
	}
	return Tuple.Release();
}

PyObject* StaticStruct(PyObject* Type, PyObject*)
{
	UScriptStruct* const Struct =
		CheckPythonIsInGameThread() ? FPyTypes::ToStruct(reinterpret_cast<PyTypeObject*>(Type)) : nullptr;
	return PyErr_Occurred() ? nullptr : FPyObject::Wrap(Struct).Release();
}

Py_hash_t Hash(PyObject* Self)
{
	const FInstance& Instance = *ToInstance(Self);
	if (!Instance.Struct->CanHash())
	{
		RaisePython(PyExc_TypeError, FString::Printf(TEXT("unhashable type: '%s'"), *Instance.Struct->GetName()));
		return -1;
	}
	return static_cast<Py_hash_t>(Instance.Struct->GetStructTypeHash(Instance.Memory) & 0x7fffffff);
}

PyObject* Compare(PyObject* Self, PyObject* Other, int Operation)
{
	if ((Operation != Py_EQ && Operation != Py_NE) || !FPyStruct::Check(Other) ||
		ToInstance(Self)->Struct != ToInstance(Other)->Struct)
	{
		Py_RETURN_NOTIMPLEMENTED;
	}
	const bool bSame =
		ToInstance(Self)->Struct->CompareScriptStruct(ToInstance(Self)->Memory, ToInstance(Other)->Memory, PPF_None);
	return PyBool_FromLong(bSame == (Operation == Py_EQ));
}

PyCFunction WithKeywords(PyCFunctionWithKeywords Function)
{
	return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(Function));
}

PyMethodDef Methods[] = {
	{ "get_editor_property", WithKeywords(&PyProperties::GetEditorProperty), METH_VARARGS | METH_KEYWORDS,
		"get_editor_property(name) -> object" },
	{ "set_editor_property", WithKeywords(&PyProperties::SetEditorProperty), METH_VARARGS | METH_KEYWORDS,
		"set_editor_property(name, value)" },
	{ "set_editor_properties", &PyProperties::SetEditorProperties, METH_O, "set_editor_properties(values)" },
	{ "copy", &MakeCopy, METH_NOARGS, "copy() -- Another value that is equal." },
	{ "to_tuple", &ToTuple, METH_NOARGS, "to_tuple() -> tuple -- The fields in order of declaration." },
	{ "export_text", &ExportText, METH_NOARGS, "export_text() -> str -- \"(Member=Value,...)\"" },
	{ "import_text", &ImportText, METH_O, "import_text(content) -- Members that are not named keep their values." },
	{ "static_struct", &StaticStruct, METH_NOARGS | METH_CLASS, "static_struct() -> ScriptStruct" },
	{ nullptr, nullptr, 0, nullptr },
};

PyType_Slot Slots[] = {
	{ Py_tp_doc, const_cast<char*>("The base of all structs. What is read from a variable is a copy: write it back.") },
	{ Py_tp_new, reinterpret_cast<void*>(&Allocate) },
	{ Py_tp_init, reinterpret_cast<void*>(&Initialize) },
	{ Py_tp_dealloc, reinterpret_cast<void*>(&Deallocate) },
	{ Py_tp_repr, reinterpret_cast<void*>(&Represent) },
	{ Py_tp_hash, reinterpret_cast<void*>(&Hash) },
	{ Py_tp_richcompare, reinterpret_cast<void*>(&Compare) },
	{ Py_tp_methods, Methods },
	{ 0, nullptr },
};

PyType_Spec Spec = { "unreal.StructBase", sizeof(FInstance), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, Slots };
}

PyTypeObject* FPyStruct::GetBaseType()
{
	return PyStructWrapper::BaseType;
}

bool FPyStruct::Prepare(PyObject* UnrealModule)
{
	PyStructWrapper::Keeper = new PyStructWrapper::FKeeper;
	PyStructWrapper::BaseType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&PyStructWrapper::Spec));
	return PyStructWrapper::BaseType && PyModule_AddType(UnrealModule, PyStructWrapper::BaseType) == 0;
}

void FPyStruct::Forget()
{
	Py_CLEAR(PyStructWrapper::BaseType);
	delete PyStructWrapper::Keeper;
	PyStructWrapper::Keeper = nullptr;
}

FPyRef FPyStruct::Copy(UScriptStruct* Struct, const void* Value)
{
	PyTypeObject* const Type = FPyTypes::GetType(Struct);
	FPyRef Self = Type ? PyStructWrapper::Make(Type, Struct) : FPyRef();
	if (Self)
	{
		Struct->CopyScriptStruct(GetMemory(Self.Get()), Value);
	}
	return Self;
}

bool FPyStruct::Check(PyObject* Value)
{
	return PyObject_TypeCheck(Value, PyStructWrapper::BaseType);
}

UScriptStruct* FPyStruct::GetStruct(PyObject* Self)
{
	return PyStructWrapper::ToInstance(Self)->Struct;
}

void* FPyStruct::GetMemory(PyObject* Self)
{
	return PyStructWrapper::ToInstance(Self)->Memory;
}
