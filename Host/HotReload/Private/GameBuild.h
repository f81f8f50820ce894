#pragma once

#include "ChildProcess.h"
#include "EditorBuild.h"
#include "GameModuleRules.h"
#include "Misc/CompilationResult.h"

struct FHostModuleManifest;

/**
 * One build of all C++ modules of the project, in the background.
 *
 * First ninja is asked whether there is anything to do for the libraries that the manifest names. If so, all are built
 * under a new number, so that they can be loaded beside those that an editor runs. The manifest names the new libraries
 * once all of them are there.
 */
class FGameBuild
{
public:
	/** Of the project that is open: the names of the modules that an editor loads. */
	static TArray<FString> GetProjectModules();
	/** Names modules listed in a Build.cs that are neither the editor's nor the project's; empty when there are none.
	 */
	static FString DescribeMissingDependencies();
	/** Whether every library is there and was built for this very editor. */
	static bool AreLibrariesUsable();
	/** Deletes libraries that the manifest no longer names. */
	static void DeleteOldLibraries();

	/**
	 * False when nothing can be built; OutFailReason tells why. Modules that need what this editor does not have are
	 * accepted: the build prints so and fails, so that whoever waits for its result learns the cause.
	 */
	bool Start(FText& OutFailReason);
	/** Moves on without waiting. @return whether the build still goes on */
	bool Tick();
	void RequestStop();
	/** What was printed since the last call, without line breaks. */
	TArray<FString> TakeLines();

	/** Once the build has ended. */
	ECompilationResult::Type GetResult() const { return Result; }
	/** The full paths of the libraries that were built or are up to date, by module name; each after those it needs. */
	const TArray<TPair<FName, FString>>& GetLibraries() const { return Libraries; }

private:
	static bool ReadRules(const FString& ProjectDir, TArray<FGameModuleRules>& OutModules, FText& OutFailReason);
	static TArray<FString> FindMissing(const TArray<FGameModuleRules>& Modules, const FEditorBuild& Editor);
	static FString DescribeMissing(const TArray<FString>& Missing);
	bool StartNinja(int32 LibraryNumber, bool bOnlyCheck, FText& OutFailReason);
	void EndCheck();
	void EndBuild();
	void End(ECompilationResult::Type InResult);
	void FillLibraries();
	/** INDEX_NONE unless all libraries of the manifest are there under one number. */
	int32 GetPresentNumber() const;
	int32 MakeNewNumber() const;
	bool SaveManifest(int32 LibraryNumber) const;
	void TakeLinesFromProcess();

	enum class EPhase : uint8
	{
		Refusing, // no compile can succeed here
		Checking,
		Building,
		Ended,
	};

	FString ProjectDir; // absolute, without a trailing slash
	FEditorBuild Editor;
	TArray<FGameModuleRules> Modules; // each after those that it lists
	TUniquePtr<FChildProcess> Process;
	EPhase Phase = EPhase::Ended;
	int32 Number = 0;
	bool bStopRequested = false;
	bool bNothingToDo = false;
	bool bSkipNextLine = false;
	TArray<FString> Lines;
	TArray<TPair<FName, FString>> Libraries;
	ECompilationResult::Type Result = ECompilationResult::Unknown;
};
