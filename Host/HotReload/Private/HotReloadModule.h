#pragma once

#include "Containers/Ticker.h"
#include "GameBuild.h"
#include "IHotReload.h"

/** Runs one build of the project's modules at a time, and loads what comes out of it. */
class FHotReloadModule final : public IHotReloadModule
{
public:
	void ShutdownModule() override;

	ECompilationResult::Type DoHotReloadFromEditor(EHotReloadFlags Flags) override;
	ECompilationResult::Type RebindPackages(
		const TArray<UPackage*>& Packages, EHotReloadFlags Flags, FOutputDevice& Ar) override;
	bool IsCurrentlyCompiling() const override { return Build.IsValid(); }
	void RequestStopCompilation() override;
	bool IsAnyGameModuleLoaded() override;
	FString GetModuleCompileMethod(FName InModuleName) override;
	FModuleCompilerFinishedEvent& OnModuleCompilerFinished() override { return FinishedEvent; }

private:
	ECompilationResult::Type Compile(EHotReloadFlags Flags, FOutputDevice& Ar);
	bool StartBuild(FOutputDevice& Ar);
	/** Waits for the build that was started last. */
	ECompilationResult::Type FinishBuild();
	bool Tick(float);
	void LogLines();
	void EndBuild();
	bool ReloadModules(const TArray<TPair<FName, FString>>& Libraries);
	bool LoadForTheFirstTime(FName Module, const FString& Library);
	void LetGoOfBuild();

	TUniquePtr<FGameBuild> Build;
	FString Output; // of the build that runs
	ECompilationResult::Type LastResult = ECompilationResult::Unknown;
	FTSTicker::FDelegateHandle TickerHandle;
	TArray<FName> ReloadedModules;
	FModuleCompilerFinishedEvent FinishedEvent;
};
