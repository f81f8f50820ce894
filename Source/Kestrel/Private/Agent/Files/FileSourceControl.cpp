#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "ISourceControlModule.h"
#include "ISourceControlProvider.h"
#include "ISourceControlState.h"
#include "KestrelLog.h"
#include "SourceControlOperations.h"

namespace FileSourceControl
{
const TCHAR* const NotAvailable = TEXT("Source control is not available");

/** The project's provider, or null when there is none that works at the moment. */
ISourceControlProvider* FindProvider()
{
	const ISourceControlModule& Module = ISourceControlModule::Get();
	if (!Module.IsEnabled())
	{
		return nullptr;
	}
	ISourceControlProvider& Provider = Module.GetProvider();
	return Provider.IsEnabled() && Provider.IsAvailable() ? &Provider : nullptr;
}

FSourceControlStatePtr GetState(ISourceControlProvider& Provider, const FString& FullPath)
{
	return Provider.GetState(FullPath, EStateCacheUsage::ForceUpdate);
}

template <typename OperationType>
bool Execute(ISourceControlProvider& Provider, const FString& FullPath)
{
	return Provider.Execute(ISourceControlOperation::Create<OperationType>(), FullPath) == ECommandResult::Succeeded;
}

/** A file that is about to be added, or is open for editing, is no longer that first; only then is it marked. */
bool Remove(ISourceControlProvider& Provider, const FString& FullPath, const ISourceControlState& State)
{
	const bool bAdded = State.IsAdded();
	if ((bAdded || State.IsCheckedOut()) && !Execute<FRevert>(Provider, FullPath))
	{
		return false;
	}
	return bAdded || Execute<FDelete>(Provider, FullPath);
}
}

FString FFileUtils::AddNewFileToSourceControl(const FString& Path)
{
	const FString FullPath = ToAbsolutePath(Path);
	ISourceControlProvider* Provider = FileSourceControl::FindProvider();
	if (!Provider)
	{
		return FileSourceControl::NotAvailable;
	}
	const FSourceControlStatePtr State = FileSourceControl::GetState(*Provider, FullPath);
	if (!State.IsValid() || !State->CanAdd())
	{
		return FString::Printf(TEXT("File %s cannot be added to source control"), *FullPath);
	}
	if (!FileSourceControl::Execute<FMarkForAdd>(*Provider, FullPath))
	{
		return FString::Printf(TEXT("Failed to add %s to source control"), *FullPath);
	}
	return FString::Printf(TEXT("Successfully added %s to source control"), *FullPath);
}

FString FFileUtils::CheckoutFileFromSourceControl(const FString& Path)
{
	const FString FullPath = ToAbsolutePath(Path);
	ISourceControlProvider* Provider = FileSourceControl::FindProvider();
	if (!Provider)
	{
		return FileSourceControl::NotAvailable;
	}
	const FSourceControlStatePtr State = FileSourceControl::GetState(*Provider, FullPath);
	if (!State.IsValid() || !State->CanCheckout())
	{
		return FString::Printf(TEXT("File %s cannot be checked out (it may already be checked out)"), *FullPath);
	}
	if (!FileSourceControl::Execute<FCheckOut>(*Provider, FullPath))
	{
		return FString::Printf(TEXT("Failed to check out %s from source control"), *FullPath);
	}
	return FString::Printf(TEXT("Successfully checked out %s from source control"), *FullPath);
}

EKestrelRevisionControl FFileUtils::GetRevisionControl(const FString& Path)
{
	const FString FullPath = ToAbsolutePath(Path);
	ISourceControlProvider* Provider = FileSourceControl::FindProvider();
	const FSourceControlStatePtr State = Provider ? FileSourceControl::GetState(*Provider, FullPath) : nullptr;
	if (!State.IsValid() || !State->IsSourceControlled())
	{
		return EKestrelRevisionControl::Unknown;
	}
	if (State->IsConflicted())
	{
		return EKestrelRevisionControl::Conflicted;
	}
	return State->IsAdded() ? EKestrelRevisionControl::Added : EKestrelRevisionControl::CheckedIn;
}

bool FFileUtils::RevertInSourceControl(const FString& Path)
{
	ISourceControlProvider* Provider = FileSourceControl::FindProvider();
	return Provider && FileSourceControl::Execute<FRevert>(*Provider, ToAbsolutePath(Path));
}

FString FFileUtils::RemoveFileFromSourceControl(const FString& Path, bool bSilent)
{
	const FString FullPath = ToAbsolutePath(Path);
	ISourceControlProvider* Provider = FileSourceControl::FindProvider();
	if (!Provider)
	{
		return FileSourceControl::NotAvailable;
	}
	const FSourceControlStatePtr State = FileSourceControl::GetState(*Provider, FullPath);
	if (!State.IsValid() || !State->IsSourceControlled())
	{
		return FString::Printf(TEXT("File %s is not under source control, nothing to remove"), *FullPath);
	}
	if (State->IsConflicted())
	{
		// To resolve a conflict is the user's: reverting the file would conclude a merge without the other side.
		return FString::Printf(TEXT("File %s is in conflict and was left alone in source control"), *FullPath);
	}
	if (FileSourceControl::Remove(*Provider, FullPath, *State))
	{
		return FString::Printf(TEXT("Successfully marked %s for deletion in source control"), *FullPath);
	}
	const FString Failure = FString::Printf(TEXT("Failed to mark %s for deletion in source control"), *FullPath);
	if (!bSilent)
	{
		UE_LOG(LogKestrel, Warning, TEXT("%s"), *Failure);
	}
	return Failure;
}
