#include "UObject/ReplacedClass.h"

#include "Objects/ObjectTable.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeReload.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

namespace ReplacedClass
{
TArray<UObject*> FindObjects(const UClass& Class, bool bWithDefaultObject)
{
	TArray<UObject*> Objects;
	GetObjectsOfClass(&Class, Objects, false, bWithDefaultObject ? RF_NoFlags : RF_ClassDefaultObject);
	return Objects;
}

void MoveProperties(UClass& From, UClass& To)
{
	To.ChildProperties = From.ChildProperties;
	To.PropertyLink = From.PropertyLink;
	To.PropertiesSize = From.PropertiesSize;
	To.MinAlignment = From.MinAlignment;
	for (FField* Field = To.ChildProperties; Field; Field = Field->Next)
	{
		Field->Owner = FFieldVariant(&To);
	}
	From.ChildProperties = nullptr;
	From.PropertyLink = nullptr;
}

/** The functions keep their names, in the class that has taken over. */
void MoveFunctions(UClass& From, UClass& To)
{
	UField* Next = From.Children;
	From.ClearFunctions();
	while (Next)
	{
		UFunction* const Function = static_cast<UFunction*>(Next);
		Next = Function->Next;
		Function->Next = nullptr;
		FObjectTable::Get().SetIdentity(*Function, Function->GetClass(), &To, Function->GetFName());
		To.AddFunction(Function);
	}
}

/** One element of a C array, or a value of a type that may be another by now; what cannot be read is left out. */
void CopyElement(const FProperty& From, const void* OldValue, const FProperty& To, void* NewValue, UObject& Owner)
{
	if (To.SameType(&From))
	{
		To.CopySingleValue(NewValue, OldValue);
		return;
	}
	FString Text;
	From.ExportTextItem_Direct(Text, OldValue, OldValue, nullptr, PPF_None);
	const FPropertyValueBuffer Parsed(To);
	if (To.ImportText_Direct(*Text, Parsed.Get(), &Owner, PPF_None))
	{
		To.CopySingleValue(NewValue, Parsed.Get());
	}
}
}

UClass* MoveToReplacedClass(UClass& Class)
{
	UPackage* const Package = GetTransientPackage();
	const FName Name = MakeUniqueObjectName(Package, Class.GetClass(), FName(*(TEXT("REINST_") + Class.GetName())));
	UClass* const Replaced = NewObject<UClass>(Package, Class.GetClass(), Name, RF_Transient);
	Replaced->SetSuperStruct(Class.GetSuperStruct());
	Replaced->ClassFlags = Class.ClassFlags | CLASS_NewerVersionExists;
	Replaced->ClassAddReferencedObjects = Class.ClassAddReferencedObjects;
	Replaced->ClassConfigName = Class.ClassConfigName;
	ReplacedClass::MoveProperties(Class, *Replaced);
	ReplacedClass::MoveFunctions(Class, *Replaced);
	for (UObject* Object : ReplacedClass::FindObjects(Class, true))
	{
		FObjectTable::Get().SetIdentity(*Object, Replaced, Object->GetOuter(), Object->GetFName());
	}
	Replaced->ClassDefaultObject = Class.ClassDefaultObject;
	Class.ClassDefaultObject = nullptr;
	if (UObject* const Defaults = Replaced->ClassDefaultObject)
	{
		FObjectTable::Get().SetIdentity(*Defaults, Replaced, Package, Replaced->GetDefaultObjectName());
	}
	return Replaced;
}

TArray<UObject*> GetInstancesOfClass(const UClass& Class)
{
	return ReplacedClass::FindObjects(Class, false);
}

void CopyChangedValues(const UObject& Old, const UObject& OldArchetype, UObject& New)
{
	for (TFieldIterator<FProperty> It(Old.GetClass()); It; ++It)
	{
		const FProperty* const To = New.GetClass()->FindPropertyByName(It->GetFName());
		const bool bInherited = OldArchetype.GetClass()->IsChildOf(It->GetOwnerStruct());
		if (!To || To->ArrayDim != It->ArrayDim || It->HasAnyPropertyFlags(CPF_InstancedReference | CPF_Transient))
		{
			continue;
		}
		for (int32 Index = 0; Index < It->ArrayDim; ++Index)
		{
			if (!bInherited || !It->Identical_InContainer(&Old, &OldArchetype, Index))
			{
				ReplacedClass::CopyElement(**It, It->ContainerPtrToValuePtr<void>(&Old, Index), *To,
					To->ContainerPtrToValuePtr<void>(&New, Index), New);
			}
		}
	}
	for (const FObjectTable::FEntry& Entry : TArray<FObjectTable::FEntry>(FObjectTable::Get().GetEntries()))
	{
		UObject* const Part = Entry.Object;
		if (!Part || Part->GetOuter() != &Old || !Part->IsDefaultSubobject())
		{
			continue;
		}
		UObject* const NewPart = New.GetDefaultSubobjectByName(Part->GetFName());
		const UObject* const OldPart = const_cast<UObject&>(OldArchetype).GetDefaultSubobjectByName(Part->GetFName());
		// The part's class may be another by now, as its parent's.
		const UClass* const PartClass =
			OldPart ? static_cast<UClass*>(FReflectedTypeReload::FindNewest(OldPart->GetClass())) : nullptr;
		if (NewPart && PartClass && NewPart->IsA(PartClass))
		{
			CopyChangedValues(*Part, *OldPart, *NewPart);
		}
	}
}
