#include "Types/PyObject.h"

#include "Types/PyFunctions.h"
#include "Types/PyTypes.h"
#include "UObject/Class.h"
#include "UObject/GCObject.h"
#include "UObject/Package.h"
#include "UObject/WeakObjectPtr.h"
#include "Values/PyProperties.h"
#include "Values/PyText.h"

#include <mutex>

namespace PyObjectWrapper
{
struct FInstance
{
	PyObject_HEAD FWeakObjectPtr Object;
};

PyTypeObject* BaseType = nullptr;

/** Keeps the objects of all wrappers. A thread of a script can let go of one while garbage is collected. */
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
			// Nothing counts as reachable while it is being found out.
			UObject* const Object = Instance->Object.GetEvenIfUnreachable();
			if (IsValid(Object))
			{
				Collector.AddReferencedObject(Object);
			}
		}
	}
	FString GetReferencerName() const override { return TEXT("Python objects"); }

private:
	std::mutex Mutex;
	TSet<const FInstance*> Instances;
};

FKeeper* Keeper = nullptr;

FInstance* ToInstance(PyObject* Self)
{
	return reinterpret_cast<FInstance*>(Self);
}

PyObject* Allocate(PyTypeObject* Type, PyObject*, PyObject*)
{
	PyObject* const Self = Type->tp_alloc(Type, 0);
	if (Self)
	{
		::new (&ToInstance(Self)->Object) FWeakObjectPtr();
		Keeper->Add(ToInstance(Self));
	}
	return Self;
}

void Deallocate(PyObject* Self)
{
	PyTypeObject* const Type = Py_TYPE(Self);
	if (Keeper)
	{
		Keeper->Remove(ToInstance(Self));
	}
	Type->tp_free(Self);
	Py_DECREF(Type);
}

/** Why no script may make an object of the class; empty when it may. */
FString GetReasonNotToMake(const UClass& Class)
{
	if (Class.HasAnyClassFlags(CLASS_Abstract))
	{
		return TEXT("the class is abstract");
	}
	const bool bOfReflection = Class.IsChildOf<UField>() || Class.IsChildOf<UPackage>();
	return bOfReflection ? FString(TEXT("objects of this class are not made by scripts")) : FString();
}

FString GetReasonAgainstName(UObject* Outer, const FString& Name)
{
	for (const TCHAR Character : Name)
	{
		if (FString(TEXT(".:/'\"\\, \t\n")).Contains(FString::Chr(Character)))
		{
			return FString::Printf(TEXT("the name '%s' has a character that no name has"), *Name);
		}
	}
	if (Name.Len() >= NAME_SIZE)
	{
		return TEXT("the name is too long");
	}
	// Making an object in the place of another would destroy that one.
	const bool bTaken = !Name.IsEmpty() && StaticFindObjectFast(UObject::StaticClass(), Outer, FName(*Name));
	return bTaken ? FString::Printf(TEXT("there is a '%s' in '%s' already"), *Name, *Outer->GetPathName()) : FString();
}

/** Null with an exception set. OuterObject is null or None for the transient package. */
UObject* Make(UClass* Class, PyObject* OuterObject, const FString& Name)
{
	UObject* Outer = GetTransientPackage();
	if (OuterObject && OuterObject != Py_None)
	{
		if (!FPyObject::Check(OuterObject))
		{
			RaisePython(PyExc_TypeError, TEXT("outer must be an object or None"));
			return nullptr;
		}
		Outer = FPyObject::Get(OuterObject);
	}
	if (!Outer)
	{
		return nullptr;
	}
	const FString Reason = GetReasonNotToMake(*Class);
	const FString NameReason = GetReasonAgainstName(Outer, Name);
	if (!Reason.IsEmpty() || !NameReason.IsEmpty())
	{
		RaisePython(Reason.IsEmpty() ? PyExc_ValueError : PyExc_TypeError,
			FString::Printf(
				TEXT("%s cannot be made: %s"), *Class->GetName(), Reason.IsEmpty() ? *NameReason : *Reason));
		return nullptr;
	}
	return NewObject<UObject>(Outer, Class, Name.IsEmpty() ? FName() : FName(*Name), RF_Transactional);
}

/** The class of a type that is called, itself or a method of its. Null with an exception set. */
UClass* GetClassOfMethod(PyObject* Type)
{
	if (!CheckPythonIsInGameThread())
	{
		return nullptr;
	}
	UClass* const Class = FPyTypes::ToClass(reinterpret_cast<PyTypeObject*>(Type));
	if (!Class)
	{
		RaisePython(PyExc_TypeError, TEXT("This type has no class"));
	}
	return Class;
}

int Initialize(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	static const char* Names[] = { "outer", "name", nullptr };
	PyObject* Outer = nullptr;
	PyObject* Name = nullptr;
	UClass* const Class = GetClassOfMethod(reinterpret_cast<PyObject*>(Py_TYPE(Self)));
	if (!Class || !PyArg_ParseTupleAndKeywords(Arguments, Keywords, "|OU", const_cast<char**>(Names), &Outer, &Name))
	{
		return -1;
	}
	UObject* const Object = Make(Class, Outer, Name ? PyText::ToText(Name) : FString());
	ToInstance(Self)->Object = Object;
	return Object ? 0 : -1;
}

PyObject* Represent(PyObject* Self)
{
	const UObject* const Object = ToInstance(Self)->Object.Get();
	const FString Text = Object
							 ? FString::Printf(TEXT("<Object '%s' (%p) Class '%s'>"), *Object->GetPathName(),
								   static_cast<const void*>(Object), *Object->GetClass()->GetName())
							 : FString::Printf(TEXT("<Object destroyed, Type '%s'>"), *FString(Py_TYPE(Self)->tp_name));
	return PyText::ToPython(Text).Release();
}

Py_hash_t Hash(PyObject* Self)
{
	return static_cast<Py_hash_t>(GetTypeHash(ToInstance(Self)->Object) & 0x7fffffff);
}

PyObject* Compare(PyObject* Self, PyObject* Other, int Operation)
{
	if ((Operation != Py_EQ && Operation != Py_NE) || !FPyObject::Check(Other))
	{
		Py_RETURN_NOTIMPLEMENTED;
	}
	const bool bSame = ToInstance(Self)->Object.HasSameIndexAndSerialNumber(ToInstance(Other)->Object);
	return PyBool_FromLong(bSame == (Operation == Py_EQ));
}

/** A method without arguments that asks the object something. */
template <auto Question>
PyObject* Ask(PyObject* Self, PyObject*)
{
	UObject* const Object = FPyObject::Get(Self);
	return Object ? Question(*Object).Release() : nullptr;
}

FPyRef GetName(UObject& Object)
{
	return PyText::ToPython(Object.GetName());
}

FPyRef GetPathName(UObject& Object)
{
	return PyText::ToPython(Object.GetPathName());
}

FPyRef GetFullName(UObject& Object)
{
	return PyText::ToPython(Object.GetFullName());
}

FPyRef GetClass(UObject& Object)
{
	return FPyObject::Wrap(Object.GetClass());
}

FPyRef GetOuter(UObject& Object)
{
	return FPyObject::Wrap(Object.GetOuter());
}

FPyRef GetPackage(UObject& Object)
{
	return FPyObject::Wrap(Object.GetPackage());
}

PyObject* StaticClass(PyObject* Type, PyObject*)
{
	UClass* const Class = GetClassOfMethod(Type);
	return Class ? FPyObject::Wrap(Class).Release() : nullptr;
}

PyObject* GetDefaultObject(PyObject* Type, PyObject*)
{
	UClass* const Class = GetClassOfMethod(Type);
	return Class ? FPyObject::Wrap(Class->GetDefaultObject()).Release() : nullptr;
}

PyObject* Cast(PyObject* Type, PyObject* Value)
{
	UClass* const Class = GetClassOfMethod(Type);
	UObject* const Object = Class && FPyObject::Check(Value) ? FPyObject::Get(Value) : nullptr;
	if (Object && Object->IsA(Class))
	{
		return Py_NewRef(Value);
	}
	if (!PyErr_Occurred())
	{
		RaisePython(PyExc_TypeError, FString::Printf(TEXT("Cannot cast type '%s' to '%s'"),
										 *FString(Py_TYPE(Value)->tp_name), *Class->GetName()));
	}
	return nullptr;
}

PyCFunction WithKeywords(PyCFunctionWithKeywords Function)
{
	return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(Function));
}

PyMethodDef Methods[] = {
	{ "get_name", &Ask<&GetName>, METH_NOARGS, "get_name() -> str" },
	{ "get_path_name", &Ask<&GetPathName>, METH_NOARGS, "get_path_name() -> str" },
	{ "get_full_name", &Ask<&GetFullName>, METH_NOARGS, "get_full_name() -> str -- The class and the path." },
	{ "get_class", &Ask<&GetClass>, METH_NOARGS, "get_class() -> Class" },
	{ "get_outer", &Ask<&GetOuter>, METH_NOARGS, "get_outer() -> Object -- The object around this one, or None." },
	{ "get_package", &Ask<&GetPackage>, METH_NOARGS, "get_package() -> Package" },
	{ "get_outermost", &Ask<&GetPackage>, METH_NOARGS, "get_outermost() -> Package" },
	{ "get_editor_property", WithKeywords(&PyProperties::GetEditorProperty), METH_VARARGS | METH_KEYWORDS,
		"get_editor_property(name) -> object -- The value of a variable; arrays, sets, maps and structs are copies." },
	{ "set_editor_property", WithKeywords(&PyProperties::SetEditorProperty), METH_VARARGS | METH_KEYWORDS,
		"set_editor_property(name, value) -- Changes a variable as a person in a details panel does." },
	{ "set_editor_properties", &PyProperties::SetEditorProperties, METH_O,
		"set_editor_properties(values) -- Changes several variables, named by a dict." },
	{ "call_method", WithKeywords(&PyFunctions::CallMethod), METH_VARARGS | METH_KEYWORDS,
		"call_method(name, args=(), kwargs={}) -> object -- Calls any reflected function." },
	{ "static_class", &StaticClass, METH_NOARGS | METH_CLASS, "static_class() -> Class" },
	{ "get_default_object", &GetDefaultObject, METH_NOARGS | METH_CLASS, "get_default_object() -> Object" },
	{ "cast", &Cast, METH_O | METH_CLASS, "cast(object) -- The object if it is of this type; a TypeError otherwise." },
	{ nullptr, nullptr, 0, nullptr },
};

PyType_Slot Slots[] = {
	{ Py_tp_doc, const_cast<char*>("The base of all types of objects.") },
	{ Py_tp_new, reinterpret_cast<void*>(&Allocate) },
	{ Py_tp_init, reinterpret_cast<void*>(&Initialize) },
	{ Py_tp_dealloc, reinterpret_cast<void*>(&Deallocate) },
	{ Py_tp_repr, reinterpret_cast<void*>(&Represent) },
	{ Py_tp_hash, reinterpret_cast<void*>(&Hash) },
	{ Py_tp_richcompare, reinterpret_cast<void*>(&Compare) },
	{ Py_tp_methods, Methods },
	{ 0, nullptr },
};

PyType_Spec Spec = { "unreal._ObjectBase", sizeof(FInstance), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, Slots };
}

PyTypeObject* FPyObject::GetBaseType()
{
	return PyObjectWrapper::BaseType;
}

bool FPyObject::Prepare(PyObject* UnrealModule)
{
	PyObjectWrapper::Keeper = new PyObjectWrapper::FKeeper;
	PyObjectWrapper::BaseType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&PyObjectWrapper::Spec));
	return PyObjectWrapper::BaseType && PyModule_AddType(UnrealModule, PyObjectWrapper::BaseType) == 0;
}

void FPyObject::Forget()
{
	Py_CLEAR(PyObjectWrapper::BaseType);
	delete PyObjectWrapper::Keeper;
	PyObjectWrapper::Keeper = nullptr;
}

FPyRef FPyObject::Wrap(UObject* Object)
{
	if (!Object)
	{
		return FPyRef::Borrow(Py_None);
	}
	PyTypeObject* const Type = FPyTypes::GetType(Object->GetClass());
	FPyRef Self = Type ? FPyRef::Steal(PyObjectWrapper::Allocate(Type, nullptr, nullptr)) : FPyRef();
	if (Self)
	{
		PyObjectWrapper::ToInstance(Self.Get())->Object = Object;
	}
	return Self;
}

bool FPyObject::Check(PyObject* Value)
{
	return PyObject_TypeCheck(Value, PyObjectWrapper::BaseType);
}

UObject* FPyObject::Get(PyObject* Self)
{
	if (!CheckPythonIsInGameThread())
	{
		return nullptr;
	}
	UObject* const Object = PyObjectWrapper::ToInstance(Self)->Object.Get();
	if (!Object)
	{
		RaisePython(PyExc_ReferenceError,
			FString::Printf(TEXT("%s: the object has been destroyed"), *FString(Py_TYPE(Self)->tp_name)));
	}
	return Object;
}

PyObject* FPyObject::New(PyObject*, PyObject* Arguments, PyObject* Keywords)
{
	static const char* Names[] = { "type", "outer", "name", nullptr };
	PyObject* Type = nullptr;
	PyObject* Outer = nullptr;
	PyObject* Name = nullptr;
	if (!CheckPythonIsInGameThread() ||
		!PyArg_ParseTupleAndKeywords(Arguments, Keywords, "O|OU", const_cast<char**>(Names), &Type, &Outer, &Name))
	{
		return nullptr;
	}
	UClass* const Class = FPyTypes::ToClass(Type);
	if (!Class)
	{
		RaisePython(PyExc_TypeError, TEXT("new_object: 'type' must be a class"));
		return nullptr;
	}
	UObject* const Object = PyObjectWrapper::Make(Class, Outer, Name ? PyText::ToText(Name) : FString());
	return Object ? Wrap(Object).Release() : nullptr;
}

void RaisePython(PyObject* ExceptionType, const FString& Message)
{
	const FPyRef Text = PyText::ToPython(Message);
	if (Text)
	{
		PyErr_SetObject(ExceptionType, Text.Get());
	}
}

bool CheckPythonIsInGameThread()
{
	if (!PyObjectWrapper::Keeper)
	{
		PyErr_SetString(PyExc_RuntimeError, "The editor is being closed");
		return false;
	}
	if (!IsInGameThread())
	{
		PyErr_SetString(PyExc_RuntimeError, "The editor's objects can be used on the game thread alone");
		return false;
	}
	return true;
}
