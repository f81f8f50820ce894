#pragma once

#include "CoreMinimal.h"

/**
 * What revision control knew of a file when it was asked last.
 *
 * "Can" answers whether the operation of that name would be accepted. With a provider that does not lock files
 * CanCheckout is always false, and a file can be edited whenever it is known.
 */
class ISourceControlState : public TSharedFromThis<ISourceControlState, ESPMode::ThreadSafe>
{
public:
	virtual ~ISourceControlState() = default;

	/** Absolute. */
	virtual const FString& GetFilename() const = 0;
	virtual FText GetDisplayName() const = 0;
	virtual FText GetDisplayTooltip() const = 0;

	virtual bool CanCheckIn() const = 0;
	virtual bool CanCheckout() const = 0;
	virtual bool CanEdit() const = 0;
	virtual bool CanDelete() const = 0;
	virtual bool CanAdd() const = 0;
	virtual bool CanRevert() const = 0;

	virtual bool IsCheckedOut() const = 0;
	virtual bool IsCheckedOutOther(FString* Who = nullptr) const = 0;
	virtual bool IsCurrent() const = 0;
	/** Part of what is, or with the next check-in will be, under revision control. */
	virtual bool IsSourceControlled() const = 0;
	virtual bool IsAdded() const = 0;
	virtual bool IsDeleted() const = 0;
	virtual bool IsIgnored() const = 0;
	/** Nobody can tell: the file lies outside, or the question failed. */
	virtual bool IsUnknown() const = 0;
	virtual bool IsModified() const = 0;
	virtual bool IsConflicted() const = 0;
};

using FSourceControlStateRef = TSharedRef<ISourceControlState, ESPMode::ThreadSafe>;
using FSourceControlStatePtr = TSharedPtr<ISourceControlState, ESPMode::ThreadSafe>;
