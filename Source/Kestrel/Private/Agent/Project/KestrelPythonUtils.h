#pragma once

#include "CoreMinimal.h"

/** How a script went, in words. */
struct FPythonScriptResult
{
	static FPythonScriptResult Success(const FString& Message) { return { true, Message, FString() }; }
	static FPythonScriptResult Failure(const FString& Message, const FString& Error)
	{
		return { false, Message, Error };
	}

	bool bSuccess = false;
	FString Message;
	FString Error;
};

/** Runs Python scripts in the editor, through the editor's own Python plugin. */
class KESTREL_API FKestrelPythonUtils
{
public:
	/**
	 * Runs a script and waits for its end, on the game thread.
	 *
	 * The script is written to Plugins/kestrel-unreal/Python of the project for the time of the run, under a name that
	 * no file has. What it prints goes to a log file, UTF-8 on every platform, which is read and removed afterwards; of
	 * a very long output the middle is left out.
	 *
	 * @return what the script has printed, with the traceback when it failed: as Message after a success, as Error
	 * after a failure
	 */
	static FPythonScriptResult CreateAndExecutePythonScript(const FString& ScriptContent);

	/** "generated_script_20250131_142501.py", by local time. */
	static FString GenerateScriptName();
};
