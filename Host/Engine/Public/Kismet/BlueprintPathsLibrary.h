#pragma once

#include "Kismet/BlueprintFunctionLibrary.h"
#include "BlueprintPathsLibrary.generated.h"

/** FPaths for Blueprints and scripts. */
UCLASS(meta = (ScriptName = "Paths"))
class ENGINE_API UBlueprintPathsLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString EngineDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectConfigDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectContentDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectIntermediateDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectLogDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectPluginsDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ProjectSavedDir();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString GetProjectFilePath();
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool IsProjectFilePathSet();

	/** Without a base, relative to the folder of the executable. */
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ConvertRelativePathToFull(const FString& InPath, const FString& InBasePath = TEXT(""));
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool IsRelative(const FString& InPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool MakePathRelativeTo(const FString& InPath, const FString& InRelativeTo, FString& OutPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool IsSamePath(const FString& PathA, const FString& PathB);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool IsUnderDirectory(const FString& InPath, const FString& InDirectory);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString Combine(const TArray<FString>& InPaths);

	UFUNCTION(BlueprintPure, Category = "Paths")
	static void NormalizeFilename(const FString& InPath, FString& OutPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static void NormalizeDirectoryName(const FString& InPath, FString& OutPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static bool CollapseRelativeDirectories(const FString& InPath, FString& OutPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static void RemoveDuplicateSlashes(const FString& InPath, FString& OutPath);

	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString GetExtension(const FString& InPath, bool bIncludeDot = false);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString GetCleanFilename(const FString& InPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString GetBaseFilename(const FString& InPath, bool bRemovePath = true);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString GetPath(const FString& InPath);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString ChangeExtension(const FString& InPath, const FString& InNewExtension);
	UFUNCTION(BlueprintPure, Category = "Paths")
	static FString SetExtension(const FString& InPath, const FString& InNewExtension);
	UFUNCTION(BlueprintCallable, Category = "Paths")
	static FString CreateTempFilename(
		const FString& Path, const FString& Prefix = TEXT(""), const FString& Extension = TEXT(".tmp"));

	UFUNCTION(BlueprintCallable, Category = "Paths")
	static bool FileExists(const FString& InPath);
	UFUNCTION(BlueprintCallable, Category = "Paths")
	static bool DirectoryExists(const FString& InPath);
};
