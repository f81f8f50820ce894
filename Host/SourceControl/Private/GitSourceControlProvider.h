#pragma once

#include "GitSourceControlState.h"
#include "ISourceControlProvider.h"

/** Revision control for a project whose folder is the work tree of a git repository. */
class FGitSourceControlProvider final : public ISourceControlProvider
{
public:
	using ISourceControlProvider::Execute;

	explicit FGitSourceControlProvider(const FString& InWorkTree)
		: WorkTree(InWorkTree)
	{
	}
	const FString& GetWorkTree() const { return WorkTree; }

	const FName& GetName() const override;
	FText GetStatusText() const override;
	bool IsEnabled() const override { return true; }
	bool IsAvailable() const override;
	FSourceControlStatePtr GetState(const FString& InFile, EStateCacheUsage::Type InStateCacheUsage) override;
	ECommandResult::Type GetState(const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState,
		EStateCacheUsage::Type InStateCacheUsage) override;
	ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation, const TArray<FString>& InFiles,
		const EConcurrency::Type InConcurrency, const FSourceControlOperationComplete& InDelegate) override;

private:
	bool Run(FName Operation, const TArray<FString>& Files, FText& OutError);
	bool UpdateStates(const TArray<FString>& Files, FText& OutError);
	TSharedRef<FGitSourceControlState, ESPMode::ThreadSafe> FindOrAddState(const FString& File);

	const FString WorkTree; // absolute, without a trailing slash
	TMap<FString, TSharedPtr<FGitSourceControlState, ESPMode::ThreadSafe>> States;
};
