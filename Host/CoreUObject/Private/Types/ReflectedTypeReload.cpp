#include "UObject/ReflectedTypeReload.h"

#include "Objects/GarbageCollection.h"
#include "Objects/ObjectTable.h"
#include "UObject/EnumProperty.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

namespace ReflectedTypeReload
{
FReflectedTypeReload* Running = nullptr;
/** Of all modules, for what refers to types in a way that nobody can look through. Old native types stay in memory. */
TMap<UObject*, UObject*> NewerTypes;

void MoveOutOfTheWay(UObject& Object)
{
	UPackage* const Package = GetTransientPackage();
	const FName BaseName(*(TEXT("HOTRELOADED_") + Object.GetName()));
	FObjectTable::Get().SetIdentity(
		Object, Object.GetClass(), Package, MakeUniqueObjectName(Package, Object.GetClass(), BaseName));
}

/** Puts a value into a property of the same name whose type may be another by now; what cannot be read is left out. */
void CopyValue(const FProperty& From, const UObject& Old, const FProperty& To, UObject& New)
{
	if (From.ArrayDim != To.ArrayDim)
	{
		return;
	}
	if (To.SameType(&From))
	{
		To.CopyCompleteValue(To.ContainerPtrToValuePtr<void>(&New), From.ContainerPtrToValuePtr<void>(&Old));
		return;
	}
	for (int32 Index = 0; Index < From.ArrayDim; ++Index)
	{
		FString Text;
		const void* const Value = From.ContainerPtrToValuePtr<void>(&Old, Index);
		From.ExportTextItem_Direct(Text, Value, Value, nullptr, PPF_None);
		To.ImportText_Direct(*Text, To.ContainerPtrToValuePtr<void>(&New, Index), &New, PPF_None);
	}
}

bool DiffersFromDefault(const FProperty& Property, const UObject& Object)
{
	const UObject* const Defaults = Object.GetClass()->GetDefaultObject();
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		if (!Property.Identical_InContainer(&Object, Defaults, Index))
		{
			return true;
		}
	}
	return false;
}

/** Values that were changed since the object was made; the subobjects that a constructor makes are not values. */
void CopyChangedValues(const UObject& Old, UObject& New)
{
	for (TFieldIterator<FProperty> It(Old.GetClass()); It; ++It)
	{
		const FProperty* const To = New.GetClass()->FindPropertyByName(It->GetFName());
		if (To && !It->HasAnyPropertyFlags(CPF_InstancedReference) && DiffersFromDefault(**It, Old))
		{
			CopyValue(**It, Old, *To, New);
		}
	}
}

int32 GetDepth(const UObject& Object)
{
	int32 Depth = 0;
	for (const UObject* Outer = Object.GetOuter(); Outer; Outer = Outer->GetOuter())
	{
		++Depth;
	}
	return Depth;
}

template <typename TypeObject>
void Retarget(TypeObject*& Type, const TMap<UField*, UField*>& NewTypes)
{
	if (UField* const* const NewType = NewTypes.Find(Type))
	{
		Type = static_cast<TypeObject*>(*NewType);
	}
}

void RetargetProperty(FProperty* Property, const TMap<UField*, UField*>& NewTypes)
{
	if (FObjectPropertyBase* const Object = CastField<FObjectPropertyBase>(Property))
	{
		Retarget(Object->PropertyClass, NewTypes);
	}
	if (FClassProperty* const Class = CastField<FClassProperty>(Property))
	{
		Retarget(Class->MetaClass, NewTypes);
	}
	else if (FSoftClassProperty* const SoftClass = CastField<FSoftClassProperty>(Property))
	{
		Retarget(SoftClass->MetaClass, NewTypes);
	}
	else if (FInterfaceProperty* const Interface = CastField<FInterfaceProperty>(Property))
	{
		Retarget(Interface->InterfaceClass, NewTypes);
	}
	else if (FByteProperty* const Byte = CastField<FByteProperty>(Property))
	{
		Retarget(Byte->Enum, NewTypes);
	}
	else if (FEnumProperty* const Enum = CastField<FEnumProperty>(Property))
	{
		UEnum* NewEnum = Enum->GetEnum();
		Retarget(NewEnum, NewTypes);
		Enum->SetEnum(NewEnum);
	}
	else if (FDelegateProperty* const Delegate = CastField<FDelegateProperty>(Property))
	{
		Retarget(Delegate->SignatureFunction, NewTypes);
	}
	else if (FMulticastDelegateProperty* const Multicast = CastField<FMulticastDelegateProperty>(Property))
	{
		Retarget(Multicast->SignatureFunction, NewTypes);
	}
	else if (const FArrayProperty* const Array = CastField<FArrayProperty>(Property))
	{
		RetargetProperty(Array->Inner, NewTypes);
	}
	else if (const FSetProperty* const Set = CastField<FSetProperty>(Property))
	{
		RetargetProperty(Set->ElementProp, NewTypes);
	}
	else if (const FMapProperty* const Map = CastField<FMapProperty>(Property))
	{
		RetargetProperty(Map->KeyProp, NewTypes);
		RetargetProperty(Map->ValueProp, NewTypes);
	}
}

/** Leads references from old objects to new ones. */
class FReplacer final : public FReferenceCollector
{
public:
	explicit FReplacer(const TMap<UObject*, UObject*>& InNewObjects)
		: NewObjects(InNewObjects)
	{
	}
	bool ReplacesReferences() const override { return true; }

	void ReplaceIn(UObject& Object)
	{
		UClass* const Class = Object.GetClass();
		Class->ClassAddReferencedObjects(&Object, *this);
		Class->CollectReferences(&Object, *this);
		for (TFieldIterator<FWeakObjectProperty> It(Class); It; ++It)
		{
			for (int32 Index = 0; Index < It->ArrayDim; ++Index)
			{
				UObject* Target = It->GetObjectPropertyValue_InContainer(&Object, Index);
				HandleReplaceableReference(Target);
				It->SetObjectPropertyValue_InContainer(&Object, Target, Index);
			}
		}
		ReplaceInDelegates(Object);
	}

protected:
	void HandleObjectReference(const UObjectBase*) override {}
	void HandleReplaceableReference(UObject*& Object) override
	{
		if (UObject* const* const New = NewObjects.Find(Object))
		{
			Object = *New;
		}
	}

private:
	/** Delegates name their objects weakly, too. */
	void ReplaceInDelegates(UObject& Object)
	{
		for (TFieldIterator<FMulticastInlineDelegateProperty> It(Object.GetClass()); It; ++It)
		{
			FMulticastScriptDelegate& Delegates = *It->GetPropertyValuePtr_InContainer(&Object);
			for (UObject* Target : Delegates.GetAllObjects())
			{
				if (UObject* const* const New = NewObjects.Find(Target))
				{
					Delegates.Rebind(Target, *New);
				}
			}
		}
		for (TFieldIterator<FDelegateProperty> It(Object.GetClass()); It; ++It)
		{
			FScriptDelegate& Delegate = *It->GetPropertyValuePtr_InContainer(&Object);
			if (UObject* const* const New = NewObjects.Find(Delegate.GetUObject()))
			{
				Delegate.BindUFunction(*New, Delegate.GetFunctionName());
			}
		}
	}

	const TMap<UObject*, UObject*>& NewObjects;
};

/** A copy of the list: objects are made while it is gone through. */
template <typename PredicateType>
TArray<UObject*> FindObjects(PredicateType Predicate)
{
	TArray<UObject*> Objects;
	for (const FObjectTable::FEntry& Entry : FObjectTable::Get().GetEntries())
	{
		if (Entry.Object && !Entry.bGarbage && Predicate(Entry.Object))
		{
			Objects.Add(Entry.Object);
		}
	}
	return Objects;
}
}

FReflectedTypeReload::FReflectedTypeReload(FName InPackageName)
	: PackageName(InPackageName)
{
	checkf(!ReflectedTypeReload::Running, TEXT("One module is reloaded at a time"));
	ReflectedTypeReload::Running = this;
}

FReflectedTypeReload::~FReflectedTypeReload()
{
	ReflectedTypeReload::Running = nullptr;
}

FReflectedTypeReload* FReflectedTypeReload::Get()
{
	return ReflectedTypeReload::Running;
}

UObject* FReflectedTypeReload::FindNewest(UObject* Type)
{
	UObject* Newest = Type;
	while (UObject* const* const Newer = ReflectedTypeReload::NewerTypes.Find(Newest))
	{
		Newest = *Newer;
	}
	return Newest;
}

bool FReflectedTypeReload::IsFor(const UPackage& Package) const
{
	return Package.GetFName() == PackageName;
}

void FReflectedTypeReload::Replace(UField& OldType, UField& NewType)
{
	ReflectedTypeReload::MoveOutOfTheWay(OldType);
	if (OldType.GetClass() != NewType.GetClass())
	{
		return; // a class has become a struct, say: nothing can go over
	}
	NewTypes.Add(&OldType, &NewType);
	if (!PackageName.IsNone())
	{
		ReflectedTypeReload::NewerTypes.Add(&OldType, &NewType);
	}
	if (OldType.IsA(UClass::StaticClass()))
	{
		UClass& OldClass = static_cast<UClass&>(OldType);
		OldClass.ClassFlags |= CLASS_NewerVersionExists;
		NewObjects.Add(&OldClass, &NewType);
		ReflectedTypeReload::MoveOutOfTheWay(*OldClass.GetDefaultObject());
	}
	else if (OldType.IsA(UEnum::StaticClass()))
	{
		// Unlike a struct's, nothing in memory is laid out by an enum: who names the old one can name the new one.
		NewObjects.Add(&OldType, &NewType);
	}
}

void FReflectedTypeReload::Reinstance()
{
	RetargetProperties();
	MapDefaultObjects();
	MapObjects();
	ReplaceReferences();
	DiscardOldObjects();
}

void FReflectedTypeReload::RetargetProperties() const
{
	for (UObject* Struct :
		ReflectedTypeReload::FindObjects([](const UObject* Object) { return Object->IsA(UStruct::StaticClass()); }))
	{
		for (TFieldIterator<FProperty> It(static_cast<UStruct*>(Struct), EFieldIterationFlags::None); It; ++It)
		{
			ReflectedTypeReload::RetargetProperty(*It, NewTypes);
		}
	}
}

void FReflectedTypeReload::MapDefaultObjects()
{
	for (const auto& Pair : NewTypes)
	{
		if (Pair.Key->IsA(UClass::StaticClass()))
		{
			UObject* const Old = static_cast<UClass*>(Pair.Key)->GetDefaultObject();
			UObject* const New = static_cast<UClass*>(Pair.Value)->GetDefaultObject();
			NewObjects.Add(Old, New);
		}
	}
}

void FReflectedTypeReload::MapObjects()
{
	// Default objects and what they are made of come with their classes. Other templates, such as the components of
	// Blueprints, are values: under an old class, a saved one could not be read again.
	TArray<UObject*> Objects = ReflectedTypeReload::FindObjects([this](const UObject* Object) {
		return NewTypes.Contains(Object->GetClass()) && !Object->IsTemplate(RF_ClassDefaultObject);
	});
	// From the outside in: a new object's constructor makes its subobjects itself.
	Objects.Sort([](const UObject& A, const UObject& B) {
		return ReflectedTypeReload::GetDepth(A) < ReflectedTypeReload::GetDepth(B);
	});
	for (UObject* Old : Objects)
	{
		if (!NewObjects.Contains(Old))
		{
			MakeAnew(*Old, *static_cast<UClass*>(NewTypes.FindChecked(Old->GetClass())));
		}
	}
}

UObject* FReflectedTypeReload::MakeAnew(UObject& Old, UClass& NewClass)
{
	UObject* const Outer = Old.GetOuter();
	const FName Name = Old.GetFName();
	ReflectedTypeReload::MoveOutOfTheWay(Old);
	UObject* const New = StaticConstructObject(&NewClass, Outer, Name, Old.GetFlags());
	NewObjects.Add(&Old, New);
	Discarded.Add(&Old);
	ReflectedTypeReload::CopyChangedValues(Old, *New);
	MapSubobjects(Old, *New);
	return New;
}

void FReflectedTypeReload::MapSubobjects(UObject& Old, UObject& New)
{
	for (UObject* Subobject :
		ReflectedTypeReload::FindObjects([&Old](const UObject* Object) { return Object->GetOuter() == &Old; }))
	{
		if (UObject* const Counterpart = FObjectTable::Get().Find(&New, Subobject->GetFName()))
		{
			NewObjects.Add(Subobject, Counterpart);
			Discarded.Add(Subobject);
			ReflectedTypeReload::CopyChangedValues(*Subobject, *Counterpart);
			MapSubobjects(*Subobject, *Counterpart);
		}
		else
		{
			FObjectTable::Get().SetIdentity(*Subobject, Subobject->GetClass(), &New, Subobject->GetFName());
		}
	}
}

void FReflectedTypeReload::ReplaceReferences()
{
	ReflectedTypeReload::FReplacer Replacer(NewObjects);
	// Types are left alone: a class keeps the parent that its objects were laid out for.
	for (UObject* Object : ReflectedTypeReload::FindObjects([this](const UObject* Candidate) {
			 return !Candidate->IsA(UField::StaticClass()) && !NewObjects.Contains(const_cast<UObject*>(Candidate));
		 }))
	{
		Replacer.ReplaceIn(*Object);
	}
	VisitReferencers(Replacer);
}

void FReflectedTypeReload::DiscardOldObjects()
{
	for (UObject* Old : Discarded)
	{
		if (Old->IsRooted())
		{
			Old->RemoveFromRoot();
			NewObjects.FindChecked(Old)->AddToRoot();
		}
		Old->MarkAsGarbage();
	}
}
