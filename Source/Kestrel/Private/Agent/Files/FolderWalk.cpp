#include "Agent/Files/FolderWalk.h"

#include "Agent/Files/NativeFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

namespace FolderWalk
{
// In files listed. More than a project has in the folders that it links to, and walked in a few seconds.
constexpr int32 MaxCostBelowLinks = 1'000'000;
// To open a folder takes about as long as to list this many files.
constexpr int32 FolderCost = 50;

/** One question to the system for an ordinary folder; finding a real path takes several for each part of it. */
bool IsLink(const FString& FullPath)
{
#if PLATFORM_WINDOWS
	return KestrelNativeFile::ResolveLinks(FullPath).IsEmpty(); // what a link leads to is not known there
#else
	return !KestrelNativeFile::ReadLink(FullPath).IsEmpty();
#endif
}

/** What stands behind the last slash, of either kind: FPaths::GetCleanFilename without a string of the whole path. */
const TCHAR* FindName(const TCHAR* Path)
{
	const TCHAR* Name = Path;
	for (const TCHAR* C = Path; *C; ++C)
	{
		const bool bIsSlash = *C == TEXT('/') || *C == TEXT('\\');
		Name = bIsSlash && C[1] ? C + 1 : Name;
	}
	return Name;
}
}

FKestrelFolder::FKestrelFolder(const FString& InPath)
	: Path(InPath)
	, Above(nullptr)
{
	FString FullPath = FPaths::ConvertRelativePathToFull(InPath);
	FPaths::NormalizeDirectoryName(FullPath);
	RealPath = KestrelNativeFile::ResolveLinks(FullPath);
	if (RealPath.IsEmpty())
	{
		RealPath = FullPath;
		bIsResolved = false;
	}
}

FKestrelFolder::FKestrelFolder(FKestrelFolder& InAbove, const FString& Name)
	: Path(InAbove.Path / Name)
	, Above(&InAbove)
{
	const FString Given = InAbove.RealPath / Name;
	bIsLink = FolderWalk::IsLink(Given);
	bIsBelowLink = InAbove.bIsBelowLink || bIsLink;
	RealPath = bIsLink ? KestrelNativeFile::ResolveLinks(Given) : Given;
	bIsResolved = InAbove.bIsResolved && !RealPath.IsEmpty();
	if (RealPath.IsEmpty())
	{
		RealPath = Given;
	}
}

bool FKestrelFolder::IsLoop() const
{
	if (!bIsBelowLink)
	{
		return false;
	}
	for (const FKestrelFolder* Folder = Above; Folder; Folder = Folder->Above)
	{
		if (Folder->RealPath.Equals(RealPath))
		{
			return true;
		}
	}
	return false;
}

FKestrelFolder::FListing FKestrelFolder::List()
{
	FKestrelFolder* First = this;
	while (First->Above)
	{
		First = First->Above;
	}
	FListing Listing;
	if (IsLoop() || (bIsBelowLink && First->CostBelowLinks.GetValue() >= FolderWalk::MaxCostBelowLinks))
	{
		return Listing;
	}
	// One pass for both: with a hundred thousand files, asking the file system is what takes the time.
	FPlatformFileManager::Get().GetPlatformFile().IterateDirectory(
		*Path, [&Listing](const TCHAR* Entry, bool bIsFolder) {
			(bIsFolder ? Listing.Folders : Listing.Files).Emplace(FolderWalk::FindName(Entry));
			return true;
		});
	if (bIsBelowLink)
	{
		First->CostBelowLinks.Add(FolderWalk::FolderCost + Listing.Files.Num() + Listing.Folders.Num());
	}
	return Listing;
}

FString FKestrelFolder::ResolveFile(const FString& Name) const
{
	const FString Given = RealPath / Name;
	if (!bIsResolved)
	{
		return FString();
	}
	return FolderWalk::IsLink(Given) ? KestrelNativeFile::ResolveLinks(Given) : Given;
}

FKestrelFileWalk::FKestrelFileWalk(const FString& InRoot, FIsWanted InIsWanted, FMayRead InMayRead)
	: IsWanted(MoveTemp(InIsWanted))
	, MayRead(MoveTemp(InMayRead))
	, Root(MakeUnique<FKestrelFolder>(InRoot))
{
}

bool FKestrelFileWalk::Next()
{
	if (Root)
	{
		Enter(MoveTemp(Root));
		return true;
	}
	while (!Levels.IsEmpty())
	{
		FLevel& Level = Levels.Last();
		if (Level.NumWalked < Level.Names.Num())
		{
			const FString& Name = Level.Names[Level.NumWalked++];
			Enter(MakeUnique<FKestrelFolder>(*Level.Folder, Name));
			return true;
		}
		Levels.Pop();
	}
	return false;
}

void FKestrelFileWalk::Enter(TUniquePtr<FKestrelFolder> Folder)
{
	if (Folder->MayBeElsewhere() && !MayRead(Folder->GetPath(), Folder->GetRealPath()))
	{
		return;
	}
	FKestrelFolder::FListing Listing = Folder->List();
	for (const FString& File : Listing.Files)
	{
		FString Path = Folder->GetPath() / File;
		if (IsWanted(File) && MayRead(Path, Folder->ResolveFile(File)))
		{
			Files.Add(MoveTemp(Path));
		}
	}
	FLevel& Level = Levels.AddDefaulted_GetRef();
	Level.Folder = MoveTemp(Folder);
	Level.Names = MoveTemp(Listing.Folders);
}

TArray<FString> FKestrelFileWalk::FindAll(const FString& Root, FIsWanted IsWanted)
{
	FKestrelFileWalk Walk(Root, MoveTemp(IsWanted), [](const FString&, const FString&) { return true; });
	while (Walk.Next())
	{
	}
	return MoveTemp(Walk.GetFiles());
}
