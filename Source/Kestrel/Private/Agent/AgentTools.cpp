#include "Agent/Agent.h"
#include "Agent/FileUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"
#include "Widget/KestrelInterface.h"

/** A tool as the service names it. */
struct FAgent::FTool
{
	const TCHAR* WireName;
	FString (FAgent::*Use)(const FString& Id, const FJsonObject& Input);
};

namespace AgentTools
{
/** A block without an id or name is handled like one whose id or name is empty. */
FString GetString(const TSharedPtr<FJsonObject>& Block, const TCHAR* Field)
{
	FString Text;
	Block->TryGetStringField(Field, Text);
	return Text;
}

TSharedRef<FJsonObject> MakeResult(const FString& ToolUseId, const FString& Content)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("type"), TEXT("tool_result"));
	Result->SetStringField(TEXT("tool_use_id"), ToolUseId);
	Result->SetStringField(TEXT("content"), Content);
	return Result;
}

/** The lines that a "view_range" asks for, counted from 1. */
struct FViewRange
{
	int32 StartLine = 1;
	int32 EndLine = -1;
};

/** The element as a whole number, its fraction cut off; what does not fit becomes the nearest that does. */
bool ReadLineNumber(const TSharedPtr<FJsonValue>& Value, int32& OutLine)
{
	double Number = 0.0;
	if (!Value.IsValid() || !Value->TryGetNumber(Number))
	{
		return false;
	}
	OutLine = static_cast<int32>(FMath::Clamp(Number, static_cast<double>(MIN_int32), static_cast<double>(MAX_int32)));
	return true;
}

/** The first two elements; what follows them is no reason to read nothing. */
bool ReadViewRange(const TArray<TSharedPtr<FJsonValue>>& Values, FViewRange& OutRange)
{
	return Values.Num() >= 2 && ReadLineNumber(Values[0], OutRange.StartLine) &&
		   ReadLineNumber(Values[1], OutRange.EndLine);
}

/** The file that "read_file" means, empty when there is none: a bare name may also lie in the project's Source. */
FString FindFileToRead(const FString& Path)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	if (Files.FileExists(*FullPath))
	{
		return FullPath;
	}
	FString InSource = FFileUtils::ToAbsolutePath(TEXT("Source") / FPaths::GetCleanFilename(FullPath));
	FPaths::NormalizeFilename(InSource);
	return Files.FileExists(*InSource) ? InSource : FString();
}
}

void FAgent::HandleResponseToolUse(const TSharedPtr<FJsonObject>& Block)
{
	const FString Name = AgentTools::GetString(Block, TEXT("name"));
	const FString Id = AgentTools::GetString(Block, TEXT("id"));
	const TSharedPtr<FJsonObject>* Input = nullptr;
	const bool bHasInput = Block->TryGetObjectField(TEXT("input"), Input);

	const FString Text = UseTool(Name, Id, bHasInput ? *Input : nullptr);
	const TSharedRef<FJsonObject> Result = AgentTools::MakeResult(Id, Text);
	Result->SetBoolField(TEXT("is_error"), Text.StartsWith(TEXT("Error:"), ESearchCase::IgnoreCase));
	AddToolResult(Result);
}

void FAgent::HandlePauseToolUse(const TSharedPtr<FJsonObject>& Block)
{
	const FString Id = AgentTools::GetString(Block, TEXT("id"));
	const TSharedRef<FJsonObject> Result = AgentTools::MakeResult(Id, TEXT("Abort: User added new input"));
	Result->SetBoolField(TEXT("is_abort"), true);
	AddToolResult(Result);
}

const FAgent::FTool* FAgent::FindTool(const FString& Name)
{
	static const FTool Tools[] = {
		{ TEXT("finish"), &FAgent::UseFinishTool },
		{ TEXT("read_file"), &FAgent::UseReadTool },
		{ TEXT("get_filesystem_tree"), &FAgent::UseGetFileSystemTool },
	};
	for (const FTool& Tool : Tools)
	{
		if (Name.Equals(Tool.WireName, ESearchCase::IgnoreCase))
		{
			return &Tool;
		}
	}
	return nullptr;
}

FString FAgent::UseTool(const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	if (!Input.IsValid())
	{
		return TEXT("Error: Invalid input");
	}
	const FTool* Tool = FindTool(Name);
	return Tool ? (this->*Tool->Use)(Id, *Input) : FString::Printf(TEXT("Error: Unknown tool '%s'"), *Name);
}

FString FAgent::UseFinishTool(const FString& Id, const FJsonObject& Input)
{
	SetAgentState(EAgentState::AwaitingUpdate, nullptr);
	return TEXT("Finished");
}

FString FAgent::UseReadTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	if (!Input.TryGetStringField(TEXT("path"), Path))
	{
		return TEXT("Error: Missing required path field");
	}
	FKestrelInterface::Get().AddOwnStatusMessage(TEXT("Reading File..."));

	const TArray<TSharedPtr<FJsonValue>>* ViewRange = nullptr;
	const bool bHasViewRange = Input.TryGetArrayField(TEXT("view_range"), ViewRange);
	AgentTools::FViewRange Range;
	if (bHasViewRange && !AgentTools::ReadViewRange(*ViewRange, Range))
	{
		return TEXT("Error: view_range must be an array of two numbers");
	}
	const FString FullPath = AgentTools::FindFileToRead(Path);
	if (FullPath.IsEmpty())
	{
		return TEXT("Error: File not found");
	}
	return bHasViewRange ? FFileUtils::ReadFileLineRange(FullPath, Range.StartLine, Range.EndLine)
						 : FFileUtils::ReadFile(FullPath);
}

FString FAgent::UseGetFileSystemTool(const FString& Id, const FJsonObject& Input)
{
	FString DirPath;
	if (!Input.TryGetStringField(TEXT("dir_path"), DirPath))
	{
		return TEXT("Error: Missing dir_path field");
	}
	// Joined, not made absolute: the names of the folders that the project itself lies in must not exclude it.
	// "/" is the project's own root then, and not the machine's.
	FString Folder = FPaths::ProjectDir() / DirPath;
	FPaths::NormalizeFilename(Folder);
	return FFileUtils::GetSubDirectoryStructureAsJsonObject(Folder);
}
