#pragma once

#include "../../Internal/Misc/CheckedFormat.h"
#include "HAL/Platform.h"

/** What the assertion macros do when their condition does not hold. */
struct FDebug
{
	/** Writes the message and a call stack to the log and ends the process. */
	[[noreturn]] static void CheckFailed(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line);
	[[noreturn]] static void CheckFailedFormat(
		const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const TCHAR* Format, ...);

	/** Logs an error with a call stack and goes on. Always returns false, so that the macros stay expressions. */
	static bool EnsureFailed(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line);
	static bool EnsureFailedFormat(
		const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const TCHAR* Format, ...);

	/** How many ensures have failed in this process; tests compare it before and after. */
	static int32 GetNumEnsureFailures();
};

#define UE_CHECK_IMPL(expr)                                                                                            \
	do                                                                                                                 \
	{                                                                                                                  \
		if (!(expr)) [[unlikely]]                                                                                      \
		{                                                                                                              \
			FDebug::CheckFailed(#expr, __FILE__, __LINE__);                                                            \
		}                                                                                                              \
	}                                                                                                                  \
	while (false)

#define UE_CHECKF_IMPL(expr, format, ...)                                                                              \
	do                                                                                                                 \
	{                                                                                                                  \
		if (!(expr)) [[unlikely]]                                                                                      \
		{                                                                                                              \
			UE_VALIDATE_FORMAT(format, ##__VA_ARGS__);                                                                 \
			FDebug::CheckFailedFormat(#expr, __FILE__, __LINE__, format, ##__VA_ARGS__);                               \
		}                                                                                                              \
	}                                                                                                                  \
	while (false)

#define check(expr) UE_CHECK_IMPL(expr)
#define checkf(expr, format, ...) UE_CHECKF_IMPL(expr, format, ##__VA_ARGS__)
#define checkSlow(expr) UE_CHECK_IMPL(expr)
#define verify(expr) UE_CHECK_IMPL(expr)
#define verifyf(expr, format, ...) UE_CHECKF_IMPL(expr, format, ##__VA_ARGS__)
#define checkNoEntry() FDebug::CheckFailed("Enclosing block should never be called", __FILE__, __LINE__)
#define unimplemented() FDebug::CheckFailed("Unimplemented function called", __FILE__, __LINE__)

// An ensure reports once a call site and run, so the counter lives in the lambda that stands at the site.
#define ensure(expr)                                                                                                   \
	((expr) ? true : [] {                                                                                              \
		static bool bReported = false;                                                                                 \
		return bReported ? false : (bReported = true, FDebug::EnsureFailed(#expr, __FILE__, __LINE__));                \
	}())
#define ensureMsgf(expr, format, ...)                                                                                  \
	((expr) ? true : [&] {                                                                                             \
		static bool bReported = false;                                                                                 \
		UE_VALIDATE_FORMAT(format, ##__VA_ARGS__);                                                                     \
		return bReported                                                                                               \
				   ? false                                                                                             \
				   : (bReported = true, FDebug::EnsureFailedFormat(#expr, __FILE__, __LINE__, format, ##__VA_ARGS__)); \
	}())
#define ensureAlways(expr) ((expr) ? true : FDebug::EnsureFailed(#expr, __FILE__, __LINE__))
#define ensureAlwaysMsgf(expr, format, ...)                                                                            \
	((expr) ? true : [&] {                                                                                             \
		UE_VALIDATE_FORMAT(format, ##__VA_ARGS__);                                                                     \
		return FDebug::EnsureFailedFormat(#expr, __FILE__, __LINE__, format, ##__VA_ARGS__);                           \
	}())
