#include "Misc/Paths.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/PlatformProcess.h"
#include "Math/UnrealMathUtility.h"
#include "Misc/Guid.h"

namespace Paths
{
FString ProjectFilePath;

bool IsSlash(TCHAR C)
{
	return C == u'/' || C == u'\\';
}

int32 FindLastSlash(const FString& Path)
{
	int32 Index = Path.Len() - 1;
	while (Index >= 0 && !IsSlash(Path[Index]))
	{
		--Index;
	}
	return Index;
}

/** Index of the last dot of the file name, INDEX_NONE when it has none. */
int32 FindExtensionDot(const FString& Path)
{
	int32 Dot = INDEX_NONE;
	return Path.FindLastChar(u'.', Dot) && Dot > FindLastSlash(Path) ? Dot : INDEX_NONE;
}

FString MakeProjectDir(const FString& NewProjectFilePath)
{
	FString Dir = FPaths::GetPath(FPaths::ConvertRelativePathToFull(NewProjectFilePath)) + TEXT("/");
	FPaths::MakePathRelativeTo(Dir, FPlatformProcess::BaseDir());
	return Dir.EndsWith(TEXT("/")) ? Dir : Dir + TEXT("/");
}

FString ProjectDir;

/** Whether a path has nothing to collapse, as nearly all have not: no "." or ".." among its names, and no empty name.
 */
bool IsCollapsed(const FString& Path)
{
	const TCHAR* Next = *Path;
	for (int32 Index = 0; Index < Path.Len(); ++Index)
	{
		const bool bBeginsName = Index == 0 || Next[Index - 1] == u'/';
		if (!bBeginsName)
		{
			continue;
		}
		const int32 NumDots = Next[Index] != u'.' ? 0 : Next[Index + 1] != u'.' ? 1 : 2;
		const TCHAR Behind = Next[Index + NumDots];
		const bool bEmpty = NumDots == 0 && Index > 0 && Next[Index] == u'/';
		if (bEmpty || (NumDots > 0 && (Behind == u'/' || Behind == u'\0')))
		{
			return false;
		}
	}
	return true;
}
}

FString FPaths::ProjectDir()
{
	checkf(IsProjectFilePathSet(), TEXT("No project has been opened"));
	return Paths::ProjectDir;
}

const FString& FPaths::GetProjectFilePath()
{
	return Paths::ProjectFilePath;
}

void FPaths::SetProjectFilePath(const FString& NewGameProjectFilePath)
{
	Paths::ProjectDir = Paths::MakeProjectDir(NewGameProjectFilePath);
	Paths::ProjectFilePath = Paths::ProjectDir + GetCleanFilename(NewGameProjectFilePath);
}

FString FPaths::EngineDir()
{
	return TEXT("../");
}

FString FPaths::ConvertRelativePathToFull(const FString& InPath)
{
	return ConvertRelativePathToFull(FPlatformProcess::BaseDir(), InPath);
}

FString FPaths::ConvertRelativePathToFull(const FString& BasePath, const FString& InPath)
{
	FString Full = IsRelative(InPath) ? BasePath / InPath : InPath;
	NormalizeFilename(Full);
	CollapseRelativeDirectories(Full);
	return Full.IsEmpty() ? FString(TEXT("/")) : Full;
}

bool FPaths::IsRelative(const FString& InPath)
{
	const bool bHasRoot = InPath.StartsWith(TEXT("/")) || InPath.StartsWith(TEXT("\\"));
	const bool bHasDrive = InPath.Len() >= 2 && FChar::IsAlpha(InPath[0]) && InPath[1] == u':';
	return !bHasRoot && !bHasDrive;
}

bool FPaths::MakePathRelativeTo(FString& InPath, const TCHAR* InRelativeTo)
{
	TArray<FString> Target;
	TArray<FString> Source;
	const FString FullTarget = ConvertRelativePathToFull(InPath);
	const FString FullSource = ConvertRelativePathToFull(InRelativeTo);
	FullTarget.ParseIntoArray(Target, TEXT("/"));
	// A file's path: what stands behind the last slash does not count.
	GetPath(FullSource).ParseIntoArray(Source, TEXT("/"));

	int32 NumShared = 0;
	while (NumShared < Target.Num() && NumShared < Source.Num() && Target[NumShared].Equals(Source[NumShared]))
	{
		++NumShared;
	}
	FString Result;
	for (int32 Index = NumShared; Index < Source.Num(); ++Index)
	{
		Result += TEXT("../");
	}
	for (int32 Index = NumShared; Index < Target.Num(); ++Index)
	{
		Result += Target[Index];
		if (Index + 1 < Target.Num() || FullTarget.EndsWith(TEXT("/")))
		{
			Result += TEXT("/");
		}
	}
	InPath = Result;
	return true;
}

bool FPaths::IsSamePath(const FString& PathA, const FString& PathB)
{
	FString A = ConvertRelativePathToFull(PathA);
	FString B = ConvertRelativePathToFull(PathB);
	NormalizeDirectoryName(A);
	NormalizeDirectoryName(B);
	return A.Equals(B);
}

bool FPaths::IsUnderDirectory(const FString& InPath, const FString& InDirectory)
{
	FString Path = ConvertRelativePathToFull(InPath);
	FString Directory = ConvertRelativePathToFull(InDirectory);
	NormalizeDirectoryName(Path);
	NormalizeDirectoryName(Directory);
	return Path.Equals(Directory) || Path.StartsWith(Directory.EndsWith(TEXT("/")) ? Directory : Directory + TEXT("/"),
										 ESearchCase::CaseSensitive);
}

void FPaths::NormalizeFilename(FString& InPath)
{
	InPath.ReplaceCharInline(u'\\', u'/', ESearchCase::CaseSensitive);
}

void FPaths::NormalizeDirectoryName(FString& InPath)
{
	NormalizeFilename(InPath);
	if (InPath.Len() > 1 && InPath.EndsWith(TEXT("/")) && !InPath.EndsWith(TEXT("//")) && !InPath.EndsWith(TEXT(":/")))
	{
		InPath.LeftChopInline(1);
	}
}

bool FPaths::CollapseRelativeDirectories(FString& InPath)
{
	if (Paths::IsCollapsed(InPath))
	{
		return true;
	}
	const bool bAbsolute = InPath.StartsWith(TEXT("/"));
	const bool bTrailingSlash = InPath.EndsWith(TEXT("/"));
	TArray<FString> Parts;
	InPath.ParseIntoArray(Parts, TEXT("/"));
	TArray<FString> Kept;
	for (const FString& Part : Parts)
	{
		if (Part.Equals(TEXT(".")))
		{
			continue;
		}
		const bool bUp = Part.Equals(TEXT(".."));
		if (bUp && Kept.Num() > 0 && !Kept.Last().Equals(TEXT("..")))
		{
			Kept.Pop();
			continue;
		}
		if (bUp && bAbsolute)
		{
			return false;
		}
		Kept.Add(Part);
	}
	InPath = (bAbsolute ? TEXT("/") : TEXT("")) + FString::Join(Kept, TEXT("/"));
	if (bTrailingSlash && Kept.Num() > 0)
	{
		InPath += TEXT("/");
	}
	return true;
}

void FPaths::RemoveDuplicateSlashes(FString& InPath)
{
	while (InPath.ReplaceInline(TEXT("//"), TEXT("/"), ESearchCase::CaseSensitive) > 0)
	{
	}
}

FString FPaths::GetExtension(const FString& InPath, bool bIncludeDot)
{
	const int32 Dot = Paths::FindExtensionDot(InPath);
	return Dot == INDEX_NONE ? FString() : InPath.Mid(Dot + (bIncludeDot ? 0 : 1));
}

FString FPaths::GetCleanFilename(const FString& InPath)
{
	return InPath.Mid(Paths::FindLastSlash(InPath) + 1);
}

FString FPaths::GetBaseFilename(const FString& InPath, bool bRemovePath)
{
	const int32 Dot = Paths::FindExtensionDot(InPath);
	const FString WithoutExtension = Dot == INDEX_NONE ? InPath : InPath.Left(Dot);
	return bRemovePath ? GetCleanFilename(WithoutExtension) : WithoutExtension;
}

FString FPaths::GetPath(const FString& InPath)
{
	return InPath.Left(FMath::Max(Paths::FindLastSlash(InPath), 0));
}

FString FPaths::GetPathLeaf(const FString& InPath)
{
	FString Path = InPath;
	while (!Path.IsEmpty() && Paths::IsSlash(Path[Path.Len() - 1]))
	{
		Path.LeftChopInline(1);
	}
	return GetCleanFilename(Path);
}

FString FPaths::ChangeExtension(const FString& InPath, const FString& InNewExtension)
{
	return Paths::FindExtensionDot(InPath) == INDEX_NONE ? InPath : SetExtension(InPath, InNewExtension);
}

FString FPaths::SetExtension(const FString& InPath, const FString& InNewExtension)
{
	const FString Base = GetBaseFilename(InPath, false);
	return InNewExtension.IsEmpty() || InNewExtension.StartsWith(TEXT(".")) ? Base + InNewExtension
																			: Base + TEXT(".") + InNewExtension;
}

FString FPaths::CreateTempFilename(const TCHAR* Path, const TCHAR* Prefix, const TCHAR* Extension)
{
	return FString(Path) / (Prefix + FGuid::NewGuid().ToString() + Extension);
}

bool FPaths::FileExists(const FString& InPath)
{
	return FPlatformFileManager::Get().GetPlatformFile().FileExists(*InPath);
}

bool FPaths::DirectoryExists(const FString& InPath)
{
	return FPlatformFileManager::Get().GetPlatformFile().DirectoryExists(*InPath);
}
