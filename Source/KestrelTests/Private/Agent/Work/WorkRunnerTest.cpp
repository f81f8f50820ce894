#include "Agent/Work/WorkRunner.h"
#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Files/TreeText.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/PendingTools.h"
#include "Agent/Work/BackgroundWork.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "Support/KestrelTest.h"
#include "Support/SlowMotion.h"

namespace WorkRunnerTest
{
/** Counts its steps. */
class FSteps : public IKestrelSlicedWork
{
public:
	explicit FSteps(int32& InOutNumSteps)
		: NumSteps(InOutNumSteps)
	{
	}
	virtual bool Step(double) override { return ++NumSteps == 3; }
	virtual float GetProgress() const override { return static_cast<float>(NumSteps) / 3.0f; }

private:
	int32& NumSteps;
};

/** So many that they are not listed at once. */
class FManyFolders
{
public:
	FManyFolders()
	{
		for (int32 Index = 0; Index < 500; ++Index)
		{
			IFileManager::Get().MakeDirectory(*Folder.Full(FString::FromInt(Index)));
		}
		FKestrelKeptTree::Get().Forget();
	}
	UE_NONCOPYABLE(FManyFolders)

private:
	const FKestrelTestFolder Folder;
};

/** An answer that searches, says something, and lists a folder. */
const TCHAR* const Answer =
	TEXT("{\"auto_continue\":true,\"response\":["
		 "{\"type\":\"tool_use\",\"id\":\"first\",\"name\":\"find_reference_in_all_files\",\"input\":{"
		 "\"reference_string\":\"nothing has this in it\"}},"
		 "{\"type\":\"text\",\"text\":\"Between them.\"},"
		 "{\"type\":\"tool_use\",\"id\":\"second\",\"name\":\"get_file_system_tree\",\"input\":{"
		 "\"directory_path\":\"Source\"}}]}");

/** A conversation that has just got that answer; forgotten at the end. */
class FConversation
{
public:
	FConversation()
	{
		FAgent::Get().SetConversationId(TEXT("slices"));
		FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
	}
	~FConversation()
	{
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		FAgent::Get().ClearToolResults();
	}
	UE_NONCOPYABLE(FConversation)

	void Receive() const { FAgent::Get().HandlePollStatusRequestCompleted(KestrelJson::ParseObject(Answer)); }

	const FKestrelPanelRecorder Recorder;
	const KestrelTest::FSlowMotion SlowMotion;
};
}

DEFINE_SPEC(FKestrelWorkRunnerSpec, "Kestrel.Work", KestrelTest::Flags)
void FKestrelWorkRunnerSpec::Define()
{
	using namespace KestrelTest;
	using namespace WorkRunnerTest;

	It("takes a step at once, and one in each frame, until the end or until it is stopped", [this]() {
		FKestrelWorkRunner Runner;
		int32 NumSteps = 0;
		int32 NumDone = 0;
		Runner.Start(MakeShared<FSteps>(NumSteps), [&NumDone]() { ++NumDone; });
		TestEqual(TEXT("at once"), NumSteps, 1);
		Tick();
		TestTrue(TEXT("under way"), Runner.IsRunning() && NumSteps == 2 && NumDone == 0);
		Tick();
		Tick();
		TestTrue(TEXT("done once"), !Runner.IsRunning() && NumSteps == 3 && NumDone == 1);

		NumSteps = 0;
		Runner.Start(MakeShared<FSteps>(NumSteps), [&NumDone]() { ++NumDone; });
		Runner.Stop();
		Tick();
		TestTrue(TEXT("dropped"), NumSteps == 1 && NumDone == 1);
	});

	It("may begin the next work when one ends, and stop itself in a step", [this]() {
		FKestrelWorkRunner Runner;
		int32 NumSteps = 2;
		int32 NumNext = 2;
		bool bNextDone = false;
		Runner.Start(MakeShared<FSteps>(NumSteps),
			[&]() { Runner.Start(MakeShared<FSteps>(NumNext), [&bNextDone]() { bNextDone = true; }); });
		TestTrue(TEXT("both"), bNextDone && !Runner.IsRunning());

		class FStopper : public IKestrelSlicedWork
		{
		public:
			explicit FStopper(FKestrelWorkRunner& InRunner)
				: Runner(InRunner)
			{
			}
			virtual bool Step(double) override
			{
				Runner.Stop();
				return true;
			}
			virtual float GetProgress() const override { return -1.0f; }

		private:
			FKestrelWorkRunner& Runner;
		};
		bool bDone = false;
		Runner.Start(MakeShared<FStopper>(Runner), [&bDone]() { bDone = true; });
		TestFalse(TEXT("nobody is told"), bDone || Runner.IsRunning());
	});

	It("takes no step inside another one, should a step let the editor tick", [this]() {
		class FTicking : public IKestrelSlicedWork
		{
		public:
			virtual bool Step(double) override
			{
				const TGuardValue<int32> Inside(Depth, Depth + 1);
				Deepest = FMath::Max(Deepest, Depth);
				if (Depth < 3)
				{
					Tick();
				}
				return ++NumSteps >= 3;
			}
			virtual float GetProgress() const override { return -1.0f; }

			int32 Depth = 0;
			int32 Deepest = 0;
			int32 NumSteps = 0;
		};
		FKestrelWorkRunner Runner;
		const TSharedRef<FTicking> Work = MakeShared<FTicking>();
		Runner.Start(Work, []() {});
		TestTrue(TEXT("done"), TickUntil([&Runner]() { return !Runner.IsRunning(); }));
		TestEqual(TEXT("one in another"), Work->Deepest, 1);
	});

	It("asks a task to end when its work is dropped, and waits for it", [this]() {
		int32 NumRounds = 0;
		{
			TKestrelBackgroundWork<int32> Work([&NumRounds](FKestrelTaskControl& Control) {
				while (!Control.IsCanceled())
				{
					++NumRounds;
				}
				return 0;
			});
			TestFalse(TEXT("goes on"), Work.Step(FPlatformTime::Seconds() + 0.01));
		}
		TestTrue(TEXT("has ended"), NumRounds > 0);
	});

	It("keeps the order of an answer while a tool takes several frames", [this]() {
		const FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Conversation.Receive();
		TestTrue(TEXT("at work"), Agent.GetToolProgress().IsSet() && Agent.GetToolResults().IsEmpty());
		TestTrue(TEXT("state"), Agent.GetAgentState() == EAgentState::PollResponse);
		TestFalse(TEXT("not yet said"), Conversation.Recorder.GetTexts().ContainsByPredicate(
											[](const FString& Text) { return Text.Contains(TEXT("Between them.")); }));
		bool bSawResult = false;
		const FDelegateHandle Handle = Agent.OnToolDone().AddLambda(
			[&](const FKestrelToolPlan&, const FString&) { bSawResult |= Agent.GetToolResults().Num() == 2; });
		TestTrue(TEXT("sent"),
			TickUntil([&Agent]() { return Agent.GetToolResults().IsEmpty() && !Agent.GetToolProgress(); }));
		Agent.OnToolDone().Remove(Handle);
		TestTrue(TEXT("both results"), bSawResult);
		const FString Said = FString::Join(Conversation.Recorder.GetTexts(), TEXT("|"));
		const int32 Between = Said.Find(TEXT("Between them."));
		TestTrue(TEXT("in order"),
			Said.Find(TEXT("Finding Reference")) < Between && Between < Said.Find(TEXT("Sending request")));
	});

	It("drops the tool at work when the conversation ends, without a trace", [this]() {
		const FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Conversation.Receive();
		Agent.EndRequest(FString());
		const int32 NumMessages = Conversation.Recorder.Messages.Num();
		for (int32 Frame = 0; Frame < 10; ++Frame)
		{
			Tick();
		}
		TestTrue(TEXT("idle"), Agent.GetAgentState() == EAgentState::Idle && !Agent.GetToolProgress());
		TestTrue(
			TEXT("no result"), Agent.GetToolResults().IsEmpty() && Conversation.Recorder.Messages.Num() == NumMessages);
	});

	It("keeps the tools behind the one at work when it is paused", [this]() {
		const FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Conversation.Receive();
		Agent.PauseRequest();
		TestTrue(TEXT("paused"), TickUntil([&Agent]() { return Agent.GetAgentState() == EAgentState::Pause; }));
		TestTrue(TEXT("one ran, one waits"), Agent.GetToolResults().Num() == 1 && Agent.GetPendingTools().Num() == 1);
	});

	It("lets approved tools be paused as well", [this]() {
		const FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Agent.PauseRequest();
		Conversation.Receive();
		TickUntil([&Agent]() { return Agent.GetAgentState() == EAgentState::Pause; });
		TestEqual(TEXT("both wait"), Agent.GetPendingTools().Num(), 2);
		Agent.Continue(FString());
		TestTrue(TEXT("at work"), Agent.GetToolProgress().IsSet());
		Agent.PauseRequest();
		TestTrue(TEXT("paused"), TickUntil([&Agent]() { return Agent.GetAgentState() == EAgentState::Pause; }));
		TestTrue(TEXT("one ran, one waits"), Agent.GetToolResults().Num() == 1 && Agent.GetPendingTools().Num() == 1);
	});

	It("lets a later command take the place of a first request that is not yet made", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FSlowMotion SlowMotion;
		const FManyFolders Folders;
		FHTTPAPI::Get().InitialPromptRequest(TEXT("Who is there?"));
		TestTrue(TEXT("under way"), FHTTPAPI::Get().GetNumFoldersListed().IsSet());
		FHTTPAPI::Get().RegularRequest(TEXT("{}"));
		TestFalse(TEXT("dropped"), FHTTPAPI::Get().GetNumFoldersListed().IsSet());
		FHTTPAPI::Get().CancelPolling();
	});

	It("sends no first request when the conversation ends before the project is listed", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FKestrelTestLog Log;
		const FSlowMotion SlowMotion;
		const FManyFolders Folders;
		FAgent& Agent = FAgent::Get();
		const FInitialRequestStateData Prompt(TEXT("Who is there?"));
		Agent.SetAgentState(EAgentState::InitialRequest, &Prompt);
		TestTrue(TEXT("under way"), FHTTPAPI::Get().GetNumFoldersListed().IsSet());
		Agent.EndRequest(FString());
		TestFalse(TEXT("dropped"), FHTTPAPI::Get().GetNumFoldersListed().IsSet());
		for (int32 Frame = 0; Frame < 10; ++Frame)
		{
			Tick();
		}
		const FString Said = FString::Join(Recorder.GetTexts(), TEXT("|"));
		TestFalse(TEXT("sent"), Said.Contains(TEXT("Sending request")));
		Agent.SetAgentState(EAgentState::Idle, nullptr);
	});
}
