#include "AssetRegistry.h"

#include "HAL/FileManager.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "PackageHeader.h"
#include "UObject/Class.h"
#include "UObject/UObjectHash.h"

DEFINE_LOG_CATEGORY_STATIC(LogAssetRegistry, Log, All);

namespace AssetRegistry
{
// A frame's share of the scan; a header takes some 20 microseconds to read.
constexpr int32 FilesPerTick = 100;

TArray<FString> FindPackageFiles()
{
	TArray<FString> Files;
	for (const FString& Extension :
		{ FPackageName::GetAssetPackageExtension(), FPackageName::GetMapPackageExtension() })
	{
		IFileManager::Get().FindFilesRecursive(
			Files, *FPaths::ProjectContentDir(), *(TEXT("*") + Extension), true, false, false);
	}
	return Files;
}

/** The class's path and, if wanted, those of all loaded classes below it. */
TArray<FTopLevelAssetPath> WithSubClasses(const FTopLevelAssetPath& ClassPath, bool bSearchSubClasses)
{
	TArray<FTopLevelAssetPath> Paths = { ClassPath };
	const UClass* Class = bSearchSubClasses ? FindObject<UClass>(nullptr, *ClassPath.ToString()) : nullptr;
	if (Class)
	{
		TArray<UClass*> SubClasses;
		GetDerivedClasses(Class, SubClasses);
		for (const UClass* SubClass : SubClasses)
		{
			Paths.Add(FTopLevelAssetPath(SubClass->GetPathName()));
		}
	}
	return Paths;
}
}

FAssetRegistry::FAssetRegistry()
	: Files(AssetRegistry::FindPackageFiles())
{
	if (IsLoadingAssets())
	{
		Ticker = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateRaw(this, &FAssetRegistry::ScanSome));
	}
}

FAssetRegistry::~FAssetRegistry()
{
	FTSTicker::RemoveTicker(Ticker);
}

bool FAssetRegistry::ScanSome(float)
{
	for (int32 Count = 0; Count < AssetRegistry::FilesPerTick && IsLoadingAssets(); ++Count)
	{
		ScanFile(Files[NextFile++]);
	}
	if (IsLoadingAssets())
	{
		return true;
	}
	Files.Empty();
	NextFile = 0;
	FilesLoaded.Broadcast();
	return false;
}

void FAssetRegistry::WaitForCompletion()
{
	if (IsLoadingAssets())
	{
		while (ScanSome(0.0f))
		{
		}
		FTSTicker::RemoveTicker(Ticker);
	}
}

void FAssetRegistry::ScanFile(const FString& FileName)
{
	FString PackageName;
	if (!FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName))
	{
		return;
	}
	AssetsByPackage.Remove(FName(*PackageName));
	if (!FPaths::FileExists(FileName))
	{
		return;
	}
	TArray<FAssetData> Assets;
	switch (PackageHeader::Load(FileName, PackageName, Assets))
	{
	case PackageHeader::EResult::Binary:
		UE_LOG(LogAssetRegistry, Warning,
			TEXT("%s was written by the real engine. It cannot be read here and is left alone."), *FileName);
		break;
	case PackageHeader::EResult::Unreadable:
		UE_LOG(LogAssetRegistry, Warning, TEXT("%s is no package that can be read."), *FileName);
		break;
	case PackageHeader::EResult::Read:
		break;
	}
	AssetsByPackage.Add(FName(*PackageName), Assets);
}

void FAssetRegistry::ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan)
{
	for (const FString& FileName : InFilePaths)
	{
		FString PackageName;
		const bool bKnown = FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName) &&
							AssetsByPackage.Contains(FName(*PackageName));
		if (bForceRescan || !bKnown || !FPaths::FileExists(FileName))
		{
			ScanFile(FileName);
		}
	}
}

bool FAssetRegistry::GetAssetsByPackageName(FName PackageName, TArray<FAssetData>& OutAssetData, bool, bool) const
{
	const TArray<FAssetData>* Assets = AssetsByPackage.Find(PackageName);
	if (!Assets || Assets->IsEmpty())
	{
		return false;
	}
	OutAssetData.Append(*Assets);
	return true;
}

bool FAssetRegistry::GetAssetsByClass(
	FTopLevelAssetPath ClassPathName, TArray<FAssetData>& OutAssetData, bool bSearchSubClasses) const
{
	const TArray<FTopLevelAssetPath> Wanted = AssetRegistry::WithSubClasses(ClassPathName, bSearchSubClasses);
	for (const auto& Pair : AssetsByPackage)
	{
		for (const FAssetData& Asset : Pair.Value)
		{
			if (Wanted.Contains(Asset.AssetClassPath))
			{
				OutAssetData.Add(Asset);
			}
		}
	}
	return ClassPathName.IsValid();
}

bool FAssetRegistry::GetAllAssets(TArray<FAssetData>& OutAssetData, bool) const
{
	for (const auto& Pair : AssetsByPackage)
	{
		OutAssetData.Append(Pair.Value);
	}
	return true;
}
