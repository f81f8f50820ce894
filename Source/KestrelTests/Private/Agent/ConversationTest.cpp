#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/PendingTools.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"

/**
 * Whole conversations, each a file in Tests/Conversations with both sides in it: what the user does ("user"), what the
 * service does ("turns"), and what the panel shows of it ("panel"). A new case is a new file.
 */
namespace ConversationTest
{
FString ConversationDir()
{
	return KestrelTest::PluginDir() / TEXT("Tests") / TEXT("Conversations");
}

/** Plays the user's part: the next step each time the agent waits, or when the state that a step names is entered. */
class FPlayer : public IAutomationLatentCommand
{
public:
	FPlayer(FAutomationTestBase& InTest, const FString& InName)
		: Test(InTest)
		, Name(InName)
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *(ConversationDir() / Name + TEXT(".json")));
		Script = KestrelJson::ParseObject(Text);
	}

	virtual ~FPlayer() override
	{
		Settings().bAutoApprove = false;
		Settings().ApprovalRules = RulesBefore;
	}

	virtual bool Update() override
	{
		if (!Recorder.IsValid() && !Start())
		{
			return true;
		}
		if (FPlatformTime::Seconds() < QuietUntil)
		{
			return false;
		}
		const EAgentState State = FAgent::Get().GetAgentState();
		if (NextStep < Steps.Num())
		{
			if (IsStepDue(*Steps[NextStep]->AsObject(), State))
			{
				DoStep(*Steps[NextStep++]->AsObject());
			}
			return false;
		}
		if (!KestrelTest::IsWaitingForUser(State))
		{
			return false;
		}
		Check();
		return true;
	}

private:
	const FKestrelTestLog PromptLog;
	static UKestrelSettings& Settings() { return *GetMutableDefault<UKestrelSettings>(); }

	bool Start()
	{
		const TArray<TSharedPtr<FJsonValue>>* User = nullptr;
		if (!Test.TestTrue(
				Name + TEXT(" is a conversation"), Script.IsValid() && Script->TryGetArrayField(TEXT("user"), User)))
		{
			return false;
		}
		Steps = *User;
		Script->TryGetBoolField(TEXT("auto_approve"), Settings().bAutoApprove);
		SetRules();
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		Recorder = MakeShared<FKestrelPanelRecorder>();
		return true;
	}

	// Rules stand there as a decision, a tool and a path.
	void SetRules()
	{
		TArray<FString> Rules;
		Script->TryGetStringArrayField(TEXT("rules"), Rules);
		Settings().ApprovalRules.Empty();
		for (const FString& Text : Rules)
		{
			TArray<FString> Words;
			Text.ParseIntoArrayWS(Words);
			FKestrelApprovalRule Rule;
			Rule.Decision = Words[0] == TEXT("allow")  ? EKestrelApproval::Allow
							: Words[0] == TEXT("deny") ? EKestrelApproval::Deny
													   : EKestrelApproval::Ask;
			Rule.Tool = Words[1];
			Rule.Path = Words[2];
			Settings().ApprovalRules.Add(Rule);
		}
	}

	static bool IsStepDue(const FJsonObject& Step, EAgentState State)
	{
		bool bPolling = FHTTPAPI::Get().IsPolling();
		Step.TryGetBoolField(TEXT("polling"), bPolling);
		FString When;
		const bool bInState = Step.TryGetStringField(TEXT("when"), When) ? KestrelTest::NameOf(State).Equals(When)
																		 : KestrelTest::IsWaitingForUser(State);
		return bInState && FHTTPAPI::Get().IsPolling() == bPolling;
	}

	void DoStep(const FJsonObject& Step)
	{
		FKestrelInterface& Interface = FKestrelInterface::Get();
		FString Text;
		int32 Number = 0;
		if (Step.TryGetNumberField(TEXT("accept"), Number))
		{
			Interface.AnswerTool(Number - 1, EKestrelAnswer::Accepted);
		}
		else if (Step.TryGetNumberField(TEXT("reject"), Number))
		{
			Interface.AnswerTool(Number - 1, EKestrelAnswer::Rejected);
		}
		else if (Step.TryGetNumberField(TEXT("take_back"), Number))
		{
			Interface.AnswerTool(Number - 1, EKestrelAnswer::None);
		}
		else if (Step.TryGetStringField(TEXT("say"), Text))
		{
			FAgent::Get().GetAgentState() == EAgentState::Idle ? Interface.InitialRequest(Text)
															   : Interface.RegularRequest(Text);
		}
		else if (Step.TryGetStringField(TEXT("continue"), Text))
		{
			Interface.Continue(Text);
		}
		else if (Step.TryGetStringField(TEXT("end"), Text))
		{
			Interface.EndRequest(Text);
		}
		else if (Step.TryGetStringField(TEXT("cancel"), Text))
		{
			Interface.CancelRequest(Text);
		}
		else if (Step.HasField(TEXT("pause")))
		{
			Interface.PauseRequest();
		}
		else if (Step.HasField(TEXT("approve")))
		{
			Interface.Approve();
			Interface.Continue(FString());
		}
		else
		{
			Test.AddError(Name + TEXT(" has a step that does nothing"));
		}
		double WaitSeconds = 0.0;
		Step.TryGetNumberField(TEXT("then_wait_seconds"), WaitSeconds);
		QuietUntil = FPlatformTime::Seconds() + WaitSeconds;
	}

	void Check()
	{
		TArray<FString> Expected;
		Script->TryGetStringArrayField(TEXT("panel"), Expected);
		const TArray<FString> Actual = Recorder->GetTexts();
		for (int32 Index = 0; Index < FMath::Max(Expected.Num(), Actual.Num()); ++Index)
		{
			const FString Nothing = TEXT("<nothing>");
			KestrelTest::TestSameText(Test, FString::Printf(TEXT("panel text %d"), Index),
				Actual.IsValidIndex(Index) ? Actual[Index] : Nothing,
				Expected.IsValidIndex(Index) ? Expected[Index] : Nothing);
		}
		TArray<FString> Hints;
		Script->TryGetStringArrayField(TEXT("hints"), Hints);
		for (const FString& Hint : Hints)
		{
			Test.TestTrue(Hint, Recorder->Hints.Contains(Hint));
		}
		FString EndsIn = TEXT("Idle");
		Script->TryGetStringField(TEXT("ends_in"), EndsIn);
		KestrelTest::TestSameText(
			Test, TEXT("state at the end"), KestrelTest::NameOf(FAgent::Get().GetAgentState()), EndsIn);
		Test.TestFalse(TEXT("it polls no more"), FHTTPAPI::Get().IsPolling());
		Recorder.Reset();
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	}

	FAutomationTestBase& Test;
	const FString Name;
	TSharedPtr<FJsonObject> Script;
	TArray<TSharedPtr<FJsonValue>> Steps;
	const TArray<FKestrelApprovalRule> RulesBefore = Settings().ApprovalRules;
	TSharedPtr<FKestrelPanelRecorder> Recorder;
	int32 NextStep = 0;
	double QuietUntil = 0.0; // seconds of FPlatformTime
};
}

IMPLEMENT_COMPLEX_AUTOMATION_TEST(FKestrelConversationTest, "Kestrel.Conversation", KestrelTest::Flags)

void FKestrelConversationTest::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	TArray<FString> Files;
	IFileManager::Get().FindFiles(Files, *(ConversationTest::ConversationDir() / TEXT("*.json")), true, false);
	Files.Sort();
	for (const FString& File : Files)
	{
		OutBeautifiedNames.Add(FPaths::GetBaseFilename(File));
		OutTestCommands.Add(FPaths::GetBaseFilename(File));
	}
}

bool FKestrelConversationTest::RunTest(const FString& Parameters)
{
	ADD_LATENT_AUTOMATION_COMMAND(ConversationTest::FPlayer(*this, Parameters));
	return true;
}
