#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Support/KestrelTest.h"

/** Waits for the end of the conversation "poll-gaps" and looks at the times between its polls. */
class FKestrelPollGapsCommand : public IAutomationLatentCommand
{
public:
	explicit FKestrelPollGapsCommand(FAutomationTestBase& InTest)
		: Test(InTest)
	{
		FKestrelInterface::Get().InitialRequest(TEXT("script poll-gaps"));
	}

	virtual bool Update() override
	{
		if (!KestrelTest::IsWaitingForUser(FAgent::Get().GetAgentState()))
		{
			return false;
		}
		Check();
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		return true;
	}

private:
	void Check()
	{
		// Seconds: the first from the request id's receipt, which comes right after the request was sent.
		const double ExpectedGaps[] = { 2.0, 3.0, 4.5, 6.75, 10.0, 10.0 };
		// The ticker looks every tenth of a second, and the reply itself takes a moment.
		constexpr double Late = 0.9;
		TArray<double> Times;
		for (const FKestrelPanelRecorder::FMessage& Message : Recorder.Messages)
		{
			if (Message.Text.Equals(TEXT("Sending request...")) || Message.Text.Equals(TEXT("Processing request...")))
			{
				Times.Add(Message.Time);
			}
		}
		if (!Test.TestEqual(TEXT("number of polls"), Times.Num() - 1, static_cast<int32>(UE_ARRAY_COUNT(ExpectedGaps))))
		{
			return;
		}
		for (int32 Poll = 1; Poll < Times.Num(); ++Poll)
		{
			const double Gap = Times[Poll] - Times[Poll - 1];
			const double Expected = ExpectedGaps[Poll - 1];
			Test.TestTrue(FString::Printf(TEXT("gap %d is %.2f s, expected %.2f s"), Poll, Gap, Expected),
				Gap >= Expected && Gap < Expected + Late);
		}
	}

	FAutomationTestBase& Test;
	FKestrelPanelRecorder Recorder;
};

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelPollingTest, "Kestrel.Polling.The gaps grow to ten seconds", KestrelTest::Flags)

bool FKestrelPollingTest::RunTest(const FString& Parameters)
{
	ADD_LATENT_AUTOMATION_COMMAND(FKestrelPollGapsCommand(*this));
	return true;
}
