#include "ObjectTable.h"

#include "Misc/AssertionMacros.h"

FObjectTable& FObjectTable::Get()
{
	static FObjectTable* Table = new FObjectTable;
	return *Table;
}

void FObjectTable::PrepareIdentity(const void* Memory, const FIdentity& Identity)
{
	Prepared.Add(Memory, Identity);
}

void FObjectTable::Register(UObjectBase& Base)
{
	FIdentity Identity;
	const bool bPrepared = Prepared.RemoveAndCopyValue(&Base, Identity);
	checkf(bPrepared, TEXT("Objects are made by NewObject, not on the stack or with new"));
	Base.ClassPrivate = Identity.Class;
	Base.OuterPrivate = Identity.Outer;
	Base.NamePrivate = Identity.Name;
	Base.ObjectFlags = Identity.Flags;
	Base.InternalIndex = FreeIndices.IsEmpty() ? Entries.AddDefaulted() : FreeIndices.Pop();

	UObject* const Object = static_cast<UObject*>(&Base);
	FEntry& Entry = Entries[Base.InternalIndex];
	Entry = FEntry();
	Entry.Object = Object;
	Entry.SerialNumber = ++LastSerialNumber;
	ObjectsByName.FindOrAdd(Base.NamePrivate).Add(Object);
}

void FObjectTable::Unregister(UObjectBase& Base)
{
	FEntry& Entry = Entries[Base.InternalIndex];
	TArray<UObject*>& SameName = ObjectsByName.FindChecked(Base.NamePrivate);
	SameName.Remove(Entry.Object);
	if (SameName.IsEmpty())
	{
		ObjectsByName.Remove(Base.NamePrivate);
	}
	Entry = FEntry();
	FreeIndices.Add(Base.InternalIndex);
}

void FObjectTable::SetIdentity(UObject& Object, UClass* Class, UObject* Outer, FName Name)
{
	UObjectBase& Base = Object;
	TArray<UObject*>& SameName = ObjectsByName.FindChecked(Base.NamePrivate);
	SameName.Remove(&Object);
	if (SameName.IsEmpty())
	{
		ObjectsByName.Remove(Base.NamePrivate);
	}
	Base.ClassPrivate = Class;
	Base.OuterPrivate = Outer;
	Base.NamePrivate = Name;
	ObjectsByName.FindOrAdd(Name).Add(&Object);
}

FObjectTable::FEntry* FObjectTable::FindEntry(int32 Index)
{
	return Entries.IsValidIndex(Index) && Entries[Index].Object ? &Entries[Index] : nullptr;
}

const TArray<UObject*>& FObjectTable::FindByName(FName Name) const
{
	static const TArray<UObject*> None;
	const TArray<UObject*>* Found = ObjectsByName.Find(Name);
	return Found ? *Found : None;
}

UObject* FObjectTable::Find(const UObject* Outer, FName Name) const
{
	for (UObject* Object : FindByName(Name))
	{
		if (Object->GetOuter() == Outer)
		{
			return Object;
		}
	}
	return nullptr;
}

UObjectBase::UObjectBase()
{
	FObjectTable::Get().Register(*this);
}

UObjectBase::~UObjectBase()
{
	FObjectTable::Get().Unregister(*this);
}

bool UObjectBase::IsValidLowLevel() const
{
	const FObjectTable::FEntry* Entry = FObjectTable::Get().FindEntry(InternalIndex);
	return Entry && Entry->Object == this;
}
