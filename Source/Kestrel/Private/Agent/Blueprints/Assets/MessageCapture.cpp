#include "Agent/Blueprints/Assets/MessageCapture.h"

#include "CoreGlobals.h"
#include "Misc/OutputDeviceRedirector.h"

void FKestrelMessageCapture::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const FString Line = FString(V).TrimStartAndEnd();
	if (Verbosity <= LeastSevere && Lines.Num() < MaxLines && !Line.IsEmpty())
	{
		Lines.Add(Line.EndsWith(TEXT(".")) ? Line : Line + TEXT("."));
	}
}

FString FKestrelMessageCapture::GetReason() const
{
	return Lines.IsEmpty() ? FString(TEXT("The Output Log may tell why.")) : FString::Join(Lines, TEXT(" "));
}

FKestrelLogCapture::FKestrelLogCapture()
{
	if (GLog)
	{
		GLog->AddOutputDevice(&Messages);
	}
}

FKestrelLogCapture::~FKestrelLogCapture()
{
	if (GLog)
	{
		GLog->RemoveOutputDevice(&Messages);
	}
}

FString FKestrelLogCapture::GetReason() const
{
	if (GLog)
	{
		GLog->Flush(); // lines may be on their way still
	}
	return Messages.GetReason();
}
