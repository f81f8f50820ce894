#include "Agent/CompilationManager.h"

#include "CoreGlobals.h"
#include "Misc/HotReloadInterface.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Modules/ModuleManager.h"
#include "Widget/KestrelInterface.h"

DEFINE_LOG_CATEGORY_STATIC(LogCompile, Log, All);

const TCHAR* const FCompilationManager::AlreadyRunning =
	TEXT("A compilation is already running. Wait for its result before you start another one.");
TArray<TSharedPtr<FJsonObject>> FCompilationManager::StoredMessages;
FString FCompilationManager::SharedToolId;
TSharedPtr<FCompilationLogOutputDevice> FCompilationManager::LogOutputDevice;
FDelegateHandle FCompilationManager::CompilationManagerDelegateHandle;
FCompilationManager::FOnCompileFinished FCompilationManager::CompileFinished;

namespace CompilationManager
{
const FName HotReloadModule("HotReload");

IHotReloadInterface* LoadHotReload()
{
	FModuleManager& Modules = FModuleManager::Get();
	if (!Modules.IsModuleLoaded(HotReloadModule))
	{
		Modules.LoadModule(HotReloadModule);
	}
	return FModuleManager::GetModulePtr<IHotReloadInterface>(HotReloadModule);
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
		RefuseStart(TEXT("Failed to load HotReload module"));
		return;
	}
	if (HotReload->IsCurrentlyCompiling())
	{
		RefuseStart(TEXT("The editor is compiling already. Try again when it has ended."));
		return;
	}
	// Before the start: a short compile could have ended before the call returns.
	CompilationManagerDelegateHandle =
		HotReload->OnModuleCompilerFinished().AddStatic(&FCompilationManager::OnHotReloadCompilationFinished);
	const ECompilationResult::Type Result = HotReload->DoHotReloadFromEditor(EHotReloadFlags::None);
	if (IsCompiling() && !CompilationManager::WasStarted(*HotReload, Result))
	{
		HotReload->OnModuleCompilerFinished().Remove(CompilationManagerDelegateHandle);
		CompilationManagerDelegateHandle.Reset();
		RefuseStart(TEXT("Hot reload did not start a compilation. The editor's log says why; a project without C++ "
						 "classes, for instance, has nothing to compile."));
	}
}

void FCompilationManager::RefuseStart(const FString& Reason)
{
	StopCapturing();
	CompileFinished.Broadcast(StoredMessages, SharedToolId, Reason, false);
	// Nobody sees the log text in the panel, and this is not about errors in the code.
	FKestrelInterface::Get().AddOwnStatusMessage(Reason);
}

void FCompilationManager::OnHotReloadCompilationFinished(
	const FString& LogText, ECompilationResult::Type Result, bool bShowLog)
{
	if (IHotReloadInterface* HotReload = CompilationManager::LoadHotReload())
	{
		HotReload->OnModuleCompilerFinished().Remove(CompilationManagerDelegateHandle);
	}
	CompilationManagerDelegateHandle.Reset();

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
	if (IHotReloadInterface* HotReload =
			FModuleManager::GetModulePtr<IHotReloadInterface>(CompilationManager::HotReloadModule))
	{
		HotReload->OnModuleCompilerFinished().Remove(CompilationManagerDelegateHandle);
	}
	CompilationManagerDelegateHandle.Reset();
	StopCapturing();
}
