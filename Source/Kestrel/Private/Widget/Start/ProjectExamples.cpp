#include "Widget/Start/ProjectExamples.h"

#include "Agent/Files/FolderWalk.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/DisplayText.h"
#include "AssetRegistry/ARFilter.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Engine/Blueprint.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"
#include "Widget/Prompt/HeaderSymbols.h"

namespace KestrelProjectExamples
{
namespace
{
constexpr int32 MaxFolders = 40;
constexpr int32 MaxHeaders = 20;
constexpr int64 MaxHeaderBytes = 100 * 1024;
constexpr int32 MaxNameLength = 80; // longer ones are generated

struct FClass
{
	FString Name;
	FString Header; // from the project's folder
};

bool IsPlain(const FString& Name)
{
	return Name.Len() <= MaxNameLength && !Name.Contains(TEXT(" ")) &&
		   KestrelDisplayText::EscapeLine(Name).Equals(Name);
}

/** Headers from the outside in; the order does not depend on the file system. */
void CollectHeaders(
	FKestrelFolder& Folder, const FString& RelativePath, int32& FoldersLeft, TArray<FString>& OutHeaders)
{
	if (--FoldersLeft < 0)
	{
		return;
	}
	FKestrelFolder::FListing Listing = Folder.List();
	Listing.Files.Sort();
	Listing.Folders.Sort();
	for (const FString& File : Listing.Files)
	{
		if (FPaths::GetExtension(File) == TEXT("h") && IsPlain(RelativePath / File))
		{
			OutHeaders.Add(RelativePath / File);
		}
	}
	for (const FString& Name : Listing.Folders)
	{
		if (OutHeaders.Num() < MaxHeaders)
		{
			FKestrelFolder Inner(Folder, Name);
			CollectHeaders(Inner, RelativePath / Name, FoldersLeft, OutHeaders);
		}
	}
}

/** A class that the engine knows, if there is one; else the first class at all. */
FClass FindClass()
{
	const FString Root = FPaths::ProjectDir();
	TArray<FString> Headers;
	int32 FoldersLeft = MaxFolders;
	FKestrelFolder Source(Root / TEXT("Source"));
	CollectHeaders(Source, TEXT("Source"), FoldersLeft, Headers);
	Headers.SetNum(FMath::Min(Headers.Num(), MaxHeaders));
	FClass Found;
	for (const FString& Header : Headers)
	{
		FString Text;
		if (!KestrelNativeFile::IsRegularFile(Root / Header) ||
			IFileManager::Get().FileSize(*(Root / Header)) > MaxHeaderBytes ||
			!FFileHelper::LoadFileToString(Text, *(Root / Header)))
		{
			continue;
		}
		for (const FKestrelSymbol& Symbol : KestrelHeaderSymbols::Find(Text))
		{
			const bool bIsType = !Symbol.Name.Contains(TEXT("::")) && IsPlain(Symbol.Name);
			if (bIsType && Symbol.bIsReflected)
			{
				return { Symbol.Name, Header };
			}
			if (bIsType && Found.Name.IsEmpty())
			{
				Found = { Symbol.Name, Header };
			}
		}
	}
	return Found;
}

/** The first by name; empty if the project has none, or none is known yet. */
FString FindBlueprint()
{
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	TArray<FAssetData> Assets;
	if (Registry)
	{
		FARFilter Filter;
		Filter.ClassPaths.Add(UBlueprint::StaticClass()->GetClassPathName());
		Filter.PackagePaths.Add(FName("/Game"));
		Filter.bRecursivePaths = true;
		Registry->GetAssets(Filter, Assets);
	}
	FString First;
	for (const FAssetData& Asset : Assets)
	{
		const FString Name = Asset.AssetName.ToString();
		if (IsPlain(Name) && (First.IsEmpty() || Name < First))
		{
			First = Name;
		}
	}
	return First;
}
}

TArray<FString> Find()
{
	const FClass Class = FindClass();
	const FString Blueprint = FindBlueprint();
	const bool bHasClass = !Class.Name.IsEmpty();
	const bool bHasBlueprint = !Blueprint.IsEmpty();
	// What the service reads, so it is not translated.
	return {
		bHasClass ? TEXT("read ") + Class.Header
				  : (bHasBlueprint ? TEXT("read blueprint ") + Blueprint : FString(TEXT("list the files in Config"))),
		TEXT("find ") + (bHasClass ? Class.Name : (bHasBlueprint ? Blueprint : FString(TEXT("Health")))),
		bHasBlueprint ? TEXT("add an int variable Score to ") + Blueprint + TEXT(" with value 10")
					  : FString(TEXT("create blueprint BP_First from Actor in /Game")),
	};
}
}
