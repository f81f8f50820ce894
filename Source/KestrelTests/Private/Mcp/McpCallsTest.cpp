#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/RunStatus.h"
#include "Agent/Tools/ToolPlan.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Engine/Blueprint.h"
#include "HAL/PlatformTime.h"
#include "KestrelSettings.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Mcp/McpHistoryTools.h"
#include "Misc/FileHelper.h"
#include "Misc/HotReloadInterface.h"
#include "Modules/ModuleManager.h"
#include "ScopedTransaction.h"
#include "Support/KestrelTest.h"
#include "Support/SlowMotion.h"
#include "Support/TestContent.h"
#include "Support/TestMcpClient.h"
#include "UObject/Class.h"

namespace McpCallsTest
{
/** A file of the project that calls are about, and the server that they come to. */
class FScene
{
public:
	FScene() { Folder.Write(TEXT("A.txt"), TEXT("one two")); }

	FString Read() const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *Folder.Full(TEXT("A.txt")));
		return Text;
	}
	FString Path() const { return Folder.Name / TEXT("A.txt"); }
	int32 Change(FKestrelTestMcpClient& Client, const TCHAR* From, const TCHAR* To) const
	{
		return Client.Call(TEXT("update_file"),
			FString::Printf(TEXT("{'path':'%s','old_string':'%s','new_string':'%s'}"), *Path(), From, To));
	}
	FKestrelMcpCallQueue& Calls() { return Server.Dispatcher.GetCalls(); }
	/** What a person is asked about, in order. */
	FString Asked()
	{
		FString Text;
		for (const TSharedRef<FKestrelMcpCall>& Call : Calls().GetAwaitingApproval())
		{
			Text += Call->Client->Name + TEXT(": ") + Call->Plan->Change->After + TEXT("\n");
		}
		return Text;
	}
	void Approve() { Calls().Approve(Calls().GetAwaitingApproval()[0]->Handle); }
	void Reject() { Calls().Reject(Calls().GetAwaitingApproval()[0]->Handle); }
	void Pass(double Seconds)
	{
		Later += Seconds;
		Calls().Tick(FPlatformTime::Seconds() + Later);
	}

	FKestrelTestMcpServer Server;
	const FKestrelTestFolder Folder;
	double Later = 0.0; // seconds that the test has let pass
};

FString GetCallId(const FKestrelTestMcpClient& Client, int32 Number)
{
	return Client.GetMember(Number, TEXT("structuredContent.call_id"));
}

int32 AskAgain(FKestrelTestMcpClient& Client, const FString& CallId)
{
	return Client.Call(TEXT("get_call_result"), FString::Printf(TEXT("{'call_id':'%s'}"), *CallId));
}
}

DEFINE_SPEC(FKestrelMcpCallsSpec, "Kestrel.McpCalls", KestrelTest::Flags)
void FKestrelMcpCallsSpec::Define()
{
	using namespace McpCallsTest;
	using KestrelTest::TestSameText;

	It("lets what only reads run at once, and asks a person about the rest", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("editor one"));
		const int32 Reading = Client.Call(TEXT("read_file"), FString::Printf(TEXT("{'path':'%s'}"), *Scene.Path()));
		TestSameText(*this, TEXT("read"), Client.GetText(Reading), TEXT("one two"));
		const int32 Changing = Scene.Change(Client, TEXT("one"), TEXT("1"));
		TestSameText(*this, TEXT("waits"), Client.GetText(Changing), TEXT("waiting"));
		TestSameText(*this, TEXT("is asked"), Scene.Asked(), TEXT("editor one: 1 two\n"));
		TestSameText(*this, TEXT("not changed"), Scene.Read(), TEXT("one two"));
		Scene.Approve();
		TestSameText(*this, TEXT("changed"), Scene.Read(), TEXT("1 two"));
		TestTrue(TEXT("result"), Client.GetText(Changing).StartsWith(TEXT("Successfully updated")));
		const int32 Outside = Client.Call(TEXT("read_file"), TEXT("{'path':'/etc/hostname'}"));
		TestSameText(*this, TEXT("outside"), Client.GetText(Outside), TEXT("waiting"));
		Scene.Reject();
		TestTrue(
			TEXT("rejected"), Client.GetText(Outside).StartsWith(TEXT("Error: The person at the editor has rejected")));
		TestSameText(*this, TEXT("a failure"), Client.GetMember(Outside, TEXT("isError")), TEXT("true"));
		const int32 Failing = Scene.Change(Client, TEXT("no such text"), TEXT("1"));
		TestTrue(TEXT("nobody is asked about a failure"), Client.GetText(Failing).StartsWith(TEXT("Error:")));
	});

	It("follows the rules for approval", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		FKestrelApprovalRule& Rule = Settings.ApprovalRules.AddDefaulted_GetRef();
		Rule.Decision = EKestrelApproval::Allow;
		Rule.Tool = TEXT("change");
		TestTrue(TEXT("allowed"),
			Client.GetText(Scene.Change(Client, TEXT("one"), TEXT("1"))).StartsWith(TEXT("Successfully")));
		Rule.Decision = EKestrelApproval::Deny;
		TestTrue(TEXT("denied"),
			Client.GetText(Scene.Change(Client, TEXT("two"), TEXT("2"))).StartsWith(TEXT("Error: Not run, since")));
		TestSameText(*this, TEXT("changed once"), Scene.Read(), TEXT("1 two"));
		Rule.Decision = EKestrelApproval::Ask;
		Rule.Tool = TEXT("read");
		const int32 Reading = Client.Call(TEXT("read_file"), FString::Printf(TEXT("{'path':'%s'}"), *Scene.Path()));
		TestSameText(*this, TEXT("asked for"), Client.GetText(Reading), TEXT("waiting"));
		Scene.Reject();
	});

	It("shows a change again whose file has changed since", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const int32 Changing = Scene.Change(Client, TEXT("one"), TEXT("1"));
		Scene.Folder.Write(TEXT("A.txt"), TEXT("one and one"));
		Scene.Approve();
		TestSameText(*this, TEXT("not run"), Scene.Read(), TEXT("one and one"));
		TestSameText(*this, TEXT("asked again"), Scene.Asked(), TEXT("a: 1 and 1\n"));
		Scene.Approve();
		TestSameText(*this, TEXT("run"), Scene.Read(), TEXT("1 and 1"));
		TestTrue(TEXT("result"), Client.GetText(Changing).StartsWith(TEXT("Successfully")));
	});

	It("asks the rules again when a call is approved", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		const int32 Changing = Scene.Change(Client, TEXT("one"), TEXT("1"));
		Settings.ApprovalRules.AddDefaulted_GetRef().Decision = EKestrelApproval::Deny;
		Scene.Approve();
		TestTrue(TEXT("denied"), Client.GetText(Changing).StartsWith(TEXT("Error: Not run, since a rule")));
		TestSameText(*this, TEXT("not run"), Scene.Read(), TEXT("one two"));
	});

	It("shows an undo again that would take more than was shown", [this]() {
		FScene Scene;
		FKestrelTestMcpClient First(Scene.Server, TEXT("a"));
		FKestrelTestMcpClient Second(Scene.Server, TEXT("b"));
		Scene.Change(First, TEXT("one"), TEXT("1"));
		Scene.Approve();
		const int32 Undoing = First.Call(TEXT("undo_changes"), TEXT("{}"));
		Scene.Change(Second, TEXT("two"), TEXT("2"));
		Scene.Calls().Approve(Scene.Calls().GetAwaitingApproval()[1]->Handle);
		Scene.Approve();
		TestSameText(*this, TEXT("not undone"), Scene.Read(), TEXT("1 2"));
		TestSameText(*this, TEXT("asked again"), First.GetText(Undoing), TEXT("waiting"));
		TestEqual(TEXT("with a caution"), Scene.Calls().GetAwaitingApproval()[0]->Plan->Cautions.Num(), 1);
		Scene.Approve();
		TestSameText(*this, TEXT("undone"), Scene.Read(), TEXT("one two"));
	});

	It("tells what redoing takes from another, and asks for it as the rules for its files say", [this]() {
		FScene Scene;
		FKestrelTestMcpClient First(Scene.Server, TEXT("a"));
		FKestrelTestMcpClient Second(Scene.Server, TEXT("b"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		Scene.Change(First, TEXT("one"), TEXT("1"));
		Scene.Approve();
		Settings.ApprovalRules.SetNum(2);
		Settings.ApprovalRules[0].Decision = EKestrelApproval::Allow;
		Settings.ApprovalRules[1].Path = TEXT("*.txt"); // Ask
		const int32 Undoing = First.Call(TEXT("undo_changes"), TEXT("{}"));
		TestSameText(*this, TEXT("asked for"), First.GetText(Undoing), TEXT("waiting"));
		Settings.ApprovalRules.Empty();
		if (!Scene.Calls().GetAwaitingApproval().IsEmpty())
		{
			Scene.Approve();
		}
		Scene.Change(Second, TEXT("two"), TEXT("2"));
		Scene.Approve();
		First.Call(TEXT("redo_changes"), TEXT("{}"));
		const TArray<FText> Cautions = Scene.Calls().GetAwaitingApproval()[0]->Plan->Cautions;
		TestTrue(TEXT("told before"), Cautions.Num() == 1 && Cautions[0].ToString().Contains(TEXT("A.txt")));
		Scene.Reject();
	});

	It("lets no rule for files undo steps in the editor", [this]() {
		FScene Scene;
		const FKestrelTestContent Content;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		Scene.Change(Client, TEXT("one"), TEXT("1"));
		Scene.Approve();
		{
			const FScopedTransaction Transaction(
				FText::FromString(GetKestrelTransactionName(Client.Client->GetOrAddChanges()->ConversationId)));
			FBlueprintEditorUtils::AddMemberVariable(Content.CreateBlueprint(TEXT("BP_McpUndo")), TEXT("Toll"),
				KestrelTest::MakePinType(UEdGraphSchema_K2::PC_Int));
		}
		const auto Undo = [&]() {
			const int32 Undoing = Client.Call(TEXT("undo_changes"), TEXT("{}"));
			const FString Text = Client.GetText(Undoing);
			if (!Scene.Calls().GetAwaitingApproval().IsEmpty())
			{
				Scene.Reject();
			}
			return Text;
		};
		FKestrelApprovalRule& Rule = Settings.ApprovalRules.AddDefaulted_GetRef();
		Rule.Decision = EKestrelApproval::AllowRisky;
		Rule.Path = Scene.Folder.Name + TEXT("/**");
		TestSameText(*this, TEXT("allowed for the files"), Undo(), TEXT("waiting"));
		Rule.Path.Empty();
		FKestrelApprovalRule& Other = Settings.ApprovalRules.AddDefaulted_GetRef();
		Other.Decision = EKestrelApproval::Deny;
		Other.Path = TEXT("Content/**");
		TestSameText(*this, TEXT("denied for what may be among it"), Undo(), TEXT("waiting"));
		Settings.ApprovalRules.SetNum(1);
		TestTrue(TEXT("allowed for all"), Undo().Contains(TEXT("Undone: 1 file, 1 step")));
		GEditor->ResetTransaction(FText());
	});

	It("lets a rule for changes undo and redo nothing, which compiles as well", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		FKestrelApprovalRule& Rule = Settings.ApprovalRules.AddDefaulted_GetRef();
		Rule.Decision = EKestrelApproval::Allow;
		Rule.Tool = TEXT("change");
		Scene.Change(Client, TEXT("one"), TEXT("1"));
		TestSameText(*this, TEXT("changed"), Scene.Read(), TEXT("1 two"));
		const int32 Undoing = Client.Call(TEXT("undo_changes"), TEXT("{}"));
		TestSameText(*this, TEXT("asked for"), Client.GetText(Undoing), TEXT("waiting"));
		Settings.ApprovalRules.AddDefaulted_GetRef() = Settings.ApprovalRules[0];
		Settings.ApprovalRules[1].Tool = TEXT("compile");
		if (!Scene.Calls().GetAwaitingApproval().IsEmpty())
		{
			Scene.Reject();
			Client.Call(TEXT("undo_changes"), TEXT("{}"));
		}
		TestSameText(*this, TEXT("allowed both"), Scene.Read(), TEXT("one two"));
	});

	It("reads nothing for a call that was shown as one that fails", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const int32 Reading = Client.Call(TEXT("read_file"), TEXT("{'path':'/etc/hostname','view_range':['a']}"));
		Scene.Approve();
		TestTrue(TEXT("failed"), Client.GetText(Reading).StartsWith(TEXT("Error: view_range must be")));
	});

	It("keeps the end of a client's compile out of the panel's own conversation", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		IHotReloadInterface* HotReload = FModuleManager::LoadModulePtr<IHotReloadInterface>("HotReload");
		FCompilationManager::WaitForEvent(*HotReload, /*LongestSeconds*/ 60.0);
		const int32 NumResults = FAgent::Get().GetToolResults().Num();
		const int32 NumMessages = FAgent::Get().GetStoredMessages().Num();
		const int32 NumFailures = FKestrelRunStatus::Get().GetNumFailures();
		const int32 Compiling = Client.Call(TEXT("compile"), TEXT("{}"));
		Scene.Approve();
		FCompilationManager::Shutdown();
		TestEqual(TEXT("failures of the panel's run"), FKestrelRunStatus::Get().GetNumFailures(), NumFailures);
		TestTrue(TEXT("told"), Client.GetText(Compiling).Contains(FCompilationManager::AlreadyRunning));
		TestEqual(TEXT("results for the service"), FAgent::Get().GetToolResults().Num(), NumResults);
		TestEqual(TEXT("messages"), FAgent::Get().GetStoredMessages().Num(), NumMessages);
	});

	It("answers in time with a handle, under which the result is fetched once", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const int32 Changing = Scene.Change(Client, TEXT("one"), TEXT("1"));
		Scene.Pass(FKestrelMcpCallQueue::LongestWaitSeconds - 1.0);
		TestSameText(*this, TEXT("not yet"), Client.GetText(Changing), TEXT("waiting"));
		Scene.Pass(2.0);
		TestSameText(
			*this, TEXT("state"), Client.GetMember(Changing, TEXT("structuredContent.state")), TEXT("waiting"));
		const FString CallId = GetCallId(Client, Changing);
		const int32 First = AskAgain(Client, CallId);
		const int32 Second = AskAgain(Client, CallId);
		TestSameText(*this, TEXT("the earlier request"), GetCallId(Client, First), CallId);
		Scene.Approve();
		TestTrue(TEXT("result"), Client.GetText(Second).StartsWith(TEXT("Successfully")));
		TestTrue(TEXT("fetched"), Client.GetText(AskAgain(Client, CallId)).StartsWith(TEXT("Error: No call waits")));
		TestTrue(TEXT("guessed"), Client.GetText(AskAgain(Client, TEXT("1"))).StartsWith(TEXT("Error: No call waits")));
		TestEqual(TEXT("nothing is left"), Scene.Calls().Num(), 0);
	});

	It("lets a client without a session repeat the very call that waits", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"), TEXT("2026-07-28"));
		const FString Arguments =
			FString::Printf(TEXT("{'path':'%s','old_string':'one','new_string':'1'}"), *Scene.Path());
		const auto Repeat = [&Client](const FString& Tool, const FString& OfArguments, const FString& State) {
			return Client.Request(TEXT("tools/call"),
				FString::Printf(TEXT("{'name':'%s','arguments':%s,'requestState':'%s'}"), *Tool, *OfArguments, *State));
		};
		const int32 Changing = Client.Call(TEXT("update_file"), Arguments);
		Scene.Pass(FKestrelMcpCallQueue::LongestWaitSeconds);
		TestSameText(*this, TEXT("kind"), Client.GetMember(Changing, TEXT("resultType")), TEXT("input_required"));
		const FString State = Client.GetMember(Changing, TEXT("requestState"));
		const TCHAR* const None = TEXT("Error: No call waits");
		TestTrue(TEXT("another tool"), Client.GetText(Repeat(TEXT("delete_file"), Arguments, State)).StartsWith(None));
		TestTrue(TEXT("other arguments"),
			Client.GetText(Repeat(TEXT("update_file"), TEXT("{'path':'x'}"), State)).StartsWith(None));
		TestTrue(
			TEXT("another state"), Client.GetText(Repeat(TEXT("update_file"), Arguments, TEXT("0"))).StartsWith(None));
		FKestrelTestMcpClient Stranger(Scene.Server, TEXT("b"), TEXT("2026-07-28"));
		TestTrue(TEXT("another client"),
			Stranger
				.GetText(Stranger.Request(TEXT("tools/call"),
					FString::Printf(
						TEXT("{'name':'update_file','arguments':%s,'requestState':'%s'}"), *Arguments, *State)))
				.StartsWith(None));
		const int32 Repeated = Repeat(TEXT("update_file"), Arguments, State);
		Scene.Approve();
		TestTrue(TEXT("result"), Client.GetText(Repeated).StartsWith(TEXT("Successfully")));
		TestSameText(*this, TEXT("whole"), Client.GetMember(Repeated, TEXT("resultType")), TEXT("complete"));
		TestSameText(*this, TEXT("once"), Scene.Read(), TEXT("1 two"));
	});

	It("keeps apart what clients of the same name change without sessions", [this]() {
		FScene Scene;
		FKestrelTestMcpClient First(Scene.Server, TEXT("a"), TEXT("2026-07-28"));
		FKestrelTestMcpClient Second(Scene.Server, TEXT("a"), TEXT("2026-07-28"));
		const auto Change = [&Scene](
								FKestrelTestMcpClient& Client, const TCHAR* From, const TCHAR* To, const FString& Id) {
			const int32 Number = Client.Call(TEXT("update_file"),
				FString::Printf(TEXT("{'path':'%s','old_string':'%s','new_string':'%s','changes_id':'%s'}"),
					*Scene.Path(), From, To, *Id));
			if (!Scene.Calls().GetAwaitingApproval().IsEmpty())
			{
				Scene.Approve();
			}
			FString Before;
			FString After;
			Client.GetAnswer(Number).Split(TEXT("changes_id: "), &Before, &After);
			return After.Left(64);
		};
		const auto Undo = [&Scene](FKestrelTestMcpClient& Client, const FString& Id) {
			const int32 Number = Client.Call(TEXT("undo_changes"), FString::Printf(TEXT("{'changes_id':'%s'}"), *Id));
			if (!Scene.Calls().GetAwaitingApproval().IsEmpty())
			{
				Scene.Approve();
			}
			return Client.GetText(Number);
		};
		const FString OfFirst = Change(First, TEXT("one"), TEXT("1"), FString());
		TestSameText(*this, TEXT("goes on"), Change(First, TEXT("1"), TEXT("I"), OfFirst), OfFirst);
		const TCHAR* const Unknown = TEXT("Error: No changes are known");
		TestTrue(TEXT("all of that name"), Undo(Second, FString()).StartsWith(Unknown));
		TestTrue(TEXT("guessed"), Undo(Second, OfFirst.Left(63) + TEXT("x")).StartsWith(Unknown));
		FKestrelTestMcpClient Stranger(Scene.Server, TEXT("b"), TEXT("2026-07-28"));
		TestTrue(TEXT("of another name"), Undo(Stranger, OfFirst).StartsWith(Unknown));
		const FString OfSecond = Change(Second, TEXT("two"), TEXT("2"), FString());
		TestTrue(TEXT("apart"), OfSecond.Len() == 64 && !OfSecond.Equals(OfFirst));
		TestTrue(TEXT("undone"), Undo(Second, OfSecond).Contains(TEXT("Undone: 1 file")));
		TestSameText(*this, TEXT("only its own"), Scene.Read(), TEXT("I two"));
		TestTrue(TEXT("both of the other's"), Undo(First, OfFirst).Contains(TEXT("Undone: 1 file")));
		TestSameText(*this, TEXT("as before"), Scene.Read(), TEXT("one two"));
		const int32 Waiting = Scene.Change(First, TEXT("one"), TEXT("1"));
		Scene.Pass(FKestrelMcpCallQueue::LongestWaitSeconds);
		const int32 Same = Scene.Change(Second, TEXT("one"), TEXT("1"));
		Scene.Approve();
		TestSameText(*this, TEXT("no result of the other's"), Second.GetText(Same), TEXT("waiting"));
		TestSameText(
			*this, TEXT("asked to ask again"), First.GetMember(Waiting, TEXT("resultType")), TEXT("input_required"));
	});

	It("keeps the result of a call that nobody asks for just then", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const int32 Changing = Scene.Change(Client, TEXT("one"), TEXT("1"));
		Scene.Pass(FKestrelMcpCallQueue::LongestWaitSeconds);
		Scene.Approve();
		Scene.Pass(FKestrelMcpCallQueue::WithdrawSeconds + 1.0);
		TestTrue(TEXT("result"),
			Client.GetText(AskAgain(Client, GetCallId(Client, Changing))).StartsWith(TEXT("Successfully")));
	});

	It("withdraws what nobody waits for any more, and never runs it", [this]() {
		FScene Scene;
		int32 NumWithdrawn = 0;
		Scene.Calls().OnWithdrawn.BindLambda([&NumWithdrawn](const FKestrelMcpCall&) { ++NumWithdrawn; });
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const int32 Forgotten = Scene.Change(Client, TEXT("one"), TEXT("1"));
		const FString Handle = Scene.Calls().GetAwaitingApproval()[0]->Handle;
		Scene.Pass(FKestrelMcpCallQueue::LongestWaitSeconds);
		Scene.Pass(FKestrelMcpCallQueue::WithdrawSeconds);
		TestSameText(*this, TEXT("forgotten"), Scene.Asked(), FString());
		Scene.Calls().Approve(Handle);
		TestTrue(TEXT("too late"),
			Client.GetText(AskAgain(Client, GetCallId(Client, Forgotten))).StartsWith(TEXT("Error: No call waits")));

		const int32 Cancelled = Scene.Change(Client, TEXT("one"), TEXT("2"));
		const int32 Behind = Scene.Change(Client, TEXT("one"), TEXT("3"));
		Client.Cancel(Behind);
		Client.Cancel(Cancelled);
		TestSameText(
			*this, TEXT("cancelled"), Client.GetAnswer(Cancelled) + Client.GetAnswer(Behind), TEXT("nothingnothing"));
		Scene.Change(Client, TEXT("one"), TEXT("4"));
		Scene.Server.Dispatcher.GetClients().End(Client.Client.ToSharedRef());
		TestSameText(*this, TEXT("gone"), Scene.Asked(), FString());
		TestSameText(*this, TEXT("never run"), Scene.Read(), TEXT("one two"));
		TestEqual(TEXT("told of those that were shown"), NumWithdrawn, 3);
	});

	It("keeps a client's calls in order, and lets another client's pass one that waits for a person", [this]() {
		FScene Scene;
		FKestrelTestMcpClient First(Scene.Server, TEXT("a"));
		FKestrelTestMcpClient Second(Scene.Server, TEXT("b"));
		const FString Reading = FString::Printf(TEXT("{'path':'%s'}"), *Scene.Path());
		Scene.Change(First, TEXT("one"), TEXT("1"));
		const int32 Behind = First.Call(TEXT("read_file"), Reading);
		const int32 Beside = Second.Call(TEXT("read_file"), Reading);
		TestSameText(*this, TEXT("behind"), First.GetText(Behind), TEXT("waiting"));
		TestSameText(*this, TEXT("beside"), Second.GetText(Beside), TEXT("one two"));
		Scene.Approve();
		Scene.Pass(0.0);
		TestSameText(*this, TEXT("behind, then"), First.GetText(Behind), TEXT("1 two"));
	});

	It("waits while the panel's own conversation is at work", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const FString Reading = FString::Printf(TEXT("{'path':'%s'}"), *Scene.Path());
		Scene.Change(Client, TEXT("one"), TEXT("1"));
		FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
		Scene.Approve();
		FKestrelTestMcpClient Other(Scene.Server, TEXT("b"));
		const int32 Waiting = Other.Call(TEXT("read_file"), Reading);
		Scene.Pass(1.0);
		TestSameText(*this, TEXT("not approved"), Scene.Read(), TEXT("one two"));
		TestSameText(*this, TEXT("not read"), Other.GetText(Waiting), TEXT("waiting"));
		FAgent::Get().SetAgentState(EAgentState::AwaitingUpdate, nullptr);
		Scene.Pass(1.0);
		TestSameText(*this, TEXT("read"), Other.GetText(Waiting), TEXT("one two"));
		Scene.Approve();
		TestSameText(*this, TEXT("approved"), Scene.Read(), TEXT("1 two"));
	});

	It("lets a search take several frames with the calls behind it waiting, and drops it with its client", [this]() {
		FScene Scene;
		const KestrelTest::FSlowMotion SlowMotion;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		const TCHAR* const Wanted = TEXT("{'reference_string':'nothing has this in it'}");
		const int32 Searching = Client.Call(TEXT("find_reference_in_all_files"), Wanted);
		const int32 Reading = Client.Call(TEXT("read_file"), FString::Printf(TEXT("{'path':'%s'}"), *Scene.Path()));
		TestSameText(*this, TEXT("under way"), Client.GetText(Searching), TEXT("waiting"));
		TestSameText(*this, TEXT("behind it"), Client.GetText(Reading), TEXT("waiting"));
		TestTrue(TEXT("both"), KestrelTest::TickUntil([&Scene]() { return Scene.Calls().Num() == 0; }));
		TestTrue(TEXT("searched"), Client.GetText(Searching).Contains(TEXT("cpp_references")));
		TestSameText(*this, TEXT("read"), Client.GetText(Reading), TEXT("one two"));

		Client.Call(TEXT("find_reference_in_all_files"), Wanted);
		Scene.Calls().WithdrawAll(FKestrelMcpAnswer());
		TestEqual(TEXT("dropped"), Scene.Calls().Num(), 0);
		KestrelTest::Tick();
	});

	It("takes only so many calls at once", [this]() {
		FScene Scene;
		FKestrelTestMcpClient Client(Scene.Server, TEXT("a"));
		int32 Last = 0;
		for (int32 Count = 0; Count <= FKestrelMcpCallQueue::MaxCallsOfClient; ++Count)
		{
			Last = Scene.Change(Client, TEXT("one"), TEXT("1"));
		}
		TestTrue(TEXT("one too many"), Client.GetText(Last).StartsWith(TEXT("Error: Too many calls wait")));
		FKestrelTestMcpClient Other(Scene.Server, TEXT("b"));
		TestSameText(
			*this, TEXT("another"), Other.GetText(Scene.Change(Other, TEXT("one"), TEXT("1"))), TEXT("waiting"));
	});

	It("keeps what a client changes as a conversation of its own, to be undone as a whole", [this]() {
		FScene Scene;
		const FKestrelPanelRecorder Panel;
		FAgent::Get().SetConversationId(TEXT("the panel's"));
		FKestrelTestMcpClient Client(Scene.Server, TEXT("editor\\none"));
		const FString Id = Client.Client->GetOrAddChanges()->ConversationId;
		Scene.Change(Client, TEXT("one"), TEXT("1"));
		Scene.Approve();
		Scene.Change(Client, TEXT("two"), TEXT("2"));
		Scene.Approve();
		TestSameText(*this, TEXT("the panel's conversation"), FAgent::Get().GetConversationId(), TEXT("the panel's"));
		TestEqual(TEXT("said in the panel"), Panel.Messages.Num(), 0);
		TArray<FKestrelTranscriptEntry> Entries;
		FKestrelConversationStore& Store = FKestrelInterface::Get().GetTranscript().GetStore();
		TestTrue(TEXT("stored"), Store.Read(Id, Entries) == EKestrelConversationRead::Done);
		TestTrue(TEXT("named"), Store.Find(Id)->Title.Contains(TEXT("another assistant")));
		TArray<FKestrelTranscriptEntry> Last;
		TestFalse(TEXT("not shown without being asked for"), Store.ReadLast(Last).IsSet());
		const FKestrelTranscriptEntry* Change = Entries.FindByPredicate(
			[](const FKestrelTranscriptEntry& Entry) { return Entry.Kind == EKestrelTranscriptKind::Change; });
		TestSameText(*this, TEXT("diff"), Change ? Change->After : FString(), TEXT("1 two"));

		TestSameText(*this, TEXT("the panel undoes it"), FAgent::Get().GetUndoConversationID(), Id);
		const int32 Undoing = Client.Call(TEXT("undo_changes"), TEXT("{}"));
		TestSameText(*this, TEXT("asked"), Client.GetText(Undoing), TEXT("waiting"));
		Scene.Approve();
		TestSameText(*this, TEXT("undone"), Scene.Read(), TEXT("one two"));
		TestTrue(TEXT("told"), Client.GetText(Undoing).Contains(TEXT("Undone: 1 file")));
		Client.Call(TEXT("redo_changes"), TEXT("{}"));
		Scene.Approve();
		TestSameText(*this, TEXT("redone"), Scene.Read(), TEXT("1 2"));
		FFileHistory::Get().UndoAllChanges(Id);
		FAgent::Get().ClearConversationId();
	});

	It("tells what undoing one client takes from another, and loses nothing", [this]() {
		FScene Scene;
		FKestrelTestMcpClient First(Scene.Server, TEXT("a"));
		FKestrelTestMcpClient Second(Scene.Server, TEXT("b"));
		Scene.Change(First, TEXT("one"), TEXT("1"));
		Scene.Approve();
		Scene.Change(Second, TEXT("two"), TEXT("2"));
		Scene.Approve();
		First.Call(TEXT("undo_changes"), TEXT("{}"));
		const TArray<FText> Cautions = Scene.Calls().GetAwaitingApproval()[0]->Plan->Cautions;
		TestTrue(TEXT("told before"), Cautions.Num() == 1 && Cautions[0].ToString().Contains(TEXT("A.txt")));
		TArray<FString> Kept;
		const TGuardValue<FOnTextKeptDelegate> Unhooked(FFileHistory::Get().OnTextKept,
			FOnTextKeptDelegate::CreateLambda([&Kept](const FString&, const FString& CopyPath) {
				FString Text;
				FFileHelper::LoadFileToString(Text, *CopyPath);
				Kept.Add(Text);
			}));
		Scene.Approve();
		TestSameText(*this, TEXT("undone"), Scene.Read(), TEXT("one two"));
		TestSameText(*this, TEXT("kept"), FString::Join(Kept, TEXT("|")), TEXT("1 2"));
		Second.Call(TEXT("undo_changes"), TEXT("{}"));
		Scene.Approve();
		TestSameText(*this, TEXT("the other one's start"), Scene.Read(), TEXT("1 two"));
		TestSameText(*this, TEXT("kept again"), FString::Join(Kept, TEXT("|")), TEXT("1 2|one two"));
	});
}
