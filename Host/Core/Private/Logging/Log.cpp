#include "CoreGlobals.h"
#include "Logging/LogMacros.h"
#include "Misc/OutputDeviceRedirector.h"

#include <cstdarg>
#include <cstdlib>

DEFINE_LOG_CATEGORY(LogTemp);
DEFINE_LOG_CATEGORY(LogCore);
DEFINE_LOG_CATEGORY(LogInit);
DEFINE_LOG_CATEGORY(LogExit);

const TCHAR* ToString(ELogVerbosity::Type Verbosity)
{
	constexpr const TCHAR* Names[] = { TEXT("NoLogging"), TEXT("Fatal"), TEXT("Error"), TEXT("Warning"),
		TEXT("Display"), TEXT("Log"), TEXT("Verbose"), TEXT("VeryVerbose") };
	return Names[Verbosity];
}

FLogCategoryBase::FLogCategoryBase(
	const TCHAR* InName, ELogVerbosity::Type InDefaultVerbosity, ELogVerbosity::Type InCompileTimeVerbosity)
	: Verbosity(FMath::Min(InDefaultVerbosity, InCompileTimeVerbosity))
	, CategoryName(InName)
{
}

void FMsg::Logf(
	const ANSICHAR* File, int32 Line, const FName& Category, ELogVerbosity::Type Verbosity, const TCHAR* Format, ...)
{
	va_list Args;
	va_start(Args, Format);
	const FString Message = FString::PrintfVImpl(Format, Args);
	va_end(Args);
	GLog->Serialize(*Message, Verbosity, Category);
	if (Verbosity == ELogVerbosity::Fatal)
	{
		FDebug::CheckFailed(TCHAR_TO_UTF8(*Message), File, Line);
	}
}
