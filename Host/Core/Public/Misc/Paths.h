#pragma once

#include "Containers/UnrealString.h"

/**
 * Where things lie, and what the parts of a path are. Only text, but for FileExists and DirectoryExists.
 *
 * The project's directories are relative to the folder of the executable, as in the real editor, and end in "/".
 */
class FPaths
{
public:
	static FString ProjectDir();
	static FString ProjectConfigDir() { return ProjectDir() + TEXT("Config/"); }
	static FString ProjectContentDir() { return ProjectDir() + TEXT("Content/"); }
	static FString ProjectSavedDir() { return ProjectDir() + TEXT("Saved/"); }
	static FString ProjectIntermediateDir() { return ProjectDir() + TEXT("Intermediate/"); }
	static FString ProjectPluginsDir() { return ProjectDir() + TEXT("Plugins/"); }
	static FString ProjectLogDir() { return ProjectSavedDir() + TEXT("Logs/"); }
	static FString GameSourceDir() { return ProjectDir() + TEXT("Source/"); }
	/** Where the host keeps what the engine keeps in its own folder. */
	static FString EngineDir();
	/** The .uproject file; empty until one has been opened. */
	static const FString& GetProjectFilePath();
	static bool IsProjectFilePathSet() { return !GetProjectFilePath().IsEmpty(); }
	static void SetProjectFilePath(const FString& NewGameProjectFilePath);

	/** Relative to the folder of the executable, not to the current directory and not to the project. */
	static FString ConvertRelativePathToFull(const FString& InPath);
	/** Joins and collapses only: with a relative base the result is still relative. */
	static FString ConvertRelativePathToFull(const FString& BasePath, const FString& InPath);
	static bool IsRelative(const FString& InPath);
	/** Changes InPath. InRelativeTo is a file's path: without a trailing "/" its last part is dropped. */
	static bool MakePathRelativeTo(FString& InPath, const TCHAR* InRelativeTo);
	static bool IsSamePath(const FString& PathA, const FString& PathB);
	static bool IsUnderDirectory(const FString& InPath, const FString& InDirectory);

	template <typename... PathTypes>
	static FString Combine(const FString& First, PathTypes&&... Rest)
	{
		FString Result = First;
		((Result /= FStringView(Rest)), ...);
		return Result;
	}

	static void NormalizeFilename(FString& InPath);
	static void NormalizeDirectoryName(FString& InPath);
	/** Removes "x/../"; false when it would climb above the root. Leading "../" stay. */
	static bool CollapseRelativeDirectories(FString& InPath);
	static void RemoveDuplicateSlashes(FString& InPath);

	static FString GetExtension(const FString& InPath, bool bIncludeDot = false);
	static FString GetCleanFilename(const FString& InPath);
	static FString GetBaseFilename(const FString& InPath, bool bRemovePath = true);
	static FString GetPath(const FString& InPath);
	static FString GetPathLeaf(const FString& InPath);
	/** Does nothing on a name without an extension; SetExtension adds one. */
	static FString ChangeExtension(const FString& InPath, const FString& InNewExtension);
	static FString SetExtension(const FString& InPath, const FString& InNewExtension);
	/** Path/Prefix<32 hexadecimal digits>Extension. Creates nothing. */
	static FString CreateTempFilename(
		const TCHAR* Path, const TCHAR* Prefix = TEXT(""), const TCHAR* Extension = TEXT(".tmp"));

	static bool FileExists(const FString& InPath);
	static bool DirectoryExists(const FString& InPath);
};
