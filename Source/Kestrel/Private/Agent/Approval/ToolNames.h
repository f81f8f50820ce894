#pragma once

#include "CoreMinimal.h"

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

/** What a tool does to the project. */
enum class EKestrelToolKind : uint8
{
	/** Ends the turn. */
	Finish,
	Read,
	Create,
	Change,
	Delete,
	/** Runs code of the service's. */
	Run,
	Compile,
};

namespace KestrelToolNames
{
/** The word by which a person's rules name all tools of a kind: "read", "delete", ... */
KESTREL_API const TCHAR* GetKindName(EKestrelToolKind Kind);
}
