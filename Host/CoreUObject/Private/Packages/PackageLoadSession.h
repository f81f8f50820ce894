#pragma once

#include "Logging/LogMacros.h"
#include "Packages/LoadingPackage.h"
#include "Templates/UniquePtr.h"
#include "UObject/GCObject.h"

struct FPackageHeader;

DECLARE_LOG_CATEGORY_EXTERN(LogPackageLoader, Log, All);

/** What is loaded by one call. Its objects are kept, since nothing else may refer to them yet. */
class FPackageLoadSession final : public FGCObject
{
public:
	explicit FPackageLoadSession(uint32 InLoadFlags);
	~FPackageLoadSession() override;

	UPackage* Run(const FString& PackageName, const FString& FileName);
	UPackage* RunCopy(const FString& PackageName, const TArray<uint8>& Bytes);
	/** Makes the objects of a package, unless that has been done. Null when there is no such package. */
	FLoadingPackage* Open(const FString& PackageName);
	FLoadingPackage* FindLoading(const UPackage* Package) const;
	void Complete(FLoadingPackage& Loading);

	void AddReferencedObjects(FReferenceCollector& Collector) override
	{
		for (const TUniquePtr<FLoadingPackage>& Each : Packages)
		{
			Collector.AddReferencedObject(Each->Package);
			Collector.AddReferencedObjects(Each->Import.GetObjects());
		}
	}
	FString GetReferencerName() const override { return TEXT("PackageLoader"); }

	/** The innermost one; null when nothing is being loaded. */
	static FPackageLoadSession* GetCurrent() { return Current; }

	FPackageLoadSession* const Enclosing;
	bool bReading = false; // values are being read: nothing may be completed

private:
	static FPackageLoadSession* Current;

	FLoadingPackage* OpenFile(const FString& PackageName, const FString& FileName);
	FLoadingPackage* OpenText(
		const FString& PackageName, const FString& FileName, const FPackageHeader& Header, const TArray<uint8>& Bytes);
	/** Everything after the first package's objects were made. */
	void Finish();
	/** Those that a package needs come before it. */
	TArray<FLoadingPackage*> GetInOrder() const;

	const uint32 LoadFlags;
	TArray<TUniquePtr<FLoadingPackage>> Packages;
	TMap<const UPackage*, FLoadingPackage*> ByPackage;
	TSet<FName> Missing;
};
