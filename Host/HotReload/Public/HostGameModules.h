#pragma once

#include "Containers/UnrealString.h"

/** The C++ modules of the project that the editor opens. */
struct FHostGameModules
{
	/**
	 * Makes the project's modules ready to be loaded: builds them when a library is missing or was made for another
	 * build of the editor, and tells the module manager where they lie. A project without C++ modules is left alone.
	 *
	 * It waits for the compiler; a line on the standard error stream says so.
	 *
	 * @return false when the modules cannot be built; OutErrors has the reason, or what the compiler printed
	 */
	static bool Prepare(FString& OutErrors);
};
