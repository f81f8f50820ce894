#pragma once

#include <CoreMinimal.h>
#include <csignal>

/** Puts the signal handlers of the process back at the end of a script, so that Ctrl-C still ends the editor. */
class FPySignals
{
public:
	FPySignals()
	{
		for (int Signal = 1; Signal < NumSignals; ++Signal)
		{
			sigaction(Signal, nullptr, &Actions[Signal]);
		}
	}
	~FPySignals()
	{
		for (int Signal = 1; Signal < NumSignals; ++Signal)
		{
			sigaction(Signal, &Actions[Signal], nullptr);
		}
	}
	UE_NONCOPYABLE(FPySignals)

private:
	static constexpr int NumSignals = 32; // the classic ones; those that cannot be changed refuse it

	struct sigaction Actions[NumSignals] = {};
};
