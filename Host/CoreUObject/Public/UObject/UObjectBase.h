#pragma once

#include "UObject/NameTypes.h"
#include "UObject/ObjectMacros.h"

class UClass;
class UObject;
class UPackage;

/**
 * What makes an object an object: its class, its name, the object it lies in and its place in the table of all objects.
 *
 * Objects are made by NewObject and freed by the garbage collection, never by new and delete.
 */
class UObjectBase
{
public:
	UObjectBase(const UObjectBase&) = delete;
	UObjectBase& operator=(const UObjectBase&) = delete;
	static void* operator new(size_t) = delete;

	/** Index into the table of all objects; unique as long as the object lives. */
	uint32 GetUniqueID() const { return static_cast<uint32>(InternalIndex); }
	UClass* GetClass() const { return ClassPrivate; }
	EObjectFlags GetFlags() const { return ObjectFlags; }
	FName GetFName() const { return NamePrivate; }
	UObject* GetOuter() const { return OuterPrivate; }

protected:
	/** Takes over the identity that NewObject has prepared. */
	UObjectBase();
	virtual ~UObjectBase();

	void SetFlagsTo(EObjectFlags NewFlags) { ObjectFlags = NewFlags; }

private:
	friend class FObjectTable;

	EObjectFlags ObjectFlags = RF_NoFlags;
	int32 InternalIndex = INDEX_NONE;
	UClass* ClassPrivate = nullptr;
	FName NamePrivate;
	UObject* OuterPrivate = nullptr;
};

/**
 * Makes the reflected types of libraries that were loaded since the last call: first all types with their fields, then
 * the default object of each class, for which its constructor runs and its configuration is read. The module manager
 * calls it for each module that it loads.
 */
void ProcessNewlyLoadedUObjects(FName Package = NAME_None, bool bCanProcessNewlyLoadedObjects = true);
