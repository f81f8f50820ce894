#pragma once

#include "CoreMinimal.h"
#include "Misc/OutputDevice.h"

/**
 * Whether something has gone wrong since the user last asked for something, as the log tells it: "-FailOn=<category>"
 * names the log category whose warnings and errors are failures to an unattended run. Without it there are none.
 *
 * The log is the one channel that every part of an editor uses already, so the console needs to know nobody.
 */
class FFailureWatch final : public FOutputDevice
{
public:
	FFailureWatch();
	~FFailureWatch() override;
	UE_NONCOPYABLE(FFailureWatch)

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;

	/** Forgets what has gone wrong so far: something new was asked for. */
	void Restart() { bFailed = false; }
	bool HasFailed() const { return bFailed; }

private:
	FString CategoryName;
	bool bFailed = false;
};
