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
	/**
	 * Loads the project's own modules of this phase; where they lie must be known.
	 *
	 * @return false when one of them cannot be loaded; the reason is in the log
	 */
	bool LoadModulesForProject(const ELoadingPhase::Type LoadingPhase);

private:
	FProjectDescriptor Project;
	bool bLoaded = false;
};
