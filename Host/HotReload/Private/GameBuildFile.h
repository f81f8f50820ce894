#pragma once

#include "EditorBuild.h"
#include "GameModuleRules.h"
#include "NinjaFile.h"

/**
 * Writes the build.ninja of a project's modules.
 *
 * For each module: HeaderTool reads the reflected headers, each source is compiled by itself, the generated sources as
 * one, all are linked. Only the folders and libraries of the listed modules are given, so that what a Build.cs does not
 * list fails here as it would in the engine. Everything of the project is named relative to the project directory,
 * where ninja runs: a compiler cache then serves a copy of the project elsewhere.
 */
class FGameBuildFile
{
public:
	/** Below the project directory: where everything lies that is made on the way. */
	static FString GetFolder();
	static FString GetFileName() { return GetFolder() / TEXT("build.ninja"); }

	/**
	 * @param InModules      each after those of the project that it lists
	 * @param LibraryNumber  part of the libraries' names: a running editor needs a new name to load a new library
	 * @return false when a module lists one that there is not
	 */
	bool Write(const FString& ProjectDir, const FEditorBuild& InEditor, const TArray<FGameModuleRules>& InModules,
		int32 LibraryNumber, FText& OutFailReason);

	static FString GetLibraryName(const FString& ModuleName, int32 LibraryNumber);
	/** INDEX_NONE for what is no such name. */
	static int32 GetLibraryNumber(const FString& LibraryName);

private:
	struct FLists
	{
		TArray<FString> IncludePaths;
		TArray<FString> Definitions;
		TArray<FString> Libraries;
		TArray<FString> Types;
	};

	void AddRules();
	bool AddModule(const FGameModuleRules& Module, FText& OutFailReason);
	bool CollectDependencies(const FGameModuleRules& Module, FLists& OutLists, FText& OutFailReason) const;
	void AddHeaderToolStep(const FGameModuleRules& Module, const FLists& Lists);
	FString AddCompileStep(const FGameModuleRules& Module, const FString& Source, const FString& Object,
		const FString& MoreArguments = FString());
	void AddLinkStep(const FGameModuleRules& Module, const FLists& Lists, const TArray<FString>& Objects);
	bool WriteGeneratedUnityFile(const FGameModuleRules& Module) const;

	static FString GetModuleFolder(const FGameModuleRules& Module) { return GetFolder() / Module.Name; }
	static FString GetGeneratedFolder(const FGameModuleRules& Module) { return GetModuleFolder(Module) / TEXT("Inc"); }
	static FString GetTypesFile(const FGameModuleRules& Module);
	static FString GetUnityFile(const FGameModuleRules& Module);
	static TArray<FString> GetGeneratedSources(const FGameModuleRules& Module);
	FString GetLibraryPath(const FGameModuleRules& Module) const;
	const FGameModuleRules* FindModule(const FString& Name) const;

	FString Directory;
	const FEditorBuild* Editor = nullptr;
	const TArray<FGameModuleRules>* Modules = nullptr;
	int32 Number = 0;
	FNinjaFile File;
};
