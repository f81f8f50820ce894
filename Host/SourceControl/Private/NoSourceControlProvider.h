#pragma once

#include "ISourceControlProvider.h"

/** What a project has that has no revision control: it knows nothing and does nothing. */
class FNoSourceControlProvider final : public ISourceControlProvider
{
public:
	using ISourceControlProvider::Execute;

	const FName& GetName() const override;
	FText GetStatusText() const override;
	bool IsEnabled() const override { return false; }
	bool IsAvailable() const override { return false; }
	FSourceControlStatePtr GetState(const FString&, EStateCacheUsage::Type) override { return nullptr; }
	ECommandResult::Type GetState(
		const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState, EStateCacheUsage::Type) override
	{
		return ECommandResult::Failed;
	}
	ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation, const TArray<FString>& InFiles,
		const EConcurrency::Type InConcurrency, const FSourceControlOperationComplete& InDelegate) override;
};
