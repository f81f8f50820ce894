#pragma once

#include "CoreMinimal.h"

/** What a module of the project is made of. All paths are relative to the project directory. */
struct FGameModuleRules
{
	FString Name;
	FString Folder;
	TArray<FString> Dependencies;   // names of modules
	TArray<FString> PublicFolders;  // on the include path of the module and of those that list it
	TArray<FString> PrivateFolders; // on its own include path only
	TArray<FString> Sources;
	TArray<FString> ReflectedHeaders; // for HeaderTool to read

	/** Reads <Name>.Build.cs below the project's Source folder and finds the files beside it. */
	bool Read(const FString& ProjectDir, const FString& ModuleName, FText& OutFailReason);

private:
	void ReadBuildCs(const FString& ProjectDir, const FString& Text);
	void FindFiles(const FString& ProjectDir);
};
