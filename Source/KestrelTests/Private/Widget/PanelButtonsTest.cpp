#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/PendingTools.h"
#include "Dom/JsonObject.h"
#include "Framework/Application/SlateApplication.h"
#include "KestrelSettings.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "Widgets/SWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace PanelButtonsTest
{
FString DescribeTool(const FString& Tool, const FString& Input)
{
	return FString::Printf(TEXT("{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"%s\",\"input\":%s}"), *Tool, *Input);
}

FString DescribeDeletion(const FString& Path)
{
	return DescribeTool(TEXT("delete_file"), FString::Printf(TEXT("{\"path\":\"%s\"}"), *Path));
}

/** The service's answer, which asks for these. */
void AskForTools(const TArray<FString>& Tools)
{
	FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
	FAgent::Get().HandlePollStatusRequestCompleted(
		KestrelJson::ParseObject(FString::Printf(TEXT("{\"response\":[%s]}"), *FString::Join(Tools, TEXT(",")))));
}

void AskToDelete(const FString& Path)
{
	AskForTools({ DescribeDeletion(Path) });
}

/** A file that a conversation has changed from "one" to "two", and that Undo is for. */
class FChangedFile
{
public:
	FChangedFile()
	{
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		FAgent::Get().SetConversationId(TEXT("panel-buttons"));
		FAgent::Get().OfferUndoOfThisConversation();
		KestrelTest::UseTool(TEXT("update_file"),
			{ TEXT("path"), File, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") });
	}
	~FChangedFile()
	{
		FFileHistory::Get().ForgetRedo(TEXT("panel-buttons"));
		FAgent::Get().SetRedoConversationID(FString());
		FAgent::Get().SetUndoConversationID(FString());
	}
	UE_NONCOPYABLE(FChangedFile)

	const FKestrelTestFolder Folder;
	const FString File = Folder.Full(TEXT("a.txt"));
};

EAgentState GetState()
{
	return FAgent::Get().GetAgentState();
}
}

DEFINE_SPEC(FKestrelPanelButtonsSpec, "Kestrel.PanelButtons", KestrelTest::Flags)
void FKestrelPanelButtonsSpec::Define()
{
	using namespace PanelButtonsTest;

	It("starts a conversation with the prompt", [this]() {
		const FKestrelTestPanel Panel;
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		TestTrue(TEXT("there"), Panel.Click(TEXT("[ Start ]")));
		TestTrue(TEXT("nothing without a prompt"), GetState() == EAgentState::Idle);
		Panel.Type(TEXT("script no-such-script"));
		Panel.Click(TEXT("[ Start ]"));
		TestTrue(TEXT("started"), GetState() == EAgentState::InitialRequest);
		TestTrue(TEXT("the prompt is taken"), Panel.PromptBox()->GetText().IsEmpty());
		TestTrue(TEXT("the next one can be typed"), Panel.PromptBox()->HasKeyboardFocus());
	});

	It("runs a tool when it is approved, and not before", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		const FKestrelTestPanel Panel;
		FAgent::Get().SetConversationId(TEXT("panel-buttons"));
		AskToDelete(Folder.Name / TEXT("a.txt"));
		TestTrue(TEXT("waits"), GetState() == EAgentState::AwaitingApproval);
		TestTrue(TEXT("not yet"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		TestTrue(TEXT("there"), Panel.Click(TEXT("Approve")));
		TestFalse(TEXT("deleted"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		TestTrue(TEXT("goes on"), GetState() == EAgentState::Continue);
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		FFileHistory::Get().UndoAllChanges(TEXT("panel-buttons"));
		FFileHistory::Get().ForgetRedo(TEXT("panel-buttons"));
	});

	It("runs those of several tools that are accepted, when all are answered", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		Folder.Write(TEXT("b.txt"), TEXT("two"));
		const FKestrelTestPanel Panel(FVector2D(600.0, 700.0));
		FAgent::Get().SetConversationId(TEXT("panel-buttons"));
		AskForTools({ DescribeDeletion(Folder.Name / TEXT("a.txt")), DescribeDeletion(Folder.Name / TEXT("b.txt")) });
		TestFalse(TEXT("deletions are no reading"), Panel.Click(TEXT("Always allow reading in this project")));
		TestTrue(TEXT("accepted"), Panel.Click(TEXT("Accept 1")));
		TestTrue(TEXT("the other one is still open"), GetState() == EAgentState::AwaitingApproval);
		TestTrue(TEXT("taken back"), Panel.Click(TEXT("Take back 1")));
		TestTrue(TEXT("rejected"), Panel.Click(TEXT("Reject 1")));
		TestTrue(TEXT("the last one"), Panel.Click(TEXT("Accept 2")));
		TestTrue(TEXT("goes on"), GetState() == EAgentState::Continue);
		TestTrue(TEXT("rejected, so it stays"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		TestFalse(TEXT("accepted, so it is deleted"), FPaths::FileExists(Folder.Full(TEXT("b.txt"))));
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		FFileHistory::Get().UndoAllChanges(TEXT("panel-buttons"));
		FFileHistory::Get().ForgetRedo(TEXT("panel-buttons"));
	});

	It("adds a rule when reading is always allowed", [this]() {
		const FKestrelTestPanel Panel;
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		AskForTools({ DescribeTool(TEXT("read_file"), TEXT("{\"path\":\"Config/DefaultGame.ini\"}")) });
		TestTrue(TEXT("waits"), GetState() == EAgentState::AwaitingApproval);
		TestTrue(TEXT("offered"), Panel.Click(TEXT("Always allow reading in this project")));
		TestTrue(TEXT("goes on"), GetState() == EAgentState::Continue);
		TestEqual(TEXT("rules"), Settings.ApprovalRules.Num(), 1);
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		Settings.ApprovalRules.Empty();
		Settings.SaveConfig();
	});

	It("approves nothing while nothing waits", [this]() {
		const FKestrelTestPanel Panel;
		for (const EAgentState State : { EAgentState::PollRequest, EAgentState::AwaitingUpdate, EAgentState::Idle })
		{
			FAgent::Get().SetAgentState(State, nullptr);
			Panel.Click(TEXT("Approve"));
			TestTrue(KestrelTest::NameOf(State), GetState() == State);
		}
	});

	It("leaves a tool alone when the user writes something instead", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		const FKestrelTestPanel Panel;
		AskToDelete(Folder.Name / TEXT("a.txt"));
		Panel.Click(TEXT("Continue"));
		TestTrue(TEXT("nothing to say yet"), GetState() == EAgentState::AwaitingApproval);
		Panel.Type(TEXT("rather not"));
		TestTrue(TEXT("there"), Panel.Click(TEXT("Continue")));
		TestTrue(TEXT("sent"), GetState() == EAgentState::Continue);
		TestTrue(TEXT("the file stays"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		TestEqual(TEXT("nothing waits any more"), FAgent::Get().GetPendingTools().Num(), 0);
	});

	It("pauses before the next tool, and resumes without a prompt", [this]() {
		const FKestrelTestPanel Panel;
		FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
		TestTrue(TEXT("there"), Panel.Click(TEXT("Pause")));
		TestTrue(TEXT("paused"), FAgent::Get().WasPaused());
		KestrelTest::TestSameText(*this, TEXT("said"), Panel.LastBlock().Left(7), TEXT("Pausing"));
		const int32 NumBlocks = Panel.Texts(true).Num();
		Panel.Click(TEXT("Pause"));
		TestEqual(TEXT("a second click says nothing"), Panel.Texts(true).Num(), NumBlocks);

		FAgent::Get().SetAgentState(EAgentState::Pause, nullptr);
		TestFalse(TEXT("nothing to pause now"), Panel.Click(TEXT("Pause")));
		TestTrue(TEXT("Continue is in its place"), Panel.Click(TEXT("Continue")));
		TestTrue(TEXT("resumed"), GetState() == EAgentState::Continue);
		TestFalse(TEXT("no longer paused"), FAgent::Get().WasPaused());
	});

	It("ends the conversation, whatever it waits for", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		const FKestrelTestPanel Panel;
		for (const EAgentState State : { EAgentState::PollRequest, EAgentState::AwaitingUpdate, EAgentState::Pause })
		{
			FAgent::Get().SetAgentState(State, nullptr);
			TestTrue(KestrelTest::NameOf(State), Panel.Click(TEXT("[ End ]")));
			TestTrue(KestrelTest::NameOf(State), GetState() == EAgentState::Idle);
			KestrelTest::TestSameText(*this, TEXT("said"), Panel.LastBlock(), TEXT(" [ User End ]"));
		}
		AskToDelete(Folder.Name / TEXT("a.txt"));
		Panel.Click(TEXT("[ End ]"));
		TestEqual(TEXT("the tool is dropped"), FAgent::Get().GetPendingTools().Num(), 0);
		TestTrue(TEXT("its file stays"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		const int32 NumBlocks = Panel.Texts(true).Num();
		Panel.Click(TEXT("[ End ]"));
		TestEqual(TEXT("there is nothing to end twice"), Panel.Texts(true).Num(), NumBlocks);
	});

	It("reverts and restores the files of the last conversation", [this]() {
		const FChangedFile Changed;
		const FString& File = Changed.File;
		const FKestrelTestPanel Panel;
		const auto TestFile = [this, &File](const TCHAR* What, const TCHAR* Text) {
			KestrelTest::TestSameText(*this, What, FFileUtils::ReadFile(File), Text);
		};
		TestFile(TEXT("changed"), TEXT("two"));
		Panel.Click(TEXT("Redo"));
		TestFile(TEXT("nothing to restore"), TEXT("two"));
		TestTrue(TEXT("Undo is there"), Panel.Click(TEXT("Undo")));
		TestFile(TEXT("reverted"), TEXT("one"));
		KestrelTest::TestSameText(*this, TEXT("said"), Panel.LastBlock(), TEXT("Undone: 1 file."));
		Panel.Click(TEXT("Undo"));
		TestFile(TEXT("once"), TEXT("one"));
		TestTrue(TEXT("Redo is there"), Panel.Click(TEXT("Redo")));
		TestFile(TEXT("restored"), TEXT("two"));
		KestrelTest::TestSameText(*this, TEXT("said"), Panel.LastBlock(), TEXT("Redone: 1 file."));
		TestTrue(TEXT("and back"), Panel.Click(TEXT("Undo")));
		TestFile(TEXT("reverted again"), TEXT("one"));
	});

	It("asks before changes of others go with an undo", [this]() {
		const FChangedFile Changed;
		const FString& File = Changed.File;
		const FKestrelTestPanel Panel;
		Changed.Folder.Write(TEXT("a.txt"), TEXT("mine"));
		Panel.Click(TEXT("Undo"));
		KestrelTest::TestSameText(*this, TEXT("asked"), Panel.LastBlock(),
			TEXT("1 file has been changed since, and goes back as well; a copy is kept: ") +
				Changed.Folder.Name / TEXT("a.txt. Press Undo again to go on."));
		KestrelTest::TestSameText(*this, TEXT("nothing yet"), FFileUtils::ReadFile(File), TEXT("mine"));
		Panel.Click(TEXT("Undo"));
		KestrelTest::TestSameText(*this, TEXT("undone"), FFileUtils::ReadFile(File), TEXT("one"));
	});

	It("ignores the second press of a double click on Approve", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		const FKestrelTestPanel Panel;
		AskToDelete(Folder.Name / TEXT("a.txt"));
		FSlateApplication::Get().Tick();
		const TSharedPtr<SWidget> Approve = Panel.FindButton(TEXT("Approve"));
		if (TestTrue(TEXT("there"), Approve.IsValid()))
		{
			TestTrue(TEXT("handled"),
				Approve->OnMouseButtonDoubleClick(Approve->GetCachedGeometry(), FPointerEvent()).IsEventHandled());
			TestTrue(TEXT("waits"), GetState() == EAgentState::AwaitingApproval);
		}
	});
}
