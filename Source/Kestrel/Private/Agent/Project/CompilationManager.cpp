#include "Agent/Project/CompilationManager.h"

#include "Agent/Chat/KestrelInterface.h"
#include "CoreGlobals.h"
#include "Delegates/IDelegateInstance.h"
#include "HAL/PlatformTime.h"
#include "Misc/HotReloadInterface.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY_STATIC(LogCompile, Log, All);

const TCHAR* const FCompilationManager::AlreadyRunning =
	TEXT("A compilation is already running. Wait for its result before you start another one.");
TArray<TSharedPtr<FJsonObject>> FCompilationManager::StoredMessages;
FString FCompilationManager::SharedToolId;
TSharedPtr<FCompilationLogOutputDevice> FCompilationManager::LogOutputDevice;
FDelegateHandle FCompilationManager::CompilationManagerDelegateHandle;
FTSTicker::FDelegateHandle FCompilationManager::WaitTickerHandle;
FCompilationManager::FOnCompileFinished FCompilationManager::CompileFinished;

namespace CompilationManager
{
const FName HotReloadModule("HotReload");
const FName LiveCodingModule("LiveCoding");
constexpr double LongestWaitSeconds = 30.0 * 60.0;
constexpr float WaitTickerIntervalSeconds = 1.0f;

const TCHAR* const NotStarted = TEXT("Hot reload did not start a compilation. The editor's log says why; a project "
									 "without C++ classes, for instance, has nothing to compile.");
const TCHAR* const NeverFinished = TEXT("Hot reload never reported the end of the compilation and is not compiling. "
										"The editor's log may say why.");
const TCHAR* const LiveCodingIsLikely = TEXT(
	" The likely cause is Live Coding, as hot reload does not work while it is on: turn off \"Enable Live Coding\" "
	"in the Editor Preferences (General > Live Coding), restart the editor and try again.");

/** Null while it is not loaded. */
IHotReloadInterface* FindHotReload()
{
	return FModuleManager::GetModulePtr<IHotReloadInterface>(HotReloadModule);
}

IHotReloadInterface* LoadHotReload()
{
	FModuleManager& Modules = FModuleManager::Get();
	if (!Modules.IsModuleLoaded(HotReloadModule))
	{
		Modules.LoadModule(HotReloadModule);
	}
	return FindHotReload();
}

/** Live Coding is on by default where it exists, on Windows; whether it is on now, only its own module knows. */
FString WithLikelyCause(const TCHAR* Failure)
{
	return FModuleManager::Get().IsModuleLoaded(LiveCodingModule) ? FString(Failure) + LiveCodingIsLikely
																  : FString(Failure);
}

/** Whether hot reload will report the end of the compile that it was asked for. */
bool WasStarted(const IHotReloadInterface& HotReload, ECompilationResult::Type Result)
{
	// The documentation says Unknown for a compile that goes on, callers have met Succeeded.
	return Result == ECompilationResult::Succeeded ||
		   (Result == ECompilationResult::Unknown && HotReload.IsCurrentlyCompiling());
}
}

void FCompilationLogOutputDevice::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	static const FName Compile("LogCompile");
	static const FName LiveCoding("LogLiveCoding");
	if (Category == Compile || Category == LiveCoding)
	{
		CapturedLogs.Add(FString::Printf(TEXT("[%s] %s"), *Category.ToString(), V));
	}
}

void FCompilationManager::CompileGameProject(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages)
{
	if (IsCompiling())
	{
		CompileFinished.Broadcast(Messages, ToolId, AlreadyRunning, false);
		return;
	}
	StoredMessages = Messages;
	SharedToolId = ToolId;
	CompileGameWithHotReload();
}

void FCompilationManager::CaptureCompilationLogs()
{
	if (!LogOutputDevice.IsValid())
	{
		LogOutputDevice = MakeShared<FCompilationLogOutputDevice>();
	}
	GLog->AddOutputDevice(LogOutputDevice.Get());
	LogOutputDevice->ClearCapturedLogs();
}

void FCompilationManager::StopCapturing()
{
	if (LogOutputDevice.IsValid() && GLog)
	{
		GLog->RemoveOutputDevice(LogOutputDevice.Get());
	}
}

void FCompilationManager::CompileGameWithHotReload()
{
	CaptureCompilationLogs();
	IHotReloadInterface* HotReload = CompilationManager::LoadHotReload();
	if (!HotReload)
	{
		Fail(TEXT("Failed to load HotReload module"));
		return;
	}
	if (HotReload->IsCurrentlyCompiling())
	{
		Fail(TEXT("The editor is compiling already. Try again when it has ended."));
		return;
	}
	// Before the start: a short compile could have ended before the call returns.
	WaitForEvent(*HotReload, CompilationManager::LongestWaitSeconds);
	const ECompilationResult::Type Result = HotReload->DoHotReloadFromEditor(EHotReloadFlags::None);
	if (IsCompiling() && !CompilationManager::WasStarted(*HotReload, Result))
	{
		StopWaiting();
		Fail(CompilationManager::WithLikelyCause(CompilationManager::NotStarted));
	}
}

void FCompilationManager::WaitForEvent(IHotReloadInterface& HotReload, double LongestSeconds)
{
	StopWaiting();
	CompilationManagerDelegateHandle =
		HotReload.OnModuleCompilerFinished().AddStatic(&FCompilationManager::OnHotReloadCompilationFinished);
	const double GiveUpAt = FPlatformTime::Seconds() + LongestSeconds;
	WaitTickerHandle = FTSTicker::GetCoreTicker().AddTicker(
		FTickerDelegate::CreateLambda([GiveUpAt](float) { return CheckWait(GiveUpAt); }),
		CompilationManager::WaitTickerIntervalSeconds);
}

bool FCompilationManager::CheckWait(double GiveUpAt)
{
	const IHotReloadInterface* HotReload = CompilationManager::FindHotReload();
	if (FPlatformTime::Seconds() < GiveUpAt || (HotReload && HotReload->IsCurrentlyCompiling()))
	{
		return true;
	}
	StopWaiting();
	Fail(CompilationManager::WithLikelyCause(CompilationManager::NeverFinished));
	return false;
}

void FCompilationManager::StopWaiting()
{
	if (IHotReloadInterface* HotReload = CompilationManager::FindHotReload())
	{
		HotReload->OnModuleCompilerFinished().Remove(CompilationManagerDelegateHandle);
	}
	CompilationManagerDelegateHandle.Reset();
	FTSTicker::RemoveTicker(WaitTickerHandle);
	WaitTickerHandle.Reset();
}

void FCompilationManager::Fail(const FString& Reason)
{
	StopCapturing();
	CompileFinished.Broadcast(StoredMessages, SharedToolId, Reason, false);
	// Nobody sees the log text in the panel, and this is not about errors in the code.
	FKestrelInterface::Get().AddOwnStatusMessage(Reason);
}

void FCompilationManager::OnHotReloadCompilationFinished(
	const FString& LogText, ECompilationResult::Type Result, bool bShowLog)
{
	StopWaiting();
	if (GetCompilationLogs().IsEmpty())
	{
		// Not every platform's compiler logs under the captured categories; its text always comes with the event.
		TArray<FString> Lines;
		LogText.ParseIntoArrayLines(Lines);
		for (const FString& Line : Lines)
		{
			UE_LOG(LogCompile, Log, TEXT("%s"), *Line);
		}
	}
	const FString Logs = FString::Join(GetCompilationLogs(), TEXT("\n"));
	StopCapturing();
	CompileFinished.Broadcast(StoredMessages, SharedToolId, Logs, !ECompilationResult::Failed(Result));
}

TArray<FString> FCompilationManager::GetCompilationLogs()
{
	if (GLog)
	{
		GLog->FlushThreadedLogs(); // the lines of other threads come late
	}
	return LogOutputDevice.IsValid() ? LogOutputDevice->GetCapturedLogs() : TArray<FString>();
}

TArray<FString> FCompilationManager::FilterCompilationErrors(const FString& Text)
{
	return GetCompilationLogs().FilterByPredicate([&Text](const FString& Line) { return Line.Contains(Text); });
}

void FCompilationManager::Shutdown()
{
	StopWaiting();
	StopCapturing();
}
