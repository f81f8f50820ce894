#include "HostGameModules.h"

#include "GameBuild.h"
#include "HAL/PlatformProcess.h"
#include "HostModuleManifest.h"
#include "Misc/Paths.h"

#include <cstdio>

namespace HostGameModules
{
constexpr float PollSeconds = 0.01f;

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
	const TArray<FString> Missing = FGameBuild::FindMissingDependencies();
	if (!Missing.IsEmpty())
	{
		OutErrors = TEXT("they need modules that this editor does not have: ") + FString::Join(Missing, TEXT(", "));
		return EGameModules::NotForThisEditor;
	}
	if (!FGameBuild::AreLibrariesUsable())
	{
		std::fprintf(stderr, "Building the project's C++ modules (%s) ...\n",
			TCHAR_TO_UTF8(*FString::Join(Modules, TEXT(", "))));
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
