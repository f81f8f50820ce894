#include "ChildProcess.h"
#include "HAL/PlatformProcess.h"

#include <csignal>
#include <gtest/gtest.h>

namespace
{
/** Lets the program run to its end and gives all that it printed. */
FString Finish(FChildProcess& Process)
{
	FString Output;
	bool bRuns = true;
	while (bRuns)
	{
		bRuns = Process.Poll();
		for (const FString& Line : Process.TakeLines())
		{
			Output += Line + TEXT("|");
		}
		FPlatformProcess::Sleep(0.001f);
	}
	return Output;
}

struct FRun
{
	explicit FRun(const TArray<FString>& Command)
	{
		EXPECT_TRUE(Process.Start(Command, TEXT("/"), { TEXT("NEST=a b") }));
		Output = Finish(Process);
	}
	FChildProcess Process;
	FString Output;
};
}

TEST(ChildProcessTest, ArgumentsVariablesAndFolderArriveAsTheyAre)
{
	const FRun Run(
		{ TEXT("/bin/sh"), TEXT("-c"), TEXT("printf '%s\\n' \"$1\" \"$NEST\" \"$PWD\"; printf end >&2; exit 3"),
			TEXT("sh"), TEXT("it's \"\u00e9\" $HOME *") });
	EXPECT_STREQ(TCHAR_TO_UTF8(*Run.Output), "it's \"\u00e9\" $HOME *|a b|/|end|");
	EXPECT_EQ(Run.Process.GetExitCode(), 3);
}

TEST(ChildProcessTest, AProgramHasNoInputAndCannotFillTheMemory)
{
	EXPECT_TRUE(FRun({ TEXT("/bin/cat") }).Output.IsEmpty());
	const FRun Long({ TEXT("/usr/bin/seq"), TEXT("1"), TEXT("900000") });
	EXPECT_LT(Long.Output.Len(), 1024 * 1024 + 100);
	EXPECT_TRUE(Long.Output.EndsWith(TEXT("... the rest of the output is left out|")));
	EXPECT_NE(FRun({ TEXT("/no/such/program") }).Process.GetExitCode(), 0);
}

TEST(ChildProcessTest, AProgramEndsWhenItIsToldTo)
{
	FChildProcess Process;
	ASSERT_TRUE(Process.Start({ TEXT("/bin/sleep"), TEXT("1000") }, TEXT("/"), {}));
	EXPECT_TRUE(Process.Poll());
	Process.RequestStop();
	Finish(Process);
	EXPECT_EQ(Process.GetExitCode(), -SIGTERM);

	// One that does not listen is ended the hard way.
	FChildProcess Deaf;
	ASSERT_TRUE(
		Deaf.Start({ TEXT("/bin/sh"), TEXT("-c"), TEXT("trap '' TERM; echo ready; sleep 1000") }, TEXT("/"), {}));
	while (Deaf.TakeLines().IsEmpty())
	{
		EXPECT_TRUE(Deaf.Poll());
	}
	Deaf.RequestStop();
	Deaf.RequestStop();
	Finish(Deaf);
	EXPECT_EQ(Deaf.GetExitCode(), -SIGKILL);
}
