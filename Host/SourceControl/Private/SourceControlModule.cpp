#include "GitSourceControlProvider.h"
#include "ISourceControlModule.h"
#include "Misc/Paths.h"
#include "NoSourceControlProvider.h"

namespace SourceControlModule
{
/** Git, for a project whose own folder is a repository. One further up is somebody else's. */
class FSourceControlModule final : public ISourceControlModule
{
public:
	bool IsEnabled() const override { return GetProvider().IsEnabled(); }

	ISourceControlProvider& GetProvider() const override
	{
		FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
		FPaths::NormalizeDirectoryName(ProjectDir);
		if (!FPaths::IsProjectFilePathSet() || !FGitRepository::HasRepository(ProjectDir))
		{
			return None;
		}
		if (!Git || !Git->GetWorkTree().Equals(ProjectDir))
		{
			Git = MakeUnique<FGitSourceControlProvider>(ProjectDir);
		}
		return *Git;
	}

private:
	mutable FNoSourceControlProvider None;
	mutable TUniquePtr<FGitSourceControlProvider> Git; // made when it is asked for first
};
}

IMPLEMENT_MODULE(SourceControlModule::FSourceControlModule, SourceControl)
