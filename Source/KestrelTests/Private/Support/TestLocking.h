#pragma once

#include "CoreMinimal.h"
#include "Features/IModularFeatures.h"
#include "ISourceControlModule.h"
#include "ISourceControlProvider.h"
#include "ISourceControlState.h"
#include "Misc/Paths.h"

/** Works with Tests/LockingSourceControl as long as it lives, which a project has only when tests run in it. */
class FKestrelTestLocking
{
public:
	FKestrelTestLocking()
	{
		for (ISourceControlProvider* Provider :
			IModularFeatures::Get().GetModularFeatureImplementations<ISourceControlProvider>("SourceControl"))
		{
			bThere |= Provider->GetName() == FName("Locking");
		}
		if (bThere)
		{
			ISourceControlModule::Get().SetProvider("Locking");
		}
	}
	~FKestrelTestLocking()
	{
		if (bThere)
		{
			ISourceControlModule::Get().SetProvider("None");
		}
	}
	UE_NONCOPYABLE(FKestrelTestLocking)

	bool IsThere() const { return bThere; }

	static FSourceControlStatePtr GetState(const FString& File)
	{
		return ISourceControlModule::Get().GetProvider().GetState(
			FPaths::ConvertRelativePathToFull(File), EStateCacheUsage::ForceUpdate);
	}

private:
	bool bThere = false;
};
