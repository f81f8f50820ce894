#pragma once

#include "../../Internal/Misc/CheckedFormat.h"
#include "Logging/LogVerbosity.h"
#include "UObject/NameTypes.h"

/** A place that log lines go to. */
class FOutputDevice
{
public:
	FOutputDevice() = default;
	virtual ~FOutputDevice() = default;
	FOutputDevice(const FOutputDevice&) = default;
	FOutputDevice& operator=(const FOutputDevice&) = default;

	/** V is the bare message, without category or line break. */
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) = 0;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category, const double Time)
	{
		Serialize(V, Verbosity, Category);
	}
	virtual void Flush() {}
	virtual void TearDown() {}
	/** With false for both, lines of other threads are kept and delivered on the primary log thread at the next flush.
	 */
	virtual bool CanBeUsedOnAnyThread() const { return false; }
	virtual bool CanBeUsedOnMultipleThreads() const { return false; }

	void Log(const TCHAR* S);
	void Log(const FString& S) { Log(*S); }
	template <typename... Types>
	void Logf(std::type_identity_t<UE::Core::TCheckedFormatString<Types...>> Format, Types... Args)
	{
		Log(FString::PrintfImpl(Format.Format, Args...));
	}

	bool bSuppressEventTag = false;
	bool bAutoEmitLineTerminator = true;
};
