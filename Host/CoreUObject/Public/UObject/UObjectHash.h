#pragma once

#include "Containers/Array.h"
#include "Templates/Function.h"
#include "UObject/ObjectMacros.h"

class UClass;
class UObject;
class UObjectBase;
class UPackage;

/** The objects in Outer; with nested ones also those below them. */
void GetObjectsWithOuter(const UObjectBase* Outer, TArray<UObject*>& OutResults, bool bIncludeNestedObjects = true,
	EObjectFlags ExclusionFlags = RF_NoFlags);
void ForEachObjectWithOuter(
	const UObjectBase* Outer, TFunctionRef<void(UObject*)> Operation, bool bIncludeNestedObjects = true);
void GetObjectsOfClass(const UClass* ClassToLookFor, TArray<UObject*>& OutResults, bool bIncludeDerivedClasses = true,
	EObjectFlags ExclusionFlags = RF_ClassDefaultObject);
/** The classes that derive from the class; without bRecursive only directly. */
void GetDerivedClasses(const UClass* ClassToLookFor, TArray<UClass*>& OutResults, bool bRecursive = true);
