#pragma once

#include "HAL/Platform.h"
#include "Logging/LogMacros.h"

class FConfigCacheIni;
class FFeedbackContext;
class FOutputDevice;
class FOutputDeviceRedirector;
class FString;
class ITransaction;

DECLARE_LOG_CATEGORY_EXTERN(LogCore, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogInit, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogExit, Log, All);

/** The log. Null only before main and after the host's core has been shut down. */
extern FOutputDeviceRedirector* GLog;
/** Warnings to the user; goes to the log. */
extern FFeedbackContext* GWarn;
/** Errors that end the process: whatever is logged there is the last. */
extern FOutputDevice* GError;
/** The transaction that changes are recorded in; null while there is none. */
extern ITransaction* GUndo;
/** The configuration of the running editor; null until it has been read. */
extern FConfigCacheIni* GConfig;

/** File names of the engine's own configuration classes. */
extern FString GEngineIni;
extern FString GGameIni;
extern FString GEditorIni;
extern FString GEditorPerProjectIni;
extern FString GEditorSettingsIni;

/** Frames since start-up. */
extern uint64 GFrameCounter;
extern bool GIsEditor;

bool IsInGameThread();
bool IsEngineExitRequested();
void RequestEngineExit(const TCHAR* Reason);
