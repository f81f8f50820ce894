#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Tools/ToolTable.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"

namespace ToolInputTest
{
/** An input with each field of the tool in it, about things that do not exist. */
struct FSample
{
	const TCHAR* Tool;
	const TCHAR* Input;
};

const FSample Samples[] = {
	{ TEXT("finish"), TEXT("{}") },
	{ TEXT("compile"), TEXT("{}") },
	{ TEXT("execute_unreal_engine_api_python_script"), TEXT("{\"code\":\"print(1)\"}") },
	{ TEXT("create_file"), TEXT("{\"path\":\"NoSuch/ToolInput.txt\",\"file_text\":\"x\"}") },
	{ TEXT("create_cpp_file"), TEXT("{\"filepath\":\"NoSuch\",\"filename\":\"ToolInput.h\",\"contents\":\"x\"}") },
	{ TEXT("update_and_replace_cpp_file"),
		TEXT("{\"filepath\":\"NoSuch\",\"filename\":\"ToolInput.h\",\"contents\":\"x\"}") },
	{ TEXT("update_file"), TEXT("{\"path\":\"NoSuch/ToolInput.txt\",\"old_string\":\"a\",\"new_string\":\"b\"}") },
	{ TEXT("insert_into_file"),
		TEXT("{\"path\":\"NoSuch/ToolInput.txt\",\"insert_line\":\"0\",\"new_string\":\"b\"}") },
	{ TEXT("delete_file"), TEXT("{\"path\":\"NoSuch/ToolInput.txt\"}") },
	{ TEXT("delete_cpp_file"), TEXT("{\"filepath\":\"NoSuch\",\"filename\":\"ToolInput.h\"}") },
	{ TEXT("read_file"), TEXT("{\"path\":\"NoSuch/ToolInput.txt\",\"view_range\":[1,2]}") },
	{ TEXT("get_filesystem_tree"), TEXT("{\"dir_path\":\"NoSuch\"}") },
	{ TEXT("create_blueprint"),
		TEXT("{\"BPPath\":\"/Game\",\"BPName\":\"BP_ToolInput\",\"BPParentClassName\":\"NoSuchClass\"}") },
	{ TEXT("read_blueprint"), TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"data_subset\":\"All\"}") },
	{ TEXT("modify_blueprint_variables"), TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"updates\":\"{}\"}") },
	{ TEXT("read_behavior_tree"), TEXT("{\"behavior_tree_name\":\"BT_NoSuch\"}") },
	{ TEXT("save_and_compile_all_dirty_blueprints"), TEXT("{}") },
	{ TEXT("find_reference_in_all_files"), TEXT("{\"reference_string\":\"x\"}") },
};

TSharedRef<FJsonObject> MakeInput(const FKestrelTool& Tool)
{
	for (const FSample& Sample : Samples)
	{
		if (FString(Sample.Tool).Equals(Tool.WireName))
		{
			return KestrelJson::ParseObject(Sample.Input).ToSharedRef();
		}
	}
	return MakeShared<FJsonObject>();
}

FString GetRefusal(const FKestrelTool& Tool, const TSharedRef<FJsonObject>& Input)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
	return Planner.Plan(Tool.WireName, TEXT("id"), Input)->Refusal;
}

/** What a field may hold that is no text, by a name for the test's report. */
TArray<TPair<FString, TSharedPtr<FJsonValue>>> MakeNoTexts()
{
	return { { TEXT("null"), MakeShared<FJsonValueNull>() },
		{ TEXT("an array"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>()) },
		{ TEXT("an object"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>()) } };
}

using FHandler = FString (FAgent::*)(const FString& Id, const TSharedPtr<FJsonObject>& Input);

/** A tool by the agent's own function for it; "%s" stands for the folder, relative or absolute. */
struct FHandlerCase
{
	const TCHAR* What;
	FHandler Handler;
	const TCHAR* Input;
	const TCHAR* Result;
	const TCHAR* FileAfter; // a.h in the folder; null if it is gone
};

const FHandlerCase HandlerCases[] = {
	{ TEXT("create_file"), &FAgent::UseCreateFileTool, TEXT("{\"path\":\"%s/a.h\",\"file_text\":\"one\"}"),
		TEXT("Successfully replaced file: %s/a.h"), TEXT("one") },
	{ TEXT("update_file"), &FAgent::UseUpdateFileTool,
		TEXT("{\"path\":\"%s/a.h\",\"old_string\":\"start\",\"new_string\":\"end\"}"), nullptr, TEXT("end") },
	{ TEXT("insert_into_file"), &FAgent::UseInsertIntoFileTool,
		TEXT("{\"path\":\"%s/a.h\",\"insert_line\":\"0\",\"new_string\":\"top\"}"), nullptr, TEXT("top\nstart\n") },
	{ TEXT("read_file"), &FAgent::UseReadTool, TEXT("{\"path\":\"%s/a.h\"}"), TEXT("start"), TEXT("start") },
	{ TEXT("create_cpp_file"), &FAgent::UseCreateCPPTool,
		TEXT("{\"filepath\":\"%s\",\"filename\":\"a.h\",\"contents\":\"cpp\"}"), nullptr, TEXT("cpp") },
	{ TEXT("update_and_replace_cpp_file"), &FAgent::UseUpdateAndReplaceCPPTool,
		TEXT("{\"filepath\":\"%s\",\"filename\":\"a.h\",\"contents\":\"new\"}"), nullptr, TEXT("new") },
	{ TEXT("get_filesystem_tree"), &FAgent::UseGetFileSystemTool, TEXT("{\"dir_path\":\"%s\"}"), nullptr,
		TEXT("start") },
	{ TEXT("find_reference_in_all_files"), &FAgent::UseFindReferenceInAllFilesTool,
		TEXT("{\"reference_string\":\"no such text in any file\"}"), nullptr, TEXT("start") },
	{ TEXT("execute_unreal_engine_api_python_script"), &FAgent::UseExecutePythonTool,
		TEXT("{\"code\":\"print('hello')\"}"), TEXT("Python script completed: \nhello\n: "), TEXT("start") },
	{ TEXT("create_blueprint"), &FAgent::UseCreateBlueprintTool,
		TEXT("{\"BPPath\":\"/Game\",\"BPName\":\"BP_A\",\"BPParentClassName\":\"NoSuchClass\"}"),
		TEXT("Error: Parent class 'NoSuchClass' not found or could not be loaded."), TEXT("start") },
	{ TEXT("read_blueprint"), &FAgent::UseReadBlueprintTool,
		TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"data_subset\":\"All\"}"),
		TEXT("{\"Error\":\"Blueprint 'BP_NoSuch' not found.\"}"), TEXT("start") },
	{ TEXT("modify_blueprint_variables"), &FAgent::UseModifyBlueprintTool,
		TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"updates\":\"{}\"}"), TEXT("Error: Blueprint 'BP_NoSuch' not found."),
		TEXT("start") },
	{ TEXT("read_behavior_tree"), &FAgent::UseReadBehaviorTreeTool, TEXT("{\"behavior_tree_name\":\"BT_NoSuch\"}"),
		TEXT("{\"Error\":\"BehaviorTree 'BT_NoSuch' not found.\"}"), TEXT("start") },
	{ TEXT("delete_cpp_file"), &FAgent::UseDeleteCPPTool, TEXT("{\"filepath\":\"%s\",\"filename\":\"a.h\"}"), nullptr,
		nullptr },
	{ TEXT("delete_file"), &FAgent::UseDeleteFileTool, TEXT("{\"path\":\"%s/a.h\"}"), nullptr, nullptr },
};
}

DEFINE_SPEC(FKestrelToolInputSpec, "Kestrel.ToolInput", KestrelTest::Flags)
void FKestrelToolInputSpec::Define()
{
	using namespace ToolInputTest;

	for (const FKestrelTool& Tool : KestrelTools::GetAll())
	{
		It(FString(TEXT("is refused without a required field by ")) + Tool.WireName, [this, &Tool]() {
			for (const FKestrelToolField& Field : Tool.Fields)
			{
				TestTrue(FString(TEXT("the sample has ")) + Field.Name, MakeInput(Tool)->HasField(Field.Name));
				if (Field.Presence == EKestrelPresence::Optional)
				{
					continue;
				}
				const FString Error = Field.MissingError ? Field.MissingError : Tool.MissingFields;
				const TSharedRef<FJsonObject> Input = MakeInput(Tool);
				Input->RemoveField(Field.Name);
				KestrelTest::TestSameText(*this, Field.Name, GetRefusal(Tool, Input), Error);
				KestrelTest::TestSameText(
					*this, Field.Name, FAgent::Get().UseTool(Tool.WireName, TEXT("id"), Input), Error);
				for (const auto& NoText : MakeNoTexts())
				{
					Input->SetField(Field.Name, NoText.Value);
					KestrelTest::TestSameText(
						*this, FString(Field.Name) + TEXT(": ") + NoText.Key, GetRefusal(Tool, Input), Error);
				}
			}
			TestFalse(TEXT("something was made"), FPaths::DirectoryExists(FPaths::ProjectDir() / TEXT("NoSuch")));
		});

		It(FString(TEXT("is refused with a NUL by ")) + Tool.WireName, [this, &Tool]() {
			for (const FKestrelToolField& Field : Tool.Fields)
			{
				if (Field.Type == EKestrelFieldType::LineRange)
				{
					continue;
				}
				const TSharedRef<FJsonObject> Input = MakeInput(Tool);
				FString Text = TEXT("a?b");
				Text[1] = 0;
				Input->SetStringField(Field.Name, Text);
				KestrelTest::TestSameText(*this, Field.Name, GetRefusal(Tool, Input),
					FString::Printf(TEXT("Error: The field '%s' holds a NUL character"), Field.Name));
			}
		});
	}

	for (const FHandlerCase& Case : HandlerCases)
	{
		It(FString(TEXT("reaches, by the function of its own, ")) + Case.What, [this, &Case]() {
			const FKestrelTestFolder Folder;
			const FKestrelTestLog Log;
			Folder.Write(TEXT("a.h"), TEXT("start"));
			FAgent::Get().SetConversationId(TEXT("tool-input"));
			const FString Input = FString(Case.Input).Replace(TEXT("%s"), *Folder.Name);
			const FString Result = (FAgent::Get().*Case.Handler)(TEXT("id"), KestrelJson::ParseObject(Input));
			if (Case.Result)
			{
				KestrelTest::TestSameText(
					*this, TEXT("result"), Result, FString(Case.Result).Replace(TEXT("%s"), *Folder.Path));
			}
			FString Text;
			TestEqual(TEXT("the file is there"), FFileHelper::LoadFileToString(Text, *Folder.Full(TEXT("a.h"))),
				Case.FileAfter != nullptr);
			KestrelTest::TestSameText(*this, TEXT("the file"), Text, Case.FileAfter ? Case.FileAfter : TEXT(""));
			FFileHistory::Get().UndoAllChanges(TEXT("tool-input"));
			FFileHistory::Get().ForgetRedo(TEXT("tool-input"));
			FAgent::Get().ClearConversationId();
		});
	}

	It("ends the turn by the function of its own", [this]() {
		FAgent::Get().SetAgentState(EAgentState::PollResponse, nullptr);
		KestrelTest::TestSameText(*this, TEXT("finish"),
			FAgent::Get().UseFinishTool(TEXT("id"), MakeShared<FJsonObject>()), TEXT("Finished"));
		TestTrue(TEXT("waits for the user"), FAgent::Get().GetAgentState() == EAgentState::AwaitingUpdate);
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	});
}
