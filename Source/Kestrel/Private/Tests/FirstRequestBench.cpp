#include "Agent/HTTPAPI.h"
#include "HAL/PlatformTime.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "Tests/KestrelTest.h"

namespace FirstRequestBench
{
constexpr int32 NumRuns = 7;

/** The file for the figures; empty unless this is a benchmark run. */
FString ReportFile()
{
	FString File;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelBench="), File);
	return File;
}
}

/**
 * How long the body of the first request takes: the project's files listed, parsed, put together and written.
 *
 * It exists only with -KestrelBench=<file>, to which it writes the best of its runs in seconds and the body's length in
 * characters, with a blank between them.
 */
IMPLEMENT_COMPLEX_AUTOMATION_TEST(FKestrelFirstRequestBench, "KestrelBench.FirstRequest", KestrelTest::Flags)

void FKestrelFirstRequestBench::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	if (!FirstRequestBench::ReportFile().IsEmpty())
	{
		OutBeautifiedNames.Add(GetBeautifiedTestName());
		OutTestCommands.Add(FString());
	}
}

bool FKestrelFirstRequestBench::RunTest(const FString& Parameters)
{
	double BestSeconds = 0.0;
	int32 NumCharacters = 0;
	for (int32 Run = 0; Run < FirstRequestBench::NumRuns; ++Run)
	{
		// Cycles: the editor's seconds stand still in an unattended run.
		const uint64 Start = FPlatformTime::Cycles64();
		NumCharacters = FHTTPAPI::MakeInitialBody(TEXT("Which files are there?")).Len();
		const double Seconds = FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - Start);
		BestSeconds = Run == 0 ? Seconds : FMath::Min(BestSeconds, Seconds);
	}
	const FString Report = FString::Printf(TEXT("%f %d\n"), BestSeconds, NumCharacters);
	return FFileHelper::SaveStringToFile(Report, *FirstRequestBench::ReportFile());
}
