#pragma once

#include "Containers/UnrealString.h"
#include "UObject/UObjectBase.h"

class UStruct;

#define SUBOBJECT_DELIMITER TEXT(":")

/** What every object can tell about itself. */
class UObjectBaseUtility : public UObjectBase
{
public:
	bool HasAnyFlags(EObjectFlags FlagsToCheck) const { return (GetFlags() & FlagsToCheck) != 0; }
	bool HasAllFlags(EObjectFlags FlagsToCheck) const { return (GetFlags() & FlagsToCheck) == FlagsToCheck; }
	void SetFlags(EObjectFlags NewFlags) { SetFlagsTo(GetFlags() | NewFlags); }
	void ClearFlags(EObjectFlags FlagsToClear) { SetFlagsTo(GetFlags() & ~FlagsToClear); }
	EObjectFlags GetMaskedFlags(EObjectFlags Mask = RF_AllFlags) const { return GetFlags() & Mask; }

	/** Keeps the object, and what it refers to, from being collected. */
	void AddToRoot();
	void RemoveFromRoot();
	bool IsRooted() const;

	/** The object counts as gone: IsValid is false, weak pointers are null, and flags no longer keep it. */
	void MarkAsGarbage();
	bool IsUnreachable() const;

	FString GetName() const { return GetFName().ToString(); }
	/**
	 * "/Game/Folder/Asset.Asset:Subobject.Deeper": the object directly in a package is parted by a dot, what lies below
	 * it by a colon, everything deeper by dots. With StopOuter, the path below that object.
	 */
	FString GetPathName(const UObject* StopOuter = nullptr) const;
	/** The class's name, a space and the path. */
	FString GetFullName(const UObject* StopOuter = nullptr) const;
	/** Path of class and object: "/Script/Engine.Texture2D'/Game/T.T'". */
	FString GetExportPath() const;

	/** The package that the object lies in; a package is its own. */
	UPackage* GetPackage() const;
	UPackage* GetOutermost() const { return GetPackage(); }
	/** The nearest object around this one that is of the class; null when there is none. */
	UObject* GetTypedOuter(const UClass* Target) const;
	template <typename T>
	T* GetTypedOuter() const
	{
		return static_cast<T*>(GetTypedOuter(T::StaticClass()));
	}
	/** Whether SomeOuter is around this object, at whatever distance. */
	bool IsIn(const UObject* SomeOuter) const;

	/**
	 * Marks the package as changed and not saved.
	 * @return false when nothing is marked: the package is the transient one, or the object is not meant to be saved
	 */
	bool MarkPackageDirty() const;

	bool IsA(const UClass* SomeBase) const;
	template <typename T>
	bool IsA() const
	{
		return IsA(T::StaticClass());
	}

	/** Where the interface lies in the object; null when its class does not implement it in C++. */
	void* GetNativeInterfaceAddress(const UClass* InterfaceClass) const;
	template <typename T>
	bool Implements() const
	{
		return ImplementsInterface(T::StaticClass());
	}

	bool IsTemplate(EObjectFlags TemplateTypes = RF_ArchetypeObject | RF_ClassDefaultObject) const;
	bool IsDefaultSubobject() const { return HasAnyFlags(RF_DefaultSubObject); }

private:
	bool ImplementsInterface(const UClass* InterfaceClass) const;
};
