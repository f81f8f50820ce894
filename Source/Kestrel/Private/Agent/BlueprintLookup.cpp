#include "Agent/BlueprintDocument.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "BehaviorTree/BehaviorTree.h"
#include "Engine/Blueprint.h"
#include "Misc/PackageName.h"
#include "Modules/ModuleManager.h"

namespace BlueprintLookup
{
/** The first asset of the class that has the name; of child classes none. */
bool FindAsset(const UClass& Class, const FString& Name, FAssetData& OutAsset)
{
	if (!KestrelBlueprintDocument::CanBeName(Name))
	{
		return false;
	}
	TArray<FAssetData> Assets;
	FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry")
		.Get()
		.GetAssetsByClass(Class.GetClassPathName(), Assets);
	// Names compare without letter case.
	const FName Wanted(*Name);
	const FAssetData* Found =
		Assets.FindByPredicate([Wanted](const FAssetData& Asset) { return Asset.AssetName == Wanted; });
	if (Found)
	{
		OutAsset = *Found;
	}
	return Found != nullptr;
}

template <typename AssetType>
AssetType* LoadAsset(const FString& Name)
{
	FAssetData Asset;
	return FindAsset(*AssetType::StaticClass(), Name, Asset) ? Cast<AssetType>(Asset.GetAsset()) : nullptr;
}
}

UBlueprint* FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(const FString& BlueprintName)
{
	return BlueprintLookup::LoadAsset<UBlueprint>(BlueprintName);
}

UBehaviorTree* FKestrelBlueprintUtils::GetBehaviorTreeFromBehaviorTreeName(const FString& BehaviorTreeName)
{
	return BlueprintLookup::LoadAsset<UBehaviorTree>(BehaviorTreeName);
}

UClass* FKestrelBlueprintUtils::GetBlueprintClassFromBlueprintName(const FString& ClassName)
{
	if (!KestrelBlueprintDocument::CanBeName(ClassName))
	{
		return nullptr;
	}
	if (UClass* Class = UClass::TryFindTypeSlowSafe<UClass>(ClassName))
	{
		return Class;
	}
	FAssetData Asset;
	return BlueprintLookup::FindAsset(*UBlueprint::StaticClass(), ClassName, Asset)
			   ? GetBlueprintClassFromAssetData(Asset)
			   : nullptr;
}

UClass* FKestrelBlueprintUtils::GetBlueprintClassFromAssetData(const FAssetData& AssetData)
{
	FString ExportPath;
	if (AssetData.GetTagValue(FBlueprintTags::GeneratedClassPath, ExportPath))
	{
		// The tag holds "Class'Path'", which cannot be loaded as it is.
		const FString ClassPath = FPackageName::ExportTextPathToObjectPath(ExportPath);
		UClass* Class =
			KestrelBlueprintDocument::CanBeLoaded(ClassPath) ? LoadObject<UClass>(nullptr, *ClassPath) : nullptr;
		if (Class)
		{
			return Class;
		}
	}
	return AssetData.GetClass();
}
