#include "SourceControlOperations.h"

#define LOCTEXT_NAMESPACE "SourceControlOperations"

FText FCheckOut::GetInProgressString() const
{
	return LOCTEXT("CheckOut", "Checking file(s) out of Revision Control...");
}

FText FMarkForAdd::GetInProgressString() const
{
	return LOCTEXT("MarkForAdd", "Adding file(s) to Revision Control...");
}

FText FDelete::GetInProgressString() const
{
	return LOCTEXT("Delete", "Deleting file(s) from Revision Control...");
}

FText FRevert::GetInProgressString() const
{
	return LOCTEXT("Revert", "Reverting file(s) in Revision Control...");
}

FText FUpdateStatus::GetInProgressString() const
{
	return LOCTEXT("UpdateStatus", "Updating file(s) Revision Control status...");
}

#undef LOCTEXT_NAMESPACE
