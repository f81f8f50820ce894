#pragma once

#include "Containers/UnrealString.h"

/** What a command of the mode ExecuteFile names. */
struct FPythonFileCommand
{
	FString Path;              // as it was written
	TArray<FString> Arguments; // what follows

	/** False when the command is no file but a literal script: its first word does not end in ".py". */
	bool Parse(const FString& Command);

	/**
	 * The file's absolute path: a relative one is looked for beside the executable, then in each of the folders.
	 * Empty when there is no such file.
	 */
	FString Resolve(const TArray<FString>& SearchFolders) const;
};
