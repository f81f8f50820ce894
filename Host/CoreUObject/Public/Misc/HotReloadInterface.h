#pragma once

#include "CoreMinimal.h"
#include "Misc/CompilationResult.h"
#include "Modules/ModuleInterface.h"

class UPackage;

enum class EHotReloadFlags : uint8
{
	None = 0x00,
	WaitForCompletion = 0x01,
};
ENUM_CLASS_FLAGS(EHotReloadFlags)

/**
 * Compiles the project's C++ modules while the editor runs, and puts the new code in place of the old.
 *
 * One compile runs at a time, in the background. All calls and events are on the game thread; the events also come for
 * compiles that somebody else has started.
 */
class IHotReloadInterface : public IModuleInterface
{
public:
	/** What the compiler printed, how it ended, and whether the log is worth showing. */
	DECLARE_MULTICAST_DELEGATE_ThreeParams(
		FModuleCompilerFinishedEvent, const FString&, ECompilationResult::Type, bool);

	/**
	 * Compiles the loaded game modules that have reflected types, and reloads those that were rebuilt.
	 *
	 * @return Succeeded when the compile was started: how it ends is told by OnModuleCompilerFinished. Any other value
	 *         means that nothing was started and that the event will not come; the reason is in the log.
	 */
	virtual ECompilationResult::Type DoHotReloadFromEditor(EHotReloadFlags Flags) = 0;
	/** The same for the modules of these packages ("/Script/<Module>"). */
	virtual ECompilationResult::Type RebindPackages(
		const TArray<UPackage*>& Packages, EHotReloadFlags Flags, FOutputDevice& Ar) = 0;

	virtual bool IsCurrentlyCompiling() const = 0;
	/** The compile that is going on ends with the result Canceled; without one, nothing happens. */
	virtual void RequestStopCompilation() = 0;
	virtual bool IsAnyGameModuleLoaded() = 0;
	/** "External" for a module that was compiled before this editor started, "Runtime" after a reload; or "Unknown". */
	virtual FString GetModuleCompileMethod(FName InModuleName) = 0;

	virtual FModuleCompilerFinishedEvent& OnModuleCompilerFinished() = 0;
};
