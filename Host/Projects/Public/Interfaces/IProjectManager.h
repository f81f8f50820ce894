#pragma once

#include "ProjectDescriptor.h"

/** The project that the editor has open. */
class IProjectManager
{
public:
	static IProjectManager& Get();

	/** Opens a project: FPaths knows its directories from then on. */
	bool LoadProjectFile(const FString& ProjectFile, FText& OutFailReason);
	/** Null before a project has been opened. */
	const FProjectDescriptor* GetCurrentProject() const { return bLoaded ? &Project : nullptr; }

private:
	FProjectDescriptor Project;
	bool bLoaded = false;
};
