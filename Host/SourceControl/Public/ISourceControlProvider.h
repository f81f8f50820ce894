#pragma once

#include "CoreMinimal.h"
#include "Features/IModularFeature.h"
#include "ISourceControlOperation.h"
#include "ISourceControlState.h"

namespace ECommandResult
{
enum Type
{
	Failed,
	Succeeded,
	Cancelled,
};
}

namespace EConcurrency
{
enum Type
{
	Synchronous,
	Asynchronous,
};
}

namespace EStateCacheUsage
{
enum Type
{
	ForceUpdate, // ask now
	Use,         // what was found before is good enough
};
}

DECLARE_DELEGATE_TwoParams(FSourceControlOperationComplete, const FSourceControlOperationRef&, ECommandResult::Type);

/**
 * A revision control system, for the game thread. Files are absolute paths.
 *
 * A synchronous command is done when Execute returns; the delegate of an asynchronous one is called in a later tick.
 */
class ISourceControlProvider : public IModularFeature
{
public:
	virtual const FName& GetName() const = 0;
	/** What the user is told about the state of the provider. */
	virtual FText GetStatusText() const = 0;
	/** False only for the provider that does nothing. */
	virtual bool IsEnabled() const = 0;
	/** Whether commands can work at all at the moment. */
	virtual bool IsAvailable() const = 0;

	/** Not valid where there is no provider, or no such file to speak of. */
	virtual FSourceControlStatePtr GetState(const FString& InFile, EStateCacheUsage::Type InStateCacheUsage) = 0;
	/** One state for each file. */
	virtual ECommandResult::Type GetState(const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState,
		EStateCacheUsage::Type InStateCacheUsage) = 0;

	/** All of the files, or none. Failed at once for an operation that the provider does not know; its reason is in it.
	 */
	virtual ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation, const TArray<FString>& InFiles,
		const EConcurrency::Type InConcurrency = EConcurrency::Synchronous,
		const FSourceControlOperationComplete& InOperationCompleteDelegate = FSourceControlOperationComplete()) = 0;
	ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation, const FString& InFile,
		const EConcurrency::Type InConcurrency = EConcurrency::Synchronous,
		const FSourceControlOperationComplete& InOperationCompleteDelegate = FSourceControlOperationComplete())
	{
		return Execute(InOperation, TArray<FString>{ InFile }, InConcurrency, InOperationCompleteDelegate);
	}
	ECommandResult::Type Execute(const FSourceControlOperationRef& InOperation,
		const EConcurrency::Type InConcurrency = EConcurrency::Synchronous,
		const FSourceControlOperationComplete& InOperationCompleteDelegate = FSourceControlOperationComplete())
	{
		return Execute(InOperation, TArray<FString>(), InConcurrency, InOperationCompleteDelegate);
	}
};
