#include "Interfaces/IProjectManager.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"

IProjectManager& IProjectManager::Get()
{
	static IProjectManager Manager;
	return Manager;
}

bool IProjectManager::LoadProjectFile(const FString& ProjectFile, FText& OutFailReason)
{
	FProjectDescriptor Loaded;
	if (!Loaded.Load(ProjectFile, OutFailReason))
	{
		return false;
	}
	Project = MoveTemp(Loaded);
	bLoaded = true;
	FPaths::SetProjectFilePath(ProjectFile);
	return true;
}

bool IProjectManager::LoadModulesForProject(const ELoadingPhase::Type LoadingPhase)
{
	bool bAllLoaded = true;
	for (const FModuleDescriptor& Module : Project.Modules)
	{
		if (Module.LoadingPhase == LoadingPhase && Module.IsLoadedInEditor())
		{
			bAllLoaded &= FModuleManager::Get().LoadModule(Module.Name) != nullptr;
		}
	}
	return bAllLoaded;
}
