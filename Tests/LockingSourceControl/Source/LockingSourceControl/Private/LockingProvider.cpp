#include "LockingProvider.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

namespace LockingProvider
{
IPlatformFile& GetFiles()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

enum class EStatus : uint8
{
	NotControlled,
	Locked,
	Taken,
	CheckedOut,
	Added,
	Deleted,
};

class FState final : public ISourceControlState
{
public:
	FState(const FString& InFilename, EStatus InStatus)
		: Filename(InFilename)
		, Status(InStatus)
	{
	}

	const FString& GetFilename() const override { return Filename; }
	FText GetDisplayName() const override { return FText::FromString(TEXT("Locking")); }
	FText GetDisplayTooltip() const override { return GetDisplayName(); }
	bool CanCheckIn() const override { return IsCheckedOut() || IsAdded(); }
	bool CanCheckout() const override { return Status == EStatus::Locked; }
	bool CanEdit() const override { return IsCheckedOut() || IsAdded(); }
	bool CanDelete() const override { return Status == EStatus::Locked; }
	bool CanAdd() const override { return Status == EStatus::NotControlled && GetFiles().FileExists(*Filename); }
	bool CanRevert() const override { return IsCheckedOut() || IsAdded() || IsDeleted(); }
	bool IsCheckedOut() const override { return Status == EStatus::CheckedOut; }
	bool IsCheckedOutOther(FString* Who) const override
	{
		if (Who)
		{
			*Who = TEXT("ann");
		}
		return Status == EStatus::Taken;
	}
	bool IsCurrent() const override { return true; }
	bool IsSourceControlled() const override { return Status != EStatus::NotControlled; }
	bool IsAdded() const override { return Status == EStatus::Added; }
	bool IsDeleted() const override { return Status == EStatus::Deleted; }
	bool IsIgnored() const override { return false; }
	bool IsUnknown() const override { return false; }
	bool IsModified() const override { return false; }
	bool IsConflicted() const override { return false; }

private:
	const FString Filename;
	const EStatus Status;
};
}

const FName& FLockingProvider::GetName() const
{
	static const FName Name("Locking");
	return Name;
}

FText FLockingProvider::GetStatusText() const
{
	return FText::FromName(GetName());
}

FSourceControlStatePtr FLockingProvider::GetState(const FString& InFile, EStateCacheUsage::Type)
{
	using LockingProvider::EStatus;
	const bool bLocked = LockingProvider::GetFiles().IsReadOnly(*InFile);
	const EStatus Status = CheckedOut.Contains(InFile)                                ? EStatus::CheckedOut
						   : Added.Contains(InFile)                                   ? EStatus::Added
						   : Deleted.Contains(InFile)                                 ? EStatus::Deleted
						   : !bLocked                                                 ? EStatus::NotControlled
						   : FPaths::GetCleanFilename(InFile).Contains(TEXT("Taken")) ? EStatus::Taken
																					  : EStatus::Locked;
	return MakeShared<LockingProvider::FState, ESPMode::ThreadSafe>(InFile, Status);
}

ECommandResult::Type FLockingProvider::GetState(
	const TArray<FString>& InFiles, TArray<FSourceControlStateRef>& OutState, EStateCacheUsage::Type Usage)
{
	for (const FString& File : InFiles)
	{
		OutState.Add(GetState(File, Usage).ToSharedRef());
	}
	return ECommandResult::Succeeded;
}

bool FLockingProvider::Run(FName Operation, const FString& File)
{
	const FSourceControlStatePtr State = GetState(File, EStateCacheUsage::ForceUpdate);
	if (Operation == "CheckOut")
	{
		const bool bAllowed = State->CanCheckout() && !FPaths::GetCleanFilename(File).Contains(TEXT("Refused"));
		const bool bDone = bAllowed && LockingProvider::GetFiles().SetReadOnly(*File, false);
		if (bDone)
		{
			CheckedOut.Add(File);
		}
		return bDone;
	}
	if (Operation == "MarkForAdd" && State->CanAdd())
	{
		Added.Add(File);
		return true;
	}
	if (Operation == "Delete" && State->CanDelete())
	{
		Deleted.Add(File);
		return LockingProvider::GetFiles().SetReadOnly(*File, false) && LockingProvider::GetFiles().DeleteFile(*File);
	}
	if (Operation == "Revert" && State->CanRevert())
	{
		CheckedOut.Remove(File);
		Added.Remove(File);
		Deleted.Remove(File);
		return true;
	}
	return false;
}

ECommandResult::Type FLockingProvider::Execute(const FSourceControlOperationRef& InOperation,
	const TArray<FString>& InFiles, const EConcurrency::Type, const FSourceControlOperationComplete& InDelegate)
{
	bool bDone = true;
	for (const FString& File : InFiles)
	{
		bDone &= Run(InOperation->GetName(), File);
	}
	const ECommandResult::Type Result = bDone ? ECommandResult::Succeeded : ECommandResult::Failed;
	InDelegate.ExecuteIfBound(InOperation, Result);
	return Result;
}
