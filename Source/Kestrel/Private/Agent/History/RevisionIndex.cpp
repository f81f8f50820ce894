#include "Agent/History/RevisionIndex.h"

#include "Agent/Files/FileUtils.h"

bool KestrelRevisionIndex::Revert(const FString& FullPath, const FFileHistoryEntry& Entry)
{
	const bool bHasChanged = Entry.RevisionControl == EKestrelRevisionControl::CheckedIn ||
							 FFileUtils::GetRevisionControl(FullPath) == EKestrelRevisionControl::Added;
	return !bHasChanged || FFileUtils::RevertInSourceControl(FullPath) ||
		   FFileUtils::GetRevisionControl(FullPath) == EKestrelRevisionControl::Unknown;
}

void KestrelRevisionIndex::Restore(const FString& FullPath, const FFileHistoryEntry& Entry)
{
	const EKestrelRevisionControl Now = FFileUtils::GetRevisionControl(FullPath);
	if (Entry.RevisionControl == EKestrelRevisionControl::Added && Now != Entry.RevisionControl)
	{
		FFileUtils::AddNewFileToSourceControl(FullPath);
	}
	else if (Entry.RevisionControl == EKestrelRevisionControl::Unknown && Now == EKestrelRevisionControl::Added)
	{
		FFileUtils::RevertInSourceControl(FullPath); // a file that is created is added
	}
}

bool KestrelRevisionIndex::WasMissing(const FFileHistoryEntry& Entry)
{
	return Entry.ActionType == EFileActionType::Creation && Entry.RevisionControl == EKestrelRevisionControl::CheckedIn;
}
