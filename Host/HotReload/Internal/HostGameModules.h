#pragma once

#include "Containers/UnrealString.h"

enum class EGameModules : uint8
{
	Ready,            // they can be loaded, or the project has none
	CannotBeBuilt,    // their code or their rules are wrong
	NotForThisEditor, // they need an engine module that this editor does not have
};

/** The C++ modules of the project that the editor opens. */
struct FHostGameModules
{
	/**
	 * Makes the project's modules ready to be loaded: builds them when a library is missing or was made for another
	 * build of the editor, and tells the module manager where they lie. A project without C++ modules is left alone.
	 *
	 * It waits for the compiler; a line on the standard error stream says so.
	 *
	 * @param OutErrors  why they are not ready, or what the compiler printed
	 */
	static EGameModules Prepare(FString& OutErrors);
	/**
	 * Whether the project was prepared and some of its modules could not be loaded. Hot reload then compiles without a
	 * loaded module, and loads what could not be loaded before.
	 */
	static bool AreSomeNotLoaded();
};
