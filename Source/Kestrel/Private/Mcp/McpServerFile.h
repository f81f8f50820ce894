#pragma once

#include "CoreMinimal.h"

/**
 * The address of the project's server and its token, for clients: Saved/Kestrel/OtherAssistants.json, which only the
 * user of the editor can read, or the one that -KestrelMcpFile names. They stay the same from run to run, so that
 * clients are configured once.
 */
struct KESTREL_API FKestrelMcpServerFile
{
	/** Absolute. */
	static FString GetPath();
	/** What an earlier run has written; new values when there is nothing, or others could have written or read it. */
	static FKestrelMcpServerFile ReadOrMake();
	/** @return false when it could not be written for the user alone */
	bool Write() const;
	/** Another port, where the other one is taken. */
	void ChooseAnotherPort();
	FString MakeUrl() const;

	uint32 Port = 0;
	FString Token;
};
