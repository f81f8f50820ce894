#include "Agent/BlueprintPackage.h"

#include "Engine/Blueprint.h"
#include "Misc/FeedbackContext.h"
#include "Misc/PackageName.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"

bool KestrelBlueprintPackage::Save(UBlueprint& Blueprint, EObjectFlags TopLevelFlags)
{
	UPackage* Package = Blueprint.GetOutermost();
	FString FileName;
	if (!FPackageName::TryConvertLongPackageNameToFilename(
			Package->GetName(), FileName, FPackageName::GetAssetPackageExtension()))
	{
		return false;
	}
	FSavePackageArgs Args;
	Args.TopLevelFlags = TopLevelFlags;
	Args.Error = GWarn; // the default ends the process
	return UPackage::Save(Package, &Blueprint, *FileName, Args).Result == ESavePackageResult::Success;
}
