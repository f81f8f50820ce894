#include "Misc/AssertionMacros.h"

#include "Containers/UnrealString.h"
#include "CoreGlobals.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/TerminalText.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <execinfo.h>

namespace Assertions
{
std::atomic<int32> NumEnsureFailures = 0;

FString CallStack()
{
	constexpr int MaxFrames = 32;
	void* Frames[MaxFrames];
	const int NumFrames = backtrace(Frames, MaxFrames);
	char** Symbols = backtrace_symbols(Frames, NumFrames);
	FString Text;
	constexpr int OwnFrames = 3;
	for (int Frame = OwnFrames; Symbols && Frame < NumFrames; ++Frame)
	{
		Text += FString::Printf(TEXT("\n\t%hs"), Symbols[Frame]);
	}
	std::free(Symbols);
	return Text;
}

[[noreturn]] void Die(const FString& Message)
{
	if (GLog)
	{
		static const FName Category(TEXT("LogOutputDevice"));
		GLog->Serialize(*Message, ELogVerbosity::Error, Category);
		GLog->Flush();
	}
	std::fprintf(stderr, "%s\n", TCHAR_TO_UTF8(*MakeTerminalText(Message)));
	std::fflush(stderr);
	std::abort();
}

FString Describe(
	const TCHAR* Kind, const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const FString& Message)
{
	return FString::Printf(
		TEXT("%s: %hs [File:%hs] [Line: %d] %s%s"), Kind, Expression, File, Line, *Message, *CallStack());
}

bool ReportEnsure(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const FString& Message)
{
	++NumEnsureFailures;
	static const FName Category(TEXT("LogOutputDevice"));
	GLog->Serialize(
		*Describe(TEXT("Ensure condition failed"), Expression, File, Line, Message), ELogVerbosity::Error, Category);
	return false;
}
}

void FDebug::CheckFailed(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line)
{
	Assertions::Die(Assertions::Describe(TEXT("Assertion failed"), Expression, File, Line, FString()));
}

void FDebug::CheckFailedFormat(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const TCHAR* Format, ...)
{
	va_list Args;
	va_start(Args, Format);
	const FString Message = FString::PrintfVImpl(Format, Args);
	va_end(Args);
	Assertions::Die(Assertions::Describe(TEXT("Assertion failed"), Expression, File, Line, Message));
}

bool FDebug::EnsureFailed(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line)
{
	return Assertions::ReportEnsure(Expression, File, Line, FString());
}

bool FDebug::EnsureFailedFormat(const ANSICHAR* Expression, const ANSICHAR* File, int32 Line, const TCHAR* Format, ...)
{
	va_list Args;
	va_start(Args, Format);
	const FString Message = FString::PrintfVImpl(Format, Args);
	va_end(Args);
	return Assertions::ReportEnsure(Expression, File, Line, Message);
}

int32 FDebug::GetNumEnsureFailures()
{
	return Assertions::NumEnsureFailures;
}
