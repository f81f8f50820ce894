#include "Console/FailureWatch.h"

#include "CoreGlobals.h"
#include "Misc/CommandLine.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Parse.h"

FFailureWatch::FFailureWatch()
{
	if (FParse::Value(FCommandLine::Get(), TEXT("-FailOn="), CategoryName))
	{
		GLog->AddOutputDevice(this);
	}
}

FFailureWatch::~FFailureWatch()
{
	GLog->RemoveOutputDevice(this);
}

void FFailureWatch::Serialize(const TCHAR*, ELogVerbosity::Type Verbosity, const FName& Category)
{
	bFailed |= Verbosity <= ELogVerbosity::Warning && Category.ToString() == CategoryName;
}
