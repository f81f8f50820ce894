#include "Objects/ObjectTable.h"

#include "Misc/AssertionMacros.h"
#include "UObject/Class.h"

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
	LinkClass(Base.InternalIndex);
	LinkEntry(Base.InternalIndex);
}

void FObjectTable::Unregister(UObjectBase& Base)
{
	UnlinkEntry(Base.InternalIndex);
	UnlinkClass(Base.InternalIndex);
	FEntry& Entry = Entries[Base.InternalIndex];
	for (int32 Child = Entry.FirstChild; Child != INDEX_NONE;)
	{
		FEntry& ChildEntry = Entries[Child];
		Child = ChildEntry.Siblings.Next;
		ChildEntry.Siblings = FLink();
		ChildEntry.Outer = INDEX_NONE;
	}
	Entry = FEntry();
	FreeIndices.Add(Base.InternalIndex);
}

void FObjectTable::SetIdentity(UObject& Object, UClass* Class, UObject* Outer, FName Name)
{
	UObjectBase& Base = Object;
	if (Base.ClassPrivate != Class)
	{
		UnlinkClass(Base.InternalIndex);
		Base.ClassPrivate = Class;
		LinkClass(Base.InternalIndex);
	}
	if (Base.OuterPrivate == Outer && Base.NamePrivate == Name)
	{
		Base.NamePrivate = Name; // letter case may differ
		return;
	}
	UnlinkEntry(Base.InternalIndex);
	Base.OuterPrivate = Outer;
	Base.NamePrivate = Name;
	LinkEntry(Base.InternalIndex);
}

void FObjectTable::Relink(UObject& Object)
{
	const int32 Index = static_cast<int32>(Object.GetUniqueID());
	UnlinkEntry(Index);
	LinkEntry(Index);
}

FObjectTable::FEntry* FObjectTable::FindEntry(int32 Index)
{
	return Entries.IsValidIndex(Index) && Entries[Index].Object ? &Entries[Index] : nullptr;
}

TArray<UObject*> FObjectTable::FindByName(FName Name) const
{
	TArray<UObject*> Objects;
	const FList* const List = ObjectsByName.Find(Name);
	for (int32 Index = List ? List->First : INDEX_NONE; Index != INDEX_NONE; Index = Entries[Index].SameName.Next)
	{
		Objects.Add(Entries[Index].Object);
	}
	return Objects;
}

UObject* FObjectTable::Find(const UObject* Outer, FName Name) const
{
	if (Places.IsEmpty())
	{
		return nullptr;
	}
	const FList& Place = const_cast<FObjectTable*>(this)->GetPlace(HashPlace(Outer, Name));
	for (int32 Index = Place.First; Index != INDEX_NONE; Index = Entries[Index].SamePlace.Next)
	{
		UObject* const Object = Entries[Index].Object;
		if (Object->GetOuter() == Outer && Object->GetFName() == Name)
		{
			return Object;
		}
	}
	return nullptr;
}

void FObjectTable::ForEachOfClass(
	const UClass* Class, bool bIncludeDerived, TFunctionRef<void(const FEntry&)> Function) const
{
	TArray<int32> Indices;
	for (const auto& Pair : ObjectsByClass)
	{
		if (Pair.Key != Class && !(bIncludeDerived && Pair.Key && Pair.Key->IsChildOf(Class)))
		{
			continue;
		}
		for (int32 Index = Pair.Value.First; Index != INDEX_NONE; Index = Entries[Index].SameClass.Next)
		{
			Indices.Add(Index);
		}
	}
	Indices.Sort();
	for (const int32 Index : Indices)
	{
		Function(Entries[Index]);
	}
}

TArray<UObject*> FObjectTable::GetChildren(const UObjectBase& Outer) const
{
	TArray<UObject*> Children;
	int32 Index = Entries[static_cast<int32>(Outer.GetUniqueID())].FirstChild;
	for (; Index != INDEX_NONE; Index = Entries[Index].Siblings.Next)
	{
		Children.Add(Entries[Index].Object);
	}
	return Children;
}

uint32 FObjectTable::HashPlace(const UObject* Outer, FName Name)
{
	return HashCombine(Outer ? Outer->GetUniqueID() + 1 : 0, GetTypeHash(Name)) * 0x9E3779B1u >> 7;
}

void FObjectTable::Append(FList& List, FLink FEntry::*Link, int32 Index)
{
	(Entries[Index].*Link) = { List.Last, INDEX_NONE };
	(List.Last == INDEX_NONE ? List.First : (Entries[List.Last].*Link).Next) = Index;
	List.Last = Index;
}

void FObjectTable::Remove(FList& List, FLink FEntry::*Link, int32 Index)
{
	const FLink Neighbours = Entries[Index].*Link;
	(Neighbours.Previous == INDEX_NONE ? List.First : (Entries[Neighbours.Previous].*Link).Next) = Neighbours.Next;
	(Neighbours.Next == INDEX_NONE ? List.Last : (Entries[Neighbours.Next].*Link).Previous) = Neighbours.Previous;
	(Entries[Index].*Link) = FLink();
}

void FObjectTable::LinkClass(int32 Index)
{
	Append(ObjectsByClass.FindOrAdd(Entries[Index].Object->GetClass()), &FEntry::SameClass, Index);
}

void FObjectTable::UnlinkClass(int32 Index)
{
	const UClass* const Class = Entries[Index].Object->GetClass();
	FList& SameClass = ObjectsByClass.FindChecked(Class);
	Remove(SameClass, &FEntry::SameClass, Index);
	if (SameClass.First == INDEX_NONE)
	{
		ObjectsByClass.Remove(Class); // the class may be gone before another is made in its place
	}
}

void FObjectTable::LinkEntry(int32 Index)
{
	if (Entries.Num() > Places.Num())
	{
		GrowPlaces();
	}
	const UObject& Object = *Entries[Index].Object;
	const UObject* const Outer = Object.GetOuter();
	Append(ObjectsByName.FindOrAdd(Object.GetFName()), &FEntry::SameName, Index);
	Entries[Index].PlaceHash = HashPlace(Outer, Object.GetFName());
	Append(GetPlace(Entries[Index].PlaceHash), &FEntry::SamePlace, Index);
	if (Outer)
	{
		Entries[Index].Outer = static_cast<int32>(Outer->GetUniqueID());
		FEntry& OuterEntry = Entries[Entries[Index].Outer];
		FList Children = { OuterEntry.FirstChild, OuterEntry.LastChild };
		Append(Children, &FEntry::Siblings, Index);
		OuterEntry.FirstChild = Children.First;
		OuterEntry.LastChild = Children.Last;
	}
}

void FObjectTable::UnlinkEntry(int32 Index)
{
	FEntry& Entry = Entries[Index];
	const FName Name = Entry.Object->GetFName();
	FList& SameName = ObjectsByName.FindChecked(Name);
	Remove(SameName, &FEntry::SameName, Index);
	if (SameName.First == INDEX_NONE)
	{
		ObjectsByName.Remove(Name);
	}
	Remove(GetPlace(Entry.PlaceHash), &FEntry::SamePlace, Index);
	if (Entry.Outer != INDEX_NONE)
	{
		FEntry& OuterEntry = Entries[Entry.Outer];
		FList Children = { OuterEntry.FirstChild, OuterEntry.LastChild };
		Remove(Children, &FEntry::Siblings, Index);
		OuterEntry.FirstChild = Children.First;
		OuterEntry.LastChild = Children.Last;
		Entry.Outer = INDEX_NONE;
	}
}

void FObjectTable::GrowPlaces()
{
	int32 NumPlaces = FMath::Max(1024, Places.Num() * 2);
	while (NumPlaces < Entries.Num())
	{
		NumPlaces *= 2;
	}
	// The places of one hash stay in order of age: objects are entered again by the old lists.
	const TArray<FList> Old = MoveTemp(Places);
	Places.Empty();
	Places.SetNum(NumPlaces);
	for (const FList& List : Old)
	{
		for (int32 Index = List.First; Index != INDEX_NONE;)
		{
			const int32 Next = Entries[Index].SamePlace.Next;
			Append(GetPlace(Entries[Index].PlaceHash), &FEntry::SamePlace, Index);
			Index = Next;
		}
	}
}

UObjectBase::UObjectBase()
{
	FObjectTable::Get().Register(*this);
}

UObjectBase::~UObjectBase()
{
	FObjectTable::Get().Unregister(*this);
}
