#include "AssetRegistry/HostForeignPackages.h"

#define LOCTEXT_NAMESPACE "HostForeignPackages"

FHostForeignPackages& FHostForeignPackages::Get()
{
	static FHostForeignPackages Packages;
	return Packages;
}

FText FHostForeignPackages::Describe(FName PackageName)
{
	return FText::Format(LOCTEXT("SavedByUnrealEditor", "{0} was saved by Unreal Editor and cannot be read here."),
		FText::FromName(PackageName));
}

bool FHostForeignPackages::Set(FName PackageName, bool bForeign)
{
	if (Names.Contains(PackageName) == bForeign)
	{
		return false;
	}
	if (bForeign)
	{
		Names.Add(PackageName);
	}
	else
	{
		Names.Remove(PackageName);
	}
	Changed.Broadcast(PackageName, bForeign);
	return true;
}

#undef LOCTEXT_NAMESPACE
