#include "Agent/Agent.h"
#include "Agent/FileUtils.h"
#include "Agent/ToolInput.h"
#include "Dom/JsonObject.h"
#include "KestrelLog.h"
#include "Widget/KestrelInterface.h"

/** A tool as the service names it. */
struct FAgent::FTool
{
	const TCHAR* WireName;
	FString (FAgent::*Use)(const FString& Id, const FJsonObject& Input);
	/** The result comes by itself when the work is done, which takes longer than the call. */
	bool bAnswersLater = false;
};

bool KestrelTools::ReadFields(const FJsonObject& Input, const TArray<FField>& Fields)
{
	for (const FField& Field : Fields)
	{
		if (!Input.TryGetStringField(Field.Name, *Field.Text))
		{
			return false;
		}
	}
	return true;
}

void KestrelTools::ShowStatus(const TCHAR* Text)
{
	FKestrelInterface::Get().AddOwnStatusMessage(Text);
}

namespace AgentTools
{
constexpr int32 LoggedLength = 200; // characters of a failed tool's result

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
}

void FAgent::AddToolResult(const FString& ToolUseId, const FString& Content, bool bIsError)
{
	const TSharedRef<FJsonObject> Result = AgentTools::MakeResult(ToolUseId, Content);
	Result->SetBoolField(TEXT("is_error"), bIsError);
	UE_CLOG(bIsError, LogKestrel, Warning, TEXT("A tool failed: %s"), *Content.Left(AgentTools::LoggedLength));
	AddToolResult(Result);
}

void FAgent::HandleResponseToolUse(const TSharedPtr<FJsonObject>& Block)
{
	const FString Name = AgentTools::GetString(Block, TEXT("name"));
	const FString Id = AgentTools::GetString(Block, TEXT("id"));
	const TSharedPtr<FJsonObject>* Input = nullptr;
	const bool bHasInput = Block->TryGetObjectField(TEXT("input"), Input);

	const FString Text = UseTool(Name, Id, bHasInput ? *Input : nullptr);
	const bool bIsError = FFileUtils::IsError(Text);
	const FTool* Tool = FindTool(Name);
	// A tool that did not even begin has nothing to answer later.
	if (!Tool || !Tool->bAnswersLater || bIsError)
	{
		AddToolResult(Id, Text, bIsError);
	}
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
		{ KestrelToolNames::Finish, &FAgent::UseFinishTool },
		{ KestrelToolNames::Compile, &FAgent::UseCompileTool, true },
		{ KestrelToolNames::ExecutePython, &FAgent::UseExecutePythonTool },
		{ KestrelToolNames::CreateFile, &FAgent::UseCreateFileTool },
		{ KestrelToolNames::CreateCpp, &FAgent::UseCreateOrReplaceCPPTool },
		{ KestrelToolNames::ReplaceCpp, &FAgent::UseUpdateAndReplaceCPPTool },
		{ KestrelToolNames::UpdateFile, &FAgent::UseUpdateFileTool },
		{ KestrelToolNames::InsertIntoFile, &FAgent::UseInsertIntoFileTool },
		{ KestrelToolNames::DeleteFile, &FAgent::UseDeleteFileTool },
		{ KestrelToolNames::DeleteCpp, &FAgent::UseDeleteCPPTool },
		{ KestrelToolNames::ReadFile, &FAgent::UseReadTool },
		{ KestrelToolNames::GetFileSystemTree, &FAgent::UseGetFileSystemTool },
		{ KestrelToolNames::CreateBlueprint, &FAgent::UseCreateBlueprintTool },
		{ KestrelToolNames::ReadBlueprint, &FAgent::UseReadBlueprintTool },
		{ KestrelToolNames::ModifyBlueprint, &FAgent::UseModifyBlueprintTool },
		{ KestrelToolNames::ReadBehaviorTree, &FAgent::UseReadBehaviorTreeTool },
		{ KestrelToolNames::SaveAndCompileBlueprints, &FAgent::UseSaveAndCompileAllDirtyBlueprintsTool },
		{ KestrelToolNames::FindReference, &FAgent::UseFindReferenceInAllFilesTool },
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
