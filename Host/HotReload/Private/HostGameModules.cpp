#include "HostGameModules.h"

#include "GameBuild.h"
#include "HAL/PlatformProcess.h"
#include "HostModuleManifest.h"
#include "Misc/Paths.h"
#include "Misc/TerminalText.h"
#include "Modules/ModuleManager.h"

#include <cstdio>

namespace HostGameModules
{
constexpr float PollSeconds = 0.01f;

// Until then there is no telling what is going to be loaded.
bool bPrepared = false;

bool BuildAndWait(FString& OutErrors)
{
	FGameBuild Build;
	FText FailReason;
	if (!Build.Start(FailReason))
	{
		OutErrors = FailReason.ToString();
		return false;
	}
	while (Build.Tick())
	{
		FPlatformProcess::Sleep(PollSeconds);
	}
	OutErrors = FString::Join(Build.TakeLines(), LINE_TERMINATOR);
	return !ECompilationResult::Failed(Build.GetResult());
}
}

EGameModules FHostGameModules::Prepare(FString& OutErrors)
{
	const TArray<FString> Modules = FGameBuild::GetProjectModules();
	if (Modules.IsEmpty())
	{
		return EGameModules::Ready;
	}
	HostGameModules::bPrepared = true;
	OutErrors = FGameBuild::DescribeMissingDependencies();
	if (!OutErrors.IsEmpty())
	{
		return EGameModules::NotForThisEditor;
	}
	if (!FGameBuild::AreLibrariesUsable())
	{
		std::fprintf(stderr, "Building the project's C++ modules (%s) ...\n",
			TCHAR_TO_UTF8(*MakeTerminalText(FString::Join(Modules, TEXT(", ")))));
		if (!HostGameModules::BuildAndWait(OutErrors))
		{
			return EGameModules::CannotBeBuilt;
		}
	}
	OutErrors.Empty();
	FGameBuild::DeleteOldLibraries();
	FHostModuleManifest Manifest;
	Manifest.Load(FPaths::ProjectDir());
	Manifest.Announce(FPaths::ProjectDir());
	return EGameModules::Ready;
}

bool FHostGameModules::AreSomeNotLoaded()
{
	return HostGameModules::bPrepared && FGameBuild::GetProjectModules().ContainsByPredicate([](const FString& Module) {
		return !FModuleManager::Get().IsModuleLoaded(FName(*Module));
	});
}
