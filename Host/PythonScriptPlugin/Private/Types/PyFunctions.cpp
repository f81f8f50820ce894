#include "Types/PyFunctions.h"

#include "Types/PyNames.h"
#include "Types/PyObject.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "Values/PyConversion.h"
#include "Values/PyText.h"

#include <cstdlib>
#include <cstring>

namespace PyFunctions
{
/** A method: the descriptor of an object's, or the function itself of a static one. */
struct FMethod
{
	PyObject_HEAD TWeakObjectPtr<UClass> Class;
	FName Name;
	bool bStatic;
};

PyTypeObject* MethodType = nullptr;

FMethod* ToMethod(PyObject* Self)
{
	return reinterpret_cast<FMethod*>(Self);
}

/** The block of a function's parameters, each with its type's empty value at first. */
class FParameters
{
public:
	explicit FParameters(const UFunction& InFunction)
		: Function(InFunction)
	{
		const size_t Alignment = static_cast<size_t>(FMath::Max(Function.GetMinAlignment(), 16));
		const size_t Size = static_cast<size_t>(FMath::Max(Function.GetStructureSize(), 1));
		const size_t AlignedSize = (Size + Alignment - 1) / Alignment * Alignment;
		Memory = std::aligned_alloc(Alignment, AlignedSize);
		std::memset(Memory, 0, AlignedSize);
		for (FProperty* Property : GetAll())
		{
			Property->InitializeValue_InContainer(Memory);
		}
	}
	~FParameters()
	{
		for (FProperty* Property : GetAll())
		{
			Property->DestroyValue_InContainer(Memory);
		}
		std::free(Memory);
	}
	UE_NONCOPYABLE(FParameters)

	void* GetMemory() const { return Memory; }
	void* GetValue(const FProperty& Property) const { return Property.ContainerPtrToValuePtr<void>(Memory); }
	/** What a caller hands over: not what only comes back. */
	TArray<FProperty*> GetInputs() const
	{
		return GetAll().FilterByPredicate([](const FProperty* Property) {
			return Property->HasAnyPropertyFlags(CPF_Parm) && !Property->HasAnyPropertyFlags(CPF_ReturnParm) &&
				   (!Property->HasAnyPropertyFlags(CPF_OutParm) ||
					   Property->HasAnyPropertyFlags(CPF_ReferenceParm | CPF_ConstParm));
		});
	}
	/** What comes back besides the return value; a constant reference is none of it, whatever its flags. */
	TArray<FProperty*> GetOutputs() const
	{
		return GetAll().FilterByPredicate([](const FProperty* Property) {
			return Property->HasAllPropertyFlags(CPF_Parm | CPF_OutParm) &&
				   !Property->HasAnyPropertyFlags(CPF_ReturnParm | CPF_ConstParm);
		});
	}

private:
	/** The function's own: what it overrides has the same ones at the same places. */
	TArray<FProperty*> GetAll() const
	{
		TArray<FProperty*> All;
		for (TFieldIterator<FProperty> It(&Function, EFieldIterationFlags::None); It; ++It)
		{
			All.Add(*It);
		}
		return All;
	}

	const UFunction& Function;
	void* Memory = nullptr;
};

bool RaiseArguments(const UFunction& Function, const FString& Message)
{
	RaisePython(PyExc_TypeError, FString::Printf(TEXT("%s() %s"), *PyNames::GetName(Function), *Message));
	return false;
}

/** Reads the default that the declaration gives. False when there is none. */
bool SetDefault(const UFunction& Function, const FProperty& Property, void* Value)
{
	const FName Key(*(TEXT("CPP_Default_") + Property.GetName()));
	if (!Function.HasMetaData(Key))
	{
		return false;
	}
	const FString& Text = Function.GetMetaData(Key);
	const bool bEmptyOne = Text.IsEmpty() || Text.EndsWith(TEXT("()")) || Text == TEXT("0, 0, 0");
	return bEmptyOne || Property.ImportText_Direct(*Text, Value, nullptr, PPF_None) != nullptr;
}

/** Finds an argument by position or by name. Null, without an exception, when it is not given. */
PyObject* FindArgument(PyObject* Arguments, Py_ssize_t Index, PyObject* Keywords, const FString& Name)
{
	if (Index < PyTuple_GET_SIZE(Arguments))
	{
		return PyTuple_GET_ITEM(Arguments, Index);
	}
	const FPyRef Key = Keywords ? PyText::ToPython(Name) : FPyRef();
	return Key ? PyDict_GetItemWithError(Keywords, Key.Get()) : nullptr;
}

bool TakeArguments(const UFunction& Function, const FParameters& Parameters, PyObject* Arguments, PyObject* Keywords)
{
	const TArray<FProperty*> Inputs = Parameters.GetInputs();
	const Py_ssize_t NumGiven = PyTuple_GET_SIZE(Arguments);
	Py_ssize_t NumNamed = 0;
	if (NumGiven > Inputs.Num())
	{
		return RaiseArguments(Function,
			FString::Printf(TEXT("takes at most %d arguments (%d given)"), Inputs.Num(), static_cast<int32>(NumGiven)));
	}
	for (int32 Index = 0; Index < Inputs.Num(); ++Index)
	{
		const FProperty& Property = *Inputs[Index];
		const FString Name = PyNames::GetName(Property);
		PyObject* const Argument = FindArgument(Arguments, Index, Keywords, Name);
		NumNamed += Argument && Index >= NumGiven ? 1 : 0;
		if (Argument && !PyConversion::FromPython(Property, Argument, Parameters.GetValue(Property)))
		{
			return false;
		}
		if (!Argument && !SetDefault(Function, Property, Parameters.GetValue(Property)))
		{
			return RaiseArguments(
				Function, FString::Printf(TEXT("required argument '%s' (pos %d) not found"), *Name, Index + 1));
		}
	}
	return !Keywords || NumNamed == PyDict_GET_SIZE(Keywords) ||
		   RaiseArguments(Function, TEXT("got an unexpected keyword argument, or one that was given by position too"));
}

/**
 * What a call returns: the return value and the output parameters, as a tuple when there are several. A function
 * that returns a bool and has outputs tells by the bool whether there are any: it gives them without it, or None.
 */
FPyRef PackResults(const UFunction& Function, const FParameters& Parameters)
{
	TArray<FProperty*> Results = Parameters.GetOutputs();
	if (FProperty* const Return = Function.GetReturnProperty())
	{
		const FBoolProperty* const Succeeded = Results.IsEmpty() ? nullptr : CastField<FBoolProperty>(Return);
		if (Succeeded && !Succeeded->GetPropertyValue(Parameters.GetValue(*Return)))
		{
			return FPyRef::Borrow(Py_None);
		}
		if (!Succeeded)
		{
			Results.Insert(Return, 0);
		}
	}
	FPyRef Tuple = FPyRef::Steal(PyTuple_New(Results.Num()));
	for (int32 Index = 0; Tuple && Index < Results.Num(); ++Index)
	{
		FPyRef Value = PyConversion::ToPython(*Results[Index], Parameters.GetValue(*Results[Index]));
		if (!Value)
		{
			return FPyRef();
		}
		PyTuple_SET_ITEM(Tuple.Get(), Index, Value.Release());
	}
	if (!Tuple || Results.Num() > 1)
	{
		return Tuple;
	}
	return FPyRef::Borrow(Results.IsEmpty() ? Py_None : PyTuple_GET_ITEM(Tuple.Get(), 0));
}

FPyRef CallFunction(UObject& Object, UFunction& Function, PyObject* Arguments, PyObject* Keywords)
{
	const FParameters Parameters(Function);
	if (!TakeArguments(Function, Parameters, Arguments, Keywords))
	{
		return FPyRef();
	}
	Object.ProcessEvent(&Function, Parameters.GetMemory());
	return PackResults(Function, Parameters);
}

UFunction* FindFunction(const UClass* Class, const FString& Name)
{
	for (TFieldIterator<UFunction> It(Class, EFieldIterationFlags::IncludeAll); It; ++It)
	{
		if (It->GetName().Equals(Name) || PyNames::GetName(**It).Equals(Name))
		{
			return *It;
		}
	}
	return nullptr;
}

PyObject* CallMethod(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	static const char* Names[] = { "name", "args", "kwargs", nullptr };
	PyObject* Name = nullptr;
	PyObject* Args = nullptr;
	PyObject* KwArgs = nullptr;
	UObject* const Object = FPyObject::Get(Self);
	if (!Object || !PyArg_ParseTupleAndKeywords(Arguments, Keywords, "O|O!O!", const_cast<char**>(Names), &Name,
					   &PyTuple_Type, &Args, &PyDict_Type, &KwArgs))
	{
		return nullptr;
	}
	const FString NameText = PyText::Describe(Name);
	UFunction* const Function = FindFunction(Object->GetClass(), NameText);
	if (!Function)
	{
		const FString Class = Object->GetClass()->GetName();
		RaisePython(PyExc_Exception,
			FString::Printf(TEXT("%s: Failed to find function '%s' on '%s'"), *Class, *NameText, *Class));
		return nullptr;
	}
	const FPyRef Given = Args ? FPyRef::Borrow(Args) : FPyRef::Steal(PyTuple_New(0));
	return CallFunction(*Object, *Function, Given.Get(), KwArgs).Release();
}

/** The object that a method is called on, and what is left of the arguments. Null with an exception set. */
UObject* TakeObject(const FMethod& Method, PyObject* Arguments, FPyRef& OutRest)
{
	UClass* const Class = Method.Class.Get();
	if (!CheckPythonIsInGameThread() || !Class)
	{
		return nullptr;
	}
	if (Method.bStatic)
	{
		OutRest = FPyRef::Borrow(Arguments);
		return Class->GetDefaultObject();
	}
	PyObject* const Self = PyTuple_GET_SIZE(Arguments) > 0 ? PyTuple_GET_ITEM(Arguments, 0) : nullptr;
	UObject* const Object = Self && FPyObject::Check(Self) ? FPyObject::Get(Self) : nullptr;
	OutRest = FPyRef::Steal(PyTuple_GetSlice(Arguments, 1, PyTuple_GET_SIZE(Arguments)));
	const bool bHasIt = Object && (Object->IsA(Class) || Object->GetClass()->ImplementsInterface(Class));
	return bHasIt ? Object : nullptr;
}

PyObject* Call(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	const FMethod& Method = *ToMethod(Self);
	FPyRef Rest;
	UObject* const Object = TakeObject(Method, Arguments, Rest);
	UFunction* const Function = Object ? Object->FindFunction(Method.Name) : nullptr;
	if (Function)
	{
		return CallFunction(*Object, *Function, Rest.Get(), Keywords).Release();
	}
	if (!PyErr_Occurred())
	{
		RaisePython(PyExc_TypeError,
			FString::Printf(TEXT("'%s' needs an object that has it"), *PyNames::ToSnakeCase(Method.Name.ToString())));
	}
	return nullptr;
}

PyObject* Bind(PyObject* Self, PyObject* Object, PyObject*)
{
	return Object && !ToMethod(Self)->bStatic ? PyMethod_New(Self, Object) : Py_NewRef(Self);
}

PyObject* GetDoc(PyObject* Self, void*)
{
	const UClass* const Class = ToMethod(Self)->Class.Get();
	const UFunction* const Function = Class ? Class->FindFunctionByName(ToMethod(Self)->Name) : nullptr;
	return PyText::ToPython(Function ? Function->GetToolTipText().ToString() : FString()).Release();
}

PyObject* GetName(PyObject* Self, void*)
{
	return PyText::ToPython(PyNames::ToSnakeCase(ToMethod(Self)->Name.ToString())).Release();
}

void Deallocate(PyObject* Self)
{
	PyTypeObject* const Type = Py_TYPE(Self);
	Type->tp_free(Self);
	Py_DECREF(Type);
}

PyGetSetDef Properties[] = {
	{ "__doc__", &GetDoc, nullptr, nullptr, nullptr },
	{ "__name__", &GetName, nullptr, nullptr, nullptr },
	{ nullptr, nullptr, nullptr, nullptr, nullptr },
};

PyType_Slot Slots[] = {
	{ Py_tp_dealloc, reinterpret_cast<void*>(&Deallocate) },
	{ Py_tp_descr_get, reinterpret_cast<void*>(&Bind) },
	{ Py_tp_call, reinterpret_cast<void*>(&Call) },
	{ Py_tp_getset, Properties },
	{ 0, nullptr },
};

PyType_Spec Spec = { "unreal._Method", sizeof(FMethod), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION,
	Slots };

FPyRef MakeMethod(const UFunction& Function)
{
	FPyRef Self = FPyRef::Steal(MethodType->tp_alloc(MethodType, 0));
	if (Self)
	{
		FMethod* const Method = ToMethod(Self.Get());
		::new (&Method->Class) TWeakObjectPtr<UClass>(Function.GetOwnerClass());
		::new (&Method->Name) FName(Function.GetFName());
		Method->bStatic = Function.HasAnyFunctionFlags(FUNC_Static);
	}
	return Self;
}

bool Prepare()
{
	MethodType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&Spec));
	return MethodType != nullptr;
}

void Forget()
{
	Py_CLEAR(MethodType);
}
}
