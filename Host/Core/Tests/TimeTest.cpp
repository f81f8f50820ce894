#include "Async/TaskGraphInterfaces.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformTime.h"
#include "Misc/CommandLine.h"
#include "Misc/DateTime.h"
#include "Misc/EngineVersion.h"
#include "Misc/EngineVersionComparison.h"
#include "Misc/Guid.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Parse.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{
class FRememberingDevice final : public FOutputDevice
{
public:
	FRememberingDevice() { GLog->AddOutputDevice(this); }
	~FRememberingDevice() override { GLog->RemoveOutputDevice(this); }
	UE_NONCOPYABLE(FRememberingDevice)
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override { Lines.Add(V); }
	TArray<FString> Lines;
};
}

TEST(DateTimeTest, FormatLettersAreTheEnginesOwn)
{
	const FDateTime Time(2024, 2, 29, 13, 5, 9, 42);
	EXPECT_EQ(ToUtf8(Time.ToString()), "2024.02.29-13.05.09");
	EXPECT_EQ(ToUtf8(Time.ToString(TEXT("%Y-%m-%d %H:%M:%S.%s %h%a %D %j"))), "2024-02-29 13:05:09.042 01pm 060 j");
	EXPECT_EQ((FDateTime(2024, 3, 1) - Time).GetDays(), 0);
	EXPECT_NEAR((FDateTime(2024, 3, 1) - FDateTime(2024, 2, 28)).GetTotalDays(), 2.0, 1e-9);
	EXPECT_EQ(FDateTime::FromUnixTimestamp(Time.ToUnixTimestamp()).ToUnixTimestamp(), Time.ToUnixTimestamp());
	FDateTime Parsed;
	EXPECT_TRUE(FDateTime::ParseIso8601(*Time.ToIso8601(), Parsed));
	EXPECT_EQ(Parsed.GetHour(), 13);
	EXPECT_FALSE(FDateTime::ParseIso8601(TEXT("2024-02-30"), Parsed));
}

TEST(TickerTest, FirstCallAfterTheDelayThenNoCatchingUp)
{
	FHostClock& Clock = FHostClock::Get();
	Clock.SetMode(EClockMode::Unattended);
	FTSTicker& Ticker = FTSTicker::GetCoreTicker();
	int32 Calls = 0;
	const FTSTicker::FDelegateHandle Handle =
		Ticker.AddTicker(FTickerDelegate::CreateLambda([&Calls](float) { return ++Calls < 3; }), 1.0f);
	Ticker.Tick(0.0f);
	EXPECT_EQ(Calls, 0);
	Clock.AdvanceTo(FPlatformTime::Seconds() + 5.0);
	Ticker.Tick(0.0f);
	Ticker.Tick(0.0f);
	EXPECT_EQ(Calls, 1) << "five periods have passed, one call is made";
	while (Handle.IsValid()) // without a ticker, the next time is never, and the clock would stay there
	{
		Clock.AdvanceTo(Ticker.GetNextDueTime());
		Ticker.Tick(0.0f);
	}
	EXPECT_EQ(Calls, 3);
	EXPECT_FALSE(Handle.IsValid()) << "a ticker that returned false has dropped out";
	FTSTicker::RemoveTicker(Handle);
	Clock.SetMode(EClockMode::Wall);
}

TEST(TickerTest, ACallbackMayRemoveItself)
{
	FTSTicker::FDelegateHandle Handle;
	int32 Calls = 0;
	Handle = FTSTicker::GetCoreTicker().AddTicker(TEXT("Self"), 0.0f, [&](float) {
		++Calls;
		FTSTicker::RemoveTicker(Handle);
		return true;
	});
	FTSTicker::GetCoreTicker().Tick(0.0f);
	FTSTicker::GetCoreTicker().Tick(0.0f);
	EXPECT_EQ(Calls, 1);
}

TEST(TaskGraphTest, TasksRunLaterAndInOrder)
{
	FString Order;
	const auto Dispatch = [](TUniqueFunction<void()> Function) {
		return FFunctionGraphTask::CreateAndDispatchWhenReady(
			MoveTemp(Function), TStatId(), nullptr, ENamedThreads::GameThread);
	};
	const FGraphEventRef First = Dispatch([&]() {
		Order += TEXT("1");
		Dispatch([&]() { Order += TEXT("3"); });
	});
	Dispatch([&]() { Order += TEXT("2"); });
	EXPECT_TRUE(Order.IsEmpty()) << "never inside the dispatching call";
	FTaskGraphInterface::Get().ProcessThreadUntilIdle(ENamedThreads::GameThread);
	EXPECT_EQ(ToUtf8(Order), "123");
	EXPECT_TRUE(First->IsComplete());
}

TEST(LogTest, LinesOfOtherThreadsComeAtTheFlush)
{
	FRememberingDevice Device;
	std::thread([]() { UE_LOG(LogTemp, Log, TEXT("from %s"), TEXT("elsewhere")); }).join();
	EXPECT_EQ(Device.Lines.Num(), 0);
	GLog->FlushThreadedLogs();
	ASSERT_EQ(Device.Lines.Num(), 1);
	EXPECT_EQ(ToUtf8(Device.Lines[0]), "from elsewhere");
	GLog->AddOutputDevice(&Device);
	UE_LOG(LogTemp, Log, TEXT("100%%"));
	EXPECT_EQ(Device.Lines.Num(), 2) << "adding a device twice keeps one entry";
}

TEST(EnsureTest, ReportsOncePerPlace)
{
	const int32 Before = FDebug::GetNumEnsureFailures();
	for (int32 Time = 0; Time < 3; ++Time)
	{
		EXPECT_FALSE(ensureMsgf(Time < 0, TEXT("time %d"), Time));
	}
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Before + 1);
	EXPECT_TRUE(ensure(true));
}

TEST(VersionTest, TheBranchPartHasDotsToo)
{
	EXPECT_EQ(ToUtf8(FEngineVersion::Current().ToString(EVersionComponent::Minor)), "5.4");
	EXPECT_EQ(ToUtf8(FEngineVersion::Current().ToString()), "5.4.4-35576357+++UE5+Release-5.4");
	static_assert(UE_VERSION_OLDER_THAN(5, 4, 5) && UE_VERSION_OLDER_THAN(5, 5, 0) && UE_VERSION_OLDER_THAN(6, 0, 0));
	static_assert(!UE_VERSION_OLDER_THAN(5, 4, 4) && !UE_VERSION_OLDER_THAN(5, 3, 9));
}

TEST(GuidTest, DigitsAreThirtyTwoUpperCase)
{
	const FGuid Guid = FGuid::NewGuid();
	FGuid Parsed;
	EXPECT_EQ(Guid.ToString().Len(), 32);
	EXPECT_TRUE(Guid.ToString().Equals(Guid.ToString().ToUpper()));
	EXPECT_TRUE(FGuid::Parse(Guid.ToString(EGuidFormats::DigitsWithHyphensLower), Parsed));
	EXPECT_EQ(Parsed, Guid);
	EXPECT_FALSE(FGuid().IsValid());
}

TEST(CommandLineTest, SwitchesAndQuotedValues)
{
	char Program[] = "editor";
	char Project[] = "/my games/a.uproject";
	char Switch[] = "-prompt=read the file";
	char Quoted[] = "-say=read \"a b.h\"";
	char* ArgV[] = { Program, Project, Switch, Quoted };
	const FString Line = FCommandLine::BuildFromArgV(4, ArgV) + TEXT(" -unattended -Port=80");
	const TCHAR* Stream = *Line;
	EXPECT_EQ(ToUtf8(FCommandLine::Token(Stream)), Project);
	EXPECT_EQ(ToUtf8(FCommandLine::Token(Stream)), Switch);
	EXPECT_EQ(ToUtf8(FCommandLine::Token(Stream)), Quoted) << "quotes of the argument itself are kept";
	FString Prompt;
	int32 Port = 0;
	EXPECT_TRUE(FParse::Value(*Line, TEXT("-Prompt="), Prompt));
	EXPECT_EQ(ToUtf8(Prompt), "read the file");
	EXPECT_TRUE(FParse::Value(*Line, TEXT("-say="), Prompt));
	EXPECT_EQ(ToUtf8(Prompt), "read \"a b.h\"");
	EXPECT_TRUE(FParse::Value(*Line, TEXT("port="), Port));
	EXPECT_EQ(Port, 80);
	EXPECT_TRUE(FParse::Param(*Line, TEXT("Unattended")));
	EXPECT_FALSE(FParse::Param(*Line, TEXT("attended")));
}

TEST(TimespanTest, IsMadeAndReadInEveryUnit)
{
	const FTimespan Span = FTimespan::FromHours(1.5);
	EXPECT_EQ(Span.GetTotalHours(), 1.5);
	EXPECT_EQ(Span.GetTotalMinutes(), 90.0);
	EXPECT_EQ(Span.GetTotalMilliseconds(), 5400000.0);
}
