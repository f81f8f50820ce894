#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

#include "SourceControlHelpers.generated.h"

/** What is known of a file, as plain values. */
USTRUCT(BlueprintType)
struct FSourceControlState
{
	GENERATED_BODY()

	/** As it was asked for. */
	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	FString Filename;

	/** False when there is nothing to be known; everything below is false then. */
	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsValid = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsUnknown = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsSourceControlled = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanCheckIn = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanCheckOut = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsCheckedOut = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsCurrent = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsAdded = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsDeleted = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsIgnored = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanEdit = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanDelete = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanAdd = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bCanRevert = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsModified = false;

	UPROPERTY(BlueprintReadOnly, Category = "SourceControlState")
	bool bIsConflicted = false;
};

/**
 * Revision control in single calls, which wait for the end.
 *
 * A file is an absolute path, one relative to the project directory, or the name of a package ("/Game/Folder/Asset").
 * Every function answers false when there is no revision control or when it could not do its work; LastErrorMsg tells
 * why, and so does the log, unless bSilent.
 */
UCLASS(Abstract, BlueprintType)
class USourceControlHelpers : public UObject
{
	GENERATED_BODY()

public:
	/** Whether the project has revision control. */
	UFUNCTION(BlueprintPure, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool IsEnabled();

	UFUNCTION(BlueprintPure, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool IsAvailable();

	/** Of the last call that failed; empty when the last one worked. */
	UFUNCTION(BlueprintPure, Category = "Editor Scripting | Editor Source Control Helpers")
	static FText LastErrorMsg();

	/** True also for a file that is checked out or added already. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool CheckOutFile(const FString& InFile, bool bSilent = false);

	/** A file that is under revision control is checked out, as far as the provider has that; any other is added. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool CheckOutOrAddFile(const FString& InFile, bool bSilent = false);

	/** True, and nothing done, for a file that is under revision control already. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool MarkFileForAdd(const FString& InFile, bool bSilent = false);

	/** Takes the file out of revision control and deletes it from the disk. */
	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool MarkFileForDelete(const FString& InFile, bool bSilent = false);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static bool RevertFile(const FString& InFile, bool bSilent = false);

	UFUNCTION(BlueprintCallable, Category = "Editor Scripting | Editor Source Control Helpers")
	static FSourceControlState QueryFileState(const FString& InFile, bool bSilent = false);
};
