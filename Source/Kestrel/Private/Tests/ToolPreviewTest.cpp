#include "Agent/ToolPreview.h"
#include "Agent/FileUtils.h"
#include "Dom/JsonObject.h"
#include "Tests/KestrelTest.h"

namespace ToolPreviewTest
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

/** "kind target [before>after]" with what is special behind. */
FString Describe(const FKestrelToolPreview& Preview)
{
	FString Text = FString::Printf(TEXT("%d %s"), static_cast<int32>(Preview.Kind), *Preview.Target);
	Text += Preview.bHasTexts ? TEXT(" [") + Preview.Before + TEXT(">") + Preview.After + TEXT("]") : TEXT("");
	Text += Preview.NumPlaces.IsSet() ? FString::Printf(TEXT(" x%d"), Preview.NumPlaces.GetValue()) : FString();
	Text += Preview.bOutsideProject ? TEXT(" outside") : TEXT("");
	Text += Preview.StandsOut() ? TEXT(" !") : TEXT("");
	return Text + (Preview.Problem.IsEmpty() ? TEXT("") : TEXT(" ?"));
}
}

DEFINE_SPEC(FKestrelToolPreviewSpec, "Kestrel.ToolPreview", KestrelTest::Flags)
void FKestrelToolPreviewSpec::Define()
{
	It("sees what tools would do, each after those before it, and touches nothing", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("one one"));
		const FString A = Folder.Name / TEXT("a.txt");
		const FString B = Folder.Name / TEXT("b.h");
		using ToolPreviewTest::Block;
		const TArray<TSharedPtr<FJsonObject>> ToolUses = {
			Block(TEXT("UPDATE_FILE"),
				{ TEXT("path"), A, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") }),
			Block(TEXT("insert_into_file"),
				{ TEXT("path"), A, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("top") }),
			Block(TEXT("update_file"),
				{ TEXT("path"), A, TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("x") }),
			Block(TEXT("delete_file"), { TEXT("path"), Folder.Full(TEXT("a.txt")) }),
			Block(TEXT("delete_file"), { TEXT("path"), A }),
			Block(TEXT("create_cpp_file"),
				{ TEXT("filepath"), Folder.Name, TEXT("filename"), TEXT("b.h"), TEXT("contents"), TEXT("new") }),
			Block(TEXT("create_file"), { TEXT("path"), B, TEXT("file_text"), TEXT("newer") }),
			Block(TEXT("create_file"), { TEXT("path"), TEXT("/no/such/c.txt"), TEXT("file_text"), TEXT("x") }),
			Block(TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), TEXT("print(1)") }),
			Block(TEXT("compile"), {}),
			Block(TEXT("find_reference_in_all_files"), { TEXT("reference_string"), TEXT("Health") }),
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
		};
		const TArray<FString> Expected = {
			TEXT("3 ") + A + TEXT(" [one one>two two] x2"),
			TEXT("3 ") + A + TEXT(" [two two>top\ntwo two\n]"),
			TEXT("3 ") + A + TEXT(" x0 ?"),
			TEXT("4 ") + A + TEXT(" [top\ntwo two\n>] !"),
			TEXT("4 ") + A + TEXT(" ! ?"),
			TEXT("2 ") + B + TEXT(" [>new]"),
			TEXT("3 ") + B + TEXT(" [new>newer]"),
			TEXT("2 /no/such/c.txt [>x] outside !"),
			TEXT("5  [>print(1)] !"),
			TEXT("6 "),
			TEXT("1 Health"),
			TEXT("0 ") + A,
			TEXT("7 BP_A"),
			TEXT("8 /Game/Doors/BP_B (Pawn)"),
			TEXT("9 BP_A [>{") LINE_TERMINATOR TEXT("\t\"Functions\": []") LINE_TERMINATOR TEXT("}]"),
			TEXT("9 BP_A [>no document]"),
			TEXT("10 "),
			TEXT("11 no_such_tool"),
		};
		const TArray<FKestrelToolPreview> Previews = FKestrelToolPreviews::Make(ToolUses);
		for (int32 Index = 0; Index < Expected.Num(); ++Index)
		{
			KestrelTest::TestSameText(*this, FString::Printf(TEXT("tool %d"), Index),
				ToolPreviewTest::Describe(Previews[Index]), Expected[Index]);
		}
		KestrelTest::TestSameText(*this, TEXT("the file"), FFileUtils::ReadFile(A), TEXT("one one"));
	});
}
