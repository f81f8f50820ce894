#pragma once

#include "GitRepository.h"
#include "ISourceControlState.h"

/** What git knew of a file; unknown until it is asked. */
class FGitSourceControlState final : public ISourceControlState
{
public:
	explicit FGitSourceControlState(const FString& InFilename)
		: Filename(InFilename)
	{
	}
	void Set(EGitFileStatus InStatus) { Status = InStatus; }

	const FString& GetFilename() const override { return Filename; }
	FText GetDisplayName() const override;
	FText GetDisplayTooltip() const override;
	// The provider offers no check-in, and git locks no files.
	bool CanCheckIn() const override { return false; }
	bool CanCheckout() const override { return false; }
	bool CanEdit() const override { return !IsUnknown(); }
	bool CanDelete() const override;
	bool CanAdd() const override;
	bool CanRevert() const override;
	bool IsCheckedOut() const override { return IsSourceControlled(); }
	bool IsCheckedOutOther(FString*) const override { return false; }
	bool IsCurrent() const override { return true; }
	bool IsSourceControlled() const override;
	bool IsAdded() const override { return Has(EGitFileStatus::StagedNew); }
	bool IsDeleted() const override { return Has(EGitFileStatus::StagedDeletion | EGitFileStatus::Deleted); }
	bool IsIgnored() const override { return Has(EGitFileStatus::Ignored); }
	bool IsUnknown() const override { return Has(EGitFileStatus::Missing); }
	bool IsModified() const override { return Has(EGitFileStatus::StagedChange | EGitFileStatus::Changed); }
	bool IsConflicted() const override { return Has(EGitFileStatus::Conflicted); }

private:
	bool Has(EGitFileStatus Flags) const { return EnumHasAnyFlags(Status, Flags); }

	const FString Filename;
	EGitFileStatus Status = EGitFileStatus::Missing;
};
