#include "Agent/BlueprintLookup.h"

#include "Agent/BlueprintDocument.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Agent/MessageCapture.h"
#include "Agent/TypeLookup.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "BehaviorTree/BehaviorTree.h"
#include "Engine/Blueprint.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "UObject/UObjectIterator.h"

namespace BlueprintLookup
{
IAssetRegistry& GetRegistry()
{
	return FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry").Get();
}

TArray<FAssetData> ListKnown(const IAssetRegistry& Registry, const UClass& Class)
{
	constexpr bool bSearchSubClasses = true;
	TArray<FAssetData> Assets;
	Registry.GetAssetsByClass(Class.GetClassPathName(), Assets, bSearchSubClasses);
	return Assets;
}

bool FindKnown(const IAssetRegistry& Registry, const UClass& Class, FName Name, FAssetData& OutAsset)
{
	const TArray<FAssetData> Assets = ListKnown(Registry, Class);
	// Names compare without letter case.
	const FAssetData* Found =
		Assets.FindByPredicate([Name](const FAssetData& Asset) { return Asset.AssetName == Name; });
	if (Found)
	{
		OutAsset = *Found;
	}
	return Found != nullptr;
}

/** The registry forgets an asset whose file it could not read, even if only for a moment. */
template <typename AssetType>
AssetType* FindInMemory(FName Name)
{
	for (TObjectIterator<AssetType> It; It; ++It)
	{
		if (IsValid(*It) && It->GetFName() == Name && It->IsAsset())
		{
			return *It;
		}
	}
	return nullptr;
}

/** A package of the project that is named like the asset and of which the registry knows no asset; empty for none. */
FString FindUnlistedPackage(const FString& Name)
{
	const FString FileName = Name + FPackageName::GetAssetPackageExtension();
	const TArray<FString> Files = FKestrelFolder::FindFiles(FPaths::ProjectContentDir(),
		[&FileName](const FString& Each) { return Each.Equals(FileName, ESearchCase::IgnoreCase); });
	for (const FString& File : Files)
	{
		FString Package;
		TArray<FAssetData> Assets;
		if (FPackageName::TryConvertFilenameToLongPackageName(File, Package) &&
			KestrelBlueprintDocument::CanBeName(Package) &&
			!GetRegistry().GetAssetsByPackageName(FName(*Package), Assets))
		{
			return Package;
		}
	}
	return FString();
}

template <typename AssetType>
AssetType* LoadPath(const TCHAR* Kind, const FString& Name, const FString& ObjectPath, FString& OutError)
{
	const FKestrelLogCapture Log;
	AssetType* Asset = Cast<AssetType>(FSoftObjectPath(ObjectPath).TryLoad());
	if (!Asset)
	{
		OutError = FString::Printf(TEXT("%s '%s' could not be loaded from '%s'. %s"), Kind, *Name,
			*FPackageName::ObjectPathToPackageName(ObjectPath), *Log.GetReason());
	}
	return Asset;
}

template <typename AssetType>
AssetType* Load(const TCHAR* Kind, const FString& Name, FString& OutError)
{
	FAssetData Data;
	if (KestrelBlueprintLookup::FindAsset(*AssetType::StaticClass(), Name, Data))
	{
		return LoadPath<AssetType>(Kind, Name, Data.GetObjectPathString(), OutError);
	}
	OutError = FString::Printf(TEXT("%s '%s' not found."), Kind, *Name);
	if (!KestrelBlueprintDocument::CanBeName(Name))
	{
		return nullptr;
	}
	if (AssetType* InMemory = FindInMemory<AssetType>(FName(*Name)))
	{
		return InMemory;
	}
	const FString Package = FindUnlistedPackage(Name);
	return Package.IsEmpty()
			   ? nullptr
			   : LoadPath<AssetType>(Kind, Name, Package + TEXT(".") + FPackageName::GetShortName(Package), OutError);
}
}

TArray<FAssetData> KestrelBlueprintLookup::ListAssets(const UClass& Class)
{
	IAssetRegistry& Registry = BlueprintLookup::GetRegistry();
	if (Registry.IsLoadingAssets())
	{
		Registry.WaitForCompletion();
	}
	return BlueprintLookup::ListKnown(Registry, Class);
}

bool KestrelBlueprintLookup::FindAsset(const UClass& Class, const FString& Name, FAssetData& OutAsset)
{
	if (!KestrelBlueprintDocument::CanBeName(Name))
	{
		return false;
	}
	IAssetRegistry& Registry = BlueprintLookup::GetRegistry();
	if (BlueprintLookup::FindKnown(Registry, Class, FName(*Name), OutAsset))
	{
		return true;
	}
	if (!Registry.IsLoadingAssets())
	{
		return false;
	}
	Registry.WaitForCompletion(); // it may lie in any folder
	return BlueprintLookup::FindKnown(Registry, Class, FName(*Name), OutAsset);
}

UBlueprint* KestrelBlueprintLookup::LoadBlueprint(const FString& Name, FString& OutError)
{
	return BlueprintLookup::Load<UBlueprint>(TEXT("Blueprint"), Name, OutError);
}

UBehaviorTree* KestrelBlueprintLookup::LoadBehaviorTree(const FString& Name, FString& OutError)
{
	return BlueprintLookup::Load<UBehaviorTree>(TEXT("BehaviorTree"), Name, OutError);
}

UBlueprint* FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(const FString& BlueprintName)
{
	FString Ignored;
	return KestrelBlueprintLookup::LoadBlueprint(BlueprintName, Ignored);
}

UBehaviorTree* FKestrelBlueprintUtils::GetBehaviorTreeFromBehaviorTreeName(const FString& BehaviorTreeName)
{
	FString Ignored;
	return KestrelBlueprintLookup::LoadBehaviorTree(BehaviorTreeName, Ignored);
}

UClass* FKestrelBlueprintUtils::GetBlueprintClassFromBlueprintName(const FString& ClassName)
{
	if (UClass* Class = KestrelTypeLookup::FindClass(ClassName))
	{
		return Class;
	}
	FAssetData Asset;
	return KestrelBlueprintLookup::FindAsset(*UBlueprint::StaticClass(), ClassName, Asset)
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
