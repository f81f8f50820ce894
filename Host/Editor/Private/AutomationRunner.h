#pragma once

#include "CoreMinimal.h"
#include "Misc/AutomationTest.h"

/**
 * Runs automation tests as the editor's command line asks for them:
 * -ExecCmds="Automation RunTests <Filter>;Quit" -ReportExportPath=<folder>
 */
class FAutomationRunner
{
public:
	/** Reads the command line. */
	FAutomationRunner();

	bool HasWork() const { return bHasWork; }
	/** One frame; call until HasWork is false. Prints each test as it ends, and the sum at the end. */
	void Tick();
	/** After the work: 0 if tests ran and all passed. */
	int32 GetExitCode() const { return NumPassed > 0 && NumFailed == 0 ? 0 : 1; }
	bool ShouldQuit() const { return bQuit; }

private:
	struct FResult
	{
		FString FullName;
		FAutomationTestExecutionInfo Info;
	};

	void StartNext();
	void FinishCurrent();
	void Finish();
	void WriteReport() const;

	TArray<FAutomationTestFramework::FTest> Queue;
	TArray<FResult> Results;
	FString Filter;
	int32 NextTest = 0;
	int32 NumPassed = 0;
	int32 NumFailed = 0;
	bool bHasWork = false;
	bool bStarted = false;
	bool bQuit = false;
};
