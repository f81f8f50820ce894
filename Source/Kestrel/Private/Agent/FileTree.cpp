#include "Agent/FileUtils.h"
#include "Agent/JsonText.h"
#include "Async/TaskGraphInterfaces.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
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

TSharedPtr<FJsonObject> FFileUtils::BuildJsonTree(const FString& Path, const TArray<FString>& SupportedExtensions,
	const TArray<FString>& ExcludedDirs, const TSet<FName>& EnabledAssetClassPatterns)
{
	TRACE_BOOKMARK(TEXT("Kestrel - Start BuildJsonTree"));
	const TSharedRef<FJsonObject> Tree = MakeShared<FJsonObject>();
	if (IsDirectoryExcluded(Path, ExcludedDirs))
	{
		return Tree;
	}
	const FileTree::FListing Listing = FileTree::ListFolder(Path);
	for (const FString& File : Listing.Files)
	{
		if (SupportedExtensions.Contains(FPaths::GetExtension(File)))
		{
			Tree->SetStringField(File, FileTree::NoClassName);
		}
	}
	for (const FString& Folder : Listing.Folders)
	{
		const TSharedPtr<FJsonObject> SubTree =
			BuildJsonTree(Path / Folder, SupportedExtensions, ExcludedDirs, EnabledAssetClassPatterns);
		if (!SubTree->Values.IsEmpty())
		{
			Tree->SetObjectField(Folder, SubTree);
		}
	}
	TRACE_BOOKMARK(TEXT("Kestrel - End BuildJsonTree"));
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
	if (!Path.StartsWith(FPaths::ProjectDir()))
	{
		return List;
	}
	const FileTree::FListing Listing = FileTree::ListFolder(Path);
	for (const FString& Folder : Listing.Folders)
	{
		if (!FileTree::IsLeftOutOfList(Folder))
		{
			List.Append(GetDirectoryStructureAsList(Path / Folder));
		}
	}
	for (const FString& File : Listing.Files)
	{
		if (FileTree::ListedExtensions().Contains(FPaths::GetExtension(File, true)))
		{
			List.Add(FileTree::ToProjectRelative(Path / File));
		}
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
