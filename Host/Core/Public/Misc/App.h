#pragma once

#include "Containers/UnrealString.h"

struct FApp
{
	/** The branch that the editor was built from. */
	static FString GetBranchName();
	/** Name of the .uproject file, without its extension. */
	static const TCHAR* GetProjectName();
	static bool IsUnattended();
};
