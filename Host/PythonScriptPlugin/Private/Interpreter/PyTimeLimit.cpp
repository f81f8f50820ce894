#include "Interpreter/PyTimeLimit.h"

#include "Misc/ConfigCacheIni.h"
#include "Values/PyText.h"

#include <csignal>

namespace PyTimeLimit
{
constexpr std::chrono::milliseconds ReminderInterval(20);

FPyTimeLimit* Current = nullptr;
PyObject* ErrorType = nullptr;
PyObject* Handler = nullptr;
PyObject* SetSignalHandler = nullptr; // the function of Python
pthread_t GameThread;
struct sigaction InstalledAction = {};

/** A signal that nobody else uses. */
int GetSignal()
{
	return SIGRTMAX - 3;
}

/** Done for each script, as the one before may have put another handler there. */
void InstallHandler()
{
	const FPyRef Previous = FPyRef::Steal(PyObject_CallFunction(SetSignalHandler, "iO", GetSignal(), Handler));
	PyErr_Clear();
	sigaction(GetSignal(), nullptr, &InstalledAction);
}

/** Wakes the game thread out of a wait. A script that took the signal's handler away would end the process by it. */
void InterruptWait()
{
	struct sigaction Action = {};
	sigaction(GetSignal(), nullptr, &Action);
	if (Action.sa_handler == InstalledAction.sa_handler)
	{
		pthread_kill(GameThread, GetSignal());
	}
}
}

bool FPyTimeLimit::Prepare(PyObject* UnrealModule)
{
	static PyMethodDef Handler = { "handle_time_limit", &FPyTimeLimit::HandleSignal, METH_VARARGS, nullptr };
	const FPyRef SignalModule = FPyRef::Steal(PyImport_ImportModule("_signal"));
	// BaseException: "except Exception" is not meant to catch it.
	PyTimeLimit::ErrorType = PyErr_NewExceptionWithDoc("unreal.ScriptTimeoutError",
		"A script has run for longer than the configuration allows.", PyExc_BaseException, nullptr);
	PyTimeLimit::Handler = PyCFunction_New(&Handler, nullptr);
	PyTimeLimit::SetSignalHandler = SignalModule ? PyObject_GetAttrString(SignalModule.Get(), "signal") : nullptr;
	PyTimeLimit::GameThread = pthread_self();
	return PyTimeLimit::ErrorType && PyTimeLimit::Handler && PyTimeLimit::SetSignalHandler &&
		   PyModule_AddObjectRef(UnrealModule, "ScriptTimeoutError", PyTimeLimit::ErrorType) == 0;
}

void FPyTimeLimit::Forget()
{
	Py_CLEAR(PyTimeLimit::ErrorType);
	Py_CLEAR(PyTimeLimit::Handler);
	Py_CLEAR(PyTimeLimit::SetSignalHandler);
}

double FPyTimeLimit::GetConfiguredSeconds()
{
	float Seconds = 0.0f;
	if (GConfig)
	{
		GConfig->GetFloat(TEXT("PythonScriptPlugin"), TEXT("ScriptTimeoutSeconds"), Seconds, GEngineIni);
	}
	return FMath::Max(Seconds, 0.0f);
}

FPyTimeLimit::FPyTimeLimit(double InSeconds)
	: Seconds(InSeconds)
	, bOutermost(InSeconds > 0.0 && !PyTimeLimit::Current)
{
	if (bOutermost)
	{
		HandledException = FPyRef::Steal(PyErr_GetHandledException());
		PyTimeLimit::InstallHandler();
		PyTimeLimit::Current = this;
		Watchdog = std::thread(&FPyTimeLimit::Watch, this);
	}
}

FPyTimeLimit::~FPyTimeLimit()
{
	if (!bOutermost)
	{
		return;
	}
	PyTimeLimit::Current = nullptr;
	{
		const std::lock_guard Lock(Mutex);
		bEnded = true;
	}
	Ended.notify_one();
	Watchdog.join();
	if (bTracing)
	{
		PyEval_SetTrace(nullptr, nullptr);
		// An exception that is raised by tracing leaves the one that its frame was handling in place.
		PyErr_SetHandledException(HandledException.Get());
	}
}

bool FPyTimeLimit::HasExpired() const
{
	return bOutermost && FClock::now() - StartedAt >= std::chrono::duration<double>(Seconds);
}

std::chrono::duration<double> FPyTimeLimit::GetGrace() const
{
	return std::chrono::duration<double>(FMath::Min(Seconds, 1.0));
}

void FPyTimeLimit::Watch()
{
	std::unique_lock Lock(Mutex);
	const auto HasEnded = [this] { return bEnded; };
	if (Ended.wait_until(Lock, StartedAt + std::chrono::duration<double>(Seconds), HasEnded))
	{
		return;
	}
	do
	{
		// Fails when the queue is full of earlier calls, and then there is no need for another.
		Py_AddPendingCall(&FPyTimeLimit::RaiseIfExpired, nullptr);
		PyTimeLimit::InterruptWait();
	}
	while (!Ended.wait_for(Lock, PyTimeLimit::ReminderInterval, HasEnded));
}

void FPyTimeLimit::Raise() const
{
	const std::chrono::duration<double> Elapsed = FClock::now() - StartedAt;
	const FString Message = FString::Printf(
		TEXT("the script was stopped after %.1f seconds: ScriptTimeoutSeconds=%s in the section [PythonScriptPlugin] "
			 "of the engine's configuration allows no more"),
		Elapsed.count(), *FString::SanitizeFloat(Seconds, 0));
	const FPyRef Text = PyText::ToPython(Message);
	PyErr_SetObject(PyTimeLimit::ErrorType, Text.Get());
}

int FPyTimeLimit::RaiseIfExpired(void*)
{
	FPyTimeLimit* const Limit = PyTimeLimit::Current;
	if (!Limit || !Limit->HasExpired())
	{
		return 0;
	}
	if (!Limit->bRaised)
	{
		Limit->bRaised = true;
		Limit->RaisedAt = FClock::now();
		Limit->Raise();
		return -1;
	}
	if (FClock::now() - Limit->RaisedAt < Limit->GetGrace())
	{
		return 0;
	}
	if (!Limit->bTracing)
	{
		Limit->bTracing = true;
		PyEval_SetTrace(&FPyTimeLimit::TraceLine, nullptr);
	}
	Limit->Raise();
	return -1;
}

PyObject* FPyTimeLimit::HandleSignal(PyObject*, PyObject*)
{
	return RaiseIfExpired(nullptr) < 0 ? nullptr : Py_NewRef(Py_None);
}

int FPyTimeLimit::TraceLine(PyObject*, PyFrameObject*, int Event, PyObject*)
{
	if (!PyTimeLimit::Current || (Event != PyTrace_LINE && Event != PyTrace_CALL))
	{
		return 0;
	}
	PyTimeLimit::Current->Raise();
	return -1;
}
