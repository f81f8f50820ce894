#include "Values/PyConversion.h"

#include "Types/PyObject.h"
#include "Types/PyStruct.h"
#include "Types/PyTypes.h"
#include "UObject/EnumProperty.h"
#include "UObject/TextProperty.h"
#include "Values/PyText.h"

#include <cfloat>
#include <cmath>

namespace PyConversion
{
/** "Name" and "Text" of the prelude. */
PyObject* NameType = nullptr;
PyObject* TextType = nullptr;

bool Refuse(const FProperty& Property, PyObject* Object)
{
	if (!PyErr_Occurred())
	{
		RaisePython(PyExc_TypeError,
			FString::Printf(TEXT("NativizeProperty: Cannot nativize '%s' as '%s' (%s)"),
				*FString(Py_TYPE(Object)->tp_name), *Property.GetName(), *Property.GetClass()->GetName()));
	}
	return false;
}

bool RefuseValue(const FProperty& Property, PyObject* ExceptionType, const TCHAR* Reason)
{
	PyErr_Clear();
	RaisePython(ExceptionType, FString::Printf(TEXT("NativizeProperty: Cannot nativize the value as '%s' (%s): %s"),
								   *Property.GetName(), *Property.GetClass()->GetName(), Reason));
	return false;
}

// Reading, kind by kind.

FPyRef Read(const FBoolProperty& Property, const void* Value)
{
	return FPyRef::Steal(PyBool_FromLong(Property.GetPropertyValue(Value)));
}

/** A value that the enum does not name stays a number. */
FPyRef ReadEntry(UEnum* Enum, long long Number)
{
	PyTypeObject* const Type = FPyTypes::GetType(Enum);
	FPyRef NumberObject = FPyRef::Steal(PyLong_FromLongLong(Number));
	if (!Type || !NumberObject)
	{
		return FPyRef();
	}
	FPyRef Entry = FPyRef::Steal(PyObject_CallOneArg(reinterpret_cast<PyObject*>(Type), NumberObject.Get()));
	if (!Entry)
	{
		PyErr_Clear();
		return NumberObject;
	}
	return Entry;
}

FPyRef Read(const FEnumProperty& Property, const void* Value)
{
	return ReadEntry(Property.GetEnum(), Property.GetUnderlyingProperty()->GetSignedIntPropertyValue(Value));
}

FPyRef Read(const FNumericProperty& Property, const void* Value)
{
	if (UEnum* const Enum = Property.GetIntPropertyEnum())
	{
		return ReadEntry(Enum, Property.GetSignedIntPropertyValue(Value));
	}
	if (Property.IsFloatingPoint())
	{
		return FPyRef::Steal(PyFloat_FromDouble(Property.GetFloatingPointPropertyValue(Value)));
	}
	return FPyRef::Steal(Property.IsA(FUInt64Property::StaticClass())
							 ? PyLong_FromUnsignedLongLong(Property.GetUnsignedIntPropertyValue(Value))
							 : PyLong_FromLongLong(Property.GetSignedIntPropertyValue(Value)));
}

FPyRef Read(const FStrProperty& Property, const void* Value)
{
	return PyText::ToPython(Property.GetPropertyValue(Value));
}

FPyRef MakeText(PyObject* Type, const FString& Text)
{
	const FPyRef Str = PyText::ToPython(Text);
	return Str ? FPyRef::Steal(PyObject_CallOneArg(Type, Str.Get())) : FPyRef();
}

FPyRef Read(const FNameProperty& Property, const void* Value)
{
	return MakeText(NameType, Property.GetPropertyValue(Value).ToString());
}

FPyRef Read(const FTextProperty& Property, const void* Value)
{
	return MakeText(TextType, Property.GetPropertyValue(Value).ToString());
}

FPyRef Read(const FObjectPropertyBase& Property, const void* Value)
{
	return FPyObject::Wrap(Property.GetObjectPropertyValue(Value));
}

FPyRef Read(const FInterfaceProperty& Property, const void* Value)
{
	return FPyObject::Wrap(Property.GetPropertyValue(Value).GetObject());
}

FPyRef Read(const FStructProperty& Property, const void* Value)
{
	return FPyStruct::Copy(Property.Struct, Value);
}

FPyRef Read(const FArrayProperty& Property, const void* Value)
{
	const FScriptArrayHelper Array(&Property, Value);
	FPyRef List = FPyRef::Steal(PyList_New(Array.Num()));
	for (int32 Index = 0; List && Index < Array.Num(); ++Index)
	{
		FPyRef Element = ToPython(*Property.Inner, Array.GetRawPtr(Index));
		if (!Element)
		{
			return FPyRef();
		}
		PyList_SET_ITEM(List.Get(), Index, Element.Release());
	}
	return List;
}

FPyRef Read(const FSetProperty& Property, const void* Value)
{
	const FScriptSetHelper Set(&Property, Value);
	FPyRef Result = FPyRef::Steal(PySet_New(nullptr));
	for (int32 Index = 0; Result && Index < Set.GetMaxIndex(); ++Index)
	{
		const FPyRef Element =
			Set.IsValidIndex(Index) ? ToPython(*Property.ElementProp, Set.GetElementPtr(Index)) : FPyRef();
		if (Set.IsValidIndex(Index) && (!Element || PySet_Add(Result.Get(), Element.Get()) < 0))
		{
			return FPyRef();
		}
	}
	return Result;
}

FPyRef Read(const FMapProperty& Property, const void* Value)
{
	const FScriptMapHelper Map(&Property, Value);
	FPyRef Dict = FPyRef::Steal(PyDict_New());
	for (int32 Index = 0; Dict && Index < Map.GetMaxIndex(); ++Index)
	{
		if (!Map.IsValidIndex(Index))
		{
			continue;
		}
		const FPyRef KeyObject = ToPython(*Property.KeyProp, Map.GetKeyPtr(Index));
		const FPyRef ValueObject = KeyObject ? ToPython(*Property.ValueProp, Map.GetValuePtr(Index)) : FPyRef();
		if (!ValueObject || PyDict_SetItem(Dict.Get(), KeyObject.Get(), ValueObject.Get()) < 0)
		{
			return FPyRef();
		}
	}
	return Dict;
}

// Writing, kind by kind.

bool Write(const FBoolProperty& Property, PyObject* Object, void* Value)
{
	if (!PyBool_Check(Object))
	{
		return Refuse(Property, Object);
	}
	Property.SetPropertyValue(Value, Object == Py_True);
	return true;
}

bool WriteEntry(const FProperty& Property, UEnum* Enum, const FNumericProperty& Number, PyObject* Object, void* Value)
{
	if (FPyTypes::ToEnum(Py_TYPE(Object)) != Enum)
	{
		return Refuse(Property, Object);
	}
	const FPyRef EntryValue = FPyRef::Steal(PyObject_GetAttrString(Object, "value"));
	const long long Entry = EntryValue ? PyLong_AsLongLong(EntryValue.Get()) : -1;
	if (PyErr_Occurred())
	{
		return false;
	}
	Number.SetIntPropertyValue(Value, static_cast<int64>(Entry));
	return true;
}

bool Write(const FEnumProperty& Property, PyObject* Object, void* Value)
{
	return WriteEntry(Property, Property.GetEnum(), *Property.GetUnderlyingProperty(), Object, Value);
}

bool WriteFloat(const FNumericProperty& Property, PyObject* Object, void* Value)
{
	if (!PyFloat_Check(Object) && !PyLong_Check(Object))
	{
		return Refuse(Property, Object);
	}
	const double Number = PyFloat_AsDouble(Object);
	const bool bTooLarge = Property.IsA(FFloatProperty::StaticClass()) && std::isfinite(Number) &&
						   std::fabs(Number) > static_cast<double>(FLT_MAX);
	if (PyErr_Occurred() || bTooLarge)
	{
		return RefuseValue(Property, PyExc_OverflowError, TEXT("it is out of range"));
	}
	Property.SetFloatingPointPropertyValue(Value, Number);
	return true;
}

bool IsUnsigned(const FNumericProperty& Property)
{
	return Property.IsA(FByteProperty::StaticClass()) || Property.IsA(FUInt16Property::StaticClass()) ||
		   Property.IsA(FUInt32Property::StaticClass()) || Property.IsA(FUInt64Property::StaticClass());
}

bool Write(const FNumericProperty& Property, PyObject* Object, void* Value)
{
	if (UEnum* const Enum = Property.GetIntPropertyEnum())
	{
		return WriteEntry(Property, Enum, Property, Object, Value);
	}
	if (Property.IsFloatingPoint())
	{
		return WriteFloat(Property, Object, Value);
	}
	if (!PyLong_Check(Object))
	{
		return Refuse(Property, Object);
	}
	const int UnusedBits = 64 - Property.ElementSize * 8;
	if (IsUnsigned(Property))
	{
		const uint64 Number = PyLong_AsUnsignedLongLong(Object);
		if (PyErr_Occurred() || Number > (static_cast<uint64>(-1) >> UnusedBits))
		{
			return RefuseValue(Property, PyExc_OverflowError, TEXT("it is out of range"));
		}
		Property.SetIntPropertyValue(Value, Number);
		return true;
	}
	const int64 Number = PyLong_AsLongLong(Object);
	if (PyErr_Occurred() || Number > (MAX_int64 >> UnusedBits) || Number < (MIN_int64 >> UnusedBits))
	{
		return RefuseValue(Property, PyExc_OverflowError, TEXT("it is out of range"));
	}
	Property.SetIntPropertyValue(Value, Number);
	return true;
}

/** A str, or an object of the other type that stands for the same. */
bool TakeText(const FProperty& Property, PyObject* Object, PyObject* OtherType, FString& OutText)
{
	const bool bOther = OtherType && PyObject_IsInstance(Object, OtherType) > 0;
	if (!PyUnicode_Check(Object) && !bOther)
	{
		return Refuse(Property, Object);
	}
	OutText = PyText::Describe(Object);
	int32 NulIndex = INDEX_NONE;
	if (OutText.FindChar(u'\0', NulIndex))
	{
		return RefuseValue(Property, PyExc_ValueError, TEXT("it has a NUL character"));
	}
	return true;
}

bool Write(const FStrProperty& Property, PyObject* Object, void* Value)
{
	return TakeText(Property, Object, nullptr, *Property.GetPropertyValuePtr(Value));
}

bool Write(const FNameProperty& Property, PyObject* Object, void* Value)
{
	FString Text;
	if (!TakeText(Property, Object, NameType, Text))
	{
		return false;
	}
	if (Text.Len() >= NAME_SIZE)
	{
		return RefuseValue(Property, PyExc_ValueError, TEXT("it is too long for a name"));
	}
	Property.SetPropertyValue(Value, FName(*Text));
	return true;
}

bool Write(const FTextProperty& Property, PyObject* Object, void* Value)
{
	FString Text;
	if (!TakeText(Property, Object, TextType, Text))
	{
		return false;
	}
	Property.SetPropertyValue(Value, FText::FromString(Text));
	return true;
}

UClass* GetMetaClass(const FObjectPropertyBase& Property)
{
	if (const FClassProperty* const Class = CastField<FClassProperty>(&Property))
	{
		return Class->MetaClass;
	}
	const FSoftClassProperty* const SoftClass = CastField<FSoftClassProperty>(&Property);
	return SoftClass ? SoftClass->MetaClass : nullptr;
}

bool Write(const FObjectPropertyBase& Property, PyObject* Object, void* Value)
{
	if (Object == Py_None)
	{
		Property.SetObjectPropertyValue(Value, nullptr);
		return true;
	}
	UObject* Target = nullptr;
	if (FPyObject::Check(Object))
	{
		Target = FPyObject::Get(Object);
	}
	else if (PyType_Check(Object))
	{
		Target = FPyTypes::ToClass(Object);
	}
	const UClass* const MetaClass = GetMetaClass(Property);
	if (!Target || !Target->IsA(Property.PropertyClass) ||
		(MetaClass && !static_cast<UClass*>(Target)->IsChildOf(MetaClass)))
	{
		return Refuse(Property, Object);
	}
	Property.SetObjectPropertyValue(Value, Target);
	return true;
}

bool Write(const FInterfaceProperty& Property, PyObject* Object, void* Value)
{
	UObject* const Target = FPyObject::Check(Object) ? FPyObject::Get(Object) : nullptr;
	if (Object != Py_None && (!Target || !Target->GetClass()->ImplementsInterface(Property.InterfaceClass)))
	{
		return Refuse(Property, Object);
	}
	void* const Interface = Target ? Target->GetNativeInterfaceAddress(Property.InterfaceClass) : nullptr;
	Property.SetPropertyValue(Value, FScriptInterface(Target, Interface));
	return true;
}

bool Write(const FStructProperty& Property, PyObject* Object, void* Value)
{
	if (!FPyStruct::Check(Object) || !FPyStruct::GetStruct(Object)->IsChildOf(Property.Struct))
	{
		return Refuse(Property, Object);
	}
	Property.CopySingleValue(Value, FPyStruct::GetMemory(Object));
	return true;
}

/** The elements of what a script may give for an array or a set; a text is a sequence, but not meant as one. */
FPyRef TakeElements(const FProperty& Property, PyObject* Object, bool bSet)
{
	const bool bFits = bSet ? PyAnySet_Check(Object) : PyList_Check(Object) || PyTuple_Check(Object);
	if (!bFits)
	{
		Refuse(Property, Object);
		return FPyRef();
	}
	return FPyRef::Steal(PySequence_Tuple(Object));
}

bool Write(const FArrayProperty& Property, PyObject* Object, void* Value)
{
	const FPyRef Elements = TakeElements(Property, Object, false);
	if (!Elements)
	{
		return false;
	}
	const int32 NumElements = static_cast<int32>(PyTuple_GET_SIZE(Elements.Get()));
	const FScriptArrayHelper Array(&Property, Value);
	Array.EmptyAndAddValues(NumElements);
	for (int32 Index = 0; Index < NumElements; ++Index)
	{
		if (!FromPython(*Property.Inner, PyTuple_GET_ITEM(Elements.Get(), Index), Array.GetRawPtr(Index)))
		{
			return false;
		}
	}
	return true;
}

bool Write(const FSetProperty& Property, PyObject* Object, void* Value)
{
	const FPyRef Elements = TakeElements(Property, Object, true);
	if (!Elements)
	{
		return false;
	}
	const FScriptSetHelper Set(&Property, Value);
	Set.EmptyElements();
	for (Py_ssize_t Index = 0; Index < PyTuple_GET_SIZE(Elements.Get()); ++Index)
	{
		const FPropertyValueBuffer Element(*Property.ElementProp);
		if (!FromPython(*Property.ElementProp, PyTuple_GET_ITEM(Elements.Get(), Index), Element.Get()))
		{
			return false;
		}
		Set.AddElement(Element.Get());
	}
	return true;
}

bool Write(const FMapProperty& Property, PyObject* Object, void* Value)
{
	// A copy: making texts of keys can run code of the script, which could change the dict.
	const FPyRef Dict = PyDict_Check(Object) ? FPyRef::Steal(PyDict_Copy(Object)) : FPyRef();
	if (!Dict)
	{
		return Refuse(Property, Object);
	}
	const FScriptMapHelper Map(&Property, Value);
	Map.EmptyValues();
	PyObject* KeyObject = nullptr;
	PyObject* ValueObject = nullptr;
	Py_ssize_t Position = 0;
	while (PyDict_Next(Dict.Get(), &Position, &KeyObject, &ValueObject))
	{
		const FPropertyValueBuffer Key(*Property.KeyProp);
		const FPropertyValueBuffer Pair(*Property.ValueProp);
		if (!FromPython(*Property.KeyProp, KeyObject, Key.Get()) ||
			!FromPython(*Property.ValueProp, ValueObject, Pair.Get()))
		{
			return false;
		}
		Map.AddPair(Key.Get(), Pair.Get());
	}
	return true;
}

/** Calls Visitor with the property as what it is. False when no kind fits. */
template <typename... Kinds, typename VisitorType>
bool VisitKind(const FProperty& Property, VisitorType Visitor)
{
	const auto Try = [&Visitor](const auto* Typed) {
		if (Typed)
		{
			Visitor(*Typed);
		}
		return Typed != nullptr;
	};
	return (Try(CastField<Kinds>(&Property)) || ...);
}

template <typename VisitorType>
bool Visit(const FProperty& Property, VisitorType Visitor)
{
	return VisitKind<FBoolProperty, FEnumProperty, FNumericProperty, FStrProperty, FNameProperty, FTextProperty,
		FObjectPropertyBase, FInterfaceProperty, FStructProperty, FArrayProperty, FSetProperty, FMapProperty>(
		Property, Visitor);
}

FPyRef ToPythonElement(const FProperty& Property, const void* Value)
{
	FPyRef Result;
	Visit(Property, [&Result, Value](const auto& Typed) { Result = Read(Typed, Value); });
	if (!Result && !PyErr_Occurred())
	{
		RaisePython(PyExc_TypeError, FString::Printf(TEXT("PythonizeProperty: Cannot pythonize '%s' (%s)"),
										 *Property.GetName(), *Property.GetClass()->GetName()));
	}
	return Result;
}

bool FromPythonElement(const FProperty& Property, PyObject* Object, void* Value)
{
	bool bWritten = false;
	if (!Visit(Property, [&bWritten, Object, Value](const auto& Typed) { bWritten = Write(Typed, Object, Value); }))
	{
		return Refuse(Property, Object);
	}
	return bWritten;
}

void* GetElement(const FProperty& Property, void* Value, int32 Index)
{
	return static_cast<uint8*>(Value) + static_cast<SIZE_T>(Index) * Property.ElementSize;
}

FPyRef ToPython(const FProperty& Property, const void* Value)
{
	if (Property.ArrayDim == 1)
	{
		return ToPythonElement(Property, Value);
	}
	FPyRef List = FPyRef::Steal(PyList_New(Property.ArrayDim));
	for (int32 Index = 0; List && Index < Property.ArrayDim; ++Index)
	{
		FPyRef Element = ToPythonElement(Property, GetElement(Property, const_cast<void*>(Value), Index));
		if (!Element)
		{
			return FPyRef();
		}
		PyList_SET_ITEM(List.Get(), Index, Element.Release());
	}
	return List;
}

bool FromPython(const FProperty& Property, PyObject* Object, void* Value)
{
	if (Property.ArrayDim == 1)
	{
		return FromPythonElement(Property, Object, Value);
	}
	const FPyRef Elements = TakeElements(Property, Object, false);
	if (!Elements)
	{
		return false;
	}
	if (PyTuple_GET_SIZE(Elements.Get()) != Property.ArrayDim)
	{
		return RefuseValue(Property, PyExc_ValueError, TEXT("the number of elements is fixed"));
	}
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		PyObject* const Element = PyTuple_GET_ITEM(Elements.Get(), Index);
		if (!FromPythonElement(Property, Element, GetElement(Property, Value, Index)))
		{
			return false;
		}
	}
	return true;
}

bool Prepare(PyObject* UnrealModule)
{
	NameType = PyObject_GetAttrString(UnrealModule, "Name");
	TextType = PyObject_GetAttrString(UnrealModule, "Text");
	return NameType && TextType;
}

void Forget()
{
	Py_CLEAR(NameType);
	Py_CLEAR(TextType);
}
}
