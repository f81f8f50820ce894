#include "Agent/Files/FileUtils.h"

#include "Agent/Files/NativeFile.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

FString FFileUtils::MakeError(const TCHAR* What, const FString& FullPath)
{
	return FString::Printf(TEXT("Error: %s: %s"), What, *FullPath);
}

namespace FileUtils
{
FString MissingFileError(const FString& FullPath)
{
	return FFileUtils::MakeError(TEXT("File does not exist"), FullPath);
}

FString UnreadableFileError(const FString& FullPath)
{
	return FFileUtils::MakeError(TEXT("Failed to read file"), FullPath);
}
}

FString FFileUtils::ToAbsolutePath(const FString& Path)
{
	static const FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	return FPaths::ConvertRelativePathToFull(ProjectDir, Path);
}

FString FFileUtils::ReadFile(const FString& Path)
{
	const FString FullPath = ToAbsolutePath(Path);
	FString Text;
	if (KestrelNativeFile::IsRegularFile(FullPath) && FFileHelper::LoadFileToString(Text, *FullPath))
	{
		return Text;
	}
	return FPaths::FileExists(FullPath) ? FileUtils::UnreadableFileError(FullPath)
										: FileUtils::MissingFileError(FullPath);
}

FString FFileUtils::ReadFileLineRange(const FString& Path, int32 StartLine, int32 EndLine)
{
	const FString FullPath = ToAbsolutePath(Path);
	if (!FPaths::FileExists(FullPath))
	{
		return FileUtils::MissingFileError(FullPath);
	}
	TArray<FString> Lines;
	if (!KestrelNativeFile::IsRegularFile(FullPath) || !FFileHelper::LoadFileToStringArray(Lines, *FullPath))
	{
		return FileUtils::UnreadableFileError(FullPath);
	}

	const int32 FirstIndex = FMath::Max(StartLine, 1) - 1;
	// Not an index: the least line number minus 1 would overflow, and the service may send any number.
	const int32 LastLine = FMath::Min(EndLine == -1 ? Lines.Num() : EndLine, Lines.Num());
	if (FirstIndex >= LastLine)
	{
		return FString::Printf(
			TEXT("Error: Invalid line range for file: %s (StartLine: %d, EndLine: %d, Total Lines: %d)"), *FullPath,
			FirstIndex + 1, LastLine, Lines.Num());
	}
	return FString::Join(MakeArrayView(Lines).Slice(FirstIndex, LastLine - FirstIndex), TEXT("\n"));
}
