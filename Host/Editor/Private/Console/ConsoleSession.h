#pragma once

#include "Console/ConsoleInput.h"
#include "Console/ConsoleInterrupts.h"
#include "Console/ConsoleOutput.h"
#include "Console/FailureWatch.h"
#include "Misc/Optional.h"

/** Who says what is typed next: somebody at the input, or the prompts of the command line. */
class FConsoleSession
{
public:
	FConsoleSession(FConsoleInput& InInput, FConsoleOutput& InOutput, FConsoleInterrupts& InInterrupts)
		: Input(InInput)
		, Output(InOutput)
		, Interrupts(InInterrupts)
	{
	}
	virtual ~FConsoleSession() = default;
	UE_NONCOPYABLE(FConsoleSession)

	virtual void Tick(const FPanelView& View) = 0;
	/** Ctrl-C has ended the conversation. */
	virtual void OnInterrupted() = 0;
	/** Set when the program is to exit. */
	const TOptional<int32>& GetExitCode() const { return ExitCode; }
	void Leave(int32 Code) { ExitCode = Code; }

protected:
	/** A prompt, a command, or the answer to the question for approval. */
	void HandleLine(const FPanelView& View, const FString& Line);
	void AskForApprovalOnce(const FPanelView& View);
	/** Whether an approval waited and was given. */
	bool Approve(const FPanelView& View);

	FConsoleInput& Input;
	FConsoleOutput& Output;
	FConsoleInterrupts& Interrupts;
	FFailureWatch Failures;
	bool bUsedCommand = false; // the last line pressed a button, or asked for help

private:
	void HandleCommand(const FPanelView& View, const FString& Command);

	bool bAskedForApproval = false;
	TOptional<int32> ExitCode;
};
