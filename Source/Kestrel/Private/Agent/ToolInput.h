#pragma once

#include "CoreMinimal.h"

class FJsonObject;

// The tools as the service names them.
namespace KestrelToolNames
{
inline const TCHAR* const Finish = TEXT("finish");
inline const TCHAR* const Compile = TEXT("compile");
inline const TCHAR* const ExecutePython = TEXT("execute_unreal_engine_api_python_script");
inline const TCHAR* const CreateFile = TEXT("create_file");
inline const TCHAR* const CreateCpp = TEXT("create_cpp_file");
inline const TCHAR* const ReplaceCpp = TEXT("update_and_replace_cpp_file");
inline const TCHAR* const UpdateFile = TEXT("update_file");
inline const TCHAR* const InsertIntoFile = TEXT("insert_into_file");
inline const TCHAR* const DeleteFile = TEXT("delete_file");
inline const TCHAR* const DeleteCpp = TEXT("delete_cpp_file");
inline const TCHAR* const ReadFile = TEXT("read_file");
inline const TCHAR* const GetFileSystemTree = TEXT("get_filesystem_tree");
inline const TCHAR* const CreateBlueprint = TEXT("create_blueprint");
inline const TCHAR* const ReadBlueprint = TEXT("read_blueprint");
inline const TCHAR* const ModifyBlueprint = TEXT("modify_blueprint_variables");
inline const TCHAR* const ReadBehaviorTree = TEXT("read_behavior_tree");
inline const TCHAR* const SaveAndCompileBlueprints = TEXT("save_and_compile_all_dirty_blueprints");
inline const TCHAR* const FindReference = TEXT("find_reference_in_all_files");
}

/** What the tools have in common: how they read what they are given, and how they say what they do. */
namespace KestrelTools
{
/** A field that a tool cannot do without, and where its text goes. */
struct FField
{
	const TCHAR* Name;
	FString* Text;
};

/** @return false when a field is missing or is no text; a number counts as its text */
bool ReadFields(const FJsonObject& Input, const TArray<FField>& Fields);

const TCHAR* const MissingFields = TEXT("Error: Missing required fields");
const TCHAR* const MissingPath = TEXT("Error: Missing required path field");

/** A line in the panel; one that ends in "..." moves until the next one. */
void ShowStatus(const TCHAR* Text);
}
