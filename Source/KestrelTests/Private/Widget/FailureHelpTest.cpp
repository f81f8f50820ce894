#include "Widget/Errors/FailureHelp.h"
#include "Agent/Agent.h"
#include "Kestrel.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"

namespace FailureHelpTest
{
struct FFailureCase
{
	const TCHAR* Reason;
	EKestrelRemedy Remedy;
};

// The tests' project brings its own key, so the settings would not help against a key that is refused.
const FFailureCase FailureCases[] = {
	{ TEXT("Request Failed"), EKestrelRemedy::TestConnection },
	{ TEXT("Make sure you have a valid API key."), EKestrelRemedy::OpenServiceFile },
	{ TEXT("Failed to parse initial response"), EKestrelRemedy::TestConnection },
	{ TEXT("Failed to get request ID from response"), EKestrelRemedy::TestConnection },
	{ TEXT("Request failed: no budget left"), EKestrelRemedy::TestConnection },
	{ TEXT("Request failed: "), EKestrelRemedy::TestConnection },
	{ TEXT("Failed to parse API response"), EKestrelRemedy::ShowLog },
};

const TCHAR* const OtherMessages[] = {
	TEXT(""),
	TEXT(" [ Cancelled ]"),
	TEXT(" [ User ]\n\nRequest Failed\n"),
	TEXT(" [ Kestrel ] \n\n [ Cancelled ]\n\nRequest Failed\n"),
	TEXT(" [ Cancelled ]\n\nrequest failed\n"),
	TEXT("Compilation successful!"),
};
}

DEFINE_SPEC(FKestrelFailureHelpSpec, "Kestrel.FailureHelp", KestrelTest::Flags)
void FKestrelFailureHelpSpec::Define()
{
	using namespace FailureHelpTest;

	It("has a sentence and a remedy for each failure, and for nothing else", [this]() {
		const FKestrelTestPanel Panel;
		TestTrue(TEXT("the project's key"), FKestrelModule::IsKeyOfProject());
		for (const FFailureCase& Case : FailureCases)
		{
			FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
			FAgent::Get().CancelRequest(Case.Reason);
			// As the panel got it.
			const TOptional<FKestrelFailureHelp> Help = KestrelFailureHelp::Find(Panel.LastBlock());
			TestTrue(Case.Reason, Help.IsSet() && Help->Remedy == Case.Remedy && !Help->Sentence.IsEmpty());
		}
		const TOptional<FKestrelFailureHelp> Compile =
			KestrelFailureHelp::Find(TEXT("Compilation failed, processing error..."));
		TestTrue(TEXT("compiling"), Compile.IsSet() && Compile->Remedy == EKestrelRemedy::ShowLog);
		for (const TCHAR* Message : OtherMessages)
		{
			TestFalse(Message, KestrelFailureHelp::Find(Message).IsSet());
		}
	});

	It("stands below the failure, also in a panel that is opened later", [this]() {
		FKestrelTestPanel Panel;
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		const FInitialRequestStateData Data(TEXT("begin"));
		FAgent::Get().SetAgentState(EAgentState::InitialRequest, &Data);
		FAgent::Get().CancelRequest(TEXT("Failed to parse API response"));
		TestTrue(TEXT("there"), Panel.FindButton(TEXT("Show log")).IsValid());
		Panel.Reopen();
		TestTrue(TEXT("again"), Panel.FindButton(TEXT("Show log")).IsValid());
		TestFalse(TEXT("not logged"), Panel.Log().Contains(TEXT("made no sense")));
	});
}
