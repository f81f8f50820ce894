#pragma once

#include "Containers/Map.h"
#include "UObject/Object.h"

/**
 * All objects of the process: by index, so that weak pointers can ask whether theirs still lives, and by name.
 *
 * Used on the game thread only. It is never destroyed, since objects outlive main.
 */
class FObjectTable
{
public:
	/** A place in one of the lists that run through the entries. */
	struct FLink
	{
		int32 Previous = INDEX_NONE;
		int32 Next = INDEX_NONE;
	};

	struct FEntry
	{
		UObject* Object = nullptr; // null: the slot is free
		int32 SerialNumber = 0;    // of the slot's present object
		bool bRoot = false;
		bool bGarbage = false;
		bool bReachable = true;
		int32 Outer = INDEX_NONE; // index of the outer; none also when the outer has been freed first
		int32 FirstChild = INDEX_NONE;
		int32 LastChild = INDEX_NONE;
		FLink Siblings; // objects of the same outer, in the order in which they came there
		FLink SameName;
		FLink SamePlace; // objects whose outer and name have a hash in common
		FLink SameClass;
		uint32 PlaceHash = 0;
	};

	/** What an object is born with. */
	struct FIdentity
	{
		UClass* Class;
		UObject* Outer;
		FName Name;
		EObjectFlags Flags;
	};

	static FObjectTable& Get();

	/**
	 * The object that is constructed at this place takes this identity. What a constructor's arguments need may be
	 * prepared and made in between.
	 */
	void PrepareIdentity(const void* Memory, const FIdentity& Identity);
	/** Called by the constructor and destructor of UObjectBase. */
	void Register(UObjectBase& Base);
	void Unregister(UObjectBase& Base);
	void SetIdentity(UObject& Object, UClass* Class, UObject* Outer, FName Name);

	/** Puts an object into its outer's list whose outer was recreated in the same place. */
	void Relink(UObject& Object);

	TArray<FEntry>& GetEntries() { return Entries; }
	FEntry& GetEntry(const UObjectBase& Object) { return Entries[static_cast<int32>(Object.GetUniqueID())]; }
	/** Null for an index that is free or out of range. */
	FEntry* FindEntry(int32 Index);
	/** The objects of a name, in whichever outer, the oldest first. */
	TArray<UObject*> FindByName(FName Name) const;
	UObject* Find(const UObject* Outer, FName Name) const;
	/** Calls the function for each object of the class, and of its children if told so, the lowest index first. */
	void ForEachOfClass(const UClass* Class, bool bIncludeDerived, TFunctionRef<void(const FEntry&)> Function) const;
	/** The objects directly in Outer, in the order in which they came there. */
	TArray<UObject*> GetChildren(const UObjectBase& Outer) const;

private:
	struct FList
	{
		int32 First = INDEX_NONE;
		int32 Last = INDEX_NONE;
	};

	FList& GetPlace(uint32 Hash) { return Places[static_cast<int32>(Hash & static_cast<uint32>(Places.Num() - 1))]; }
	static uint32 HashPlace(const UObject* Outer, FName Name);
	void Append(FList& List, FLink FEntry::*Link, int32 Index);
	void Remove(FList& List, FLink FEntry::*Link, int32 Index);
	void LinkClass(int32 Index);
	void UnlinkClass(int32 Index);
	/** Enters an object into the lists of its name and outer, or takes it out of them. */
	void LinkEntry(int32 Index);
	void UnlinkEntry(int32 Index);
	void GrowPlaces();

	TArray<FEntry> Entries;
	TArray<int32> FreeIndices;
	int32 LastSerialNumber = 0;
	TMap<FName, FList> ObjectsByName;
	TMap<const UClass*, FList> ObjectsByClass; // those of exactly the class
	TArray<FList> Places;                      // by hash of outer and name; a power of two
	TMap<const void*, FIdentity> Prepared;
};
