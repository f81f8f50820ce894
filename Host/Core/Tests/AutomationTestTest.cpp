#include "Misc/AutomationTest.h"
#include "CoreMinimal.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformTime.h"

#include <gtest/gtest.h>

namespace
{
FString Trace;
}

BEGIN_DEFINE_SPEC(
	FHostSampleSpec, "Host.Sample", EAutomationTestFlags::EditorContext | EAutomationTestFlags::ProductFilter)
END_DEFINE_SPEC(FHostSampleSpec)

void FHostSampleSpec::Define()
{
	BeforeEach([]() { Trace += TEXT("a"); });
	AfterEach([]() { Trace += TEXT("z"); });
	Describe("inner", [this]() {
		BeforeEach([]() { Trace += TEXT("b"); });
		It("passes", [this]() { TestTrue("truth", true); });
		It("fails", [this]() { TestEqualSensitive(TEXT("text"), TEXT("a"), TEXT("A")); });
		It("logs an error", []() { UE_LOG(LogTemp, Error, TEXT("unasked")); });
		It("expects an error", [this]() {
			AddExpectedError(TEXT("asked"), EAutomationExpectedErrorFlags::Contains, 1);
			UE_LOG(LogTemp, Error, TEXT("asked for"));
		});
		LatentIt("never ends", FTimespan::FromSeconds(5), [](const FDoneDelegate&) {});
	});
}

namespace
{
FAutomationTestExecutionInfo RunSample(const TCHAR* Name)
{
	FAutomationTestFramework& Framework = FAutomationTestFramework::Get();
	const TArray<FAutomationTestFramework::FTest> Tests = Framework.FindTests(Name);
	EXPECT_EQ(Tests.Num(), 1);
	Trace.Empty();
	Framework.Start(Tests[0]);
	for (int32 Frame = 0; !Framework.Update() && Frame < 100; ++Frame)
	{
		FHostClock::Get().AdvanceTo(FPlatformTime::Seconds() + 1.0);
	}
	return Framework.Stop();
}
}

TEST(AutomationTestTest, EachItRunsBetweenItsStepsAndReportsWhatHappened)
{
	FHostClock::Get().SetMode(EClockMode::Unattended);
	EXPECT_EQ(FAutomationTestFramework::Get().FindTests(TEXT("Host.Sample")).Num(), 5);
	EXPECT_TRUE(RunSample(TEXT("Host.Sample.inner passes")).WasSuccessful());
	EXPECT_TRUE(Trace.Equals(TEXT("abz")));
	EXPECT_EQ(RunSample(TEXT("inner fails")).Errors.Num(), 1);
	EXPECT_TRUE(Trace.Equals(TEXT("abz"))) << "cleaned up after a failure, too";
	EXPECT_EQ(RunSample(TEXT("logs an error")).Errors.Num(), 1);
	EXPECT_TRUE(RunSample(TEXT("expects an error")).WasSuccessful());
	EXPECT_EQ(RunSample(TEXT("never ends")).Errors.Num(), 1);
	FHostClock::Get().SetMode(EClockMode::Wall);
}
