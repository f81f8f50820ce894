#pragma once

#include "Interpreter/PyRef.h"
#include "PythonScriptTypes.h"

/**
 * The embedded Python: one for the process, started by the first command, on the game thread.
 *
 * Nothing of the user's environment reaches it: no PYTHON variables, no packages of the user or of the system, no
 * handlers for the signals of the process. Between commands its lock is free, so that threads of scripts go on.
 */
class FPyInterpreter
{
public:
	FPyInterpreter() = default;
	~FPyInterpreter() { Stop(); }
	UE_NONCOPYABLE(FPyInterpreter)

	/** See IPythonScriptPlugin::ExecPythonCommandEx. */
	bool Run(FPythonCommandEx& Command);
	/** False once a start has failed. */
	bool IsAvailable() const { return State != EState::Failed; }
	/** Ends Python; unless threads of scripts are still running, which are then left to the end of the process. */
	void Stop();

private:
	bool Start();
	bool StartPython();
	bool PrepareModules();
	bool PreparePaths() const;

	FPyRef Execute(const FPythonCommandEx& Command) const;
	FPyRef ExecuteFileOrScript(const FPythonCommandEx& Command) const;
	FPyRef ExecuteSource(PyObject* Source, const FString& FileName, const char* Mode, PyObject* Globals) const;
	/** Variables for a script: its own, or the console's. */
	FPyRef MakeGlobals(EPythonFileExecutionScope Scope, const FString& FileName) const;

	enum class EState : uint8
	{
		NotStarted,
		Running,
		Failed,
	};

	EState State = EState::NotStarted;
	PyThreadState* MainThread = nullptr; // while the lock is free
	FPyRef Compile;                      // the function; a script may put something else in its place
	FPyRef ConsoleGlobals;
};
