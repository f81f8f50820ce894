#pragma once

#include "Interpreter/PyRef.h"

/** The Python module "unreal". */
class FPyUnrealModule
{
public:
	/** Makes the module, puts it where "import unreal" finds it and the log in the place of sys.stdout. */
	static FPyRef Make();
	/** Makes ready for a command. */
	static void BeginCommand();
	/** Lets go of everything that was made for the interpreter. */
	static void Forget();
	/** Whether threads that scripts have started are running. */
	static bool HasOtherThreads();
};
