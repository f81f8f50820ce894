#include "GitSourceControlProvider.h"

#include "Containers/Ticker.h"

#define LOCTEXT_NAMESPACE "GitSourceControlProvider"

namespace GitSourceControlProvider
{
/** The end of an asynchronous command is told in a later tick, as that of a command that takes its time. */
void CompleteLater(const FSourceControlOperationRef& Operation, ECommandResult::Type Result,
	const FSourceControlOperationComplete& Delegate)
{
	FTSTicker::GetCoreTicker().AddTicker(TEXT("SourceControl"), 0.0f, [Operation, Result, Delegate](float) {
		Delegate.ExecuteIfBound(Operation, Result);
		return false;
	});
}
}

const FName& FGitSourceControlProvider::GetName() const
{
	static const FName Name("Git");
	return Name;
}

FText FGitSourceControlProvider::GetStatusText() const
{
	return FText::Format(LOCTEXT("Status", "Provider: Git\nWork tree: {0}"), FText::FromString(WorkTree));
}

bool FGitSourceControlProvider::IsAvailable() const
{
	FText Error;
	return FGitRepository(WorkTree).Open(Error);
}

TSharedRef<FGitSourceControlState, ESPMode::ThreadSafe> FGitSourceControlProvider::FindOrAddState(const FString& File)
{
	TSharedPtr<FGitSourceControlState, ESPMode::ThreadSafe>& State = States.FindOrAdd(File);
	if (!State)
	{
		State = MakeShared<FGitSourceControlState, ESPMode::ThreadSafe>(File);
	}
	return State.ToSharedRef();
}

FSourceControlStatePtr FGitSourceControlProvider::GetState(
	const FString& InFile, EStateCacheUsage::Type InStateCacheUsage)
{
	TArray<FSourceControlStateRef> Found;
	GetState(TArray<FString>{ InFile }, Found, InStateCacheUsage);
	return Found[0];
}

ECommandResult::Type FGitSourceControlProvider::GetState(
	const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState, EStateCacheUsage::Type InStateCacheUsage)
{
	FText Error;
	const bool bDone = InStateCacheUsage == EStateCacheUsage::Use || UpdateStates(InFiles, Error);
	for (const FString& File : InFiles)
	{
		OutState.Add(FindOrAddState(File));
	}
	return bDone ? ECommandResult::Succeeded : ECommandResult::Failed;
}

bool FGitSourceControlProvider::UpdateStates(const TArray<FString>& Files, FText& OutError)
{
	FGitRepository Repository(WorkTree);
	const bool bOpen = Repository.Open(OutError);
	bool bAllKnown = bOpen;
	for (const FString& File : Files)
	{
		EGitFileStatus Status = EGitFileStatus::Missing;
		bAllKnown &= bOpen && Repository.GetStatus(File, Status, OutError);
		FindOrAddState(File)->Set(Status);
	}
	return bAllKnown;
}

bool FGitSourceControlProvider::Run(FName Operation, const TArray<FString>& Files, FText& OutError)
{
	FGitRepository Repository(WorkTree);
	if (Operation == "UpdateStatus")
	{
		return UpdateStates(Files, OutError);
	}
	if (Operation == "CheckOut")
	{
		OutError = LOCTEXT("NoCheckOut", "Git does not check files out: they can be changed at any time.");
		return false;
	}
	if (!Repository.Open(OutError))
	{
		return false;
	}
	if (Operation == "MarkForAdd")
	{
		return Repository.Add(Files, OutError);
	}
	if (Operation == "Delete")
	{
		return Repository.Remove(Files, OutError);
	}
	if (Operation == "Revert")
	{
		return Repository.Revert(Files, OutError);
	}
	OutError = FText::Format(
		LOCTEXT("UnknownOperation", "The operation {0} is not known to Git's provider."), FText::FromName(Operation));
	return false;
}

ECommandResult::Type FGitSourceControlProvider::Execute(const FSourceControlOperationRef& InOperation,
	const TArray<FString>& InFiles, const EConcurrency::Type InConcurrency,
	const FSourceControlOperationComplete& InDelegate)
{
	checkf(IsInGameThread(), TEXT("Revision control is for the game thread"));
	FText Error;
	const bool bDone = Run(InOperation->GetName(), InFiles, Error);
	if (!bDone)
	{
		InOperation->AddErrorMessge(Error);
	}
	FText Ignored;
	UpdateStates(InFiles, Ignored);
	const ECommandResult::Type Result = bDone ? ECommandResult::Succeeded : ECommandResult::Failed;
	if (InConcurrency == EConcurrency::Asynchronous)
	{
		GitSourceControlProvider::CompleteLater(InOperation, Result, InDelegate);
		return ECommandResult::Succeeded;
	}
	InDelegate.ExecuteIfBound(InOperation, Result);
	return Result;
}

#undef LOCTEXT_NAMESPACE
