#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HAL/PlatformApplicationMisc.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestPanel.h"
#include "UObject/Package.h"
#include "Widgets/SWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace PreviewTest
{
/** A tool that waits for approval; "%s" stands for a folder that has a.txt with three lines. */
struct FPreviewCase
{
	const TCHAR* What;
	const TCHAR* Tool;
	const TCHAR* Input;
	const TCHAR* Button;  // which shows what changes; null for none
	const TCHAR* Preview; // texts of one colour each, with bars between them
};

const FPreviewCase PreviewCases[] = {
	{ TEXT("a new file"), TEXT("create_file"), TEXT("{\"path\":\"%s/new.txt\",\"file_text\":\"one\\ntwo\"}"),
		TEXT("Show the change"), TEXT("+ one\n+ two") },
	{ TEXT("a file with another text"), TEXT("create_file"),
		TEXT("{\"path\":\"%s/a.txt\",\"file_text\":\"one\\n2\\nthree\"}"), TEXT("Show the change"),
		TEXT("  one|- two|+ 2|  three") },
	{ TEXT("a new source"), TEXT("create_cpp_file"),
		TEXT("{\"filepath\":\"%s\",\"filename\":\"b.h\",\"contents\":\"int B;\"}"), TEXT("Show the change"),
		TEXT("+ int B;") },
	{ TEXT("a source that is replaced"), TEXT("update_and_replace_cpp_file"),
		TEXT("{\"filepath\":\"%s\",\"filename\":\"a.txt\",\"contents\":\"1\"}"), TEXT("Show the change"),
		TEXT("- one\n- two\n- three|+ 1") },
	{ TEXT("a replacement"), TEXT("update_file"),
		TEXT("{\"path\":\"%s/a.txt\",\"old_string\":\"two\",\"new_string\":\"2\"}"), TEXT("Show the change"),
		TEXT("  one|- two|+ 2|  three") },
	{ TEXT("an insertion"), TEXT("insert_into_file"),
		TEXT("{\"path\":\"%s/a.txt\",\"insert_line\":\"1\",\"new_string\":\"1.5\"}"), TEXT("Show the change"),
		TEXT("  one|+ 1.5|  two\n  three|+ ") },
	{ TEXT("a deletion"), TEXT("delete_file"), TEXT("{\"path\":\"%s/a.txt\"}"), TEXT("Show the change"),
		TEXT("- one\n- two\n- three") },
	{ TEXT("a script"), TEXT("execute_unreal_engine_api_python_script"), TEXT("{\"code\":\"import os\\nprint(1)\"}"),
		TEXT("Show the script"), TEXT("+ import os\n+ print(1)") },
	{ TEXT("a Blueprint's modifications"), TEXT("modify_blueprint_variables"),
		TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"updates\":\"{\\\"Variables\\\":{}}\"}"), TEXT("Show the change"),
		TEXT("+ {\n+ \t\"Variables\":\n+ \t{\n+ \t}\n+ }") },
	{ TEXT("a change of letter case"), TEXT("update_file"),
		TEXT("{\"path\":\"%s/a.txt\",\"old_string\":\"two\",\"new_string\":\"Two\"}"), TEXT("Show the change"),
		TEXT("  one|- two|+ Two|  three") },
	{ TEXT("a file that is read"), TEXT("read_file"), TEXT("{\"path\":\"%s/a.txt\"}"), nullptr, TEXT("") },
	{ TEXT("a folder that is listed"), TEXT("get_filesystem_tree"), TEXT("{\"dir_path\":\"%s\"}"), nullptr, TEXT("") },
	{ TEXT("a search"), TEXT("find_reference_in_all_files"), TEXT("{\"reference_string\":\"one\"}"), nullptr,
		TEXT("") },
	{ TEXT("a Blueprint that is read"), TEXT("read_blueprint"),
		TEXT("{\"blueprint_name\":\"BP_NoSuch\",\"data_subset\":\"All\"}"), nullptr, TEXT("") },
	{ TEXT("a Blueprint that is created"), TEXT("create_blueprint"),
		TEXT("{\"BPPath\":\"/Game\",\"BPName\":\"BP_New\",\"BPParentClassName\":\"Actor\"}"), nullptr, TEXT("") },
	{ TEXT("a compile"), TEXT("compile"), TEXT("{}"), nullptr, TEXT("") },
};

FString JoinTexts(const FKestrelTestPanel& Panel, int32 First)
{
	TArray<FString> Texts;
	const TArray<TSharedRef<SMultiLineEditableText>> All = Panel.Texts(true);
	for (int32 Index = First; Index < All.Num(); ++Index)
	{
		Texts.Add(All[Index]->GetText().ToString());
	}
	return FString::Join(Texts, TEXT("|"));
}
}

DEFINE_SPEC(FKestrelPreviewSpec, "Kestrel.Preview", KestrelTest::Flags)
void FKestrelPreviewSpec::Define()
{
	using namespace PreviewTest;

	for (const FPreviewCase& Case : PreviewCases)
	{
		It(FString(TEXT("is shown before approval for ")) + Case.What, [this, &Case]() {
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("a.txt"), TEXT("one\ntwo\nthree"));
			const FKestrelTestPanel Panel(FVector2D(700.0, 700.0));
			FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
			FAgent::Get().HandlePollStatusRequestCompleted(KestrelJson::ParseObject(FString::Printf(
				TEXT("{\"response\":[{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"%s\",\"input\":%s}]}"), Case.Tool,
				*FString(Case.Input).Replace(TEXT("%s"), *Folder.Name))));
			const int32 NumRows = Panel.Texts(true).Num();
			if (!Case.Button)
			{
				TestFalse(TEXT("there is something to show"), Panel.FindButton(TEXT("Show the change")).IsValid() ||
																  Panel.FindButton(TEXT("Show the script")).IsValid());
				return;
			}
			TestTrue(Case.Button, Panel.Click(Case.Button));
			KestrelTest::TestSameText(*this, Case.What, JoinTexts(Panel, NumRows), Case.Preview);
			const FString Hide = FString(Case.Button).Replace(TEXT("Show"), TEXT("Hide"));
			TestTrue(Hide, Panel.Click(*Hide));
			TestEqual(TEXT("hidden again"), Panel.Texts(true).Num(), NumRows);
			TestTrue(TEXT("nothing ran"), FAgent::Get().GetAgentState() == EAgentState::AwaitingApproval);
		});
	}

	It("lists the packages that would be saved", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_Unsaved"));
		const FKestrelTestPanel Panel(FVector2D(700.0, 700.0));
		FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
		FAgent::Get().HandlePollStatusRequestCompleted(
			KestrelJson::ParseObject(TEXT("{\"response\":[{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"save_and_"
										  "compile_all_dirty_blueprints\",\"input\":{}}]}")));
		const FString Rows = JoinTexts(Panel, 0);
		TestTrue(Rows, Rows.Contains(Content.Path / TEXT("BP_Unsaved")));
		TestTrue(Rows, Rows.Contains(TEXT("Caution: saves your own unsaved changes too")));
	});

	It("says what it cannot show as lines", [this]() {
		const FKestrelTestPanel Panel;
		const int32 NumBefore = Panel.Texts(true).Num();
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a.txt"), TEXT("one\r\ntwo\r\n"), TEXT("one\ntwo\n"));
		TestTrue(JoinTexts(Panel, NumBefore),
			JoinTexts(Panel, NumBefore).Contains(TEXT("The lines differ in letter case or in how they end.")));
		FKestrelInterface::Get().DeleteAllLogs();
	});

	It("copies the full path of a changed file", [this]() {
		const FKestrelTestPanel Panel;
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/some/where/a.txt"), TEXT("one"), TEXT("two"));
		TestTrue(TEXT("there"), Panel.Click(TEXT("Copy path")));
		FString Copied;
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		KestrelTest::TestSameText(*this, TEXT("copied"), Copied, TEXT("/some/where/a.txt"));
		TestTrue(TEXT("the next prompt can be typed"), Panel.PromptBox()->HasKeyboardFocus());
		FKestrelInterface::Get().DeleteAllLogs();
	});
}
