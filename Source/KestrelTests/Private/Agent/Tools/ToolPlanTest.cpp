#include "Agent/Tools/ToolPlan.h"
#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Text/DisplayText.h"
#include "Dom/JsonObject.h"
#include "Support/KestrelTest.h"

namespace ToolPlanTest
{
/** A "tool_use" block; fields come in pairs. */
TSharedPtr<FJsonObject> Block(const TCHAR* Tool, const TArray<FString>& Fields)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index + 1 < Fields.Num(); Index += 2)
	{
		Input->SetStringField(Fields[Index], Fields[Index + 1]);
	}
	const TSharedRef<FJsonObject> ToolUse = MakeShared<FJsonObject>();
	ToolUse->SetStringField(TEXT("name"), Tool);
	ToolUse->SetObjectField(TEXT("input"), Input);
	return ToolUse;
}

/** "Kind target [before>after]" with what is special behind. */
FString Describe(const FKestrelToolPlan& Plan)
{
	FString Text = KestrelTest::NameOf(Plan.Kind) + TEXT(" ") + Plan.Target;
	Text +=
		Plan.Change.IsSet() ? TEXT(" [") + Plan.Change->Before + TEXT(">") + Plan.Change->After + TEXT("]") : TEXT("");
	Text += Plan.NumReplacements.IsSet() ? FString::Printf(TEXT(" x%d"), Plan.NumReplacements.GetValue()) : FString();
	for (const FText& Caution : Plan.Cautions)
	{
		Text += TEXT(" (") + Caution.ToString() + TEXT(")");
	}
	Text += Plan.StandsOut() ? TEXT(" !") : TEXT("");
	return Text + (Plan.Refusal.IsEmpty() ? TEXT("") : TEXT(" ? ") + Plan.Refusal);
}
}

DEFINE_SPEC(FKestrelToolPlanSpec, "Kestrel.ToolPlan", KestrelTest::Flags)
void FKestrelToolPlanSpec::Define()
{
	using ToolPlanTest::Block;

	It("sees what tools would do, each after those before it, and touches nothing", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one one"));
		const FString A = Folder.Name / TEXT("a.txt");
		const FString B = Folder.Name / TEXT("b.h");
		const TArray<TSharedPtr<FJsonObject>> ToolUses = {
			Block(TEXT("UPDATE_FILE"),
				{ TEXT("path"), A, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") }),
			Block(TEXT("insert_into_file"),
				{ TEXT("path"), A, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("top") }),
			Block(TEXT("update_file"),
				{ TEXT("path"), A, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("x") }),
			Block(TEXT("insert_into_file"),
				{ TEXT("path"), A, TEXT("insert_line"), TEXT("-3"), TEXT("new_string"), TEXT("x") }),
			Block(TEXT("delete_file"), { TEXT("path"), Folder.Full(TEXT("a.txt")) }),
			Block(TEXT("delete_file"), { TEXT("path"), A }),
			Block(TEXT("create_cpp_file"),
				{ TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("b.h"), TEXT("contents"), TEXT("new") }),
			Block(TEXT("create_file"), { TEXT("path"), B, TEXT("file_text"), TEXT("newer") }),
			Block(TEXT("create_file"), { TEXT("path"), TEXT("/no/such/c.txt"), TEXT("file_text"), TEXT("x") }),
			Block(TEXT("create_file"), { TEXT("path"), B / TEXT("d.txt"), TEXT("file_text"), TEXT("x") }),
			Block(TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), TEXT("print(1)") }),
			Block(TEXT("compile"), {}),
			Block(TEXT("find_reference_in_all_files"), { TEXT("reference_string"), TEXT("Health") }),
			Block(TEXT("read_file"), { TEXT("path"), B }),
			Block(TEXT("read_file"), { TEXT("path"), A }),
			Block(TEXT("read_blueprint"), { TEXT("blueprint_name"), TEXT("BP_A"), TEXT("data_subset"), TEXT("All") }),
			Block(TEXT("create_blueprint"), { TEXT("BPPath"), TEXT("/Game/Doors"), TEXT("BPName"), TEXT("BP_B"),
												TEXT("BPParentClassName"), TEXT("Pawn") }),
			Block(TEXT("modify_blueprint_variables"),
				{ TEXT("blueprint_name"), TEXT("BP_A"), TEXT("updates"), TEXT("{\"Functions\":[]}") }),
			Block(TEXT("modify_blueprint_variables"),
				{ TEXT("blueprint_name"), TEXT("BP_A"), TEXT("updates"), TEXT("no document") }),
			Block(TEXT("save_and_compile_all_dirty_blueprints"), {}),
			Block(TEXT("no_such_tool"), {}),
			Block(TEXT("delete_file"), {}),
		};
		const TArray<FString> Expected = {
			TEXT("Change ") + A + TEXT(" [one one>two two] x2"),
			TEXT("Change ") + A + TEXT(" [two two>top\ntwo two\n]"),
			TEXT("Change ") + A + TEXT(" ? Error: String not found in file: ") + Folder.Full(TEXT("a.txt")),
			TEXT("Change ") + A + TEXT(" ? Error: insert_line must be a non-negative integer."),
			TEXT("Delete ") + A + TEXT(" [top\ntwo two\n>] !"),
			TEXT("Delete ") + A + TEXT(" ! ? Error: File does not exist at path: ") + Folder.Full(TEXT("a.txt")),
			TEXT("Create ") + B + TEXT(" [>new]"),
			TEXT("Change ") + B + TEXT(" [new>newer]"),
			TEXT("Create /no/such/c.txt [>x] (outside the project) !"),
			TEXT("Create ") + B + TEXT("/d.txt ? Error: Failed to create directory: ") + Folder.Full(TEXT("b.h")),
			TEXT("Run  [>print(1)] (can do anything that you can, and not all of it can be undone) !"),
			TEXT("Compile "),
			TEXT("Read Health"),
			TEXT("Read ") + B,
			TEXT("Read ") + A + TEXT(" ? Error: File not found"),
			TEXT("Read BP_A"),
			TEXT("Create /Game/Doors/BP_B (Pawn) (cannot be undone) !"),
			TEXT("Change BP_A [>{") LINE_TERMINATOR TEXT("\t\"Functions\": []") LINE_TERMINATOR TEXT("}]"),
			TEXT("Change BP_A [>no document]"),
			TEXT("Change /Game/Doors/BP_B (saves your own unsaved changes too) !"),
			TEXT("Run no_such_tool ! ? Error: Unknown tool 'no_such_tool'"),
			TEXT("Delete  ! ? Error: Missing required path field"),
		};
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		for (int32 Index = 0; Index < Expected.Num(); ++Index)
		{
			KestrelTest::TestSameText(*this, FString::Printf(TEXT("tool %d"), Index),
				ToolPlanTest::Describe(*Planner.Plan(*ToolUses[Index])), Expected[Index]);
		}
		KestrelTest::TestSameText(*this, TEXT("the file"), FFileUtils::ReadFile(A), TEXT("one one"));
	});

	It("knows that a link goes alone, and that its place is free then", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		if (!KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("a.txt"))))
		{
			return;
		}
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const auto Plan = [&Planner, &Folder](const TCHAR* Tool, const TCHAR* File, const TArray<FString>& Fields) {
			TArray<FString> All = { TEXT("path"), Folder.Name / File };
			All.Append(Fields);
			return ToolPlanTest::Describe(*Planner.Plan(*Block(Tool, All)));
		};
		Plan(TEXT("delete_file"), TEXT("link.txt"), {});
		KestrelTest::TestSameText(*this, TEXT("the file it led to"),
			Plan(TEXT("update_file"), TEXT("a.txt"),
				{ TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") }),
			TEXT("Change ") + Folder.Name + TEXT("/a.txt [one>two] x1"));
		KestrelTest::TestSameText(*this, TEXT("its place"),
			Plan(TEXT("create_file"), TEXT("link.txt"), { TEXT("file_text"), TEXT("new") }),
			TEXT("Create ") + Folder.Name + TEXT("/link.txt [>new]"));
	});

	It("knows of folders that are yet to be made", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const auto Create = [&Planner, &Folder](const TCHAR* Name) {
			return Planner
				.Plan(*Block(TEXT("create_file"), { TEXT("path"), Folder.Name / Name, TEXT("file_text"), TEXT("x") }))
				->Refusal;
		};
		KestrelTest::TestSameText(*this, TEXT("below"), Create(TEXT("a/b.txt")), TEXT(""));
		TestTrue(TEXT("the folder itself"), Create(TEXT("a")).StartsWith(TEXT("Error: Failed to create file: ")));
	});

	It("knows that a file needs a name", [this]() {
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const TSharedRef<FKestrelToolPlan> Plan = Planner.Plan(*Block(TEXT("create_cpp_file"),
			{ TEXT("filepath"), TEXT("Source"), TEXT("filename"), TEXT(""), TEXT("contents"), TEXT("x") }));
		TestTrue(Plan->Refusal, Plan->Refusal.StartsWith(TEXT("Error: Failed to create file: ")));
		KestrelTest::TestSameText(*this, TEXT("result"), Plan->Apply(), Plan->Refusal);
	});

	It("reads the fields of the tool's own and no others", [this]() {
		const FKestrelTestFolder Folder;
		for (const TCHAR* File : { TEXT("a.h"), TEXT("b.h") })
		{
			Folder.Write(File, TEXT("text"));
		}
		const TArray<FString> Extra = { TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("b.h"), TEXT("contents"),
			TEXT("x"), TEXT("dir_path"), TEXT("/"), TEXT("file"), Folder.Name / TEXT("b.h") };
		const auto With = [&Extra](TArray<FString> Fields) {
			Fields.Append(Extra);
			return Fields;
		};
		const FString A = Folder.Name / TEXT("a.h");
		const TArray<TSharedPtr<FJsonObject>> ToolUses = {
			Block(TEXT("delete_file"), With({ TEXT("path"), A })),
			Block(TEXT("create_file"), With({ TEXT("path"), A, TEXT("file_text"), TEXT("y") })),
			Block(TEXT("read_file"), With({ TEXT("path"), A })),
			Block(TEXT("update_file"),
				With({ TEXT("path"), A, TEXT("old_string"), TEXT("text"), TEXT("new_string"), TEXT("y") })),
			Block(TEXT("insert_into_file"),
				With({ TEXT("path"), A, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("y") })),
		};
		for (const TSharedPtr<FJsonObject>& ToolUse : ToolUses)
		{
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			const TSharedRef<FKestrelToolPlan> Plan = Planner.Plan(*ToolUse);
			const FString Tool = ToolUse->GetStringField(TEXT("name"));
			KestrelTest::TestSameText(*this, Tool, Plan->FilePath, Folder.Full(TEXT("a.h")));
			TestFalse(Tool, FFileUtils::IsError(Plan->Apply()));
			KestrelTest::TestSameText(*this, Tool, FFileUtils::ReadFile(Folder.Full(TEXT("b.h"))), TEXT("text"));
			Folder.Write(TEXT("a.h"), TEXT("text"));
		}
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
	});

	It("holds as long as the files are as they were", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		const FString A = Folder.Full(TEXT("a.txt"));
		const auto Plan = [](const TCHAR* Tool, const TArray<FString>& Fields) {
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			return Planner.Plan(*Block(Tool, Fields));
		};
		const TSharedRef<FKestrelToolPlan> Update = Plan(
			TEXT("update_file"), { TEXT("path"), A, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") });
		const TSharedRef<FKestrelToolPlan> Creation =
			Plan(TEXT("create_file"), { TEXT("path"), Folder.Full(TEXT("new.txt")), TEXT("file_text"), TEXT("x") });
		const TSharedRef<FKestrelToolPlan> Deletion = Plan(TEXT("delete_file"), { TEXT("path"), A });
		TestTrue(TEXT("at once"), Update->StillHolds() && Creation->StillHolds() && Deletion->StillHolds());
		Folder.Write(TEXT("a.txt"), TEXT("One")); // as long, and within the same second
		Folder.Write(TEXT("new.txt"), TEXT(""));
		TestFalse(TEXT("another text"), Update->StillHolds());
		TestFalse(TEXT("exists now"), Creation->StillHolds());
		TestFalse(TEXT("to be deleted"), Deletion->StillHolds());
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		KestrelTest::TestSameText(
			*this, TEXT("planned again"), Planner.PlanAgain(*Creation)->Verb.ToString(), TEXT("Replace"));
	});

	It("leaves large files for the time when the tool runs", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("large.txt"), FString::ChrN(9 * 1024 * 1024, u'x') + TEXT("end"));
		const FString Large = Folder.Full(TEXT("large.txt"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const TSharedRef<FKestrelToolPlan> Plan = Planner.Plan(*Block(TEXT("update_file"),
			{ TEXT("path"), Large, TEXT("old_string"), TEXT("end"), TEXT("new_string"), TEXT("END") }));
		TestTrue(TEXT("says so"), Plan->bIsBeyondLimits && Plan->StandsOut() && !Plan->Change.IsSet());
		TestTrue(TEXT("holds"), Plan->StillHolds());
		KestrelTest::TestSameText(*this, TEXT("runs"), Plan->Apply(),
			FString::Printf(TEXT("Successfully updated file: %s with 1 replacements"), *Large));
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
	});

	It("marks the places that are worth a second look", [this]() {
		struct FPlaceCase
		{
			const TCHAR* Path;
			const TCHAR* Caution;
		};
		const FPlaceCase Cases[] = {
			{ TEXT("Source/A.h"), TEXT("") },
			{ TEXT("Source/Config.h"), TEXT("") },
			{ TEXT("Source/../../A.h"), TEXT("outside the project") },
			{ TEXT("/etc/hosts"), TEXT("outside the project") },
			{ TEXT(".git/hooks/pre-commit"), TEXT("version control settings") },
			{ TEXT("Plugins/X/.GIT/config"), TEXT("version control settings") },
			{ TEXT(".gitattributes"), TEXT("version control settings") },
			{ TEXT("Source/Game.Build.cs"), TEXT("build file") },
			{ TEXT("Source/Game.target.cs"), TEXT("build file") },
			{ TEXT("Game.uproject"), TEXT("project or plugin descriptor") },
			{ TEXT("Config/DefaultEngine.ini"), TEXT("configuration") },
			{ TEXT("Saved/Config/Linux/Editor.INI"), TEXT("your own settings") },
			{ TEXT(".vscode/tasks.json"), TEXT("build file") },
			{ TEXT("Content/Python/startup.py"), TEXT("runs as a program") },
			{ TEXT("Content/Python/init_unreal.py"), TEXT("runs as a program") },
			{ TEXT("Binaries/Linux/x.txt"), TEXT("runs as a program") },
			{ TEXT("Plugins/kestrel-unreal/Source/A.cpp"), TEXT("this plugin's own files") },
			{ TEXT("Saved/Kestrel/History/A.undo"), TEXT("this plugin's own files") },
			{ TEXT(".lfsconfig"), TEXT("version control settings") },
			{ TEXT(".pre-commit-config.yaml"), TEXT("version control settings") },
			{ TEXT("Game.code-workspace"), TEXT("build file") },
			{ TEXT("Saved/UnrealBuildTool/BuildConfiguration.xml"), TEXT("build file") },
			{ TEXT("Intermediate/Build/Linux/x.ninja"), TEXT("build file") },
			{ TEXT("Intermediate/x.txt"), TEXT("") },
			{ TEXT("Content/Python/a.pth"), TEXT("runs as a program") },
			{ TEXT("Content/Python/a.PYC"), TEXT("runs as a program") },
			{ TEXT("Source/Game.Build.cs::$DATA"), TEXT("build file") },
			{ TEXT(".git::$INDEX_ALLOCATION/config"), TEXT("version control settings") },
			{ TEXT("Source/A.h:hidden"), TEXT("a colon in the name") },
			{ TEXT("Source/Game.Build.cs/"), TEXT("build file") },
			// Windows opens a file by its short name as well.
			{ TEXT("GIT~1/hooks/pre-commit"), TEXT("perhaps the short name of something else") },
			{ TEXT("GAME~1.UPR"), TEXT("perhaps the short name of something else") },
			{ TEXT("Source/GA3F~12.CS"), TEXT("perhaps the short name of something else") },
			{ TEXT("Docs/plan.txt~1~"), TEXT("") },
			{ TEXT("Docs/approx~5.json"), TEXT("") },
			// Some file systems drop characters that are not seen, and compare letters without their form.
			{ TEXT(".g\u200Cit/config"), TEXT("version control settings") },
			{ TEXT("\uFEFF.git/config"), TEXT("version control settings") },
			{ TEXT(".\u017Fvn/config"), TEXT("version control settings") },
			{ TEXT("Ma\u212Ae\uFB01le"), TEXT("build file") },
			{ TEXT(".githooks/pre-commit"), TEXT("runs as a program") },
			{ TEXT(".husky/pre-commit"), TEXT("runs as a program") },
			{ TEXT("Docs/Plan.LNK"), TEXT("runs as a program") },
			{ TEXT("Content/Python/a.pyw"), TEXT("runs as a program") },
			{ TEXT("Build/Scripts/Tasks.cs"), TEXT("build file") },
			{ TEXT("Source/Tasks.cs"), TEXT("") },
			{ TEXT(".gdbinit"), TEXT("build file") },
			{ TEXT("Jenkinsfile"), TEXT("build file") },
			{ TEXT(".circleci/config.yml"), TEXT("version control settings") },
		};
		for (const FPlaceCase& Case : Cases)
		{
			FKestrelPathReview Review = FKestrelPathReview::Of(FFileUtils::ToAbsolutePath(Case.Path));
			Review.Cautions.Append(Review.CautionsOfChange);
			KestrelTest::TestSameText(
				*this, Case.Path, Review.Cautions.IsEmpty() ? FString() : Review.Cautions[0].ToString(), Case.Caution);
			KestrelTest::TestSameText(*this, Case.Path, Review.LinkTarget, FString());
		}
	});

	It("lets nobody read what was typed and changed before without asking", [this]() {
		const TPair<const TCHAR*, bool> Cases[] = {
			{ TEXT("Plugins/kestrel-unreal/Logs/KestrelPrompts_2000-01-01.log"), true },
			{ TEXT("Plugins/kestrel-unreal/Logs"), true },
			{ TEXT("Plugins/kestrel-unreal/Python/a.py"), false },
			{ TEXT("Saved/Kestrel/History/A.undo"), true },
			{ TEXT("Saved/Kestrel"), true },
			{ TEXT("Saved/Kestrels/A.txt"), false },
			{ TEXT("Config/DefaultGame.ini"), false },
		};
		for (const TPair<const TCHAR*, bool>& Case : Cases)
		{
			TestEqual(
				Case.Key, FKestrelPathReview::Of(FFileUtils::ToAbsolutePath(Case.Key)).Cautions.Num() > 0, Case.Value);
		}
	});
}

DEFINE_SPEC(FKestrelDisplayTextSpec, "Kestrel.DisplayText", KestrelTest::Flags)
void FKestrelDisplayTextSpec::Define()
{
	It("shows what would not be seen, and leaves the rest alone", [this]() {
		const FString Name = TEXT("a\u202Eh.txt\n\x1b[31m\u200B\u00A0\uFEFF\x7F\x85");
		KestrelTest::TestSameText(*this, TEXT("a line"), KestrelDisplayText::EscapeLine(Name),
			TEXT("a\u27E8U+202E\u27E9h.txt\u27E8LF\u27E9\u27E8U+001B\u27E9[31m\u27E8U+200B\u27E9\u27E8U+00A0\u27E9"
				 "\u27E8U+FEFF\u27E9\u27E8U+007F\u27E9\u27E8U+0085\u27E9"));
		KestrelTest::TestSameText(*this, TEXT("letters"),
			KestrelDisplayText::EscapeLine(TEXT("\u00C4rger \u65E5\u672C \U0001F426 a\\b")),
			TEXT("\u00C4rger \u65E5\u672C \U0001F426 a\\b"));
		KestrelTest::TestSameText(*this, TEXT("spaces"),
			KestrelDisplayText::EscapeLine(TEXT(" a b  c") + FString::ChrN(61, u' ') + TEXT("Note: d ")),
			TEXT("\u27E81 space\u27E9a b\u27E82 spaces\u27E9c\u27E861 spaces\u27E9Note: d\u27E81 space\u27E9"));
		KestrelTest::TestSameText(*this, TEXT("marks on a letter"),
			KestrelDisplayText::EscapeLines(TEXT("e\u0301\u0323x\u0301\u0302\u0303\u0489 \u0303")),
			TEXT("e\u0301\u0323x\u0301\u0302\u27E8U+0303\u27E9\u27E8U+0489\u27E9 \u0303"));
		FString HalfPair = TEXT("x");
		HalfPair.AppendChar(static_cast<TCHAR>(0xD83D));
		KestrelTest::TestSameText(
			*this, TEXT("half a pair"), KestrelDisplayText::EscapeLine(HalfPair), TEXT("x\u27E8U+D83D\u27E9"));
		KestrelTest::TestSameText(*this, TEXT("lines"),
			KestrelDisplayText::EscapeLines(TEXT("if x:\r\n\tpass\rhidden\u2066\n")),
			TEXT("if x:\n\tpass\u27E8CR\u27E9\nhidden\u27E8U+2066\u27E9\n"));
		KestrelTest::TestSameText(*this, TEXT("ends of lines for some compilers"),
			KestrelDisplayText::EscapeLines(TEXT("// a\u2028b\u2029c\u0085d")),
			TEXT("// a\u27E8U+2028\u27E9\nb\u27E8U+2029\u27E9\nc\u27E8U+0085\u27E9\nd"));
	});

	It("shows no two texts alike", [this]() {
		// Each sign of what an escape is made of, and each that is escaped, in any order.
		const FString Signs = TEXT("\\rn\r\n\t \u202E\u27E8\u27E9\u3008LFU+");
		TMap<FString, TArray<FString>> Shown; // the engine's maps ignore case
		for (int32 Number = 0; Number < 20000; ++Number)
		{
			FString Text;
			for (int32 Rest = Number; Rest > 0; Rest /= Signs.Len() + 1)
			{
				const int32 Sign = Rest % (Signs.Len() + 1);
				Text += Sign > 0 ? Signs.Mid(Sign - 1, 1) : FString();
			}
			TArray<FString>& Texts = Shown.FindOrAdd(KestrelDisplayText::EscapeLine(Text));
			Texts.AddUnique(Text);
			if (Texts.Num() > 1)
			{
				AddError(FString::Printf(TEXT("Two texts look like '%s'"), *KestrelDisplayText::EscapeLine(Text)));
				return;
			}
		}
	});
}
