#include "CoreGlobals.h"

#include "Containers/UnrealString.h"
#include "Misc/FeedbackContext.h"
#include "Misc/OutputDeviceRedirector.h"

#include <thread>

namespace CoreGlobals
{
class FErrorDevice final : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type, const FName&) override
	{
		UE_LOG(LogCore, Fatal, TEXT("%s"), V);
	}
};

// Never destroyed: static objects of any module may log while the process ends.
FOutputDeviceRedirector* const Redirector = new FOutputDeviceRedirector;
FFeedbackContext* const FeedbackContext = new FFeedbackContext;
FErrorDevice* const ErrorDevice = new FErrorDevice;
const std::thread::id GameThread = std::this_thread::get_id();
bool bExitRequested = false;
}

FOutputDeviceRedirector* GLog = CoreGlobals::Redirector;
FFeedbackContext* GWarn = CoreGlobals::FeedbackContext;
FOutputDevice* GError = CoreGlobals::ErrorDevice;
ITransaction* GUndo = nullptr;
FConfigCacheIni* GConfig = nullptr;
FString GEngineIni;
FString GGameIni;
FString GEditorIni;
FString GEditorPerProjectIni;
FString GEditorSettingsIni;
uint64 GFrameCounter = 0;
bool GIsEditor = true;

bool IsInGameThread()
{
	return std::this_thread::get_id() == CoreGlobals::GameThread;
}

bool IsEngineExitRequested()
{
	return CoreGlobals::bExitRequested;
}

void RequestEngineExit(const TCHAR* Reason)
{
	UE_LOG(LogExit, Log, TEXT("Exit requested: %s"), Reason);
	CoreGlobals::bExitRequested = true;
}
