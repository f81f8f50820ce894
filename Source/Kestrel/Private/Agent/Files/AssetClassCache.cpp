#include "Agent/Files/AssetClassCache.h"

#include "Agent/Files/FileUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "UObject/TopLevelAssetPath.h"

namespace AssetClassCache
{
FString CacheFile()
{
	return FPaths::ConvertRelativePathToFull(
		FPaths::ProjectPluginsDir() / TEXT("kestrel-unreal") / TEXT("Saved") / TEXT("AssetClassCache.log"));
}

/** The class of the package's asset, as far as the registry has come. */
FName AskRegistry(const IAssetRegistry& Registry, const FString& PackageName)
{
	TArray<FAssetData> Assets;
	Registry.GetAssetsByPackageName(FName(*PackageName), Assets);
	return Assets.IsEmpty() ? FName() : Assets[0].AssetClassPath.GetAssetName();
}
}

FAssetClassCache& FAssetClassCache::Get()
{
	static FAssetClassCache Instance;
	return Instance;
}

FName FAssetClassCache::FindClass(const FString& FileName)
{
	FString PackageName;
	if (!FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName))
	{
		return FName();
	}
	Load();
	const IAssetRegistry& Registry = FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry").Get();
	const FName ClassName = AssetClassCache::AskRegistry(Registry, PackageName);
	if (ClassName.IsNone() && Registry.IsLoadingAssets())
	{
		return Classes.FindRef(PackageName);
	}
	Remember(PackageName, ClassName);
	return ClassName;
}

void FAssetClassCache::Remember(const FString& PackageName, FName ClassName)
{
	if (Classes.FindRef(PackageName) == ClassName)
	{
		return;
	}
	bChanged = true;
	if (ClassName.IsNone())
	{
		Classes.Remove(PackageName);
		return;
	}
	Classes.Add(PackageName, ClassName);
}

void FAssetClassCache::Load()
{
	if (bLoaded)
	{
		return;
	}
	bLoaded = true;
	TArray<FString> Lines;
	FFileHelper::LoadFileToStringArray(Lines, *AssetClassCache::CacheFile());
	for (const FString& Line : Lines)
	{
		FString PackageName;
		FString ClassName;
		if (Line.Split(TEXT("="), &PackageName, &ClassName, ESearchCase::CaseSensitive, ESearchDir::FromEnd))
		{
			Classes.Add(PackageName, FName(*ClassName));
		}
	}
}

void FAssetClassCache::Save()
{
	if (!bChanged)
	{
		return;
	}
	bChanged = false;
	TArray<FString> Lines;
	for (const auto& Pair : Classes)
	{
		Lines.Add(FString::Printf(TEXT("%s=%s"), *Pair.Key, *Pair.Value.ToString()));
	}
	FFileHelper::SaveStringArrayToFile(
		Lines, *AssetClassCache::CacheFile(), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

void FAssetClassCache::Reload()
{
	Classes.Empty();
	bLoaded = false;
	bChanged = false;
}

bool FFileUtils::FileMatchesAssetClassPatterns(const FString& FolderPath, const FString& FileName,
	const TSet<FName>& EnabledAssetClassPatterns, FName& OutClassName)
{
	OutClassName = FName();
	const FString Extension = FPaths::GetExtension(FileName, true);
	if (Extension != FPackageName::GetAssetPackageExtension() && Extension != FPackageName::GetMapPackageExtension())
	{
		return true;
	}
	const FName ClassName = FAssetClassCache::Get().FindClass(FolderPath / FileName);
	for (const FName Pattern : EnabledAssetClassPatterns)
	{
		if (!ClassName.IsNone() && ClassName.ToString().MatchesWildcard(Pattern.ToString()))
		{
			OutClassName = ClassName;
			return true;
		}
	}
	return false;
}
