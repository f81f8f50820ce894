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
	struct FEntry
	{
		UObject* Object = nullptr; // null: the slot is free
		int32 SerialNumber = 0;    // of the slot's present object
		bool bRoot = false;
		bool bGarbage = false;
		bool bReachable = true;
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

	TArray<FEntry>& GetEntries() { return Entries; }
	FEntry& GetEntry(const UObjectBase& Object) { return Entries[static_cast<int32>(Object.GetUniqueID())]; }
	/** Null for an index that is free or out of range. */
	FEntry* FindEntry(int32 Index);
	/** The objects of a name, in whichever outer. */
	const TArray<UObject*>& FindByName(FName Name) const;
	UObject* Find(const UObject* Outer, FName Name) const;

private:
	TArray<FEntry> Entries;
	TArray<int32> FreeIndices;
	int32 LastSerialNumber = 0;
	TMap<FName, TArray<UObject*>> ObjectsByName;
	TMap<const void*, FIdentity> Prepared;
};
