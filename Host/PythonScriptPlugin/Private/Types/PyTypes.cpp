#include "Types/PyTypes.h"

#include "Types/PyFunctions.h"
#include "Types/PyNames.h"
#include "Types/PyObject.h"
#include "Types/PyStruct.h"
#include "UObject/UObjectIterator.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "Values/PyProperties.h"
#include "Values/PyText.h"

namespace PyTypes
{
struct FEntry
{
	FPyRef Type;
	TWeakObjectPtr<UField> Owner; // another type may come to lie at the same place
};

struct FState
{
	TMap<const UField*, FEntry> Types;
	TMap<const PyTypeObject*, TWeakObjectPtr<UField>> Owners;
	FPyRef MakeEnum; // the function of the prelude
};

FState* State = nullptr;

PyTypeObject* FindMade(const UField* Owner)
{
	const FEntry* const Entry = State ? State->Types.Find(Owner) : nullptr;
	return Entry && Entry->Owner.Get() == Owner ? reinterpret_cast<PyTypeObject*>(Entry->Type.Get()) : nullptr;
}

PyTypeObject* Remember(UField* Owner, const FPyRef& Type)
{
	if (!Type)
	{
		return nullptr;
	}
	PyTypeObject* const Made = reinterpret_cast<PyTypeObject*>(Type.Get());
	State->Types.Add(Owner, { Type, Owner });
	State->Owners.Add(Made, Owner);
	return Made;
}

bool SetItem(const FPyRef& Members, const FString& Name, const FPyRef& Value)
{
	const FPyRef Key = PyText::ToPython(Name);
	return Key && Value && PyDict_SetItem(Members.Get(), Key.Get(), Value.Get()) == 0;
}

/** What every type has; without "__slots__" a misspelt attribute would be made where it is written to. */
FPyRef MakeMembers(const UField& Owner)
{
	FPyRef Members = FPyRef::Steal(PyDict_New());
	const bool bMade = Members && SetItem(Members, TEXT("__module__"), PyText::ToPython(TEXT("unreal"))) &&
					   SetItem(Members, TEXT("__slots__"), FPyRef::Steal(PyTuple_New(0))) &&
					   SetItem(Members, TEXT("__doc__"), PyText::ToPython(Owner.GetToolTipText().ToString()));
	return bMade ? Members : FPyRef();
}

bool AddAttributes(const FPyRef& Members, const UStruct* Struct)
{
	for (TFieldIterator<FProperty> It(Struct, EFieldIterationFlags::None); It; ++It)
	{
		if (It->HasAnyPropertyFlags(CPF_BlueprintVisible) &&
			!SetItem(Members, PyNames::GetName(**It), PyProperties::MakeAttribute(**It)))
		{
			return false;
		}
	}
	return true;
}

bool AddMethods(const FPyRef& Members, const UClass* Class)
{
	for (TFieldIterator<UFunction> It(Class, EFieldIterationFlags::None); It; ++It)
	{
		if (It->HasAnyFunctionFlags(FUNC_BlueprintCallable) &&
			!SetItem(Members, PyNames::GetName(**It), PyFunctions::MakeMethod(**It)))
		{
			return false;
		}
	}
	return true;
}

/** What an interface declares is called on the objects that implement it. */
bool AddInterfaceMethods(const FPyRef& Members, const UClass* Class)
{
	for (const FImplementedInterface& Each : Class->Interfaces)
	{
		for (const UClass* Interface = Each.Class; Interface; Interface = Interface->GetSuperClass())
		{
			if (!AddMethods(Members, Interface))
			{
				return false;
			}
		}
	}
	return true;
}

FPyRef MakeType(const UField& Owner, PyTypeObject* Base, const FPyRef& Members)
{
	const FPyRef Name = PyText::ToPython(PyNames::GetTypeName(Owner));
	return Name ? FPyRef::Steal(PyObject_CallFunction(reinterpret_cast<PyObject*>(&PyType_Type), "O(O)O", Name.Get(),
					  reinterpret_cast<PyObject*>(Base), Members.Get()))
				: FPyRef();
}

FPyRef ListEntries(const UEnum& Enum)
{
	FPyRef Entries = FPyRef::Steal(PyList_New(0));
	const int32 NumEntries = Enum.NumEnums() - (Enum.ContainsExistingMax() ? 1 : 0);
	for (int32 Index = 0; Entries && Index < NumEntries; ++Index)
	{
		const FPyRef Name = PyText::ToPython(PyNames::GetEntryName(Enum, Index));
		const FPyRef Entry =
			FPyRef::Steal(Py_BuildValue("(OL)", Name.Get(), static_cast<long long>(Enum.GetValueByIndex(Index))));
		if (!Entry || PyList_Append(Entries.Get(), Entry.Get()) < 0)
		{
			return FPyRef();
		}
	}
	return Entries;
}

template <typename OwnerType>
OwnerType* FindOwner(PyTypeObject* Type)
{
	for (; State && Type; Type = Type->tp_base)
	{
		const TWeakObjectPtr<UField>* const Owner = State->Owners.Find(Type);
		if (Owner && Owner->IsValid() && (*Owner)->IsA(OwnerType::StaticClass()))
		{
			return static_cast<OwnerType*>(Owner->Get());
		}
	}
	return nullptr;
}

/** A type that scripts know by name. Those of Blueprints have none, as they come and go. */
bool IsNamed(const UField& Type)
{
	if (Type.IsA(UClass::StaticClass()))
	{
		const UClass& Class = static_cast<const UClass&>(Type);
		return Class.IsNative() && !Class.HasAnyClassFlags(CLASS_NewerVersionExists);
	}
	return Type.IsA(UScriptStruct::StaticClass()) || Type.IsA(UEnum::StaticClass());
}

FPyRef GetTypeOf(UField* Field)
{
	PyTypeObject* Type = nullptr;
	if (Field->IsA(UClass::StaticClass()))
	{
		Type = FPyTypes::GetType(static_cast<UClass*>(Field));
	}
	else if (Field->IsA(UScriptStruct::StaticClass()))
	{
		Type = FPyTypes::GetType(static_cast<UScriptStruct*>(Field));
	}
	else
	{
		Type = FPyTypes::GetType(static_cast<UEnum*>(Field));
	}
	return FPyRef::Borrow(reinterpret_cast<PyObject*>(Type));
}
}

bool FPyTypes::Prepare(PyObject* UnrealModule)
{
	PyTypes::State = new PyTypes::FState;
	PyTypes::State->MakeEnum = FPyRef::Steal(PyObject_GetAttrString(UnrealModule, "_make_enum"));
	return static_cast<bool>(PyTypes::State->MakeEnum);
}

void FPyTypes::Forget()
{
	delete PyTypes::State;
	PyTypes::State = nullptr;
}

PyTypeObject* FPyTypes::GetType(UClass* Class)
{
	if (PyTypeObject* const Made = PyTypes::FindMade(Class))
	{
		return Made;
	}
	PyTypeObject* const Base = Class->GetSuperClass() ? GetType(Class->GetSuperClass()) : FPyObject::GetBaseType();
	const FPyRef Members = PyTypes::MakeMembers(*Class);
	const bool bFilled = Base && Members && PyTypes::AddAttributes(Members, Class) &&
						 PyTypes::AddMethods(Members, Class) && PyTypes::AddInterfaceMethods(Members, Class);
	return bFilled ? PyTypes::Remember(Class, PyTypes::MakeType(*Class, Base, Members)) : nullptr;
}

PyTypeObject* FPyTypes::GetType(UScriptStruct* Struct)
{
	if (PyTypeObject* const Made = PyTypes::FindMade(Struct))
	{
		return Made;
	}
	UScriptStruct* const Super = static_cast<UScriptStruct*>(Struct->GetSuperStruct());
	PyTypeObject* const Base = Super ? GetType(Super) : FPyStruct::GetBaseType();
	const FPyRef Members = PyTypes::MakeMembers(*Struct);
	const bool bFilled = Base && Members && PyTypes::AddAttributes(Members, Struct);
	return bFilled ? PyTypes::Remember(Struct, PyTypes::MakeType(*Struct, Base, Members)) : nullptr;
}

PyTypeObject* FPyTypes::GetType(UEnum* Enum)
{
	if (PyTypeObject* const Made = PyTypes::FindMade(Enum))
	{
		return Made;
	}
	const FPyRef Name = PyText::ToPython(PyNames::GetTypeName(*Enum));
	const FPyRef Doc = PyText::ToPython(Enum->GetToolTipText().ToString());
	const FPyRef Entries = PyTypes::ListEntries(*Enum);
	if (!Name || !Doc || !Entries)
	{
		return nullptr;
	}
	return PyTypes::Remember(Enum, FPyRef::Steal(PyObject_CallFunctionObjArgs(
									   PyTypes::State->MakeEnum.Get(), Name.Get(), Entries.Get(), Doc.Get(), nullptr)));
}

UClass* FPyTypes::ToClass(PyTypeObject* Type)
{
	return PyTypes::FindOwner<UClass>(Type);
}

UScriptStruct* FPyTypes::ToStruct(PyTypeObject* Type)
{
	return PyTypes::FindOwner<UScriptStruct>(Type);
}

UEnum* FPyTypes::ToEnum(PyTypeObject* Type)
{
	return PyTypes::FindOwner<UEnum>(Type);
}

UClass* FPyTypes::ToClass(PyObject* TypeOrObject)
{
	if (PyType_Check(TypeOrObject))
	{
		return ToClass(reinterpret_cast<PyTypeObject*>(TypeOrObject));
	}
	UObject* const Object = FPyObject::Check(TypeOrObject) ? FPyObject::Get(TypeOrObject) : nullptr;
	PyErr_Clear();
	return Object && Object->IsA(UClass::StaticClass()) ? static_cast<UClass*>(Object) : nullptr;
}

FPyRef FPyTypes::Find(const FString& Name)
{
	for (TObjectIterator<UField> It; It; ++It)
	{
		if (PyTypes::IsNamed(**It) && PyNames::GetTypeName(**It).Equals(Name))
		{
			return PyTypes::GetTypeOf(*It);
		}
	}
	return FPyRef();
}

FPyRef FPyTypes::ListNames()
{
	FPyRef Names = FPyRef::Steal(PyList_New(0));
	for (TObjectIterator<UField> It; Names && It; ++It)
	{
		if (PyTypes::IsNamed(**It))
		{
			PyList_Append(Names.Get(), PyText::ToPython(PyNames::GetTypeName(**It)).Get());
		}
	}
	return Names;
}
