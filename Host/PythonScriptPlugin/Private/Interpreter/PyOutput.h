#pragma once

#include "Containers/UnrealString.h"
#include "PythonScriptTypes.h"

DECLARE_LOG_CATEGORY_EXTERN(LogPython, Log, All);

/**
 * What scripts print and log, on its way to the log.
 *
 * Used with the interpreter's lock held. Only what the game thread writes belongs to a command.
 */
class FPyOutput
{
public:
	/** Ceiling of what one command may print and log, in UTF-16 units: the rest is counted and left out. */
	static constexpr int32 MaxCommandUnits = 1024 * 1024;
	/** A printed line is broken here, so that one without an end does not pile up. */
	static constexpr int32 MaxLineUnits = 64 * 1024;

	/** Logs a whole message; with several lines it is one entry of the command's output. */
	static void Log(EPythonLogOutputType Type, FStringView Message);
	/** Takes text of a stream: lines are logged as they are completed. */
	static void Write(EPythonLogOutputType Type, FStringView Text);
	/** What may still be written before the ceiling is reached; more need not be converted. */
	static int32 GetRoom();
	/** Counts text that was not handed over. */
	static void CountLeftOut(int64 Units);
};

/** Collects in Entries what a command prints and logs while it runs. Commands can nest. */
class FPyOutputCapture
{
public:
	explicit FPyOutputCapture(TArray<FPythonLogOutputEntry>& InEntries);
	/** Completes the lines that were begun, and tells how much was left out. */
	~FPyOutputCapture();
	UE_NONCOPYABLE(FPyOutputCapture)

private:
	friend class FPyOutput;

	TArray<FPythonLogOutputEntry>& Entries;
	FPyOutputCapture* const Enclosing;
	int32 Room = FPyOutput::MaxCommandUnits; // UTF-16 units
	int64 LeftOut = 0;                       // UTF-16 units
};
