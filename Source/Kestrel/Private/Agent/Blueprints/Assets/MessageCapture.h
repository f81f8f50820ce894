#pragma once

#include "CoreMinimal.h"
#include "Misc/OutputDevice.h"

/** Keeps the first messages that it is given, as the reason for a failure. */
class FKestrelMessageCapture final : public FOutputDevice
{
public:
	/** @param InLeastSevere  messages of a lesser severity are ignored */
	explicit FKestrelMessageCapture(ELogVerbosity::Type InLeastSevere)
		: LeastSevere(InLeastSevere)
	{
	}

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;

	/** A sentence or some; a hint at the log when nothing was said. */
	FString GetReason() const;

private:
	static constexpr int32 MaxLines = 3; // what follows the first ones is mostly a consequence

	const ELogVerbosity::Type LeastSevere;
	TArray<FString> Lines;
};

/** Collects the warnings and errors that are logged while it lives. For the game thread. */
class FKestrelLogCapture
{
public:
	FKestrelLogCapture();
	~FKestrelLogCapture();
	UE_NONCOPYABLE(FKestrelLogCapture)

	FString GetReason() const;

private:
	FKestrelMessageCapture Messages{ ELogVerbosity::Warning };
};
