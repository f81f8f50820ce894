#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Project/KestrelPythonUtils.h"
#include "Agent/Text/JsonText.h"
#include "Containers/Ticker.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "IPythonScriptPlugin.h"
#include "Logging/LogMacros.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/HotReloadInterface.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "Support/KestrelTest.h"

DEFINE_LOG_CATEGORY_STATIC(LogLiveCoding, Log, All);

namespace ToolsTest
{
struct FRefusedCase
{
	const TCHAR* Tool;
	const TCHAR* Input;
	const TCHAR* Error;
};

const FRefusedCase RefusedCases[] = {
	{ TEXT("no_such_tool"), TEXT("{}"), TEXT("Error: Unknown tool 'no_such_tool'") },
	{ TEXT("modify_blueprint"), TEXT("{}"), TEXT("Error: Unknown tool 'modify_blueprint'") },
	{ TEXT("EXECUTE_unreal_engine_api_python_script"), TEXT("{}"), TEXT("Error: Missing code field") },
	{ TEXT("create_file"), TEXT("{\"path\":\"a\"}"), TEXT("Error: Missing required fields") },
	{ TEXT("create_file"), TEXT("{\"path\":\"No/Such/\",\"file_text\":\"\"}"),
		TEXT("Error: The provided path must include a filename") },
	{ TEXT("create_cpp_file"), TEXT("{\"filename\":\"a\"}"), TEXT("Error: Missing required fields") },
	{ TEXT("create_cpp_file"), TEXT("{\"filepath\":\"Source\",\"filename\":\"a.h\"}"),
		TEXT("Error: Missing required fields") },
	{ TEXT("update_and_replace_cpp_file"), TEXT("{\"filepath\":\"Source\",\"filename\":\"a\"}"),
		TEXT("Error: Missing required fields") },
	{ TEXT("update_file"), TEXT("{\"path\":\"a\",\"old_string\":\"b\"}"),
		TEXT("Error: Missing required fields. Need path, old_string, and new_string.") },
	{ TEXT("insert_into_file"), TEXT("{\"path\":\"a\",\"insert_line\":\"1\"}"),
		TEXT("Error: Missing required fields. Need path, insert_line, and new_string.") },
	{ TEXT("insert_into_file"),
		TEXT("{\"path\":\"Config/DefaultGame.ini\",\"insert_line\":\"-1\",\"new_string\":\"x\"}"),
		TEXT("Error: insert_line must be a non-negative integer.") },
	{ TEXT("delete_file"), TEXT("{}"), TEXT("Error: Missing required path field") },
	{ TEXT("delete_cpp_file"), TEXT("{\"filepath\":\"a\"}"), TEXT("Error: Missing required fields") },
	{ TEXT("read_file"), TEXT("{\"path\":{}}"), TEXT("Error: Missing required path field") },
	{ TEXT("get_filesystem_tree"), TEXT("{}"), TEXT("Error: Missing dir_path field") },
	{ TEXT("modify_blueprint_variables"), TEXT("{\"updates\":\"{}\"}"),
		TEXT("Error: Missing required fields - blueprint_name") },
	{ TEXT("modify_blueprint_variables"), TEXT("{\"blueprint_name\":\"BP_A\"}"),
		TEXT("Error: Missing required fields - updates") },
	{ TEXT("modify_blueprint_variables"), TEXT("{\"blueprint_name\":\"BP_No\",\"updates\":\"{}\"}"),
		TEXT("Error: Blueprint 'BP_No' not found.") },
	{ TEXT("modify_blueprint_variables"), TEXT("{\"blueprint_name\":\"BP_No\",\"updates\":\"[]\"}"),
		TEXT("Error: Failed to parse modification JSON.") },
	{ TEXT("find_reference_in_all_files"), TEXT("{}"), TEXT("Error: Missing required fields") },
};

FString Use(const TCHAR* Tool, const TCHAR* Input)
{
	return FAgent::Get().UseTool(Tool, TEXT("id"), KestrelJson::ParseObject(Input));
}

/** Keeps the differences that the panel would show. */
class FDiffRecorder
{
public:
	FDiffRecorder()
		: Unhooked(FKestrelInterface::Get().DiffMessageDelegate)
	{
		FKestrelInterface::Get().DiffMessageDelegate.BindLambda(
			[this](const FString& File, const FString& Before, const FString& After) {
				Diffs += FPaths::GetCleanFilename(File) + TEXT(":") + Before + TEXT(">") + After + TEXT(" ");
			});
	}
	~FDiffRecorder() { FKestrelInterface::Get().DiffMessageDelegate = Unhooked; }
	UE_NONCOPYABLE(FDiffRecorder)

	FString Diffs;

private:
	FOnAddDiffMessageDelegate Unhooked;
};

/** "Name Name" of the files that a search finds, in its order. */
FString NamesFound(const FString& Text)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	FKestrelFindUtils::FindInAllCppFiles(Text, Result);
	TArray<FString> Names;
	for (const TSharedPtr<FJsonValue>& Reference : Result->GetArrayField(TEXT("cpp_references")))
	{
		Names.Add(Reference->AsObject()->GetStringField(TEXT("Name")));
	}
	Names.Sort();
	return FString::Join(Names, TEXT(" "));
}

struct FScriptCase
{
	const TCHAR* What;
	const TCHAR* Code;
	const TCHAR* Begin;
	const TCHAR* End;
	/** What the editor's log has of it. */
	TArray<FString> Errors = {};
};

const FScriptCase ScriptCases[] = {
	{ TEXT("returns what a script prints, to either stream"),
		TEXT("import sys\nprint('out \u00E4')\nprint('err', file=sys.stderr)"),
		TEXT("Python script completed: \nout \u00E4\nerr\n: "), TEXT("") },
	{ TEXT("says that it ran when a script prints nothing"), TEXT("x = 1"), TEXT("Python script completed: \n: "),
		TEXT("") },
	{ TEXT("keeps what was printed before an exception, and the traceback"),
		TEXT("print('before')\nraise ValueError('no')"),
		TEXT("Error: Python script execution failed.: before\nTraceback (most recent call last):"),
		TEXT("ValueError: no"), { TEXT("Traceback"), TEXT("File "), TEXT("ValueError") } },
	{ TEXT("shows where a script cannot be read"), TEXT("def f(:\n"), TEXT("Error: Python script execution failed.: "),
		TEXT("SyntaxError: invalid syntax"), { TEXT("File "), TEXT("def f"), TEXT("^"), TEXT("SyntaxError") } },
	{ TEXT("finds the streams in place again after a script that failed"), TEXT("print('again')"),
		TEXT("Python script completed: \nagain\n: "), TEXT("") },
	{ TEXT("loses the output of a script that opens a stream of its own"),
		TEXT("import io, sys\nsys.stdout = io.StringIO()\nprint('lost')"), TEXT("Python script completed: \n: "),
		TEXT("") },
};
}

DEFINE_SPEC(FKestrelToolsSpec, "Kestrel.Tools", KestrelTest::Flags)
void FKestrelToolsSpec::Define()
{
	It("refuse what they cannot do without, and change nothing then", [this]() {
		const FKestrelPanelRecorder Recorder;
		for (const ToolsTest::FRefusedCase& Case : ToolsTest::RefusedCases)
		{
			KestrelTest::TestSameText(*this, Case.Input, ToolsTest::Use(Case.Tool, Case.Input), Case.Error);
		}
		KestrelTest::TestSameText(*this, TEXT("no input"), FAgent::Get().UseTool(TEXT("compile"), TEXT("id"), nullptr),
			TEXT("Error: Invalid input"));
		TestFalse(TEXT("recorded"), FFileHistory::Get().GetFileHistories().Contains(FString()));
	});

	It("show what they did to files, and pass on what failed", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelPanelRecorder Recorder;
		const ToolsTest::FDiffRecorder Recorded;
		using KestrelTest::UseTool;
		const FString A = Folder.Full(TEXT("a.h"));
		const FString NoFile = TEXT("Error: File does not exist: ") + Folder.Full(TEXT("no.h"));
		UseTool(TEXT("create_cpp_file"),
			{ TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("a.h"), TEXT("contents"), TEXT("one") });
		UseTool(TEXT("create_cpp_file"),
			{ TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("a.h"), TEXT("contents"), TEXT("two") });
		UseTool(TEXT("update_file"), { TEXT("path"), A, TEXT("old_string"), TEXT("w"), TEXT("new_string"), TEXT("o") });
		UseTool(TEXT("insert_into_file"),
			{ TEXT("path"), A, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("x") });
		UseTool(TEXT("create_file"), { TEXT("path"), A, TEXT("file_text"), TEXT("three") });
		UseTool(TEXT("delete_cpp_file"), { TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("a.h") });
		KestrelTest::TestSameText(*this, TEXT("update"),
			UseTool(TEXT("update_file"), { TEXT("path"), Folder.Full(TEXT("no.h")), TEXT("old_string"), TEXT("w"),
											 TEXT("new_string"), TEXT("o") }),
			NoFile);
		KestrelTest::TestSameText(*this, TEXT("insert"),
			UseTool(TEXT("insert_into_file"), { TEXT("path"), Folder.Full(TEXT("no.h")), TEXT("insert_line"), TEXT("0"),
												  TEXT("new_string"), TEXT("x") }),
			NoFile);
		KestrelTest::TestSameText(*this, TEXT("replace"),
			UseTool(TEXT("update_and_replace_cpp_file"),
				{ TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("no.h"), TEXT("contents"), TEXT("x") }),
			NoFile);
		KestrelTest::TestSameText(*this, TEXT("differences"), Recorded.Diffs,
			TEXT("a.h:>one a.h:one>two a.h:two>too a.h:too>x\ntoo\n a.h:x\ntoo\n>three a.h:three> "));
		KestrelTest::TestSameText(*this, TEXT("status lines"), FString::Join(Recorder.GetTexts(), TEXT("|")),
			TEXT("Creating File ...|Updating/Replacing File ...|Updating File Content...|Inserting content into "
				 "file...|Creating File...|Deleting File...|Updating File Content...|Inserting content into file...|"
				 "Updating/Replacing File ..."));
		FFileHistory::Get().UndoAllChanges(FString());
	});

	It("find a text in the sources, in any encoding and letter case", [this]() {
		const FString Source = FFileUtils::ToAbsolutePath(TEXT("Source/KestrelFind"));
		const FString Plugins = FFileUtils::ToAbsolutePath(TEXT("Plugins/KestrelFind"));
		const auto Write = [](const FString& File, const TCHAR* Text, FFileHelper::EEncodingOptions Encoding) {
			FFileHelper::SaveStringToFile(Text, *File, Encoding);
		};
		constexpr FFileHelper::EEncodingOptions Utf8 = FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM;
		Write(Source / TEXT("Deep/a.cpp"), TEXT("int QuailCount = QuailCount;"), Utf8);
		Write(Source / TEXT("b.h"), TEXT("// quailcOUNT"), FFileHelper::EEncodingOptions::ForceUnicode);
		Write(Source / TEXT("c.txt"), TEXT("QuailCount"), Utf8);
		Write(Source / TEXT("d.h"), TEXT("quail count, \u00C4rger"), Utf8);
		Write(Plugins / TEXT("e.h"), TEXT("\tQUAILCOUNT"), Utf8);
		KestrelTest::TestSameText(
			*this, TEXT("a name"), ToolsTest::NamesFound(TEXT("QuailCount")), TEXT("a.cpp b.h e.h"));
		KestrelTest::TestSameText(*this, TEXT("beyond ASCII"), ToolsTest::NamesFound(TEXT("\u00C4RGER")), TEXT("d.h"));
		KestrelTest::TestSameText(*this, TEXT("nothing"),
			ToolsTest::Use(TEXT("find_reference_in_all_files"), TEXT("{\"reference_string\":\"Quail\\\"Nowhere\"}")),
			TEXT("{\"reference_string\":\"Quail\\\"Nowhere\",\"cpp_references\":[],\"blueprint_references\":[]}"));
		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		FKestrelFindUtils::FindInAllCppFiles(TEXT("\tQuailCount"), Result);
		KestrelTest::TestSameText(*this, TEXT("an entry"), KestrelJson::ToCondensedText(Result.ToSharedRef()),
			FString::Printf(
				TEXT("{\"cpp_references\":[{\"Type\":\"cpp or h File\",\"Name\":\"e.h\",\"Path\":\"%s\"}]}"),
				*(Plugins / TEXT("e.h"))));
		IFileManager::Get().DeleteDirectory(*Source, false, true);
		IFileManager::Get().DeleteDirectory(*Plugins, false, true);
	});
}

DEFINE_SPEC(FKestrelPythonSpec, "Kestrel.Python", KestrelTest::Flags)
void FKestrelPythonSpec::Define()
{
	for (const ToolsTest::FScriptCase& Case : ToolsTest::ScriptCases)
	{
		It(Case.What, [this, &Case]() {
			const FKestrelPanelRecorder Recorder;
			for (const FString& Error : Case.Errors)
			{
				AddExpectedError(Error, EAutomationExpectedErrorFlags::Contains, 0);
			}
			const FString Text =
				KestrelTest::UseTool(TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), Case.Code });
			KestrelTest::TestSameText(*this, TEXT("begin"), Text.Left(FString(Case.Begin).Len()), Case.Begin);
			KestrelTest::TestSameText(*this, TEXT("end"), Text.TrimEnd().Right(FString(Case.End).Len()), Case.End);
			TArray<FString> Left;
			IFileManager::Get().FindFiles(
				Left, *FFileUtils::ToAbsolutePath(TEXT("Plugins/kestrel-unreal/Python/*.py")), true, false);
			IFileManager::Get().FindFiles(Left, *(FPaths::ProjectLogDir() / TEXT("PythonScriptLog_*")), true, false);
			TestEqual(TEXT("files left behind"), Left.Num(), 0);
		});
	}

	It("gets every character of what is printed, whatever the platform's code page", [this]() {
		IPythonScriptPlugin& Python = *IPythonScriptPlugin::Get();
		// What Windows does: files are opened with a code page that lacks most characters.
		Python.ExecPythonCommand(
			TEXT("import builtins, sys\n"
				 "sys.kestrel_test_open = builtins.open\n"
				 "def open_with_code_page(file, mode='r', buffering=-1, encoding='cp1252', *rest, "
				 "**options):\n"
				 "    return sys.kestrel_test_open(file, mode, buffering, encoding, *rest, **options)\n"
				 "builtins.open = sys.kestrel_test_page = open_with_code_page\n"));
		const TCHAR* const Check = TEXT("import builtins, sys\nassert builtins.open is sys.kestrel_test_page\n");
		const FString Text = TEXT("\u00E4\u00F6\u00FC\u2192");
		const auto Run = [](const FString& Script) {
			return FKestrelPythonUtils::CreateAndExecutePythonScript(Script);
		};
		KestrelTest::TestSameText(*this, TEXT("printed"),
			Run(Check + FString::Printf(TEXT("print('%s')"), *Text)).Message,
			TEXT("Python script completed: \n") + Text + TEXT("\n"));
		TestTrue(TEXT("in place again"), Python.ExecPythonCommand(Check));
		for (const TCHAR* Error :
			{ TEXT("Traceback"), TEXT("File "), TEXT("ValueError"), TEXT("SyntaxError"), TEXT("def f"), TEXT("^") })
		{
			AddExpectedError(Error, EAutomationExpectedErrorFlags::Contains, 0);
		}
		const FString Failed = Run(FString::Printf(TEXT("print('%s')\nraise ValueError('%s')"), *Text, *Text)).Error;
		TestTrue(Failed, Failed.StartsWith(Text + TEXT("\n")) && Failed.Contains(TEXT("ValueError: ") + Text));
		TestTrue(TEXT("in place again after a failure"), Python.ExecPythonCommand(Check));
		Run(TEXT("def f(:\n"));
		TestTrue(TEXT("in place again after a script that cannot be read"), Python.ExecPythonCommand(Check));
		KestrelTest::TestSameText(*this, TEXT("half a surrogate pair"), Run(TEXT("print('\\ud83d')")).Message,
			TEXT("Python script completed: \n\\ud83d\n"));
		Python.ExecPythonCommand(TEXT("import builtins, sys\nbuiltins.open = sys.kestrel_test_open\n"
									  "del sys.kestrel_test_open, sys.kestrel_test_page\n"));
	});

	It("touches no file that has the name of its script", [this]() {
		const FString Folder = FFileUtils::ToAbsolutePath(TEXT("Plugins/kestrel-unreal/Python"));
		TArray<FString> Own;
		for (int32 Second = 0; Second < 5; ++Second)
		{
			const FDateTime Time = FDateTime::Now() + FTimespan::FromSeconds(Second);
			Own.Add(Folder / FString::Printf(TEXT("generated_script_%s.py"), *Time.ToString(TEXT("%Y%m%d_%H%M%S"))));
			FFileHelper::SaveStringToFile(TEXT("mine"), *Own.Last());
		}
		KestrelTest::TestSameText(*this, TEXT("ran"),
			FKestrelPythonUtils::CreateAndExecutePythonScript(TEXT("print('other')")).Message,
			TEXT("Python script completed: \nother\n"));
		for (const FString& File : Own)
		{
			FString Text;
			FFileHelper::LoadFileToString(Text, *File);
			KestrelTest::TestSameText(*this, File, Text, TEXT("mine"));
			IFileManager::Get().Delete(*File);
		}
	});

	It("leaves out the middle of an endless output", [this]() {
		const FPythonScriptResult Result =
			FKestrelPythonUtils::CreateAndExecutePythonScript(TEXT("print('x' * 3000000)\nprint('end')"));
		TestTrue(TEXT("ran"), Result.bSuccess);
		TestTrue(TEXT("short enough"), Result.Message.Len() < 1100000);
		TestTrue(TEXT("says so"), Result.Message.Contains(TEXT("\n[... 2000005 characters left out ...]\n")));
		TestTrue(TEXT("keeps the end"), Result.Message.EndsWith(TEXT("x\nend\n")));
	});
}

DEFINE_SPEC(FKestrelCompilationLogSpec, "Kestrel.CompilationLog", KestrelTest::Flags)
void FKestrelCompilationLogSpec::Define()
{
	It("keeps the compiler's lines alone, from the last start on", [this]() {
		FCompilationManager::CaptureCompilationLogs();
		UE_LOG(LogLiveCoding, Display, TEXT("A.cpp:3:5: error: no %d"), 1);
		UE_LOG(LogTemp, Display, TEXT("something else"));
		KestrelTest::TestSameText(*this, TEXT("captured"),
			FString::Join(FCompilationManager::GetCompilationLogs(), TEXT("|")),
			TEXT("[LogLiveCoding] A.cpp:3:5: error: no 1"));
		TestEqual(TEXT("filtered"), FCompilationManager::FilterCompilationErrors(TEXT("ERROR:")).Num(), 1);
		TestEqual(TEXT("filtered out"), FCompilationManager::FilterCompilationErrors(TEXT("warning:")).Num(), 0);
		FCompilationManager::CaptureCompilationLogs();
		TestEqual(TEXT("starts again"), FCompilationManager::GetCompilationLogs().Num(), 0);
		FCompilationManager::Shutdown();
	});

	It("keeps a result for the conversation that asked, with the event's text where nothing was logged", [this]() {
		const FKestrelPanelRecorder Recorder;
		FAgent& Agent = FAgent::Get();
		Agent.SetConversationId(TEXT("asks"));
		Agent.TriggerCompilationWithMessages(TEXT("c1"), Agent.GetStoredMessages()); // refused: there is no code here
		for (const TCHAR* Conversation : { TEXT("asks"), TEXT("came later") })
		{
			Agent.SetConversationId(Conversation);
			Agent.ClearToolResults();
			FCompilationManager::CaptureCompilationLogs();
			FCompilationManager::OnHotReloadCompilationFinished(
				TEXT("a.h:3: no\r\n\r\n1 error\n"), ECompilationResult::OtherCompilationError, true);
			const bool bAsked = Agent.GetConversationId().Equals(TEXT("asks"));
			TestEqual(Conversation, Agent.GetToolResults().Num(), bAsked ? 1 : 0);
			// Stored as the service will see it, with all results that wait.
			const FString Stored = KestrelJson::ToCondensedText(Agent.GetStoredMessages().Last().ToSharedRef());
			KestrelTest::TestSameText(*this, Conversation, Stored,
				TEXT("{\"role\":\"user\",\"content\":[{\"type\":\"tool_result\",\"tool_use_id\":\"c1\",\"content\":"
					 "\"[LogCompile] a.h:3: no\\n[LogCompile] 1 error\",\"is_error\":true}]}"));
		}
		// The refusal with its reason, and two builds that failed.
		TestEqual(TEXT("all are shown"), Recorder.Messages.Num(), 4);
		Agent.ClearToolResults();
		Agent.ClearConversationId();
	});

	It("answers a compile that cannot start under the tool's id", [this]() {
		// This project has no code that could be compiled.
		const FKestrelPanelRecorder Recorder;
		const TSharedRef<FJsonObject> Block =
			KestrelJson::ParseObject(TEXT("{\"type\":\"tool_use\",\"id\":\"c1\",\"name\":\"COMPILE\",\"input\":{}}"))
				.ToSharedRef();
		FAgent::Get().ClearToolResults();
		FAgent::Get().HandleResponseToolUse(Block);
		if (TestEqual(TEXT("results"), FAgent::Get().GetToolResults().Num(), 1))
		{
			const TSharedPtr<FJsonObject> Result = FAgent::Get().GetToolResults()[0]->AsObject();
			KestrelTest::TestSameText(*this, TEXT("id"), Result->GetStringField(TEXT("tool_use_id")), TEXT("c1"));
			TestTrue(TEXT("is an error"), Result->GetBoolField(TEXT("is_error")));
			TestFalse(TEXT("says why"), Result->GetStringField(TEXT("content")).IsEmpty());
		}
		KestrelTest::TestSameText(*this, TEXT("panel"), FString::Join(Recorder.GetTexts(), TEXT("|")),
			TEXT("Compiling...|Compilation failed, processing error...|Hot reload did not start a compilation. The "
				 "editor's log says why; a project without C++ classes, for instance, has nothing to compile."));
		FAgent::Get().ClearToolResults();
	});

	It("names Live Coding where it is loaded and nothing is compiled", [this]() {
		FModuleManager& Modules = FModuleManager::Get();
		const FName LiveCoding("LiveCoding");
		// Comes with the project that is made for tests; on Windows it is loaded anyway.
		const bool bWasLoaded = Modules.IsModuleLoaded(LiveCoding);
		if (!bWasLoaded && !Modules.ModuleExists(*LiveCoding.ToString()))
		{
			return;
		}
		const FKestrelPanelRecorder Recorder;
		Modules.LoadModule(LiveCoding);
		FAgent::Get().TriggerCompilationWithMessages(TEXT("Undo"), {});
		TestTrue(TEXT("in the panel"), Recorder.Messages.Num() == 2 &&
										   Recorder.Messages[1].Text.Contains(TEXT("turn off \"Enable Live Coding\"")));
		if (!bWasLoaded)
		{
			Modules.UnloadModule(LiveCoding);
		}
		FAgent::Get().ClearToolResults();
	});

	LatentIt("gives up on a compile whose end is never reported", [this](const FDoneDelegate& Done) {
		const TSharedRef<FKestrelPanelRecorder> Recorder = MakeShared<FKestrelPanelRecorder>();
		FAgent& Agent = FAgent::Get();
		Agent.ClearToolResults();
		Agent.SetConversationId(TEXT("asks"));
		Agent.TriggerCompilationWithMessages(TEXT("c1"), {}); // refused: there is no code here
		Agent.ClearToolResults();
		constexpr double LongestSeconds = 5.0;
		FCompilationManager::WaitForEvent(
			FModuleManager::GetModuleChecked<IHotReloadInterface>("HotReload"), LongestSeconds);
		const double Start = FPlatformTime::Seconds();
		FTSTicker::GetCoreTicker().AddTicker(TEXT("KestrelTest"), 0.1f, [=, this](float) {
			if (FCompilationManager::IsCompiling())
			{
				return true;
			}
			const double Seconds = FPlatformTime::Seconds() - Start;
			TestTrue(FString::Printf(TEXT("after %.1f s"), Seconds),
				Seconds >= LongestSeconds && Seconds < LongestSeconds + 2.0);
			if (TestEqual(TEXT("results"), FAgent::Get().GetToolResults().Num(), 1))
			{
				const TSharedPtr<FJsonObject> Result = FAgent::Get().GetToolResults()[0]->AsObject();
				KestrelTest::TestSameText(*this, TEXT("id"), Result->GetStringField(TEXT("tool_use_id")), TEXT("c1"));
				TestTrue(TEXT("is an error"), Result->GetBoolField(TEXT("is_error")));
			}
			Recorder->Messages.Empty();
			FAgent::Get().TriggerCompilationWithMessages(TEXT("c2"), {});
			TestTrue(TEXT("the next one is tried"),
				Recorder->Messages.Num() == 2 &&
					Recorder->Messages[1].Text.StartsWith(TEXT("Hot reload did not start a compilation.")));
			FAgent::Get().ClearToolResults();
			FAgent::Get().ClearConversationId();
			Done.Execute();
			return false;
		});
	});
}
