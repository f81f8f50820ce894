#pragma once

#include "CoreMinimal.h"

/**
 * Versions of the protocol. Up to 2025-11-25 a client opens a session and agrees on a version with it; from 2026-07-28
 * on each request stands alone and names its version.
 */
namespace KestrelMcpVersions
{
inline const TCHAR* const Stateless = TEXT("2026-07-28");
/** With sessions, the newest first. */
inline const TCHAR* const WithSessions[] = { TEXT("2025-11-25"), TEXT("2025-06-18"), TEXT("2025-03-26") };
/** The first with structured results. */
inline const TCHAR* const FirstWithStructuredContent = TEXT("2025-06-18");
/** The only one in which several messages may come as one. */
inline const TCHAR* const WithBatches = TEXT("2025-03-26");

/** The same version where it is known, and the newest with sessions otherwise. */
inline FString Negotiate(const FString& Asked)
{
	for (const TCHAR* Version : WithSessions)
	{
		if (Asked.Equals(Version))
		{
			return Asked;
		}
	}
	return WithSessions[0];
}

inline bool IsKnownWithSessions(const FString& Version)
{
	return Negotiate(Version).Equals(Version);
}
}
