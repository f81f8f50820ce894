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

bool FHostGameModules::Prepare(FString& OutErrors)
{
	const TArray<FString> Modules = FGameBuild::GetProjectModules();
	if (Modules.IsEmpty())
	{
		return true;
	}
	if (!FGameBuild::AreLibrariesUsable())
	{
		std::fprintf(stderr, "Building the project's C++ modules (%s) ...\n",
			TCHAR_TO_UTF8(*FString::Join(Modules, TEXT(", "))));
		if (!HostGameModules::BuildAndWait(OutErrors))
		{
			return false;
		}
	}
	OutErrors.Empty();
	FGameBuild::DeleteOldLibraries();
	FHostModuleManifest Manifest;
	Manifest.Load(FPaths::ProjectDir());
	Manifest.Announce(FPaths::ProjectDir());
	return true;
}
