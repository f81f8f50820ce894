#include "Console/ConsoleInterrupts.h"

#include <csignal>

namespace
{
volatile std::sig_atomic_t NumInterrupts = 0;

void OnInterrupt(int)
{
	NumInterrupts = NumInterrupts + 1;
}
}

void FConsoleInterrupts::Listen()
{
	std::signal(SIGINT, &OnInterrupt);
}

FConsoleInterrupts::EPressed FConsoleInterrupts::Take()
{
	const int32 Num = NumInterrupts;
	if (Num == NumSeen)
	{
		return EPressed::No;
	}
	const bool bFirst = NumSeen == 0 && Num == 1;
	NumSeen = Num;
	return bFirst ? EPressed::Once : EPressed::Again;
}

void FConsoleInterrupts::Restart()
{
	NumInterrupts = 0;
	NumSeen = 0;
}
