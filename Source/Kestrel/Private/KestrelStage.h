#pragma once

#include "CoreMinimal.h"

/** The stage of the service that a project may name for itself: where it is, and the key it takes. */
struct KESTREL_API FKestrelStage
{
	FString ApiUrl; // host and optional path, without scheme; empty means production
	FString ApiKey; // empty means the user's own

	/** Reads section "Kestrel" of an ini file. Anything missing or unknown leaves the texts empty. */
	static FKestrelStage Read(const FString& IniPath);
};
