#pragma once

#include "CoreMinimal.h"

/** Ctrl-C: the first ends what runs, a further one the program. */
class FConsoleInterrupts
{
public:
	enum class EPressed : uint8
	{
		No,
		Once,
		Again,
	};

	static void Listen();
	/** Since the last call. */
	EPressed Take();
	/** The next one is the first: something new begins. */
	void Restart();

private:
	int32 NumSeen = 0;
};
