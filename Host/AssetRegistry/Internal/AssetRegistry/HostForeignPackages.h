#pragma once

#include "CoreMinimal.h"
#include "Delegates/Delegate.h"

/**
 * The packages of the project that Unreal Editor saved, in its binary form. They cannot be read here, so the registry
 * lists no asset of them; FPackageName::DoesPackageExist tells that they are there. Who shows the user what a project
 * holds shows them, too.
 */
class FHostForeignPackages
{
public:
	/** A package's name, and whether it is one of them now. */
	using FChangedEvent = TMulticastDelegate<void(FName, bool)>;

	static FHostForeignPackages& Get();

	/** By long names, as "/Game/Doors/BP_Gate". */
	const TSet<FName>& GetNames() const { return Names; }
	FChangedEvent& OnChanged() { return Changed; }
	/** "… was saved by Unreal Editor and cannot be read here." */
	static FText Describe(FName PackageName);

	/** For the registry. @return whether that was not known yet */
	bool Set(FName PackageName, bool bForeign);

private:
	TSet<FName> Names;
	FChangedEvent Changed;
};
