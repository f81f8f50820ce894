#pragma once

#include "Misc/OutputDevice.h"

/** A string that collects what is logged to it. */
class FStringOutputDevice : public FString, public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		FString::operator+=(V);
		if (bAutoEmitLineTerminator)
		{
			FString::operator+=(LINE_TERMINATOR);
		}
	}
};
