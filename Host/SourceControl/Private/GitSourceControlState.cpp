#include "GitSourceControlState.h"

#define LOCTEXT_NAMESPACE "GitSourceControlState"

FText FGitSourceControlState::GetDisplayName() const
{
	if (IsUnknown())
	{
		return LOCTEXT("Unknown", "Unknown");
	}
	if (IsConflicted())
	{
		return LOCTEXT("Conflicted", "Contents Conflict");
	}
	if (IsIgnored())
	{
		return LOCTEXT("Ignored", "Ignored");
	}
	if (!IsSourceControlled())
	{
		return LOCTEXT("NotControlled", "Not Under Revision Control");
	}
	if (IsDeleted())
	{
		return LOCTEXT("Deleted", "Deleted");
	}
	if (IsAdded())
	{
		return LOCTEXT("Added", "Added");
	}
	return IsModified() ? LOCTEXT("Modified", "Modified") : LOCTEXT("Unchanged", "Unchanged");
}

FText FGitSourceControlState::GetDisplayTooltip() const
{
	return FText::FromString(Filename + TEXT(": ") + GetDisplayName().ToString());
}

bool FGitSourceControlState::IsSourceControlled() const
{
	return !Has(EGitFileStatus::Missing | EGitFileStatus::Ignored | EGitFileStatus::Untracked);
}

bool FGitSourceControlState::CanAdd() const
{
	return Has(EGitFileStatus::Untracked);
}

bool FGitSourceControlState::CanDelete() const
{
	// What would be lost is not deleted, as "git rm" has it.
	return IsSourceControlled() && !IsAdded() && !IsModified() && !IsConflicted() &&
		   !Has(EGitFileStatus::StagedDeletion);
}

bool FGitSourceControlState::CanRevert() const
{
	return IsSourceControlled() && (IsAdded() || IsDeleted() || IsModified() || IsConflicted());
}

#undef LOCTEXT_NAMESPACE
