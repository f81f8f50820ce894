#include "Values/PyProperties.h"

#include "Types/PyNames.h"
#include "Types/PyObject.h"
#include "Types/PyStruct.h"
#include "UObject/UnrealType.h"
#include "Values/PyConversion.h"
#include "Values/PyText.h"

namespace PyProperties
{
/** The descriptor of a variable. It holds the name alone, as classes of Blueprints get new variables. */
struct FAttribute
{
	PyObject_HEAD FName Name;
};

PyTypeObject* AttributeType = nullptr;

FProperty* FindProperty(const UStruct* Struct, const FString& Name)
{
	for (TFieldIterator<FProperty> It(Struct); It; ++It)
	{
		if (It->GetName().Equals(Name) || PyNames::GetName(**It).Equals(Name))
		{
			return *It;
		}
	}
	return nullptr;
}

/** "Y: <Before> 'x' for attribute 'x' on 'Y'<After>" */
void Raise(const FPyContainer& Container, const FString& PropertyName, const FString& AttributeName,
	const TCHAR* Before, const TCHAR* After)
{
	const FString Owner = Container.Struct->GetName();
	RaisePython(PyExc_Exception, FString::Printf(TEXT("%s: %s '%s' for attribute '%s' on '%s'%s"), *Owner, Before,
									 *PropertyName, *AttributeName, *Owner, After));
}

/** The variable that an editor shows. Null with an exception set. */
FProperty* FindEditorProperty(const FPyContainer& Container, const FString& Name, const TCHAR* Access)
{
	FProperty* const Property = FindProperty(Container.Struct, Name);
	if (!Property)
	{
		Raise(Container, Name, Name, TEXT("Failed to find property"), TEXT(""));
		return nullptr;
	}
	if (!Property->HasAnyPropertyFlags(CPF_Edit | CPF_BlueprintVisible))
	{
		const FString After = FString::Printf(TEXT(" is protected and cannot be %s"), Access);
		Raise(Container, Property->GetName(), Name, TEXT("Property"), *After);
		return nullptr;
	}
	return Property;
}

/** Why an editor does not let the variable be changed; empty when it does. */
const TCHAR* GetReasonNotToSet(const FPyContainer& Container, const FProperty& Property)
{
	if (Property.HasAnyPropertyFlags(CPF_EditConst) || !Property.HasAnyPropertyFlags(CPF_Edit))
	{
		const bool bBlueprintsWrite =
			!Property.HasAnyPropertyFlags(CPF_Edit) && !Property.HasAnyPropertyFlags(CPF_BlueprintReadOnly);
		return bBlueprintsWrite ? TEXT("") : TEXT(" is read-only and cannot be set");
	}
	if (!Container.Object)
	{
		return TEXT("");
	}
	const bool bTemplate = Container.Object->IsTemplate();
	if (bTemplate && Property.HasAnyPropertyFlags(CPF_DisableEditOnTemplate))
	{
		return TEXT(" cannot be edited on templates");
	}
	const bool bOnlyOnTemplates = Property.HasAnyPropertyFlags(CPF_DisableEditOnInstance);
	return !bTemplate && bOnlyOnTemplates ? TEXT(" cannot be edited on instances") : TEXT("");
}

bool IsSame(const FProperty& Property, const void* A, const void* B)
{
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		const SIZE_T Offset = static_cast<SIZE_T>(Index) * static_cast<SIZE_T>(Property.ElementSize);
		if (!Property.Identical(static_cast<const uint8*>(A) + Offset, static_cast<const uint8*>(B) + Offset))
		{
			return false;
		}
	}
	return true;
}

enum class ENotify : uint8
{
	Never,
	IfDifferent,
};

/** Puts the value into the variable, whole or not at all. */
bool SetValue(const FPyContainer& Container, FProperty& Property, PyObject* Object, ENotify Notify)
{
	const FPropertyValueBuffer NewValue(Property);
	if (!PyConversion::FromPython(Property, Object, NewValue.Get()))
	{
		return false;
	}
	void* const Value = Property.ContainerPtrToValuePtr<void>(Container.Memory);
	if (Notify == ENotify::Never || !Container.Object)
	{
		Property.CopyCompleteValue(Value, NewValue.Get());
		return true;
	}
	if (!IsSame(Property, Value, NewValue.Get()))
	{
		Container.Object->PreEditChange(&Property);
		Property.CopyCompleteValue(Value, NewValue.Get());
		const UObject* const Objects[] = { Container.Object };
		FPropertyChangedEvent Event(&Property, EPropertyChangeType::ValueSet, Objects);
		Container.Object->PostEditChangeProperty(Event);
	}
	return true;
}

bool SetEditorValue(const FPyContainer& Container, const FString& Name, PyObject* Value)
{
	FProperty* const Property = FindEditorProperty(Container, Name, TEXT("set"));
	if (!Property)
	{
		return false;
	}
	const TCHAR* const Reason = GetReasonNotToSet(Container, *Property);
	if (*Reason)
	{
		Raise(Container, Property->GetName(), Name, TEXT("Property"), Reason);
		return false;
	}
	return SetValue(Container, *Property, Value, ENotify::IfDifferent);
}

PyObject* GetEditorProperty(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	static const char* Names[] = { "name", nullptr };
	PyObject* Name = nullptr;
	FPyContainer Container;
	if (!PyArg_ParseTupleAndKeywords(Arguments, Keywords, "O", const_cast<char**>(Names), &Name) ||
		!Container.Set(Self))
	{
		return nullptr;
	}
	const FProperty* const Property = FindEditorProperty(Container, PyText::Describe(Name), TEXT("read"));
	return Property
			   ? PyConversion::ToPython(*Property, Property->ContainerPtrToValuePtr<void>(Container.Memory)).Release()
			   : nullptr;
}

PyObject* SetEditorProperty(PyObject* Self, PyObject* Arguments, PyObject* Keywords)
{
	static const char* Names[] = { "name", "value", nullptr };
	PyObject* Name = nullptr;
	PyObject* Value = nullptr;
	FPyContainer Container;
	if (!PyArg_ParseTupleAndKeywords(Arguments, Keywords, "OO", const_cast<char**>(Names), &Name, &Value) ||
		!Container.Set(Self) || !SetEditorValue(Container, PyText::Describe(Name), Value))
	{
		return nullptr;
	}
	Py_RETURN_NONE;
}

PyObject* SetEditorProperties(PyObject* Self, PyObject* Values)
{
	if (!PyDict_Check(Values))
	{
		RaisePython(PyExc_TypeError, TEXT("set_editor_properties: a dict is needed"));
		return nullptr;
	}
	const FPyRef Dict = FPyRef::Steal(PyDict_Copy(Values)); // the object's own code runs between two values
	PyObject* Name = nullptr;
	PyObject* Value = nullptr;
	Py_ssize_t Position = 0;
	while (Dict && PyDict_Next(Dict.Get(), &Position, &Name, &Value))
	{
		FPyContainer Container;
		if (!Container.Set(Self) || !SetEditorValue(Container, PyText::Describe(Name), Value))
		{
			return nullptr;
		}
	}
	return Dict ? Py_NewRef(Py_None) : nullptr;
}

/** The variable of an attribute. Null with an exception set. */
FProperty* FindAttribute(PyObject* Attribute, const FPyContainer& Container)
{
	const FName Name = reinterpret_cast<FAttribute*>(Attribute)->Name;
	FProperty* const Property = Container.Struct->FindPropertyByName(Name);
	if (!Property)
	{
		Raise(Container, Name.ToString(), Name.ToString(), TEXT("Failed to find property"), TEXT(""));
	}
	return Property;
}

PyObject* GetAttribute(PyObject* Attribute, PyObject* Self, PyObject*)
{
	if (!Self)
	{
		return Py_NewRef(Attribute);
	}
	FPyContainer Container;
	const FProperty* const Property = Container.Set(Self) ? FindAttribute(Attribute, Container) : nullptr;
	return Property
			   ? PyConversion::ToPython(*Property, Property->ContainerPtrToValuePtr<void>(Container.Memory)).Release()
			   : nullptr;
}

int SetAttribute(PyObject* Attribute, PyObject* Self, PyObject* Value)
{
	FPyContainer Container;
	FProperty* const Property = Container.Set(Self) ? FindAttribute(Attribute, Container) : nullptr;
	if (!Property)
	{
		return -1;
	}
	if (!Value || Property->HasAnyPropertyFlags(CPF_BlueprintReadOnly | CPF_EditConst))
	{
		Raise(Container, Property->GetName(), PyNames::GetName(*Property), TEXT("Property"),
			TEXT(" is read-only and cannot be set"));
		return -1;
	}
	return SetValue(Container, *Property, Value, ENotify::Never) ? 0 : -1;
}

void Deallocate(PyObject* Attribute)
{
	PyTypeObject* const Type = Py_TYPE(Attribute);
	Type->tp_free(Attribute);
	Py_DECREF(Type);
}

PyType_Slot Slots[] = {
	{ Py_tp_dealloc, reinterpret_cast<void*>(&Deallocate) },
	{ Py_tp_descr_get, reinterpret_cast<void*>(&GetAttribute) },
	{ Py_tp_descr_set, reinterpret_cast<void*>(&SetAttribute) },
	{ 0, nullptr },
};

PyType_Spec Spec = { "unreal._Attribute", sizeof(FAttribute), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION,
	Slots };

FPyRef MakeAttribute(const FProperty& Property)
{
	FPyRef Attribute = FPyRef::Steal(AttributeType->tp_alloc(AttributeType, 0));
	if (Attribute)
	{
		::new (&reinterpret_cast<FAttribute*>(Attribute.Get())->Name) FName(Property.GetFName());
	}
	return Attribute;
}

bool Prepare()
{
	AttributeType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&Spec));
	return AttributeType != nullptr;
}

void Forget()
{
	Py_CLEAR(AttributeType);
}
}

bool FPyContainer::Set(PyObject* Self)
{
	if (FPyObject::Check(Self))
	{
		Object = FPyObject::Get(Self);
		Struct = Object ? Object->GetClass() : nullptr;
		Memory = Object;
		return Object != nullptr;
	}
	if (!FPyStruct::Check(Self))
	{
		RaisePython(PyExc_TypeError, TEXT("This is neither an object nor a struct"));
		return false;
	}
	Struct = FPyStruct::GetStruct(Self);
	Memory = FPyStruct::GetMemory(Self);
	return CheckPythonIsInGameThread();
}
