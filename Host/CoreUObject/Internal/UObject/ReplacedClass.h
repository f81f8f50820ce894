#pragma once

#include "Containers/Array.h"

class UClass;
class UObject;

/**
 * For compilers of classes: moves everything that a class consists of over to a class of its own in the transient
 * package, named "REINST_<name>", which becomes the class of all its objects. They keep their layout and their values
 * while the class, now empty, is rebuilt.
 *
 * @return the class that has taken over; it lives as long as its objects
 */
UClass* MoveToReplacedClass(UClass& Class);

/** The objects whose class is this very one, without default objects. */
TArray<UObject*> GetInstancesOfClass(const UClass& Class);

/**
 * Gives New what was changed in Old, which is an object of an earlier form of the class: values that differ from those
 * of OldArchetype, in the parts that constructors have made too. Properties go over by name.
 */
void CopyChangedValues(const UObject& Old, const UObject& OldArchetype, UObject& New);
