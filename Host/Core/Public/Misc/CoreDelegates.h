#pragma once

#include "Delegates/Delegate.h"

/** Events of the process's life. */
struct FCoreDelegates
{
	/** The editor is up: modules loaded, Slate there, no frame yet. */
	static FSimpleMulticastDelegate& GetOnPostEngineInit();
	/** The editor is about to shut modules down. */
	static FSimpleMulticastDelegate& GetOnEnginePreExit();
};
