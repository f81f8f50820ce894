#pragma once

#include "CoreMinimal.h"

/** How this editor was built, as far as a game module has to be built alike: HostEditor.build.json beside the editor.
 */
struct FEditorBuild
{
	struct FModule
	{
		TArray<FString> IncludePaths; // its own, and none of the modules below
		TArray<FString> Definitions;
		FString Library;
		FString Types; // what HeaderTool wrote of its reflected types; empty when it has none
	};

	FString Ninja;
	FString Compiler;
	TArray<FString> CompilerLauncher; // a compiler cache, or nothing
	TArray<FString> CompileFlags;
	TArray<FString> LinkFlags;
	FString HeaderTool;
	FString PrecompiledHeader; // the source; the compiled one ends in ".pch"
	TMap<FString, FModule> Modules;

	bool Load(FText& OutFailReason);
	/** Changes with every build of the editor's libraries: game modules of another build may not fit. */
	FString GetBuildId() const;
};
