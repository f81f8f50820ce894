#include "Assets.h"
#include "HostGameModules.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"

#include <clocale>
#include <cstdio>

namespace HarrierContentMain
{
bool OpenProject(const FString& ProjectFile)
{
	FText FailReason;
	if (!IProjectManager::Get().LoadProjectFile(ProjectFile, FailReason))
	{
		std::fprintf(stderr, "The project cannot be opened: %s\n", TCHAR_TO_UTF8(*FailReason.ToString()));
		return false;
	}
	FConfigCacheIni::InitializeConfigSystem();
	FString Errors;
	if (FHostGameModules::Prepare(Errors) != EGameModules::Ready)
	{
		std::fprintf(stderr, "The project's modules cannot be built:\n%s\n", TCHAR_TO_UTF8(*Errors));
		return false;
	}
	FModuleManager::Get().LoadModuleChecked(TEXT("UnrealEd"));
	return IProjectManager::Get().LoadModulesForProject(ELoadingPhase::Default);
}
}

/** HarrierContent <project file>: makes the assets in the project's Content folder. */
int main(int ArgC, char* ArgV[])
{
	std::setlocale(LC_CTYPE, "C.UTF-8");
	FCommandLine::Set(*FCommandLine::BuildFromArgV(ArgC, ArgV));
	const TCHAR* Stream = FCommandLine::Get();
	const FString ProjectFile = FCommandLine::Token(Stream);
	if (ProjectFile.IsEmpty())
	{
		std::fprintf(stderr, "Usage: HarrierContent <project.uproject>\n");
		return 2;
	}
	if (!HarrierContentMain::OpenProject(ProjectFile))
	{
		return 1;
	}
	HarrierContent::MakeLedger();
	HarrierContent::MakeWarden();
	HarrierContent::MakeNightWarden();
	HarrierContent::MakeWardenTree();
	return 0;
}
