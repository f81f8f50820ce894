#pragma once

#include "CoreMinimal.h"
#include "Misc/OutputDevice.h"
#include "Templates/UniquePtr.h"

class IFileHandle;

/** The project's log: Saved/Logs/<Project>.log, replaced at each start. */
class FOutputDeviceFile final : public FOutputDevice
{
public:
	/** Past this size nothing more is written. */
	static constexpr int64 MaxBytes = 256ll * 1024 * 1024;

	explicit FOutputDeviceFile(const FString& Filename);
	virtual ~FOutputDeviceFile() override;
	UE_NONCOPYABLE(FOutputDeviceFile)

	using FOutputDevice::Serialize;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;
	virtual void Flush() override;

private:
	TUniquePtr<IFileHandle> File; // null when the file cannot be written
	int64 NumBytes = 0;
};

/** Lines up to a verbosity on the standard error output. */
class FOutputDeviceStdErr final : public FOutputDevice
{
public:
	explicit FOutputDeviceStdErr(ELogVerbosity::Type InMostVerbose)
		: MostVerbose(InMostVerbose)
	{
	}

	using FOutputDevice::Serialize;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;
	virtual bool CanBeUsedOnMultipleThreads() const override { return true; }

private:
	const ELogVerbosity::Type MostVerbose;
};
