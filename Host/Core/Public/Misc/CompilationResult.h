#pragma once

#include "HAL/Platform.h"

/** How a compile of game code ended. The numbers are not to be relied on. */
namespace ECompilationResult
{
enum Type
{
	Succeeded = 0,
	Canceled = 1,
	UpToDate = 2, // there was nothing to do
	CrashOrAssert = 3,
	FailedDueToHeaderChange = 4,
	FailedDueToEngineChange = 5,
	OtherCompilationError = 6,
	LiveCodingLimitError,
	Unsupported,
	Unknown,
};

/** False for Succeeded and UpToDate only: a compile that is still going on counts as failed, too. */
inline bool Failed(Type Result)
{
	return Result != Succeeded && Result != UpToDate;
}

inline const TCHAR* ToString(Type Result)
{
	switch (Result)
	{
	case Succeeded:
		return TEXT("Succeeded");
	case Canceled:
		return TEXT("Canceled");
	case UpToDate:
		return TEXT("UpToDate");
	case CrashOrAssert:
		return TEXT("CrashOrAssert");
	case FailedDueToHeaderChange:
		return TEXT("FailedDueToHeaderChange");
	case FailedDueToEngineChange:
		return TEXT("FailedDueToEngineChange");
	case OtherCompilationError:
		return TEXT("OtherCompilationError");
	case LiveCodingLimitError:
		return TEXT("LiveCodingLimitError");
	case Unsupported:
		return TEXT("Unsupported");
	case Unknown:
		break;
	}
	return TEXT("Unknown");
}
}
