#pragma once

#include "Misc/OutputDevice.h"

/** Swallows everything. */
class FOutputDeviceNull : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override {}
};
