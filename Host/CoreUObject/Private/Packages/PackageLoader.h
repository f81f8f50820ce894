#pragma once

#include "Containers/UnrealString.h"

class UObject;
class UPackage;

/**
 * Reads packages from their files.
 *
 * What one package refers to is loaded with it, all in one go and without recursion: first the objects of every package
 * are made, then they get their values, then PostLoad is called, a package after those that it needs. Packages may need
 * each other.
 */
class FPackageLoader
{
public:
	/** Loads the package that is empty or not there yet. Null when it cannot be read. */
	static UPackage* Load(const FString& PackageName, const FString& FileName, uint32 LoadFlags);
	/** Loads a file's contents as another package than the one they are of; see CopyPackage.h. */
	static UPackage* LoadCopy(const FString& FileText, const FString& PackageName);
	static bool IsLoading();
	/**
	 * PostLoad for the whole package of an object that is being loaded, and what comes after it: for an object that
	 * needs this one complete, such as a Blueprint its parent.
	 *
	 * @return false when the object is not being loaded
	 */
	static bool CompletePackageOf(const UObject& Object);
};
