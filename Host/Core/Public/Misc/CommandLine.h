#pragma once

#include "Containers/UnrealString.h"

/** The words that the editor was started with, without the program's name. */
struct FCommandLine
{
	static const TCHAR* Get();
	static void Set(const TCHAR* NewCommandLine);
	/** Joins the arguments of main; one with spaces gets quotes around its value, and a quote in it a backslash. */
	static FString BuildFromArgV(int32 ArgC, ANSICHAR* ArgV[]);
	/** The next word of a command line, without the quotes around it; empty at the end. Stream moves behind it. */
	static FString Token(const TCHAR*& Stream);
};
