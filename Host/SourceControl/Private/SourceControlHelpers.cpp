#include "SourceControlHelpers.h"

#include "ISourceControlModule.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "SourceControlOperations.h"

#define LOCTEXT_NAMESPACE "SourceControlHelpers"

DEFINE_LOG_CATEGORY_STATIC(LogSourceControl, Log, All);

namespace SourceControlHelpers
{
FText LastError;

bool Fail(const FText& Reason, bool bSilent)
{
	LastError = Reason;
	UE_CLOG(!bSilent, LogSourceControl, Error, TEXT("%s"), *Reason.ToString());
	return false;
}

ISourceControlProvider& GetProvider()
{
	return ISourceControlModule::Get().GetProvider();
}

/** Forgets the last error; false when there is no revision control to work with. */
bool Begin(bool bSilent)
{
	LastError = FText();
	return GetProvider().IsEnabled() || Fail(LOCTEXT("Disabled", "Revision control is disabled."), bSilent);
}

FString GetAbsolutePath(const FString& File)
{
	// "/Game/Folder/Asset", or with the object behind it: "/Game/Folder/Asset.Asset".
	const FString Package = File.StartsWith(TEXT("/")) ? FPaths::GetBaseFilename(File, false) : FString();
	FString Path = File;
	FString Map;
	if (FPackageName::TryConvertLongPackageNameToFilename(Package, Path, FPackageName::GetAssetPackageExtension()) &&
		FPackageName::TryConvertLongPackageNameToFilename(Package, Map, FPackageName::GetMapPackageExtension()))
	{
		Path = FPaths::FileExists(Map) ? Map : Path;
	}
	else if (FPaths::IsRelative(Path))
	{
		Path = FPaths::ProjectDir() / Path;
	}
	return FPaths::ConvertRelativePathToFull(Path);
}

bool Run(const FSourceControlOperationRef& Operation, const FString& File, bool bSilent)
{
	if (GetProvider().Execute(Operation, File) == ECommandResult::Succeeded)
	{
		return true;
	}
	const TArray<FText>& Errors = Operation->GetResultInfo().ErrorMessages;
	return Fail(Errors.IsEmpty() ? LOCTEXT("Failed", "The operation has failed.") : Errors[0], bSilent);
}
}

bool USourceControlHelpers::IsEnabled()
{
	return ISourceControlModule::Get().IsEnabled();
}

bool USourceControlHelpers::IsAvailable()
{
	return IsEnabled() && SourceControlHelpers::GetProvider().IsAvailable();
}

FText USourceControlHelpers::LastErrorMsg()
{
	return SourceControlHelpers::LastError;
}

bool USourceControlHelpers::CheckOutFile(const FString& InFile, bool bSilent)
{
	if (!SourceControlHelpers::Begin(bSilent))
	{
		return false;
	}
	const FString File = SourceControlHelpers::GetAbsolutePath(InFile);
	const FSourceControlStatePtr State =
		SourceControlHelpers::GetProvider().GetState(File, EStateCacheUsage::ForceUpdate);
	return (State && (State->IsCheckedOut() || State->IsAdded())) ||
		   SourceControlHelpers::Run(ISourceControlOperation::Create<FCheckOut>(), File, bSilent);
}

bool USourceControlHelpers::CheckOutOrAddFile(const FString& InFile, bool bSilent)
{
	if (!SourceControlHelpers::Begin(bSilent))
	{
		return false;
	}
	const FSourceControlStatePtr State = SourceControlHelpers::GetProvider().GetState(
		SourceControlHelpers::GetAbsolutePath(InFile), EStateCacheUsage::ForceUpdate);
	return State && State->IsSourceControlled() ? CheckOutFile(InFile, bSilent) : MarkFileForAdd(InFile, bSilent);
}

bool USourceControlHelpers::MarkFileForAdd(const FString& InFile, bool bSilent)
{
	if (!SourceControlHelpers::Begin(bSilent))
	{
		return false;
	}
	const FString File = SourceControlHelpers::GetAbsolutePath(InFile);
	const FSourceControlStatePtr State =
		SourceControlHelpers::GetProvider().GetState(File, EStateCacheUsage::ForceUpdate);
	return (State && State->IsSourceControlled()) ||
		   SourceControlHelpers::Run(ISourceControlOperation::Create<FMarkForAdd>(), File, bSilent);
}

bool USourceControlHelpers::MarkFileForDelete(const FString& InFile, bool bSilent)
{
	return SourceControlHelpers::Begin(bSilent) && SourceControlHelpers::Run(ISourceControlOperation::Create<FDelete>(),
													   SourceControlHelpers::GetAbsolutePath(InFile), bSilent);
}

bool USourceControlHelpers::RevertFile(const FString& InFile, bool bSilent)
{
	return SourceControlHelpers::Begin(bSilent) && SourceControlHelpers::Run(ISourceControlOperation::Create<FRevert>(),
													   SourceControlHelpers::GetAbsolutePath(InFile), bSilent);
}

FSourceControlState USourceControlHelpers::QueryFileState(const FString& InFile, bool bSilent)
{
	FSourceControlState Result;
	Result.Filename = InFile;
	if (!SourceControlHelpers::Begin(bSilent))
	{
		return Result;
	}
	const FSourceControlStatePtr State = SourceControlHelpers::GetProvider().GetState(
		SourceControlHelpers::GetAbsolutePath(InFile), EStateCacheUsage::ForceUpdate);
	Result.bIsValid = State.IsValid();
	Result.bIsUnknown = State->IsUnknown();
	Result.bIsSourceControlled = State->IsSourceControlled();
	Result.bCanCheckIn = State->CanCheckIn();
	Result.bCanCheckOut = State->CanCheckout();
	Result.bIsCheckedOut = State->IsCheckedOut();
	Result.bIsCurrent = State->IsCurrent();
	Result.bIsAdded = State->IsAdded();
	Result.bIsDeleted = State->IsDeleted();
	Result.bIsIgnored = State->IsIgnored();
	Result.bCanEdit = State->CanEdit();
	Result.bCanDelete = State->CanDelete();
	Result.bCanAdd = State->CanAdd();
	Result.bCanRevert = State->CanRevert();
	Result.bIsModified = State->IsModified();
	Result.bIsConflicted = State->IsConflicted();
	return Result;
}

#undef LOCTEXT_NAMESPACE
