#include "Features/IModularFeatures.h"
#include "GitSourceControlProvider.h"
#include "ISourceControlModule.h"
#include "Misc/Paths.h"
#include "NoSourceControlProvider.h"

namespace SourceControlModule
{
/** Git, for a project whose own folder is a repository. One further up is somebody else's. Or what was asked for. */
class FSourceControlModule final : public ISourceControlModule
{
public:
	bool IsEnabled() const override { return GetProvider().IsEnabled(); }

	ISourceControlProvider& GetProvider() const override
	{
		return Chosen.IsNone() ? GetProviderOfProject() : GetRegistered(Chosen);
	}

	void SetProvider(const FName& InName) override { Chosen = InName; }

private:
	ISourceControlProvider& GetRegistered(FName Name) const
	{
		for (ISourceControlProvider* Provider :
			IModularFeatures::Get().GetModularFeatureImplementations<ISourceControlProvider>("SourceControl"))
		{
			if (Provider->GetName() == Name)
			{
				return *Provider;
			}
		}
		return None;
	}

	ISourceControlProvider& GetProviderOfProject() const
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

	FName Chosen; // none: the project's
	mutable FNoSourceControlProvider None;
	mutable TUniquePtr<FGitSourceControlProvider> Git; // made when it is asked for first
};
}

IMPLEMENT_MODULE(SourceControlModule::FSourceControlModule, SourceControl)
