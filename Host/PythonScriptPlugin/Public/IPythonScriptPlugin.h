#pragma once

#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"
#include "PythonScriptTypes.h"

/** Runs Python inside the editor: synchronously, on the game thread. */
class IPythonScriptPlugin : public IModuleInterface
{
public:
	/** Null when the plugin is not loaded. */
	static IPythonScriptPlugin* Get()
	{
		return FModuleManager::GetModulePtr<IPythonScriptPlugin>(TEXT("PythonScriptPlugin"));
	}

	/** False when there is no Python to run anything with; the commands then fail. */
	virtual bool IsPythonAvailable() const = 0;

	/**
	 * Runs a literal script or a file (see FPythonCommandEx::Command) with the default settings.
	 *
	 * @return false on error; the error is in the log
	 */
	virtual bool ExecPythonCommand(const TCHAR* InPythonCommand) = 0;

	/**
	 * Runs the command as it says and fills in its results.
	 *
	 * @return false on error: what went wrong is in CommandResult, in LogOutput and in the log
	 */
	virtual bool ExecPythonCommandEx(FPythonCommandEx& InOutPythonCommand) = 0;
};
