#include "Agent/Blueprints/Assets/BlueprintLookup.h"

#include "Agent/Blueprints/Assets/MessageCapture.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Text/ClosestNames.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "BehaviorTree/BehaviorTree.h"
#include "Engine/Blueprint.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/UObjectHash.h"

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

const FAssetData* FindNamed(const TArray<FAssetData>& Assets, FName Name)
{
	// Names compare without letter case.
	return Assets.FindByPredicate([Name](const FAssetData& Asset) { return Asset.AssetName == Name; });
}

bool FindKnown(const IAssetRegistry& Registry, const UClass& Class, FName Name, FAssetData& OutAsset)
{
	const TArray<FAssetData> Assets = ListKnown(Registry, Class);
	const FAssetData* Found = FindNamed(Assets, Name);
	if (Found)
	{
		OutAsset = *Found;
	}
	return Found != nullptr;
}

/** The registry forgets an asset whose file it could not read, even if only for a moment. */
FString FindInMemory(const UClass& Class, FName Name)
{
	TArray<UObject*> Objects;
	GetObjectsOfClass(&Class, Objects);
	for (const UObject* Object : Objects)
	{
		if (IsValid(Object) && Object->GetFName() == Name && Object->IsAsset())
		{
			return Object->GetPathName();
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
AssetType* Load(const TCHAR* Kind, const FKestrelAssetAddress& Address, FString& OutError)
{
	if (!Address.IsFound())
	{
		OutError = FString::Printf(TEXT("%s '%s' not found."), Kind, *Address.Name);
		return nullptr;
	}
	return LoadPath<AssetType>(Kind, Address.Name, Address.ObjectPath, OutError);
}
}

FString FKestrelAssetAddress::GetPackageName() const
{
	return FPackageName::ObjectPathToPackageName(ObjectPath);
}

FKestrelAssetAddress FKestrelAssetFinder::Find(const UClass& Class, const FString& Name)
{
	FKestrelAssetAddress Address{ Name, FString() };
	if (!KestrelBlueprintDocument::FitsName(Name))
	{
		return Address;
	}
	Address.ObjectPath = FindListed(Class, FName(*Name));
	if (!Address.IsFound())
	{
		Address.ObjectPath = BlueprintLookup::FindInMemory(Class, FName(*Name));
	}
	if (!Address.IsFound())
	{
		Address.ObjectPath = FindUnlisted(Name);
	}
	return Address;
}

FString FKestrelAssetFinder::FindListed(const UClass& Class, FName Name)
{
	IAssetRegistry& Registry = BlueprintLookup::GetRegistry();
	TArray<FAssetData>* Assets = Listed.Find(Class.GetFName());
	if (!Assets)
	{
		Assets = &Listed.Add(Class.GetFName(), BlueprintLookup::ListKnown(Registry, Class));
	}
	const FAssetData* Found = BlueprintLookup::FindNamed(*Assets, Name);
	if (!Found && Registry.IsLoadingAssets())
	{
		*Assets = KestrelBlueprintLookup::ListAssets(Class); // it may lie in any folder
		Found = BlueprintLookup::FindNamed(*Assets, Name);
	}
	return Found ? Found->GetObjectPathString() : FString();
}

TArray<FString> FKestrelAssetFinder::FindClosest(const UClass& Class, const FString& Name)
{
	TArray<FString> Names;
	if (const TArray<FAssetData>* Assets = Listed.Find(Class.GetFName()))
	{
		for (int32 Index = 0; Index < FMath::Min(Assets->Num(), KestrelClosestNames::MaxCandidates); ++Index)
		{
			Names.Add((*Assets)[Index].AssetName.ToString());
		}
	}
	return KestrelClosestNames::Find(Name, Names);
}

FString FKestrelAssetFinder::FindUnlisted(const FString& Name)
{
	if (!PackagesByName.IsSet())
	{
		PackagesByName.Emplace();
		const TArray<FString> Files = FKestrelFileWalk::FindAll(FPaths::ProjectContentDir(), [](const FString& Each) {
			return Each.EndsWith(FPackageName::GetAssetPackageExtension(), ESearchCase::IgnoreCase);
		});
		for (const FString& File : Files)
		{
			FString Package;
			if (FPackageName::TryConvertFilenameToLongPackageName(File, Package))
			{
				PackagesByName->FindOrAdd(FPackageName::GetShortName(Package)).Add(Package);
			}
		}
	}
	for (const FString& Package : PackagesByName->FindRef(Name))
	{
		TArray<FAssetData> Assets;
		if (KestrelBlueprintDocument::FitsName(Package) &&
			!BlueprintLookup::GetRegistry().GetAssetsByPackageName(FName(*Package), Assets))
		{
			return Package + TEXT(".") + FPackageName::GetShortName(Package);
		}
	}
	return FString();
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
	if (!KestrelBlueprintDocument::FitsName(Name))
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

UBlueprint* KestrelBlueprintLookup::LoadBlueprint(const FKestrelAssetAddress& Address, FString& OutError)
{
	return BlueprintLookup::Load<UBlueprint>(TEXT("Blueprint"), Address, OutError);
}

UBlueprint* KestrelBlueprintLookup::LoadBlueprint(const FString& Name, FString& OutError)
{
	return LoadBlueprint(FKestrelAssetFinder().Find(*UBlueprint::StaticClass(), Name), OutError);
}

UBehaviorTree* KestrelBlueprintLookup::LoadBehaviorTree(const FKestrelAssetAddress& Address, FString& OutError)
{
	return BlueprintLookup::Load<UBehaviorTree>(TEXT("BehaviorTree"), Address, OutError);
}

UBehaviorTree* KestrelBlueprintLookup::LoadBehaviorTree(const FString& Name, FString& OutError)
{
	return LoadBehaviorTree(FKestrelAssetFinder().Find(*UBehaviorTree::StaticClass(), Name), OutError);
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
