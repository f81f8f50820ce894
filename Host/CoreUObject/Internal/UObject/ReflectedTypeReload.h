#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "UObject/Object.h"

class UClass;
class UField;
class UPackage;

/**
 * While it lives, a library may bring types of a package that the package has already: the new ones take their place.
 *
 * An old type stays in memory, since its code does, but lies in the transient package and is called
 * "HOTRELOADED_<Name>_<n>". Objects of an old class, templates among them, are recreated from the new one, under their
 * own names; values that differed from the old defaults go over by the names of the properties. The default object is
 * the new constructor's work alone, with the configuration read into it. Whatever refers to an old object, class or
 * enum through reflected properties, dynamic delegates among them, or the garbage collection's hooks refers to the new
 * one then.
 *
 * What it leaves alone: classes derived from an old one that are not new themselves, and structs and properties of
 * other packages that hold a struct by value; they go on with the old type.
 */
class FReflectedTypeReload
{
public:
	/** One at a time. PackageName is "/Script/<Module>". */
	explicit FReflectedTypeReload(FName InPackageName);
	~FReflectedTypeReload();
	UE_NONCOPYABLE(FReflectedTypeReload)

	/** The one that lives; null when there is none. */
	static FReflectedTypeReload* Get();

	/** The native type that has taken the place of one, by now; the type itself when none has. Null stays null. */
	static UObject* FindNewest(UObject* Type);

	int32 NumReplacedTypes() const { return NewTypes.Num(); }

	// For ProcessNewlyLoadedUObjects.
	bool IsFor(const UPackage& Package) const;
	/** Moves the old type out of the way. */
	void Replace(UField& OldType, UField& NewType);
	/** Moves the objects over; the default objects of the new classes are there. */
	void Reinstance();

private:
	void RetargetProperties() const;
	void MapDefaultObjects();
	void MapObjects();
	UObject* MakeAnew(UObject& Old, UClass& NewClass);
	void MapSubobjects(UObject& Old, UObject& New);
	void ReplaceReferences();
	void DiscardOldObjects();

	const FName PackageName;
	TMap<UField*, UField*> NewTypes;     // by the old ones
	TMap<UObject*, UObject*> NewObjects; // by the old ones: objects, default objects, classes and enums
	TArray<UObject*> Discarded;
};
