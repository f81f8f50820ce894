#pragma once

#include "Containers/UnrealString.h"

/** What an object is told before it is written to a package. */
class FObjectPreSaveContext
{
public:
	FObjectPreSaveContext(const FString& InTargetFilename, uint32 InSaveFlags)
		: TargetFilename(InTargetFilename)
		, SaveFlags(InSaveFlags)
	{
	}

	const TCHAR* GetTargetFilename() const { return *TargetFilename; }
	uint32 GetSaveFlags() const { return SaveFlags; }
	bool IsProceduralSave() const { return false; }

private:
	FString TargetFilename;
	uint32 SaveFlags;
};

/** What is told after a package was written. */
class FObjectPostSaveContext
{
public:
	FObjectPostSaveContext(const FString& InTargetFilename, uint32 InSaveFlags)
		: TargetFilename(InTargetFilename)
		, SaveFlags(InSaveFlags)
	{
	}

	const TCHAR* GetTargetFilename() const { return *TargetFilename; }
	uint32 GetSaveFlags() const { return SaveFlags; }
	bool SaveSucceeded() const { return true; }

private:
	FString TargetFilename;
	uint32 SaveFlags;
};
