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

enum class ERecompileModuleFlags
{
	None = 0x00,
	ReloadAfterRecompile = 0x01,
	FailIfGeneratedCodeChanges = 0x02,
	ForceCodeProject = 0x04,
};
ENUM_CLASS_FLAGS(ERecompileModuleFlags)

/**
 * Compiles the project's C++ modules while the editor runs, and puts the new code in place of the old.
 *
 * One compile runs at a time, in the background. All calls and events are on the game thread; the events also come for
 * compiles that somebody else has started.
 */
class IHotReloadInterface : public IModuleInterface
{
public:
	/** bIsAsyncCompile */
	DECLARE_MULTICAST_DELEGATE_OneParam(FModuleCompilerStartedEvent, bool);
	/** What the compiler printed, how it ended, and whether the log is worth showing. */
	DECLARE_MULTICAST_DELEGATE_ThreeParams(
		FModuleCompilerFinishedEvent, const FString&, ECompilationResult::Type, bool);
	/** bWasTriggeredAutomatically: the code was compiled outside of the editor. */
	DECLARE_MULTICAST_DELEGATE_OneParam(FHotReloadEvent, bool);

	/** Null while the module "HotReload" is not loaded. */
	static IHotReloadInterface* GetPtr();

	/**
	 * Compiles the loaded game modules that have reflected types, and reloads those that came out anew.
	 *
	 * @return Succeeded when the compile was started: how it ends is told by OnModuleCompilerFinished. Any other value
	 *         means that nothing was started and that the event will not come; the reason is in the log.
	 */
	virtual ECompilationResult::Type DoHotReloadFromEditor(EHotReloadFlags Flags) = 0;
	/** The same for the modules of these packages ("/Script/<Module>"). */
	virtual ECompilationResult::Type RebindPackages(
		const TArray<UPackage*>& Packages, EHotReloadFlags Flags, FOutputDevice& Ar) = 0;
	/**
	 * Compiles one module of the project and waits for the end of it, which is told by the event as well.
	 *
	 * @param Ar  gets what the compiler prints
	 * @return false when the module cannot be compiled or, with ReloadAfterRecompile, not be loaded
	 */
	virtual bool RecompileModule(const FName InModuleName, FOutputDevice& Ar, ERecompileModuleFlags Flags) = 0;

	virtual bool IsCurrentlyCompiling() const = 0;
	/** The compile that is going on ends with the result Canceled; without one, nothing happens. */
	virtual void RequestStopCompilation() = 0;
	virtual bool IsAnyGameModuleLoaded() = 0;
	/** "External" for a module that was compiled before this editor started, "Runtime" after a reload; or "Unknown". */
	virtual FString GetModuleCompileMethod(FName InModuleName) = 0;

	virtual FModuleCompilerStartedEvent& OnModuleCompilerStarted() = 0;
	virtual FModuleCompilerFinishedEvent& OnModuleCompilerFinished() = 0;
	/** After the new code and its types are in place. */
	virtual FHotReloadEvent& OnHotReload() = 0;
};
