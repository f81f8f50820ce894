#include "Misc/PackageName.h"

#include "HAL/FileManager.h"
#include "Internationalization/Text.h"
#include "Misc/Paths.h"
#include "UObject/NameTypes.h"

namespace PackageName
{
struct FMountPoint
{
	FString Root;
	FString Folder; // with a slash at the end
	FString FullFolder;
};

int32 NumRegistrations = 0;

// What must not stand in a package's name, besides a double slash; the names of files allow no more.
constexpr int32 ShortestName = 4; // "/G/a"

TArray<FMountPoint>& GetRegistered()
{
	static TArray<FMountPoint>* const MountPoints = new TArray<FMountPoint>;
	return *MountPoints;
}

FString WithSlash(const FString& Path)
{
	return Path.EndsWith(TEXT("/")) ? Path : Path + TEXT("/");
}

/** Rebuilt when the project has become another one since the last call, or a folder was mounted. */
const TArray<FMountPoint>& GetMountPoints()
{
	static TArray<FMountPoint> MountPoints;
	static FString ContentDir;
	static int32 NumRegistered = INDEX_NONE;
	const FString PresentContentDir = FPaths::ProjectContentDir();
	if (!ContentDir.Equals(PresentContentDir) || NumRegistered != NumRegistrations)
	{
		ContentDir = PresentContentDir;
		NumRegistered = NumRegistrations;
		MountPoints = { { TEXT("/Game/"), ContentDir, FString() },
			{ TEXT("/Engine/"), FPaths::EngineDir() / TEXT("Content/"), FString() } };
		MountPoints.Append(GetRegistered());
		for (FMountPoint& Each : MountPoints)
		{
			Each.FullFolder = FPaths::ConvertRelativePathToFull(Each.Folder);
		}
	}
	return MountPoints;
}

/** The file's path below the folder; false when it does not lie there. */
bool TakeFolderOff(const FMountPoint& MountPoint, const FString& FileName, FString& OutInner)
{
	// A scan finds files by the folder's own path, which needs no look at the rest.
	OutInner = FileName;
	if (OutInner.RemoveFromStart(MountPoint.Folder, ESearchCase::CaseSensitive) && !OutInner.Contains(TEXT("./")) &&
		!OutInner.Contains(TEXT("//")))
	{
		return !OutInner.IsEmpty();
	}
	OutInner = FPaths::ConvertRelativePathToFull(FileName);
	return OutInner.RemoveFromStart(MountPoint.FullFolder, ESearchCase::CaseSensitive) && !OutInner.IsEmpty();
}

const FMountPoint* FindMountPoint(const TArray<FMountPoint>& MountPoints, const FString& PackageName)
{
	return MountPoints.FindByPredicate(
		[&PackageName](const FMountPoint& Each) { return PackageName.StartsWith(Each.Root); });
}

bool HasInvalidCharacter(const FString& Name, TCHAR& OutCharacter)
{
	for (const TCHAR C : Name)
	{
		if (FStringView(INVALID_LONGPACKAGE_CHARACTERS).Contains(FStringView(&C, 1)))
		{
			OutCharacter = C;
			return true;
		}
	}
	return false;
}

FString GetReasonAgainst(const FString& Name)
{
	TCHAR Invalid = 0;
	if (Name.Len() < ShortestName || !Name.StartsWith(TEXT("/")))
	{
		return TEXT("the name has to start with a slash, a root and another slash");
	}
	if (Name.EndsWith(TEXT("/")) || Name.Contains(TEXT("//")))
	{
		return TEXT("the name has a slash at its end or two in a row");
	}
	if (Name.Len() >= NAME_SIZE)
	{
		return TEXT("the name is too long");
	}
	if (HasInvalidCharacter(Name, Invalid))
	{
		return FString::Printf(TEXT("the name has the character '%s' in it"), *FString::Chr(Invalid));
	}
	return FString();
}
}

const FString& FPackageName::GetAssetPackageExtension()
{
	static const FString Extension(TEXT(".uasset"));
	return Extension;
}

const FString& FPackageName::GetMapPackageExtension()
{
	static const FString Extension(TEXT(".umap"));
	return Extension;
}

void FPackageName::RegisterMountPoint(const FString& RootPath, const FString& ContentPath)
{
	checkf(RootPath.StartsWith(TEXT("/")) && RootPath.EndsWith(TEXT("/")), TEXT("'%s' is no root"), *RootPath);
	const FString Folder = PackageName::WithSlash(ContentPath);
	for (const PackageName::FMountPoint& Each : PackageName::GetRegistered())
	{
		if (Each.Root == RootPath && Each.Folder.Equals(Folder))
		{
			return;
		}
	}
	PackageName::GetRegistered().Insert({ RootPath, Folder, FString() }, 0);
	++PackageName::NumRegistrations;
}

void FPackageName::UnRegisterMountPoint(const FString& RootPath, const FString& ContentPath)
{
	const FString Folder = PackageName::WithSlash(ContentPath);
	++PackageName::NumRegistrations;
	PackageName::GetRegistered().RemoveAll(
		[&](const PackageName::FMountPoint& Each) { return Each.Root == RootPath && Each.Folder.Equals(Folder); });
}

void FPackageName::QueryRootContentPaths(TArray<FString>& OutRootContentPaths)
{
	for (const PackageName::FMountPoint& Each : PackageName::GetMountPoints())
	{
		OutRootContentPaths.AddUnique(Each.Root);
	}
}

bool FPackageName::TryConvertFilenameToLongPackageName(
	const FString& InFilename, FString& OutPackageName, FString* OutFailureReason)
{
	for (const PackageName::FMountPoint& Each : PackageName::GetMountPoints())
	{
		FString Inner;
		if (PackageName::TakeFolderOff(Each, InFilename, Inner))
		{
			OutPackageName = Each.Root + FPaths::GetBaseFilename(Inner, false);
			return true;
		}
	}
	if (OutFailureReason)
	{
		*OutFailureReason = FString::Printf(TEXT("'%s' does not lie in a mounted folder"), *InFilename);
	}
	return false;
}

bool FPackageName::TryConvertLongPackageNameToFilename(
	const FString& InLongPackageName, FString& OutFilename, const FString& InExtension)
{
	const TArray<PackageName::FMountPoint>& MountPoints = PackageName::GetMountPoints();
	const PackageName::FMountPoint* const MountPoint = PackageName::FindMountPoint(MountPoints, InLongPackageName);
	if (!MountPoint)
	{
		return false;
	}
	OutFilename = MountPoint->Folder + InLongPackageName.RightChop(MountPoint->Root.Len()) + InExtension;
	return true;
}

FString FPackageName::LongPackageNameToFilename(const FString& InLongPackageName, const FString& InExtension)
{
	FString Filename;
	const bool bConverted = TryConvertLongPackageNameToFilename(InLongPackageName, Filename, InExtension);
	checkf(bConverted, TEXT("LongPackageNameToFilename: '%s' lies below no mounted root"), *InLongPackageName);
	return Filename;
}

FString FPackageName::FilenameToLongPackageName(const FString& InFilename)
{
	FString PackageName;
	FString Reason;
	const bool bConverted = TryConvertFilenameToLongPackageName(InFilename, PackageName, &Reason);
	checkf(bConverted, TEXT("FilenameToLongPackageName: %s"), *Reason);
	return PackageName;
}

bool FPackageName::IsValidLongPackageName(
	const FString& InLongPackageName, bool bIncludeReadOnlyRoots, FText* OutReason)
{
	FString Reason = PackageName::GetReasonAgainst(InLongPackageName);
	const TArray<PackageName::FMountPoint>& MountPoints = PackageName::GetMountPoints();
	const bool bKnownRoot = PackageName::FindMountPoint(MountPoints, InLongPackageName) ||
							(bIncludeReadOnlyRoots && IsScriptPackage(InLongPackageName));
	if (Reason.IsEmpty() && !bKnownRoot)
	{
		Reason = TEXT("no root that is known starts like this");
	}
	if (OutReason && !Reason.IsEmpty())
	{
		*OutReason =
			FText::FromString(FString::Printf(TEXT("'%s' is no name for a package: %s."), *InLongPackageName, *Reason));
	}
	return Reason.IsEmpty();
}

bool FPackageName::DoesPackageExist(const FString& LongPackageName, FString* OutFilename)
{
	for (const FString& Extension : { GetAssetPackageExtension(), GetMapPackageExtension() })
	{
		FString Filename;
		if (IsValidLongPackageName(LongPackageName) &&
			TryConvertLongPackageNameToFilename(LongPackageName, Filename, Extension) &&
			IFileManager::Get().FileExists(*Filename))
		{
			if (OutFilename)
			{
				*OutFilename = Filename;
			}
			return true;
		}
	}
	return false;
}

bool FPackageName::IsScriptPackage(const FString& InPackageName)
{
	return InPackageName.StartsWith(TEXT("/Script/"));
}

bool FPackageName::IsShortPackageName(const FString& PossiblyLongName)
{
	int32 Slash = INDEX_NONE;
	return !PossiblyLongName.FindChar(u'/', Slash);
}

FString FPackageName::GetShortName(const FString& LongName)
{
	int32 Slash = INDEX_NONE;
	return LongName.FindLastChar(u'/', Slash) ? LongName.RightChop(Slash + 1) : LongName;
}

FString FPackageName::GetLongPackagePath(const FString& InLongPackageName)
{
	int32 Slash = INDEX_NONE;
	return InLongPackageName.FindLastChar(u'/', Slash) && Slash > 0 ? InLongPackageName.Left(Slash) : FString();
}

FString FPackageName::ObjectPathToPackageName(const FString& InObjectPath)
{
	int32 End = INDEX_NONE;
	if (InObjectPath.FindChar(u'.', End) || InObjectPath.FindChar(u':', End))
	{
		return InObjectPath.Left(End);
	}
	return InObjectPath;
}

FString FPackageName::ObjectPathToObjectName(const FString& InObjectPath)
{
	int32 Dot = INDEX_NONE;
	int32 Colon = INDEX_NONE;
	InObjectPath.FindLastChar(u'.', Dot);
	InObjectPath.FindLastChar(u':', Colon);
	return InObjectPath.RightChop(FMath::Max(Dot, Colon) + 1);
}

FString FPackageName::ExportTextPathToObjectPath(const FString& InExportTextPath)
{
	FString Path;
	return ParseExportTextPath(InExportTextPath, nullptr, &Path) ? Path : InExportTextPath;
}

bool FPackageName::ParseExportTextPath(const FString& InExportTextPath, FString* OutClassName, FString* OutObjectPath)
{
	int32 Quote = INDEX_NONE;
	if (!InExportTextPath.FindChar(u'\'', Quote) || !InExportTextPath.EndsWith(TEXT("'")) ||
		InExportTextPath.Len() < Quote + 2)
	{
		return false;
	}
	if (OutClassName)
	{
		*OutClassName = InExportTextPath.Left(Quote);
	}
	if (OutObjectPath)
	{
		*OutObjectPath = InExportTextPath.Mid(Quote + 1, InExportTextPath.Len() - Quote - 2).TrimQuotes();
	}
	return true;
}
