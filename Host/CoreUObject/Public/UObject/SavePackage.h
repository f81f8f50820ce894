#pragma once

#include "CoreGlobals.h"
#include "Misc/DateTime.h"
#include "UObject/ObjectMacros.h"

class FOutputDevice;

enum class ESavePackageResult
{
	Success,
	Canceled,
	Error,
	MissingFile,
};

/** How UPackage::Save goes about it. Fill the members in by name. */
struct FSavePackageArgs
{
	EObjectFlags TopLevelFlags = RF_NoFlags; // an asset has RF_Public | RF_Standalone
	uint32 SaveFlags = SAVE_None;
	bool bForceByteSwapping = false;
	bool bWarnOfLongFilename = true;
	bool bSlowTask = true;
	/** Gets the message of a failure. Where it is by default, a message ends the process. */
	FOutputDevice* Error = GError;
	FDateTime FinalTimeStamp = FDateTime::MinValue();
};

struct FSavePackageResultStruct
{
	FSavePackageResultStruct(ESavePackageResult InResult = ESavePackageResult::Error, int64 InTotalFileSize = 0)
		: Result(InResult)
		, TotalFileSize(InTotalFileSize)
	{
	}
	FSavePackageResultStruct(FSavePackageResultStruct&&) = default;
	FSavePackageResultStruct& operator=(FSavePackageResultStruct&&) = default;

	bool IsSuccessful() const { return Result == ESavePackageResult::Success; }
	bool operator==(ESavePackageResult Other) const { return Result == Other; }

	ESavePackageResult Result;
	int64 TotalFileSize; // bytes
};
