#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

class UBlueprint;

/** The files of Blueprints, with regard to revision control. */
namespace KestrelBlueprintPackage
{
struct FOutcome
{
	bool bSaved = false;
	/** Why the package is not saved; or what revision control did not do about one that is. A sentence or empty. */
	FString Reason;
};

/** Where a package is or will be saved, absolute; empty for one without a place on the disk. */
FString GetFileName(const FString& PackageName);
/** Whether saving all would save it: an asset that has changed in memory, or is only there. */
bool IsUnsaved(const UBlueprint& Blueprint);
/**
 * Checks out a file that revision control keeps read-only until then. Nothing is to do for one that is new, or that it
 * does not keep.
 *
 * @return why the file may not be written, as a sentence; empty when it may
 */
FString CheckOut(const UBlueprint& Blueprint);
/** Checks out, writes the package to its file, and marks a new file for add. */
FOutcome Save(UBlueprint& Blueprint, EObjectFlags TopLevelFlags);
}
