#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/PendingTools.h"
#include "Agent/Tools/ToolPlan.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"

namespace AgentTest
{
FString Create(const FString& Path, const TCHAR* Text)
{
	return KestrelTest::UseTool(TEXT("create_file"), { TEXT("path"), Path, TEXT("file_text"), Text });
}

FString BytesOf(const FString& File)
{
	TArray<uint8> Bytes;
	FFileHelper::LoadFileToArray(Bytes, *File);
	FString Text;
	for (const uint8 Byte : Bytes)
	{
		Text += FString::Printf(TEXT("%02x"), Byte);
	}
	return Text;
}

/** A conversation with an id of its own, forgotten at the end. */
class FConversation
{
public:
	FConversation() { FAgent::Get().SetConversationId(Id); }
	~FConversation()
	{
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		FAgent::Get().ClearConversationId();
		FAgent::Get().SetUndoConversationID(FString());
		FAgent::Get().SetRedoConversationID(FString());
		FAgent::Get().ClearToolResults();
	}
	UE_NONCOPYABLE(FConversation)

	const FString Id = FGuid::NewGuid().ToString();
};
}

DEFINE_SPEC(FKestrelAgentSpec, "Kestrel.Agent", KestrelTest::Flags)
void FKestrelAgentSpec::Define()
{
	using AgentTest::Create;

	It("shows a pause at once, and forgets it and what waits when it is idle", [this]() {
		const FKestrelPanelRecorder Recorder;
		const AgentTest::FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Agent.PauseRequest();
		TestFalse(TEXT("nothing to pause"), Agent.WasPaused());
		Agent.SetAgentState(EAgentState::PollRequest, nullptr);
		Agent.PauseRequest();
		Agent.PauseRequest();
		TestEqual(TEXT("said once"), Recorder.Messages.Num(), 1);
		Agent.HandlePollStatusRequestCompleted(KestrelJson::ParseObject(
			TEXT("{\"auto_continue\":true,\"response\":[{\"type\":\"tool_use\",\"id\":\"a\",\"name\":\"compile\","
				 "\"input\":{}}]}")));
		KestrelTest::TestSameText(*this, TEXT("state"), KestrelTest::NameOf(Agent.GetAgentState()), TEXT("Pause"));
		TestEqual(TEXT("waits"), Agent.GetPendingTools().Num(), 1);
		Agent.SetAgentState(EAgentState::Idle, nullptr);
		TestTrue(TEXT("forgotten"), Agent.GetPendingTools().IsEmpty() && !Agent.WasPaused());
	});

	It("answers a tool that did not run, and sends what waits with the next message", [this]() {
		const FKestrelPanelRecorder Recorder;
		const AgentTest::FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		Agent.HandlePauseToolUse(KestrelJson::ParseObject(
			TEXT("{\"type\":\"tool_use\",\"id\":\"left\",\"name\":\"delete_file\",\"input\":{}}")));
		if (TestEqual(TEXT("results"), Agent.GetToolResults().Num(), 1))
		{
			KestrelTest::TestSameText(*this, TEXT("result"),
				KestrelJson::ToCondensedText(Agent.GetToolResults()[0]->AsObject().ToSharedRef()),
				TEXT("{\"type\":\"tool_result\",\"tool_use_id\":\"left\",\"content\":\"Abort: User added new "
					 "input\",\"is_abort\":true}"));
		}
		Agent.SetAgentState(EAgentState::AwaitingUpdate, nullptr);
		FKestrelInterface::Get().RegularRequest(TEXT("go on"));
		TestTrue(TEXT("sent"), Agent.GetAgentState() == EAgentState::RegularRequest);
		TestEqual(TEXT("nothing is sent twice"), Agent.GetToolResults().Num(), 0);
	});

	It("keeps the key out of results, whichever tool has found it", [this]() {
		const FKestrelPanelRecorder Recorder;
		const AgentTest::FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		const FString Key = TEXT("kestrel-\"canary\\key");
		const TGuardValue<FString> Settings(GetMutableDefault<UKestrelSettings>()->ApiKey, Key);
		Agent.AddToolResult(TEXT("plain"), TEXT("ApiKey=") + Key + TEXT("\nKESTREL-"), false);
		Agent.AddToolResult(TEXT("as JSON"), TEXT("{\"line\":\"ApiKey=kestrel-\\\"canary\\\\key\"}"), true);
		const TCHAR* const Expected[] = { TEXT("ApiKey=[API key]\nKESTREL-"), TEXT("{\"line\":\"ApiKey=[API key]\"}") };
		for (int32 Index = 0; Index < 2; ++Index)
		{
			const TSharedPtr<FJsonObject> Result = Agent.GetToolResults()[Index]->AsObject();
			KestrelTest::TestSameText(*this, Result->GetStringField(TEXT("tool_use_id")),
				Result->GetStringField(TEXT("content")), Expected[Index]);
		}
		GetMutableDefault<UKestrelSettings>()->ApiKey = TEXT("e");
		Agent.AddToolResult(TEXT("no key"), TEXT("leaves the text alone"), false);
		KestrelTest::TestSameText(*this, TEXT("a single letter"),
			Agent.GetToolResults()[2]->AsObject()->GetStringField(TEXT("content")), TEXT("leaves the text alone"));
	});

	It("can undo what comes after an undo in the same conversation", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FKestrelTestFolder Folder;
		const AgentTest::FConversation Conversation;
		FAgent& Agent = FAgent::Get();
		for (const TCHAR* Tool :
			{ TEXT("execute_unreal_engine_api_python_script"), TEXT("modify_blueprint_variables") })
		{
			Create(Folder.Full(TEXT("a.txt")), TEXT("x"));
			FKestrelInterface::Get().UndoLastOperation();
			KestrelTest::TestSameText(*this, TEXT("undone"), Agent.GetUndoConversationID(), FString());
			KestrelTest::UseTool(Tool,
				{ TEXT("code"), TEXT("x = 1"), TEXT("blueprint_name"), TEXT("BP_No"), TEXT("updates"), TEXT("{}") });
			KestrelTest::TestSameText(*this, Tool, Agent.GetUndoConversationID(), Conversation.Id);
		}
	});

	It("offers no undo of a tool that failed, and changes nothing that could not be undone", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FKestrelTestFolder Folder;
		const AgentTest::FConversation Conversation;
		Folder.Write(TEXT("a.txt"), TEXT("x"));
		const FString A = Folder.Full(TEXT("a.txt"));
		KestrelTest::UseTool(
			TEXT("update_file"), { TEXT("path"), A, TEXT("old_string"), TEXT("y"), TEXT("new_string"), TEXT("z") });
		KestrelTest::UseTool(TEXT("delete_file"), { TEXT("path"), Folder.Full(TEXT("no.txt")) });
		Create(A / TEXT("below.txt"), TEXT("x"));
		TestFalse(TEXT("offered"), FKestrelInterface::Get().CanUndo());

		const FString History = FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("History");
		IFileManager::Get().Move(*(History + TEXT("Aside")), *History);
		FFileHelper::SaveStringToFile(TEXT("in the way"), *History);
		KestrelTest::TestSameText(*this, TEXT("refused"), Create(A, TEXT("y")),
			TEXT("Error: No record for undo could be kept, so the file was left as it is: ") + A);
		KestrelTest::TestSameText(*this, TEXT("left alone"), FFileUtils::ReadFile(A), TEXT("x"));
		IFileManager::Get().Delete(*History);
		IFileManager::Get().Move(*History, *(History + TEXT("Aside")));
	});

	It("undoes a change of an empty file", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FKestrelTestFolder Folder;
		const AgentTest::FConversation Conversation;
		Folder.Write(TEXT("empty.txt"), TEXT(""));
		Create(Folder.Full(TEXT("empty.txt")), TEXT("text"));
		TestTrue(TEXT("undone"), FFileHistory::Get().UndoAllChanges(Conversation.Id));
		TestEqual(TEXT("size"), IFileManager::Get().FileSize(*Folder.Full(TEXT("empty.txt"))), static_cast<int64>(0));
	});

	It("saves what it creates in the encoding of the settings, and says when that is UTF-16", [this]() {
		const FKestrelPanelRecorder Recorder;
		const FKestrelTestFolder Folder;
		const AgentTest::FConversation Conversation;
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const FString A = Folder.Full(TEXT("a.h"));
		const auto NumNotes = [&A]() {
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			return Planner
				.Plan(TEXT("create_file"), TEXT("id"),
					KestrelJson::ParseObject(
						FString::Printf(TEXT("{\"path\":\"%s.new\",\"file_text\":\"\u00E4\"}"), *A)))
				->Notes.Num();
		};
		TestEqual(TEXT("automatic says so"), NumNotes(), 1);
		Create(A, TEXT("\u00E4"));
		KestrelTest::TestSameText(*this, TEXT("automatic"), AgentTest::BytesOf(A), TEXT("fffee400"));
		IFileManager::Get().Delete(*A);
		Settings.NewFileEncoding = EKestrelFileEncoding::Utf8;
		TestEqual(TEXT("UTF-8 has nothing to say"), NumNotes(), 0);
		Create(A, TEXT("\u00E4"));
		KestrelTest::UseTool(TEXT("insert_into_file"),
			{ TEXT("path"), A, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("x") });
		KestrelTest::TestSameText(*this, TEXT("UTF-8"), AgentTest::BytesOf(A), TEXT("780ac3a40a"));
		Settings.NewFileEncoding = EKestrelFileEncoding::Automatic;
	});
}
