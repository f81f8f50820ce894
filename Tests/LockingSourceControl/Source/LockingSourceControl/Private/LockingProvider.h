#pragma once

#include "ISourceControlProvider.h"

/**
 * Revision control that keeps the files it knows read-only until they are checked out, for tests. What it knows of a
 * file, the file itself tells: one that is read-only is under control, any other is not before it is checked out or
 * added.
 *
 * A revert forgets the checkout, add or deletion; it keeps no contents to restore. It refuses to check out a file with
 * "Refused" in its name; one with "Taken" is checked out by ann.
 */
class FLockingProvider final : public ISourceControlProvider
{
public:
	using ISourceControlProvider::Execute;

	const FName& GetName() const override;
	FText GetStatusText() const override;
	bool IsEnabled() const override { return true; }
	bool IsAvailable() const override { return true; }
	FSourceControlStatePtr GetState(const FString& InFile, EStateCacheUsage::Type InStateCacheUsage) override;
	ECommandResult::Type GetState(const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState,
		EStateCacheUsage::Type InStateCacheUsage) override;
	ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation, const TArray<FString>& InFiles,
		const EConcurrency::Type InConcurrency, const FSourceControlOperationComplete& InDelegate) override;

private:
	bool Run(FName Operation, const FString& File);

	TSet<FString> CheckedOut;
	TSet<FString> Added;
	TSet<FString> Deleted;
};
