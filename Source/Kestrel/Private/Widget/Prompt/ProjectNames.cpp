#include "Widget/Prompt/ProjectNames.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/DisplayText.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"
#include "Widget/Prompt/HeaderSymbols.h"

namespace ProjectNames
{
/** Long enough for a prompt, short enough for a file that was just made. */
constexpr double KeepSeconds = 60.0;
/** More would take seconds to find and hundreds of megabytes to keep. */
constexpr int32 MaxNames = 500'000;

/** A larger header was generated. */
constexpr int64 MaxHeaderBytes = 1024 * 1024;

bool IsHeaderExtension(const FString& Extension)
{
	return Extension == TEXT("h") || Extension == TEXT("hpp");
}

bool IsAssetExtension(const FString& Extension)
{
	return Extension == TEXT("uasset") || Extension == TEXT("umap");
}
}

/** A folder of which some folders have not been read yet. */
struct FKestrelProjectNames::FOpenFolder
{
	explicit FOpenFolder(const FString& Path)
		: Folder(Path)
	{
	}

	FOpenFolder(FOpenFolder& Above, const FString& Name)
		: Folder(Above.Folder, Name)
		, RelativePath(Above.RelativePath / Name)
	{
	}

	FKestrelFolder Folder;
	FString RelativePath; // to the project's folder; empty for that
	TArray<FString> Unread;
};

FKestrelProjectNames::FKestrelProjectNames() = default;
FKestrelProjectNames::~FKestrelProjectNames()
{
	// A folder knows the one that it lies in.
	while (!OpenFolders.IsEmpty())
	{
		OpenFolders.Pop();
	}
}

void FKestrelProjectNames::Refresh()
{
	const double Now = FPlatformTime::Seconds();
	if (IsReading() || (LastRead > 0.0 && Now - LastRead < ProjectNames::KeepSeconds))
	{
		return;
	}
	LastRead = Now;
	Index.Empty();
	Symbols.Empty();
	const UKestrelSettings* Settings = GetDefault<UKestrelSettings>();
	Extensions = Settings->SupportedFileExtensions;
	ExcludedDirs = Settings->ExcludedDirectories;
	Enter(MakeUnique<FOpenFolder>(FPaths::ProjectDir()));
}

bool FKestrelProjectNames::ReadOn(double Seconds)
{
	const double End = FPlatformTime::Seconds() + Seconds;
	while (IsReading() && FPlatformTime::Seconds() < End)
	{
		OpenFolders.IsEmpty() ? ReadNextHeader() : ReadNextFolder();
		LastRead = FPlatformTime::Seconds();
	}
	return IsReading();
}

void FKestrelProjectNames::ReadNextFolder()
{
	FOpenFolder& Folder = *OpenFolders.Last();
	if (Folder.Unread.IsEmpty() || Index.Num() >= ProjectNames::MaxNames)
	{
		OpenFolders.Pop();
		return;
	}
	const FString Name = Folder.Unread.Pop();
	if (!IsDirectoryExcluded(Folder.RelativePath / Name, ExcludedDirs))
	{
		Enter(MakeUnique<FOpenFolder>(Folder, Name));
	}
}

void FKestrelProjectNames::ReadNextHeader()
{
	const FString Header = UnreadHeaders.Pop();
	const FString Path = FPaths::ProjectDir() / Header;
	FString Text;
	if (Index.Num() >= ProjectNames::MaxNames || !KestrelNativeFile::IsRegularFile(Path) ||
		IFileManager::Get().FileSize(*Path) > ProjectNames::MaxHeaderBytes ||
		!FFileHelper::LoadFileToString(Text, *Path))
	{
		return;
	}
	for (const FKestrelSymbol& Symbol : KestrelHeaderSymbols::Find(Text))
	{
		const FString Name = FString::Printf(TEXT("%s:%d/%s"), *Header, Symbol.Line, *Symbol.Name);
		if (Add(Name))
		{
			Symbols.Add(Name);
		}
	}
}

FString FKestrelProjectNames::GetInsertion(const FString& Name) const
{
	return Symbols.Contains(Name)
			   ? FString::Printf(TEXT("%s (%s)"), *FPaths::GetCleanFilename(Name), *FPaths::GetPath(Name))
			   : Name;
}

void FKestrelProjectNames::Enter(TUniquePtr<FOpenFolder> Folder)
{
	FKestrelFolder::FListing Listing = Folder->Folder.List();
	for (const FString& File : Listing.Files)
	{
		const FString Extension = FPaths::GetExtension(File);
		if (Extensions.Contains(Extension) && !ProjectNames::IsAssetExtension(Extension))
		{
			Add(Folder->RelativePath.IsEmpty() ? File : Folder->RelativePath / File);
			if (ProjectNames::IsHeaderExtension(Extension))
			{
				UnreadHeaders.Add(Folder->RelativePath / File);
			}
		}
	}
	AddAssets(Folder->Folder.GetPath());
	Folder->Unread = MoveTemp(Listing.Folders);
	OpenFolders.Add(MoveTemp(Folder));
}

void FKestrelProjectNames::AddAssets(const FString& FolderPath)
{
	// Only a file's path is sure to be converted as a whole: a folder may have a dot in its name.
	FString PackageName;
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	if (!Registry || !FPackageName::TryConvertFilenameToLongPackageName(FolderPath / TEXT("Asset"), PackageName) ||
		PackageName.Len() >= NAME_SIZE)
	{
		return;
	}
	TArray<FAssetData> Assets;
	Registry->GetAssetsByPath(FName(*FPaths::GetPath(PackageName)), Assets);
	TSet<FName> Packages;
	for (const FAssetData& Asset : Assets)
	{
		bool bIsKnown = false;
		Packages.Add(Asset.PackageName, &bIsKnown);
		if (!bIsKnown)
		{
			Add(Asset.PackageName.ToString());
		}
	}
}

bool FKestrelProjectNames::Add(const FString& Name)
{
	const bool bIsWhatItLooksLike = KestrelDisplayText::EscapeLine(Name).Equals(Name);
	if (bIsWhatItLooksLike)
	{
		Index.Add(Name);
	}
	return bIsWhatItLooksLike;
}
