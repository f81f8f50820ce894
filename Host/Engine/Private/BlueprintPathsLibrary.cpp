#include "Kismet/BlueprintPathsLibrary.h"

#include "Misc/Paths.h"

FString UBlueprintPathsLibrary::EngineDir()
{
	return FPaths::EngineDir();
}

FString UBlueprintPathsLibrary::ProjectDir()
{
	return FPaths::ProjectDir();
}

FString UBlueprintPathsLibrary::ProjectConfigDir()
{
	return FPaths::ProjectConfigDir();
}

FString UBlueprintPathsLibrary::ProjectContentDir()
{
	return FPaths::ProjectContentDir();
}

FString UBlueprintPathsLibrary::ProjectIntermediateDir()
{
	return FPaths::ProjectIntermediateDir();
}

FString UBlueprintPathsLibrary::ProjectLogDir()
{
	return FPaths::ProjectLogDir();
}

FString UBlueprintPathsLibrary::ProjectPluginsDir()
{
	return FPaths::ProjectPluginsDir();
}

FString UBlueprintPathsLibrary::ProjectSavedDir()
{
	return FPaths::ProjectSavedDir();
}

FString UBlueprintPathsLibrary::GetProjectFilePath()
{
	return FPaths::GetProjectFilePath();
}

bool UBlueprintPathsLibrary::IsProjectFilePathSet()
{
	return FPaths::IsProjectFilePathSet();
}

FString UBlueprintPathsLibrary::ConvertRelativePathToFull(const FString& InPath, const FString& InBasePath)
{
	return InBasePath.IsEmpty() ? FPaths::ConvertRelativePathToFull(InPath)
								: FPaths::ConvertRelativePathToFull(InBasePath, InPath);
}

bool UBlueprintPathsLibrary::IsRelative(const FString& InPath)
{
	return FPaths::IsRelative(InPath);
}

bool UBlueprintPathsLibrary::MakePathRelativeTo(const FString& InPath, const FString& InRelativeTo, FString& OutPath)
{
	OutPath = InPath;
	return FPaths::MakePathRelativeTo(OutPath, *InRelativeTo);
}

bool UBlueprintPathsLibrary::IsSamePath(const FString& PathA, const FString& PathB)
{
	return FPaths::IsSamePath(PathA, PathB);
}

bool UBlueprintPathsLibrary::IsUnderDirectory(const FString& InPath, const FString& InDirectory)
{
	return FPaths::IsUnderDirectory(InPath, InDirectory);
}

FString UBlueprintPathsLibrary::Combine(const TArray<FString>& InPaths)
{
	FString Result;
	for (const FString& Path : InPaths)
	{
		Result /= Path;
	}
	return Result;
}

void UBlueprintPathsLibrary::NormalizeFilename(const FString& InPath, FString& OutPath)
{
	OutPath = InPath;
	FPaths::NormalizeFilename(OutPath);
}

void UBlueprintPathsLibrary::NormalizeDirectoryName(const FString& InPath, FString& OutPath)
{
	OutPath = InPath;
	FPaths::NormalizeDirectoryName(OutPath);
}

bool UBlueprintPathsLibrary::CollapseRelativeDirectories(const FString& InPath, FString& OutPath)
{
	OutPath = InPath;
	return FPaths::CollapseRelativeDirectories(OutPath);
}

void UBlueprintPathsLibrary::RemoveDuplicateSlashes(const FString& InPath, FString& OutPath)
{
	OutPath = InPath;
	FPaths::RemoveDuplicateSlashes(OutPath);
}

FString UBlueprintPathsLibrary::GetExtension(const FString& InPath, bool bIncludeDot)
{
	return FPaths::GetExtension(InPath, bIncludeDot);
}

FString UBlueprintPathsLibrary::GetCleanFilename(const FString& InPath)
{
	return FPaths::GetCleanFilename(InPath);
}

FString UBlueprintPathsLibrary::GetBaseFilename(const FString& InPath, bool bRemovePath)
{
	return FPaths::GetBaseFilename(InPath, bRemovePath);
}

FString UBlueprintPathsLibrary::GetPath(const FString& InPath)
{
	return FPaths::GetPath(InPath);
}

FString UBlueprintPathsLibrary::ChangeExtension(const FString& InPath, const FString& InNewExtension)
{
	return FPaths::ChangeExtension(InPath, InNewExtension);
}

FString UBlueprintPathsLibrary::SetExtension(const FString& InPath, const FString& InNewExtension)
{
	return FPaths::SetExtension(InPath, InNewExtension);
}

FString UBlueprintPathsLibrary::CreateTempFilename(const FString& Path, const FString& Prefix, const FString& Extension)
{
	return FPaths::CreateTempFilename(*Path, *Prefix, *Extension);
}

bool UBlueprintPathsLibrary::FileExists(const FString& InPath)
{
	return FPaths::FileExists(InPath);
}

bool UBlueprintPathsLibrary::DirectoryExists(const FString& InPath)
{
	return FPaths::DirectoryExists(InPath);
}
