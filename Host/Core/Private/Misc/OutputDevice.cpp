#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"
#include "Misc/FeedbackContext.h"
#include "Misc/OutputDeviceRedirector.h"

#include <deque>
#include <mutex>
#include <thread>

void FOutputDevice::Log(const TCHAR* S)
{
	Serialize(S, ELogVerbosity::Log, FName());
}

void FFeedbackContext::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	GLog->Serialize(V, Verbosity, Category);
}

struct FOutputDeviceRedirector::FState
{
	struct FLine
	{
		FString Text;
		ELogVerbosity::Type Verbosity;
		FName Category;
		double Time;
	};

	// Recursive: a device that is not well behaved may log while it is called.
	std::recursive_mutex Mutex;
	TArray<FOutputDevice*> Devices;
	std::deque<FLine> BufferedLines;
	std::thread::id PrimaryThread = std::this_thread::get_id();

	bool IsOnPrimaryThread() const { return std::this_thread::get_id() == PrimaryThread; }

	void Deliver(const FLine& Line, bool bMultipleThreadDevices)
	{
		const TArray<FOutputDevice*> Snapshot = Devices;
		for (FOutputDevice* Device : Snapshot)
		{
			if (Devices.Contains(Device) && Device->CanBeUsedOnMultipleThreads() == bMultipleThreadDevices)
			{
				Device->Serialize(*Line.Text, Line.Verbosity, Line.Category, Line.Time);
			}
		}
	}

	void DeliverBufferedLines()
	{
		while (!BufferedLines.empty())
		{
			const FLine Line = BufferedLines.front();
			BufferedLines.pop_front();
			Deliver(Line, false);
		}
	}
};

FOutputDeviceRedirector::FOutputDeviceRedirector()
	: State(std::make_unique<FState>())
{
}

FOutputDeviceRedirector::~FOutputDeviceRedirector() = default;

FOutputDeviceRedirector* FOutputDeviceRedirector::Get()
{
	return GLog;
}

void FOutputDeviceRedirector::AddOutputDevice(FOutputDevice* OutputDevice)
{
	const std::lock_guard Lock(State->Mutex);
	State->Devices.AddUnique(OutputDevice);
}

void FOutputDeviceRedirector::RemoveOutputDevice(FOutputDevice* OutputDevice)
{
	const std::lock_guard Lock(State->Mutex);
	State->Devices.Remove(OutputDevice);
}

void FOutputDeviceRedirector::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	Serialize(V, Verbosity, Category, FPlatformTime::Seconds());
}

void FOutputDeviceRedirector::Serialize(
	const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category, const double Time)
{
	const std::lock_guard Lock(State->Mutex);
	const FState::FLine Line{ V, Verbosity, Category, Time };
	State->Deliver(Line, true);
	if (State->IsOnPrimaryThread())
	{
		State->DeliverBufferedLines();
		State->Deliver(Line, false);
		return;
	}
	State->BufferedLines.push_back(Line);
	if (State->BufferedLines.size() > MaxBufferedLines)
	{
		State->BufferedLines.pop_front();
	}
}

void FOutputDeviceRedirector::FlushThreadedLogs()
{
	const std::lock_guard Lock(State->Mutex);
	if (State->IsOnPrimaryThread())
	{
		State->DeliverBufferedLines();
	}
}

void FOutputDeviceRedirector::Flush()
{
	FlushThreadedLogs();
	const std::lock_guard Lock(State->Mutex);
	for (FOutputDevice* Device : State->Devices)
	{
		Device->Flush();
	}
}

void FOutputDeviceRedirector::TearDown()
{
	Flush();
	const std::lock_guard Lock(State->Mutex);
	for (FOutputDevice* Device : State->Devices)
	{
		Device->TearDown();
	}
	State->Devices.Empty();
}
