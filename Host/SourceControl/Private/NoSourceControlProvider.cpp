#include "NoSourceControlProvider.h"

#define LOCTEXT_NAMESPACE "NoSourceControlProvider"

const FName& FNoSourceControlProvider::GetName() const
{
	static const FName Name("None");
	return Name;
}

FText FNoSourceControlProvider::GetStatusText() const
{
	return LOCTEXT("Status", "Revision control is disabled.");
}

ECommandResult::Type FNoSourceControlProvider::Execute(const FSourceControlOperationRef& InOperation,
	const TArray<FString>&, const EConcurrency::Type, const FSourceControlOperationComplete& InDelegate)
{
	InOperation->AddErrorMessge(GetStatusText());
	InDelegate.ExecuteIfBound(InOperation, ECommandResult::Failed);
	return ECommandResult::Failed;
}

#undef LOCTEXT_NAMESPACE
