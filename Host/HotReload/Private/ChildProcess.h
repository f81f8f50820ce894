#pragma once

#include "CoreMinimal.h"

/**
 * A program that runs beside the editor. It reads nothing, what it prints is collected, and it is told to end when the
 * editor ends, however that happens.
 */
class FChildProcess
{
public:
	FChildProcess() = default;
	/** Ends the program, if need be the hard way. */
	~FChildProcess();
	UE_NONCOPYABLE(FChildProcess)

	/**
	 * Starts a program, with no shell in between. The first of Command is its file.
	 *
	 * @param Environment  "NAME=value" texts on top of the editor's own variables
	 */
	bool Start(const TArray<FString>& Command, const FString& WorkingDirectory, const TArray<FString>& Environment);
	/** Takes what has been printed so far, without waiting. @return whether the program still runs */
	bool Poll();
	/** The whole lines that came since the last call; the rest, too, once the program has ended. */
	TArray<FString> TakeLines();
	/** Asks the program to end; a second request forces it. */
	void RequestStop();
	/** Of a program that has ended; negative when a signal ended it. */
	int32 GetExitCode() const { return ExitCode; }

private:
	void ReadOutput();
	void Keep(const char* Bytes, int32 Count);
	void CloseOutput();

	int32 ProcessId = 0; // 0: none runs
	int32 OutputPipe = -1;
	int32 ExitCode = 0;
	bool bStopRequested = false;
	TArray<char> Unread;    // printed and not taken
	int64 NumKeptBytes = 0; // of everything printed
	bool bCut = false;
};
