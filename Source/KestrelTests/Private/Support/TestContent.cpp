#include "Support/TestContent.h"

#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "HAL/FileManager.h"
#include "Misc/Guid.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Package.h"
#include "UObject/UObjectHash.h"
#include "UObject/UObjectIterator.h"

FKestrelTestContent::FKestrelTestContent()
	: Path(TEXT("/Game/KestrelTest") + FGuid::NewGuid().ToString())
{
}

FKestrelTestContent::~FKestrelTestContent()
{
	for (TObjectIterator<UPackage> It; It; ++It)
	{
		UObject* Asset = It->GetName().StartsWith(Path + TEXT("/")) ? It->FindAssetInPackage() : nullptr;
		if (Asset)
		{
			FAssetRegistryModule::AssetDeleted(Asset);
		}
	}
	Unload();
	IFileManager::Get().DeleteDirectory(
		*FPaths::GetPath(FPackageName::LongPackageNameToFilename(Path / TEXT("A"))), false, true);
	IAssetRegistry::Get()->ScanPathsSynchronous({ Path }, true);
}

UBlueprint* FKestrelTestContent::CreateBlueprint(const TCHAR* AssetName, const TCHAR* ParentClassName) const
{
	FKestrelBlueprintUtils::CreateBlueprintAsset(Path, AssetName, ParentClassName);
	return FindObject<UBlueprint>(nullptr, *FString::Printf(TEXT("%s/%s.%s"), *Path, AssetName, AssetName));
}

FString FKestrelTestContent::GetFile(const TCHAR* AssetName) const
{
	return FPackageName::LongPackageNameToFilename(Path / AssetName, FPackageName::GetAssetPackageExtension());
}

void FKestrelTestContent::Unload() const
{
	for (TObjectIterator<UPackage> It; It; ++It)
	{
		if (It->GetName().StartsWith(Path + TEXT("/")))
		{
			It->SetDirtyFlag(false);
			ForEachObjectWithOuter(*It, [](UObject* Object) { Object->ClearFlags(RF_Standalone); });
		}
	}
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
}

FEdGraphPinType KestrelTest::MakePinType(FName Category, FName SubCategory, UObject* Object)
{
	return FEdGraphPinType(Category, SubCategory, Object, EPinContainerType::None, false, FEdGraphTerminalType());
}
