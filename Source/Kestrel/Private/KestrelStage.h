#pragma once

#include "CoreMinimal.h"

/** The stage of the service that a project may name for itself: where it is, and the key it takes. */
struct KESTREL_API FKestrelStage
{
	FString ApiUrl; // host and optional path, without scheme; empty means production
	FString ApiKey; // empty means the user's own
	/** The address is not just a host, with a port and a path if need be; the rest is empty then. */
	bool bIsRefused = false;

	/** Reads section "Kestrel" of an ini file. Anything missing or unknown leaves the texts empty. */
	static FKestrelStage Read(const FString& IniPath);
};
