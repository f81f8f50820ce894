#include "Agent/Blueprints/Assets/BlueprintPackage.h"

#include "Agent/Blueprints/Assets/MessageCapture.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Files/FileUtils.h"
#include "Engine/Blueprint.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "ISourceControlModule.h"
#include "ISourceControlProvider.h"
#include "ISourceControlState.h"
#include "KestrelLog.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectGlobals.h"

namespace BlueprintPackage
{
/** What revision control knows of the file now; null when there is none, or none that works. */
FSourceControlStatePtr GetState(const FString& FileName)
{
	const ISourceControlModule& Module = ISourceControlModule::Get();
	if (!Module.IsEnabled())
	{
		return nullptr;
	}
	ISourceControlProvider& Provider = Module.GetProvider();
	return Provider.IsEnabled() && Provider.IsAvailable() ? Provider.GetState(FileName, EStateCacheUsage::ForceUpdate)
														  : nullptr;
}

/** Whether a write is none of revision control's business, or is allowed by it. */
bool MayWrite(const FSourceControlStatePtr& State)
{
	return !State.IsValid() || State->IsUnknown() || !State->IsSourceControlled() || State->CanEdit() ||
		   State->IsCheckedOut() || State->IsAdded();
}

FString CheckOutFile(const FString& FileName)
{
	if (!IFileManager::Get().FileExists(*FileName))
	{
		return FString();
	}
	const FSourceControlStatePtr Before = GetState(FileName);
	if (MayWrite(Before))
	{
		return FString();
	}
	FString Who;
	const bool bTaken = Before->IsCheckedOutOther(&Who);
	const FString Answer = FFileUtils::CheckoutFileFromSourceControl(FileName);
	const bool bCheckedOut =
		MayWrite(GetState(FileName)) && !FPlatformFileManager::Get().GetPlatformFile().IsReadOnly(*FileName);
	return bCheckedOut ? FString()
					   : Answer + (bTaken ? FString::Printf(TEXT(": it is checked out by %s."), *Who) : TEXT("."));
}

/** @return what went wrong; empty also for files that revision control leaves alone */
FString MarkForAdd(const FString& FileName)
{
	const FSourceControlStatePtr Before = GetState(FileName);
	if (!Before.IsValid() || !Before->CanAdd())
	{
		return FString();
	}
	const FString Answer = FFileUtils::AddNewFileToSourceControl(FileName);
	const FSourceControlStatePtr After = GetState(FileName);
	return After.IsValid() && After->IsSourceControlled() ? FString() : Answer + TEXT(".");
}
}

FString KestrelBlueprintPackage::GetFileName(const FString& PackageName)
{
	constexpr bool bIncludeReadOnlyRoots = true;
	FString FileName;
	const bool bHasPlace = KestrelBlueprintDocument::FitsName(PackageName) &&
						   FPackageName::IsValidLongPackageName(PackageName, bIncludeReadOnlyRoots) &&
						   FPackageName::TryConvertLongPackageNameToFilename(
							   PackageName, FileName, FPackageName::GetAssetPackageExtension());
	return bHasPlace ? FPaths::ConvertRelativePathToFull(FileName) : FString();
}

bool KestrelBlueprintPackage::IsUnsaved(const UBlueprint& Blueprint)
{
	return IsValid(&Blueprint) && Blueprint.IsAsset() && Blueprint.GetOutermost()->IsDirty() &&
		   Blueprint.GetOutermost() != GetTransientPackage();
}

FString KestrelBlueprintPackage::CheckOut(const UBlueprint& Blueprint)
{
	return BlueprintPackage::CheckOutFile(GetFileName(Blueprint.GetOutermost()->GetName()));
}

KestrelBlueprintPackage::FOutcome KestrelBlueprintPackage::Save(UBlueprint& Blueprint, EObjectFlags TopLevelFlags)
{
	const FString FileName = GetFileName(Blueprint.GetOutermost()->GetName());
	if (FileName.IsEmpty())
	{
		return { false, TEXT("The package has no place on the disk.") };
	}
	const FString Refusal = BlueprintPackage::CheckOutFile(FileName);
	if (!Refusal.IsEmpty())
	{
		return { false, Refusal };
	}
	const bool bNew = !IFileManager::Get().FileExists(*FileName);
	FKestrelMessageCapture Errors(ELogVerbosity::All); // whatever comes here is about the failure
	FSavePackageArgs Args;
	Args.TopLevelFlags = TopLevelFlags;
	Args.Error = &Errors; // the default ends the process
	if (!UPackage::Save(Blueprint.GetOutermost(), &Blueprint, *FileName, Args).IsSuccessful())
	{
		UE_LOG(LogKestrel, Warning, TEXT("%s"), *Errors.GetReason());
		return { false, Errors.GetReason() };
	}
	return { true, bNew ? BlueprintPackage::MarkForAdd(FileName) : FString() };
}
