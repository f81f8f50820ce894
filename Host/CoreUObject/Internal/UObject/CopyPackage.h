#pragma once

#include "Containers/UnrealString.h"

class UPackage;

/**
 * Makes a package of what another one would save, as if its file had been copied and loaded: a Blueprint's copy
 * compiles a class of its own. What is named after the source, such as "Old", "Old_C" and "Default__Old_C", is named
 * after the copy. PostDuplicate is called of all objects.
 *
 * @return null when there is nothing that would be saved; the new package is not dirty
 */
UPackage* CopyPackage(UPackage& Source, const FString& NewPackageName);

/** The name in a copy of an object directly in the source. */
FString GetNameInCopy(const FString& Name, const FString& SourceShortName, const FString& CopyShortName);
