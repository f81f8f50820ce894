#include "Agent/Files/AssetClassCache.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Files/TreeWork.h"
#include "Async/TaskGraphInterfaces.h"
#include "Dom/JsonObject.h"
#include "Misc/Paths.h"
#include "ProfilingDebugging/MiscTrace.h"
#include "Serialization/JsonWriter.h"
#include "Stats/Stats.h"

namespace FileTree
{
const TCHAR* const NoClassName = TEXT("#");

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
		if (Pieces.Contains(KestrelTree::CleanExcludedEntry(Entry)))
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

TSharedRef<FJsonObject> BuildTree(
	FKestrelFolder& Folder, const FString& ComparedPath, const FTreeFilter& Filter, int32 Depth = 0)
{
	TRACE_BOOKMARK(TEXT("Kestrel - Start BuildJsonTree"));
	const TSharedRef<FJsonObject> Tree = MakeShared<FJsonObject>();
	if (IsDirectoryExcluded(ComparedPath, Filter.ExcludedDirs))
	{
		return Tree;
	}
	FKestrelFolder::FListing Listing = Folder.List();
	if (!KestrelTree::MayHaveFolders(Depth))
	{
		Listing.Folders.Empty();
	}
	for (const FString& File : Listing.Files)
	{
		FString ClassName;
		if (Filter.Keeps(Folder.GetPath(), File, ClassName))
		{
			Tree->SetStringField(File, ClassName);
		}
	}
	for (const FString& Name : Listing.Folders)
	{
		FKestrelFolder Sub(Folder, Name);
		const TSharedRef<FJsonObject> SubTree = BuildTree(Sub, ComparedPath / Name, Filter, Depth + 1);
		if (!SubTree->Values.IsEmpty())
		{
			Tree->SetObjectField(Name, SubTree);
		}
	}
	TRACE_BOOKMARK(TEXT("Kestrel - End BuildJsonTree"));
	return Tree;
}

void AppendList(FKestrelFolder& Folder, TArray<FString>& OutList)
{
	const FKestrelFolder::FListing Listing = Folder.List();
	for (const FString& Name : Listing.Folders)
	{
		if (!IsLeftOutOfList(Name))
		{
			FKestrelFolder Sub(Folder, Name);
			AppendList(Sub, OutList);
		}
	}
	for (const FString& File : Listing.Files)
	{
		if (ListedExtensions().Contains(FPaths::GetExtension(File, true)))
		{
			OutList.Add(ToProjectRelative(Folder.GetPath() / File));
		}
	}
}
}

TSharedPtr<FJsonObject> FFileUtils::BuildJsonTree(const FString& Path, const TArray<FString>& SupportedExtensions,
	const TArray<FString>& ExcludedDirs, const TSet<FName>& EnabledAssetClassPatterns)
{
	FKestrelFolder Folder(Path);
	const TSharedRef<FJsonObject> Tree = FileTree::BuildTree(
		Folder, KestrelTree::ToComparedPath(Path), { SupportedExtensions, ExcludedDirs, EnabledAssetClassPatterns });
	FAssetClassCache::Get().Save();
	return Tree;
}

FString FFileUtils::GetSubDirectoryStructureAsJsonObject(const FString& Path)
{
	FKestrelTreeWork Work(Path);
	Work.Finish();
	return Work.GetText();
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
		FKestrelFolder Folder(Path);
		FileTree::AppendList(Folder, List);
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
