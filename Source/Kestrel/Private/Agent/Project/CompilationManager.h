#pragma once

#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Misc/CompilationResult.h"
#include "Misc/OutputDevice.h"

class FJsonObject;
class IHotReloadInterface;

/** Keeps the compiler's lines of the log, as "[category] text". */
class FCompilationLogOutputDevice : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;

	const TArray<FString>& GetCapturedLogs() const { return CapturedLogs; }
	void ClearCapturedLogs() { CapturedLogs.Empty(); }

private:
	TArray<FString> CapturedLogs;
};

/**
 * Compiles the game's C++ code inside the running editor, through hot reload, one compile at a time.
 *
 *   sees                               does
 *   CompileGameProject                 captures the log, starts hot reload, waits for its event
 *   hot reload cannot be started       tells OnCompileFinished at once that it failed, and why
 *   a second CompileGameProject        tells OnCompileFinished at once that it is refused; the first goes on
 *   hot reload's event                 tells OnCompileFinished the captured lines and how it went
 *   no event for half an hour          tells OnCompileFinished that it failed; later while hot reload is compiling
 */
class KESTREL_API FCompilationManager
{
public:
	DECLARE_MULTICAST_DELEGATE_FourParams(FOnCompileFinished, const TArray<TSharedPtr<FJsonObject>>& /*Messages*/,
		const FString& /*ToolId*/, const FString& /*LogText*/, bool /*bSuccess*/);

	/** Why a second compile is refused. */
	static const TCHAR* const AlreadyRunning;

	/**
	 * @param ToolId    comes back with the result: the id of a tool use, or a label of the caller's
	 * @param Messages  the conversation so far; comes back with the result
	 */
	static void CompileGameProject(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages);
	static void CompileGameWithHotReload();
	static bool IsCompiling() { return CompilationManagerDelegateHandle.IsValid(); }
	/**
	 * Waits for hot reload's event under the tool id of the last CompileGameProject.
	 *
	 * @param LongestSeconds  when to give up; as long as hot reload is compiling it is not given up
	 */
	static void WaitForEvent(IHotReloadInterface& HotReload, double LongestSeconds);

	/** Starts again with an empty list of captured lines. */
	static void CaptureCompilationLogs();
	static void OnHotReloadCompilationFinished(const FString& LogText, ECompilationResult::Type Result, bool bShowLog);
	/** The lines captured since the last start; none before the first. */
	static TArray<FString> GetCompilationLogs();
	/** Those of them that contain a text, in any letter case. */
	static TArray<FString> FilterCompilationErrors(const FString& Text);

	static FOnCompileFinished& OnCompileFinished() { return CompileFinished; }
	/** Forgets a compile that is going on, before the plugin goes. */
	static void Shutdown();

private:
	/** Tells OnCompileFinished, and the person at the panel, why there is no result of a compiler. */
	static void Fail(const FString& Reason);
	/** Ends the wait with a failure when it has taken too long. @return whether it goes on */
	static bool CheckWait(double GiveUpAt);
	static void StopWaiting();
	static void StopCapturing();

	static TArray<TSharedPtr<FJsonObject>> StoredMessages;
	static FString SharedToolId;
	static TSharedPtr<FCompilationLogOutputDevice> LogOutputDevice;
	static FDelegateHandle CompilationManagerDelegateHandle; // valid while a compile is going on
	static FTSTicker::FDelegateHandle WaitTickerHandle;
	static FOnCompileFinished CompileFinished;
};
