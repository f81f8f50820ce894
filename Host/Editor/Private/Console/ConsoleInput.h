#pragma once

#include "CoreMinimal.h"

#include <string>

/** The lines of the standard input, read without waiting for them. */
class FConsoleInput
{
public:
	FConsoleInput();

	/** Takes in what has arrived. */
	void Read();
	bool HasLine() const { return !Lines.IsEmpty(); }
	/** The next line, which must be there. */
	const FString& PeekLine() const { return Lines[0]; }
	FString TakeLine();
	/** The input has ended; there may still be lines. */
	bool IsClosed() const { return bClosed; }
	/** Somebody types it on a terminal. */
	bool IsTyped() const { return bTyped; }

private:
	void AddLines();

	TArray<FString> Lines;
	std::string PartialLine; // bytes of a line that has not ended yet
	bool bClosed = false;
	const bool bTyped;
};
