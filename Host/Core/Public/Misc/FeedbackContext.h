#pragma once

#include "Misc/OutputDevice.h"

/** Where warnings to the user go; the host's passes them on to the log. */
class FFeedbackContext : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;
};
