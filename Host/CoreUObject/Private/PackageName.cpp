#include "Misc/PackageName.h"

#include "Misc/Paths.h"

namespace PackageName
{
const TCHAR* const GameRoot = TEXT("/Game/");

FString FullContentDir()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectContentDir());
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

bool FPackageName::TryConvertFilenameToLongPackageName(
	const FString& InFilename, FString& OutPackageName, FString* OutFailureReason)
{
	FString Path = FPaths::ConvertRelativePathToFull(InFilename);
	if (!Path.RemoveFromStart(PackageName::FullContentDir(), ESearchCase::CaseSensitive) || Path.IsEmpty())
	{
		if (OutFailureReason)
		{
			*OutFailureReason = FString::Printf(TEXT("'%s' does not lie in a mounted folder"), *InFilename);
		}
		return false;
	}
	OutPackageName = PackageName::GameRoot + FPaths::GetBaseFilename(Path, false);
	return true;
}

bool FPackageName::TryConvertLongPackageNameToFilename(
	const FString& InLongPackageName, FString& OutFilename, const FString& InExtension)
{
	FString Path = InLongPackageName;
	if (!Path.RemoveFromStart(PackageName::GameRoot) || Path.IsEmpty())
	{
		return false;
	}
	OutFilename = FPaths::ProjectContentDir() + Path + InExtension;
	return true;
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
