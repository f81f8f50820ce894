#pragma once

#include "Containers/UnrealString.h"
#include "Interpreter/PyRef.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/**
 * Ends a script that runs for too long, by an exception in the script.
 *
 * | What the script is doing             | How the exception gets in                                             |
 * |---------------------------------------|-----------------------------------------------------------------------|
 * | running Python code                   | a pending call of the interpreter                                     |
 * | waiting: sleep, locks, sockets        | a signal to the game thread ends the wait, its handler raises         |
 * | catching the exception and going on   | after a time for cleaning up, every line raises it again              |
 * | one long calculation inside a library | nothing gets in there: it raises when the calculation is done         |
 *
 * Game thread, with the interpreter's lock held. Limits can nest; the outermost is the one that counts.
 */
class FPyTimeLimit
{
public:
	/** 0: no limit. */
	explicit FPyTimeLimit(double InSeconds);
	~FPyTimeLimit();
	UE_NONCOPYABLE(FPyTimeLimit)

	/** Makes the exception's type and the signal's handler; once for each interpreter. */
	static bool Prepare(PyObject* UnrealModule);
	static void Forget();
	/** Of the configuration: [PythonScriptPlugin] ScriptTimeoutSeconds of the engine's. */
	static double GetConfiguredSeconds();

	bool HasExpired() const;

private:
	static int RaiseIfExpired(void*);
	static PyObject* HandleSignal(PyObject*, PyObject*);
	static int TraceLine(PyObject*, PyFrameObject*, int Event, PyObject*);
	using FClock = std::chrono::steady_clock;

	/** How long a script may clean up: as long again as it had, at most a second. */
	std::chrono::duration<double> GetGrace() const;
	void Raise() const;
	/** The other thread's: waits for the end of the time, then for the end of the script. */
	void Watch();

	const double Seconds;
	const bool bOutermost;
	const FClock::time_point StartedAt = FClock::now();
	FClock::time_point RaisedAt; // once bRaised
	bool bRaised = false;
	FPyRef HandledException; // when the limit began
	bool bTracing = false;
	bool bEnded = false;
	std::mutex Mutex; // of bEnded
	std::condition_variable Ended;
	std::thread Watchdog;
};
