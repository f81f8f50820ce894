#include "Agent/AssetClassCache.h"
#include "Agent/FileUtils.h"
#include "Agent/JsonText.h"
#include "Async/TaskGraphInterfaces.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "KestrelSettings.h"
#include "Misc/Paths.h"
#include "ProfilingDebugging/MiscTrace.h"
#include "Serialization/JsonWriter.h"
#include "UObject/Class.h"

namespace FileTree
{
const TCHAR* const NoClassName = TEXT("#");

/** The names in a folder, in the order of the file system. */
struct FListing
{
	TArray<FString> Files;
	TArray<FString> Folders;
};

FListing ListFolder(const FString& Path)
{
	// One walk for both: with a hundred thousand files, asking the file system is what takes the time.
	FListing Listing;
	FPlatformFileManager::Get().GetPlatformFile().IterateDirectory(
		*Path, [&Listing](const TCHAR* Entry, bool bIsFolder) {
			(bIsFolder ? Listing.Folders : Listing.Files).Add(FPaths::GetCleanFilename(Entry));
			return true;
		});
	return Listing;
}

/** A folder of a walk, with the way back to where the walk began. Lives on the stack of the walk. */
struct FFolderOnTheWay
{
	explicit FFolderOnTheWay(const FString& InPath, const FFolderOnTheWay* InAbove)
		: Path(InPath)
		, Above(InAbove)
		, Listing(ListFolder(InPath))
	{
	}

	/**
	 * Whether this is a folder above it again, come back to through a link: the walk would never end. A link cannot be
	 * told from a folder here, but the same folder has the same content and time.
	 */
	bool IsLoop() const
	{
		for (const FFolderOnTheWay* Folder = Above; Folder; Folder = Folder->Above)
		{
			const bool bSameContent =
				Folder->Listing.Folders == Listing.Folders && Folder->Listing.Files == Listing.Files;
			if (bSameContent &&
				IFileManager::Get().GetTimeStamp(*Folder->Path) == IFileManager::Get().GetTimeStamp(*Path))
			{
				return true;
			}
		}
		return false;
	}

	const FString& Path;
	const FFolderOnTheWay* const Above; // null for the first
	const FListing Listing;
};

FString CleanExcludedEntry(const FString& Entry)
{
	FString Clean = Entry.Replace(TEXT("\\"), TEXT("/")).TrimStartAndEnd();
	Clean.RemoveFromStart(TEXT("/"));
	Clean.RemoveFromEnd(TEXT("/"));
	return Clean;
}

/** Name parts that keep a folder out of the flat list. Unlike the tree's, they need not be the whole name. */
bool IsLeftOutOfList(const FString& FolderName)
{
	const TCHAR* const LeftOut[] = { TEXT("Binaries"), TEXT("Intermediate"), TEXT("Build"), TEXT("DerivedDataCache"),
		TEXT("Saved"), TEXT("Engine"), TEXT("Shared") };
	for (const TCHAR* Part : LeftOut)
	{
		if (FolderName.Contains(Part))
		{
			return true;
		}
	}
	return false;
}

const TArray<FString>& ListedExtensions()
{
	static const TArray<FString> Extensions = { TEXT(".py"), TEXT(".cs"), TEXT(".json"), TEXT(".cpp"), TEXT(".h"),
		TEXT(".uasset"), TEXT(".umap"), TEXT(".ini"), TEXT(".uproject"), TEXT(".csv") };
	return Extensions;
}

FString ToProjectRelative(const FString& File)
{
	FString Relative = File;
	FPaths::NormalizeFilename(Relative);
	FPaths::MakePathRelativeTo(Relative, *FPaths::ProjectDir());
	Relative.RemoveFromStart(TEXT("/"));
	return Relative;
}
}

bool IsDirectoryExcluded(const FString& Path, const TArray<FString>& ExcludedDirs)
{
	TArray<FString> Pieces;
	Path.Replace(TEXT("\\"), TEXT("/")).ParseIntoArray(Pieces, TEXT("/"));
	for (const FString& Entry : ExcludedDirs)
	{
		if (Pieces.Contains(FileTree::CleanExcludedEntry(Entry)))
		{
			return true;
		}
	}
	return false;
}

namespace FileTree
{
/** What a tree keeps. */
struct FTreeFilter
{
	const TArray<FString>& SupportedExtensions;
	const TArray<FString>& ExcludedDirs;
	const TSet<FName>& EnabledAssetClassPatterns;

	/** @param OutClassName  what the file's value is; NoClassName where no class applies */
	bool Keeps(const FString& Path, const FString& File, FString& OutClassName) const
	{
		FName ClassName;
		const bool bKept = SupportedExtensions.Contains(FPaths::GetExtension(File)) &&
						   (EnabledAssetClassPatterns.IsEmpty() || FFileUtils::FileMatchesAssetClassPatterns(Path, File,
																	   EnabledAssetClassPatterns, ClassName));
		OutClassName = ClassName.IsNone() ? FString(NoClassName) : ClassName.ToString();
		return bKept;
	}
};

TSharedRef<FJsonObject> BuildTree(const FString& Path, const FTreeFilter& Filter, const FFolderOnTheWay* Above)
{
	TRACE_BOOKMARK(TEXT("Kestrel - Start BuildJsonTree"));
	const TSharedRef<FJsonObject> Tree = MakeShared<FJsonObject>();
	if (IsDirectoryExcluded(Path, Filter.ExcludedDirs))
	{
		return Tree;
	}
	const FFolderOnTheWay Here(Path, Above);
	if (Here.IsLoop())
	{
		return Tree;
	}
	for (const FString& File : Here.Listing.Files)
	{
		FString ClassName;
		if (Filter.Keeps(Path, File, ClassName))
		{
			Tree->SetStringField(File, ClassName);
		}
	}
	for (const FString& Folder : Here.Listing.Folders)
	{
		const TSharedRef<FJsonObject> SubTree = BuildTree(Path / Folder, Filter, &Here);
		if (!SubTree->Values.IsEmpty())
		{
			Tree->SetObjectField(Folder, SubTree);
		}
	}
	TRACE_BOOKMARK(TEXT("Kestrel - End BuildJsonTree"));
	return Tree;
}

void AppendList(const FString& Path, const FFolderOnTheWay* Above, TArray<FString>& OutList)
{
	const FFolderOnTheWay Here(Path, Above);
	if (Here.IsLoop())
	{
		return;
	}
	for (const FString& Folder : Here.Listing.Folders)
	{
		if (!IsLeftOutOfList(Folder))
		{
			AppendList(Path / Folder, &Here, OutList);
		}
	}
	for (const FString& File : Here.Listing.Files)
	{
		if (ListedExtensions().Contains(FPaths::GetExtension(File, true)))
		{
			OutList.Add(ToProjectRelative(Path / File));
		}
	}
}
}

TSharedPtr<FJsonObject> FFileUtils::BuildJsonTree(const FString& Path, const TArray<FString>& SupportedExtensions,
	const TArray<FString>& ExcludedDirs, const TSet<FName>& EnabledAssetClassPatterns)
{
	const TSharedRef<FJsonObject> Tree =
		FileTree::BuildTree(Path, { SupportedExtensions, ExcludedDirs, EnabledAssetClassPatterns }, nullptr);
	FAssetClassCache::Get().Save();
	return Tree;
}

FString FFileUtils::GetSubDirectoryStructureAsJsonObject(const FString& Path)
{
	TArray<FString> SupportedExtensions;
	TArray<FString> ExcludedDirs;
	TSet<FName> EnabledAssetClassPatterns;
	if (const UKestrelSettings* Settings = GetDefault<UKestrelSettings>())
	{
		SupportedExtensions = Settings->SupportedFileExtensions;
		ExcludedDirs = Settings->ExcludedDirectories;
		for (const FString& Pattern : Settings->GetEnabledAssetClassPatterns())
		{
			EnabledAssetClassPatterns.Add(FName(*Pattern));
		}
	}

	TRACE_BOOKMARK(TEXT("Kestrel - Start GetSubDirectoryStructure"));
	const TSharedPtr<FJsonObject> Tree =
		BuildJsonTree(Path, SupportedExtensions, ExcludedDirs, EnabledAssetClassPatterns);
	TRACE_BOOKMARK(TEXT("Kestrel - End GetSubDirectoryStructure"));
	return KestrelJson::ToCondensedText(Tree.ToSharedRef());
}

void FFileUtils::GetSubDirectoryStructureAsJsonObjectAsync(
	const FString& Path, TDelegate<void(const FString&)> OnComplete)
{
	FFunctionGraphTask::CreateAndDispatchWhenReady([Path, OnComplete]() { AsyncDirectoryWorker(Path, OnComplete); },
		TStatId(), nullptr, ENamedThreads::GameThread);
}

void FFileUtils::AsyncDirectoryWorker(const FString& Path, TDelegate<void(const FString&)> OnComplete)
{
	const FString Result = GetSubDirectoryStructureAsJsonObject(Path);
	FFunctionGraphTask::CreateAndDispatchWhenReady(
		[Result, OnComplete]() { OnComplete.ExecuteIfBound(Result); }, TStatId(), nullptr, ENamedThreads::GameThread);
}

TArray<FString> FFileUtils::GetDirectoryStructureAsList(const FString& Path)
{
	TArray<FString> List;
	if (Path.StartsWith(FPaths::ProjectDir()))
	{
		FileTree::AppendList(Path, nullptr, List);
	}
	return List;
}

FString FFileUtils::GetProjectStructureAsJsonList()
{
	TArray<FString> List = GetDirectoryStructureAsList(FPaths::ProjectDir());
	List.Sort();
	FString Text;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
	Writer->WriteArrayStart();
	for (const FString& File : List)
	{
		Writer->WriteValue(File);
	}
	Writer->WriteArrayEnd();
	Writer->Close();
	return Text;
}
