#pragma once

#include "ObjectText/ObjectTextImport.h"
#include "UObject/Package.h"

/** One package of a loading session: the records of its file, and the packages that it needs. */
class FLoadingPackage
{
public:
	enum class EState : uint8
	{
		Made,
		Complete,
	};

	FLoadingPackage(UPackage* InPackage, const FString& InSavedName, const FString& FileName, FString&& Text);

	/** "A:B" of a path in this package, by its present or the saved name; false for any other path. */
	bool GetPathInside(const FString& Path, FString& OutInside) const;
	/** From now on this is a copy of the saved package: its records are of the new package, too. */
	void BecomeCopy();
	void AddNeed(FLoadingPackage* Other);
	/** In the order in which they were found. */
	const TArray<FLoadingPackage*>& GetNeeds() const { return Needs; }

	UPackage* Package;
	const bool bWasDirty;
	FObjectTextImport Import;
	EState State = EState::Made;
	bool bOrdered = false;

private:
	/** "New:B" of "Old:B" in a copy; the same path anywhere else. */
	FString Rename(const FString& Inside) const;

	const FString SavedName;
	TArray<FLoadingPackage*> Needs;
	TSet<FLoadingPackage*> KnownNeeds;
	bool bCopy = false;
};
