#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolPlan.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"

namespace ToolLimitsTest
{
constexpr int32 Megabyte = 1024 * 1024;

TSharedRef<FKestrelToolPlan> PlanTool(FKestrelToolPlanner& Planner, const TCHAR* Tool, const TArray<FString>& Fields)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index + 1 < Fields.Num(); Index += 2)
	{
		Input->SetStringField(Fields[Index], Fields[Index + 1]);
	}
	return Planner.Plan(Tool, TEXT("id"), Input);
}

/** A file that takes no room on the disk, and as much as it says when it is read. */
void MakeSparse(const FString& File, int64 Size)
{
	const TUniquePtr<IFileHandle> Handle(FPlatformFileManager::Get().GetPlatformFile().OpenWrite(*File));
	const uint8 Byte = 'x';
	Handle->Seek(Size - 1);
	Handle->Write(&Byte, 1);
}
}

DEFINE_SPEC(FKestrelToolLimitsSpec, "Kestrel.ToolPlanLimits", KestrelTest::Flags)
void FKestrelToolLimitsSpec::Define()
{
	using namespace ToolLimitsTest;

	It("leaves large texts of the answer for the time when the tool runs", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("small.txt"), TEXT("small"));
		const FString Large = FString::ChrN(9 * Megabyte, u'x');
		const FString New = Folder.Full(TEXT("new.txt"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const TSharedRef<FKestrelToolPlan> Plans[] = {
			PlanTool(Planner, TEXT("create_file"), { TEXT("path"), New, TEXT("file_text"), Large }),
			PlanTool(Planner, TEXT("create_file"),
				{ TEXT("path"), Folder.Full(TEXT("small.txt")), TEXT("file_text"), Large }),
			PlanTool(Planner, TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), TEXT("#") + Large }),
			PlanTool(Planner, TEXT("modify_blueprint_variables"),
				{ TEXT("blueprint_name"), TEXT("BP_None"), TEXT("updates"), Large }),
			PlanTool(Planner, TEXT("update_file"),
				{ TEXT("path"), New, TEXT("old_string"), TEXT("x"), TEXT("new_string"), TEXT("y") }),
		};
		for (const TSharedRef<FKestrelToolPlan>& Plan : Plans)
		{
			TestTrue(FString(Plan->Tool->WireName) + TEXT(" says so"),
				Plan->bIsBeyondLimits && Plan->StandsOut() && !Plan->Change.IsSet());
		}
		TestTrue(TEXT("holds"), Plans[0]->StillHolds());
		KestrelTest::TestSameText(*this, TEXT("runs"), Plans[0]->Apply(), TEXT("File created successfully: ") + New);
		TestEqual(TEXT("size"), IFileManager::Get().FileSize(*New), static_cast<int64>(Large.Len()));
		TestFalse(TEXT("what could not be foreseen is looked at again"), Plans[4]->StillHolds());
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
	});

	It("says which changes cannot be shown, and makes them as they were planned", [this]() {
		const FKestrelTestFolder Folder;
		const FString Lines = FString::ChrN(100001, u'\n') + TEXT("import os");
		const FString New = Folder.Full(TEXT("new.txt"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const TSharedRef<FKestrelToolPlan> Plans[] = {
			PlanTool(Planner, TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), Lines }),
			PlanTool(Planner, TEXT("create_file"), { TEXT("path"), New, TEXT("file_text"), Lines }),
			PlanTool(Planner, TEXT("update_file"),
				{ TEXT("path"), New, TEXT("old_string"), TEXT("os"), TEXT("new_string"), TEXT("re") }),
			PlanTool(Planner, TEXT("delete_file"), { TEXT("path"), New }),
		};
		for (const TSharedRef<FKestrelToolPlan>& Plan : Plans)
		{
			TestTrue(FString(Plan->Tool->WireName) + TEXT(" says so"), Plan->Notes.Num() == 1 && Plan->StandsOut());
		}
		for (int32 Index = 1; Index < 3; ++Index)
		{
			TestTrue(TEXT("holds"), Plans[Index]->StillHolds());
			TestFalse(TEXT("fails"), FFileUtils::IsError(Plans[Index]->Apply()));
		}
		TestTrue(TEXT("made"), FFileUtils::ReadFile(New).EndsWith(TEXT("\nimport re")));
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
	});

	It("keeps short replacements from becoming large texts", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = Folder.Full(TEXT("a.txt"));
		Folder.Write(TEXT("a.txt"), FString::ChrN(Megabyte, u'x'));
		const auto Plan = [&File](int32 Length) {
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			return PlanTool(Planner, TEXT("update_file"),
				{ TEXT("path"), File, TEXT("old_string"), TEXT("x"), TEXT("new_string"), FString::ChrN(Length, u'y') });
		};
		KestrelTest::TestSameText(*this, TEXT("too large to be written"), Plan(1000)->Refusal,
			TEXT("Error: File would become larger than 256 MB: ") + File);
		const TSharedRef<FKestrelToolPlan> Unseen = Plan(20);
		TestTrue(TEXT("too large to be shown"), Unseen->bIsBeyondLimits && Unseen->Refusal.IsEmpty());
		KestrelTest::TestSameText(*this, TEXT("runs"), Unseen->Apply(),
			FString::Printf(TEXT("Successfully updated file: %s with %d replacements"), *File, Megabyte));
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
		KestrelTest::TestSameText(*this, TEXT("tried for sure"),
			KestrelTest::UseTool(TEXT("update_file"),
				{ TEXT("path"), File, TEXT("old_string"), TEXT("x"), TEXT("new_string"), FString::ChrN(1000, u'y') }),
			TEXT("Error: File would become larger than 256 MB: ") + File);
	});

	It("is not held up by paths of very many folders", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("small.txt"), TEXT("small"));
		const auto MakePath = [&Folder](int32 NumFolders) {
			FString Path = Folder.Path;
			for (int32 Index = 0; Index < NumFolders; ++Index)
			{
				Path += TEXT("/d");
			}
			return Path + TEXT("/new.txt");
		};
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const auto Create = [&Planner](const FString& Path) {
			return PlanTool(Planner, TEXT("create_file"), { TEXT("path"), Path, TEXT("file_text"), TEXT("new") });
		};
		KestrelTest::TestSameText(*this, TEXT("as many as somebody makes"), Create(MakePath(50))->Refusal, FString());
		for (const int32 NumFolders : { 100, 1000, 3000 })
		{
			const FString Path = MakePath(NumFolders);
			KestrelTest::TestSameText(*this, TEXT("created"), Create(Path)->Refusal,
				TEXT("Error: Failed to create directory: ") + FPaths::GetPath(Path));
			KestrelTest::TestSameText(*this, TEXT("read"),
				PlanTool(Planner, TEXT("read_file"), { TEXT("path"), Path })->Refusal, TEXT("Error: File not found"));
			KestrelTest::TestSameText(*this, TEXT("deleted"),
				PlanTool(Planner, TEXT("delete_file"), { TEXT("path"), Path })->Refusal,
				TEXT("Error: File does not exist at path: ") + Path);
		}
		TestFalse("there is time left to show a change",
			PlanTool(Planner, TEXT("create_file"),
				{ TEXT("path"), Folder.Full(TEXT("small.txt")), TEXT("file_text"), TEXT("new") })
				->bCannotBeShown);
	});

	It("neither reads nor changes files that are too large for it", [this]() {
		const FKestrelTestFolder Folder;
		const FString Huge = Folder.Full(TEXT("huge.txt"));
		MakeSparse(Huge, 1500 * static_cast<int64>(Megabyte));
		for (const TCHAR* Range : { TEXT(""), TEXT("1") })
		{
			const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
			Input->SetStringField(TEXT("path"), Huge);
			if (*Range)
			{
				Input->SetArrayField(
					TEXT("view_range"), { MakeShared<FJsonValueNumber>(1.0), MakeShared<FJsonValueNumber>(1.0) });
			}
			KestrelTest::TestSameText(*this, TEXT("read"), FAgent::Get().UseTool(TEXT("read_file"), TEXT(""), Input),
				TEXT("Error: File is larger than 64 MB and was not read: ") + Huge);
		}
		KestrelTest::TestSameText(*this, TEXT("changed"),
			KestrelTest::UseTool(TEXT("insert_into_file"),
				{ TEXT("path"), Huge, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("y") }),
			TEXT("Error: File is larger than 256 MB and was left as it is: ") + Huge);
	});

	It("leaves huge files out of a search and says so", [this]() {
		const FString Folder =
			FPaths::ConvertRelativePathToFull(FPaths::ProjectDir() / TEXT("Source") / FGuid::NewGuid().ToString());
		IFileManager::Get().MakeDirectory(*Folder, true);
		const FString Huge = Folder / TEXT("Huge.h");
		MakeSparse(Huge, 1500 * static_cast<int64>(Megabyte));
		AddExpectedError(TEXT("is larger than 64 MB and was not searched"));
		const TSharedPtr<FJsonObject> Result = KestrelJson::ParseObject(FKestrelFindUtils::FindInAllFiles(TEXT("x")));
		const TArray<TSharedPtr<FJsonValue>>* NotSearched = nullptr;
		if (TestTrue(TEXT("says so"), Result->TryGetArrayField(TEXT("cpp_files_not_searched"), NotSearched)))
		{
			KestrelTest::TestSameText(*this, TEXT("file"), (*NotSearched)[0]->AsString(), Huge);
		}
		IFileManager::Get().DeleteDirectory(*Folder, false, true);
		TestFalse(TEXT("otherwise nothing is said"),
			FKestrelFindUtils::FindInAllFiles(TEXT("no such text")).Contains(TEXT("cpp_files_not_searched")));
	});
}
