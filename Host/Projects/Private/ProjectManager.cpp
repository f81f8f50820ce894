#include "Interfaces/IProjectManager.h"
#include "Misc/Paths.h"

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
