#pragma once

#include "Containers/Array.h"
#include "Misc/OutputDevice.h"

#include <memory>

/**
 * The global log: hands each line to every device. It owns none of them: a device is removed before it dies.
 *
 * A device that cannot be used on several threads is called on the primary log thread alone; lines that other threads
 * log are kept (at most MaxBufferedLines of them, the oldest go first) until that thread flushes or logs again.
 */
class FOutputDeviceRedirector : public FOutputDevice
{
public:
	static constexpr int32 MaxBufferedLines = 65536;

	FOutputDeviceRedirector();
	~FOutputDeviceRedirector() override;

	static FOutputDeviceRedirector* Get();

	/** Adding a device twice keeps one entry. */
	void AddOutputDevice(FOutputDevice* OutputDevice);
	void RemoveOutputDevice(FOutputDevice* OutputDevice);

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category, const double Time) override;
	/** Delivers the lines of other threads; does nothing elsewhere than on the primary log thread. */
	void FlushThreadedLogs();
	void Flush() override;
	void TearDown() override;
	bool CanBeUsedOnAnyThread() const override { return true; }
	bool CanBeUsedOnMultipleThreads() const override { return true; }

private:
	struct FState;
	std::unique_ptr<FState> State;
};
