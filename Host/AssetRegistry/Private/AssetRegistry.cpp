#include "AssetRegistry.h"

#include "AssetRegistry/HostForeignPackages.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"
#include "UObject/PackageHeader.h"
#include "UObject/UObjectHash.h"

DEFINE_LOG_CATEGORY_STATIC(LogAssetRegistry, Log, All);

namespace AssetRegistry
{
// A frame's share of the scan; a header takes some 20 microseconds to read.
constexpr int32 FilesPerTick = 100;

void FindPackageFiles(const FString& Folder, TArray<FString>& OutFiles)
{
	for (const FString& Extension :
		{ FPackageName::GetAssetPackageExtension(), FPackageName::GetMapPackageExtension() })
	{
		IFileManager::Get().FindFilesRecursive(OutFiles, *Folder, *(TEXT("*") + Extension), true, false, false);
	}
}

TArray<FString> FindAllPackageFiles()
{
	TArray<FString> Roots;
	FPackageName::QueryRootContentPaths(Roots);
	TArray<FString> Files;
	for (const FString& Root : Roots)
	{
		FindPackageFiles(FPackageName::LongPackageNameToFilename(Root), Files);
	}
	return Files;
}

/** The classes' paths and, if wanted, those of all loaded classes below them. */
TSet<FTopLevelAssetPath> WithSubClasses(const TArray<FTopLevelAssetPath>& ClassPaths, bool bSearchSubClasses)
{
	TSet<FTopLevelAssetPath> Paths;
	for (const FTopLevelAssetPath& ClassPath : ClassPaths)
	{
		Paths.Add(ClassPath);
		const UClass* Class = bSearchSubClasses ? FindObject<UClass>(nullptr, *ClassPath.ToString()) : nullptr;
		TArray<UClass*> SubClasses;
		if (Class)
		{
			GetDerivedClasses(Class, SubClasses);
		}
		for (const UClass* SubClass : SubClasses)
		{
			Paths.Add(SubClass->GetClassPathName());
		}
	}
	return Paths;
}

bool IsBelow(const FString& Path, const FString& Folder)
{
	return Path == Folder || Path.StartsWith(Folder + TEXT("/"));
}

/** A filter, made ready to be applied to many assets. */
class FMatcher
{
public:
	explicit FMatcher(const FARFilter& InFilter)
		: Filter(InFilter)
		, Classes(WithSubClasses(InFilter.ClassPaths, InFilter.bRecursiveClasses))
		, Packages(InFilter.PackageNames)
	{
		for (const FTopLevelAssetPath& Each : Filter.RecursiveClassPathsExclusionSet)
		{
			for (const FTopLevelAssetPath& Excluded : WithSubClasses({ Each }, true))
			{
				Classes.Remove(Excluded);
			}
		}
		for (const FSoftObjectPath& Path : Filter.SoftObjectPaths)
		{
			Objects.Add(Path.ToString());
		}
	}

	bool Matches(const FAssetData& Asset) const
	{
		return (Packages.IsEmpty() || Packages.Contains(Asset.PackageName)) &&
			   (Filter.ClassPaths.IsEmpty() || Classes.Contains(Asset.AssetClassPath)) && MatchesPath(Asset) &&
			   (Objects.IsEmpty() || Objects.Contains(Asset.GetObjectPathString()));
	}

private:
	bool MatchesPath(const FAssetData& Asset) const
	{
		if (Filter.PackagePaths.IsEmpty() || Filter.PackagePaths.Contains(Asset.PackagePath))
		{
			return true;
		}
		const FString Path = Asset.PackagePath.ToString();
		return Filter.bRecursivePaths && Filter.PackagePaths.ContainsByPredicate(
											 [&Path](const FName& Folder) { return IsBelow(Path, Folder.ToString()); });
	}

	const FARFilter& Filter;
	TSet<FTopLevelAssetPath> Classes;
	TSet<FName> Packages;
	TSet<FString> Objects;
};
}

FAssetRegistry::FAssetRegistry()
{
	SavedHandle = UPackage::PackageSavedWithContextEvent.AddRaw(this, &FAssetRegistry::OnPackageSaved);
	StartScan();
}

FAssetRegistry::~FAssetRegistry()
{
	for (const FName Name : FHostForeignPackages::Get().GetNames().Array())
	{
		FHostForeignPackages::Get().Set(Name, false);
	}
	UPackage::PackageSavedWithContextEvent.Remove(SavedHandle);
	FTSTicker::RemoveTicker(Ticker);
}

void FAssetRegistry::StartScan()
{
	FTSTicker::RemoveTicker(Ticker);
	Files = AssetRegistry::FindAllPackageFiles();
	NextFile = 0;
	if (IsLoadingAssets())
	{
		Ticker = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateRaw(this, &FAssetRegistry::ScanSome));
	}
}

void FAssetRegistry::SearchAllAssets(bool bSynchronousSearch)
{
	StartScan();
	if (bSynchronousSearch)
	{
		WaitForCompletion();
	}
}

bool FAssetRegistry::ScanSome(float)
{
	for (int32 Count = 0; Count < AssetRegistry::FilesPerTick && IsLoadingAssets(); ++Count)
	{
		ScanFileIfChanged(Files[NextFile++]);
	}
	if (IsLoadingAssets())
	{
		return true;
	}
	Files.Empty();
	NextFile = 0;
	ReportForeignPackages();
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
	if (!FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName) || PackageName.Len() >= NAME_SIZE)
	{
		return;
	}
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	FPackageEntry Entry;
	Entry.FileSize = PlatformFile.FileSize(*FileName);
	if (Entry.FileSize == INDEX_NONE)
	{
		SetOnDisk(FName(*PackageName), nullptr);
		return;
	}
	Entry.FileTime = PlatformFile.GetTimeStamp(*FileName);
	FPackageHeader Header;
	const FPackageHeader::EResult Result = Header.Load(FileName);
	if (Result == FPackageHeader::EResult::Read)
	{
		Entry.OnDisk = Header.GetAssetData(PackageName);
		for (const FString& Need : Header.Needs)
		{
			if (Need.Len() < NAME_SIZE)
			{
				Entry.Needs.Add(FName(*Need));
			}
		}
	}
	Entry.bForeign = Result == FPackageHeader::EResult::Binary;
	UE_CLOG(Result == FPackageHeader::EResult::Unreadable, LogAssetRegistry, Warning, TEXT("%s"),
		*FPackageHeader::GetMessage(Result, FileName));
	SetOnDisk(FName(*PackageName), &Entry);
}

void FAssetRegistry::ScanFileIfChanged(const FString& FileName)
{
	FString PackageName;
	const bool bNamed =
		FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName) && PackageName.Len() < NAME_SIZE;
	if (bNamed && HasChanged(FileName, FName(*PackageName)))
	{
		ScanFile(FileName);
	}
}

void FAssetRegistry::ReportForeignPackages()
{
	constexpr int32 MostNamed = 3;
	if (UnreportedForeign.IsEmpty())
	{
		return;
	}
	TArray<FString> Named;
	for (int32 Index = 0; Index < FMath::Min(UnreportedForeign.Num(), MostNamed); ++Index)
	{
		Named.Add(UnreportedForeign[Index].ToString());
	}
	const int32 NumOthers = UnreportedForeign.Num() - Named.Num();
	UE_LOG(LogAssetRegistry, Warning, TEXT("Packages saved by Unreal Editor, which cannot be read here: %d (%s%s)"),
		UnreportedForeign.Num(), *FString::Join(Named, TEXT(", ")),
		*(NumOthers > 0 ? FString::Printf(TEXT(" and %d more"), NumOthers) : FString()));
	UnreportedForeign.Empty();
}

bool FAssetRegistry::HasChanged(const FString& FileName, FName PackageName) const
{
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	const FPackageEntry* const Entry = Packages.Find(PackageName);
	return !Entry || Entry->FileSize != PlatformFile.FileSize(*FileName) ||
		   Entry->FileTime != PlatformFile.GetTimeStamp(*FileName);
}

void FAssetRegistry::SetOnDisk(FName PackageName, FPackageEntry* Entry)
{
	const bool bForeign = Entry && Entry->bForeign;
	if (FHostForeignPackages::Get().Set(PackageName, bForeign) && bForeign)
	{
		UnreportedForeign.Add(PackageName);
	}
	FPackageEntry Old;
	if (FPackageEntry* const Known = Packages.Find(PackageName))
	{
		Old = MoveTemp(*Known);
	}
	if (!Entry && Old.InMemory.IsEmpty())
	{
		Packages.Remove(PackageName);
	}
	else
	{
		FPackageEntry& New = Packages.Add(PackageName, Entry ? MoveTemp(*Entry) : FPackageEntry());
		New.InMemory = Old.InMemory;
		New.InMemory.RemoveAll([&New](const FAssetData& Each) { return New.OnDisk.Contains(Each); });
	}
	const FPackageEntry* const New = Packages.Find(PackageName);
	const TArray<FAssetData> OnDisk = New ? New->OnDisk : TArray<FAssetData>();
	SetNeeds(PackageName, Old.Needs, New ? New->Needs : TArray<FName>());
	for (const FAssetData& Each : OnDisk)
	{
		const bool bKnown = Old.OnDisk.Contains(Each) || Old.InMemory.Contains(Each);
		if (bKnown)
		{
			AssetUpdated.Broadcast(Each);
		}
		else
		{
			AssetAdded.Broadcast(Each);
		}
	}
	for (const FAssetData& Each : Old.OnDisk)
	{
		if (!OnDisk.Contains(Each))
		{
			AssetRemoved.Broadcast(Each);
		}
	}
}

void FAssetRegistry::SetNeeds(FName PackageName, const TArray<FName>& OldNeeds, const TArray<FName>& NewNeeds)
{
	for (const FName Need : OldNeeds)
	{
		if (TSet<FName>* const Users = Referencers.Find(Need))
		{
			Users->Remove(PackageName);
		}
	}
	for (const FName Need : NewNeeds)
	{
		Referencers.FindOrAdd(Need).Add(PackageName);
	}
}

void FAssetRegistry::ScanFilesSynchronous(const TArray<FString>& InFilePaths, bool bForceRescan)
{
	for (const FString& FileName : InFilePaths)
	{
		FString PackageName;
		const bool bKnown = FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName) &&
							PackageName.Len() < NAME_SIZE && Packages.Contains(FName(*PackageName));
		if (bForceRescan || !bKnown || !FPaths::FileExists(FileName))
		{
			ScanFile(FileName);
		}
	}
	ReportForeignPackages();
}

void FAssetRegistry::ScanPathsSynchronous(const TArray<FString>& InPaths, bool bForceRescan)
{
	TSet<FName> Found;
	for (const FString& Path : InPaths)
	{
		FString Folder;
		TArray<FString> FileNames;
		if (FPackageName::TryConvertLongPackageNameToFilename(Path / TEXT(""), Folder))
		{
			AssetRegistry::FindPackageFiles(Folder, FileNames);
		}
		for (const FString& FileName : FileNames)
		{
			FString PackageName;
			if (FPackageName::TryConvertFilenameToLongPackageName(FileName, PackageName) &&
				PackageName.Len() < NAME_SIZE)
			{
				Found.Add(FName(*PackageName));
				if (bForceRescan || HasChanged(FileName, FName(*PackageName)))
				{
					ScanFile(FileName);
				}
			}
		}
	}
	TArray<FName> Gone;
	for (const auto& Pair : Packages)
	{
		const FString Name = Pair.Key.ToString();
		const bool bLookedFor =
			InPaths.ContainsByPredicate([&Name](const FString& Path) { return AssetRegistry::IsBelow(Name, Path); });
		if (bLookedFor && Pair.Value.FileSize != INDEX_NONE && !Found.Contains(Pair.Key))
		{
			Gone.Add(Pair.Key);
		}
	}
	for (const FName Name : Gone)
	{
		SetOnDisk(Name, nullptr);
	}
	ReportForeignPackages();
}

void FAssetRegistry::OnPackageSaved(const FString& FileName, UPackage*, FObjectPostSaveContext)
{
	ScanFile(FileName);
}

void FAssetRegistry::AssetCreated(UObject* NewAsset)
{
	if (!NewAsset || !NewAsset->IsAsset())
	{
		return;
	}
	const FAssetData Asset(NewAsset);
	FPackageEntry& Entry = Packages.FindOrAdd(Asset.PackageName);
	if (!Entry.OnDisk.Contains(Asset) && !Entry.InMemory.Contains(Asset))
	{
		Entry.InMemory.Add(Asset);
		AssetAdded.Broadcast(Asset);
	}
}

bool FAssetRegistry::RemoveInMemory(FName PackageName, FName AssetName)
{
	FPackageEntry* const Entry = Packages.Find(PackageName);
	const auto IsIt = [AssetName](const FAssetData& Each) { return Each.AssetName == AssetName; };
	const bool bRemoved = Entry && Entry->InMemory.RemoveAll(IsIt) + Entry->OnDisk.RemoveAll(IsIt) > 0;
	if (Entry && Entry->InMemory.IsEmpty() && Entry->FileSize == INDEX_NONE)
	{
		Packages.Remove(PackageName);
	}
	return bRemoved;
}

void FAssetRegistry::AssetDeleted(UObject* DeletedAsset)
{
	if (!DeletedAsset || !DeletedAsset->GetPackage())
	{
		return;
	}
	const FAssetData Asset(DeletedAsset);
	if (RemoveInMemory(Asset.PackageName, Asset.AssetName))
	{
		AssetRemoved.Broadcast(Asset);
	}
}

void FAssetRegistry::AssetRenamed(const UObject* RenamedAsset, const FString& OldObjectPath)
{
	if (!RenamedAsset || !RenamedAsset->IsAsset())
	{
		return;
	}
	const FName OldPackage(*FPackageName::ObjectPathToPackageName(OldObjectPath));
	RemoveInMemory(OldPackage, FName(*FPackageName::ObjectPathToObjectName(OldObjectPath)));
	const FAssetData Asset(RenamedAsset);
	FPackageEntry& Entry = Packages.FindOrAdd(Asset.PackageName);
	if (!Entry.OnDisk.Contains(Asset))
	{
		Entry.InMemory.AddUnique(Asset);
	}
	AssetIsRenamed.Broadcast(Asset, OldObjectPath);
}

template <typename FunctionType>
void FAssetRegistry::ForEachAsset(const FPackageEntry& Entry, bool bOnlyOnDisk, FunctionType Function)
{
	for (const FAssetData& Asset : Entry.OnDisk)
	{
		Function(Asset);
	}
	for (int32 Index = 0; Index < Entry.InMemory.Num() && !bOnlyOnDisk; ++Index)
	{
		Function(Entry.InMemory[Index]);
	}
}

template <typename FunctionType>
void FAssetRegistry::ForEachAsset(bool bOnlyOnDisk, FunctionType Function) const
{
	for (const auto& Pair : Packages)
	{
		ForEachAsset(Pair.Value, bOnlyOnDisk, Function);
	}
}

bool FAssetRegistry::GetAssetsByPackageName(
	FName PackageName, TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets, bool) const
{
	const int32 NumBefore = OutAssetData.Num();
	if (const FPackageEntry* const Entry = Packages.Find(PackageName))
	{
		ForEachAsset(
			*Entry, bIncludeOnlyOnDiskAssets, [&OutAssetData](const FAssetData& Asset) { OutAssetData.Add(Asset); });
	}
	return OutAssetData.Num() > NumBefore;
}

bool FAssetRegistry::GetAssetsByClass(
	FTopLevelAssetPath ClassPathName, TArray<FAssetData>& OutAssetData, bool bSearchSubClasses) const
{
	FARFilter Filter;
	Filter.ClassPaths.Add(ClassPathName);
	Filter.bRecursiveClasses = bSearchSubClasses;
	return ClassPathName.IsValid() && GetAssets(Filter, OutAssetData, true);
}

bool FAssetRegistry::GetAssetsByPath(
	FName PackagePath, TArray<FAssetData>& OutAssetData, bool bRecursive, bool bIncludeOnlyOnDiskAssets) const
{
	FARFilter Filter;
	Filter.PackagePaths.Add(PackagePath);
	Filter.bRecursivePaths = bRecursive;
	Filter.bIncludeOnlyOnDiskAssets = bIncludeOnlyOnDiskAssets;
	return GetAssets(Filter, OutAssetData, true);
}

FAssetData FAssetRegistry::GetAssetByObjectPath(const FSoftObjectPath& ObjectPath, bool bIncludeOnlyOnDiskAssets) const
{
	TArray<FAssetData> Assets;
	const FString PackageName = ObjectPath.GetLongPackageName();
	if (PackageName.Len() < NAME_SIZE)
	{
		GetAssetsByPackageName(FName(*PackageName), Assets, bIncludeOnlyOnDiskAssets, true);
	}
	const FAssetData* const Found = Assets.FindByPredicate(
		[&ObjectPath](const FAssetData& Each) { return Each.GetObjectPathString() == ObjectPath.ToString(); });
	return Found ? *Found : FAssetData();
}

bool FAssetRegistry::GetAssets(const FARFilter& Filter, TArray<FAssetData>& OutAssetData, bool) const
{
	if (Filter.IsEmpty())
	{
		return false;
	}
	const AssetRegistry::FMatcher Matcher(Filter);
	const auto AddMatching = [&](const FAssetData& Asset) {
		if (Matcher.Matches(Asset))
		{
			OutAssetData.Add(Asset);
		}
	};
	if (Filter.PackageNames.IsEmpty())
	{
		ForEachAsset(Filter.bIncludeOnlyOnDiskAssets, AddMatching);
		return true;
	}
	for (const FName PackageName : TSet<FName>(Filter.PackageNames))
	{
		if (const FPackageEntry* const Entry = Packages.Find(PackageName))
		{
			ForEachAsset(*Entry, Filter.bIncludeOnlyOnDiskAssets, AddMatching);
		}
	}
	return true;
}

bool FAssetRegistry::GetAllAssets(TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets) const
{
	ForEachAsset(bIncludeOnlyOnDiskAssets, [&OutAssetData](const FAssetData& Asset) { OutAssetData.Add(Asset); });
	return true;
}

bool FAssetRegistry::GetReferencers(FName PackageName, TArray<FName>& OutReferencers) const
{
	if (const TSet<FName>* const Users = Referencers.Find(PackageName))
	{
		OutReferencers.Append(Users->Array());
	}
	return Packages.Contains(PackageName);
}
