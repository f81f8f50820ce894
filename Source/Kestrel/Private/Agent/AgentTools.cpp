#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Work/WorkRunner.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "KestrelLog.h"

#define LOCTEXT_NAMESPACE "FAgent"

namespace AgentTools
{
constexpr int32 LoggedLength = 200; // characters of a failed tool's result

void LogFailure(const FString& Result)
{
	UE_LOG(LogKestrel, Warning, TEXT("A tool failed: %s"), *KestrelKeyGuard::Hide(Result).Left(LoggedLength));
}

/** Whose compile it was, when that is not the tool that the conversation on the screen is waiting for; else empty. */
FText DescribeOwner(const FString& ToolId, bool bIsOfThisConversation)
{
	if (FKestrelInterface::IsCompileLabel(ToolId))
	{
		return FText::Format(
			LOCTEXT("CompiledForLabel", "The compilation that {0} started has finished:"), FText::FromString(ToolId));
	}
	return bIsOfThisConversation
			   ? FText::GetEmpty()
			   : LOCTEXT("CompiledEarlier", "The compilation that an earlier conversation started has finished:");
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

void FAgent::AddToolResult(const TSharedPtr<FJsonObject>& Result)
{
	FString Content;
	if (Result->TryGetStringField(TEXT("content"), Content))
	{
		Result->SetStringField(TEXT("content"), KestrelKeyGuard::Hide(Content));
	}
	ToolResults.Add(MakeShared<FJsonValueObject>(Result));
}

void FAgent::AddToolResult(const FString& ToolUseId, const FString& Content, bool bIsError)
{
	const TSharedRef<FJsonObject> Result = AgentTools::MakeResult(ToolUseId, Content);
	Result->SetBoolField(TEXT("is_error"), bIsError);
	AddToolResult(Result);
}

void FAgent::AbortTool(const FString& ToolUseId)
{
	const TSharedRef<FJsonObject> Result = AgentTools::MakeResult(ToolUseId, TEXT("Abort: User added new input"));
	Result->SetBoolField(TEXT("is_abort"), true);
	AddToolResult(Result);
}

void FAgent::DenyTool(const FKestrelToolPlan& Plan)
{
	constexpr bool bIsError = true;
	const FString Text = TEXT("Error: Not run, since a rule of the user's denies it.");
	AddToolResult(Plan.ToolUseId, Text, bIsError);
	FKestrelInterface::Get().AddHint(FText::Format(LOCTEXT("Denied", "Denied by a rule: {0}"), Plan.Describe()));
	ToolDone.Broadcast(Plan, Text);
}

TOptional<float> FAgent::GetToolProgress() const
{
	return TurnRunner->IsRunning() ? TOptional<float>(TurnRunner->GetProgress()) : TOptional<float>();
}

bool FAgent::KeepResult(const FKestrelToolPlan& Plan, const FString& Text)
{
	const bool bIsError = FFileUtils::IsError(Text);
	if (bIsError)
	{
		AgentTools::LogFailure(Text);
	}
	// A tool that did not even begin has nothing to answer later.
	if (!Plan.AnswersLater() || bIsError)
	{
		AddToolResult(Plan.ToolUseId, Text, bIsError);
	}
	ToolDone.Broadcast(Plan, Text);
	return Plan.Kind != EKestrelToolKind::Finish || bIsError;
}

void FAgent::HandleResponseToolUse(const TSharedPtr<FJsonObject>& Block)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Unlimited);
	const TSharedRef<FKestrelToolPlan> Plan = Planner.Plan(*Block);
	KeepResult(*Plan, Plan->Apply());
}

void FAgent::HandlePauseToolUse(const TSharedPtr<FJsonObject>& Block)
{
	FString Id;
	Block->TryGetStringField(TEXT("id"), Id);
	AbortTool(Id);
}

FString FAgent::UseTool(const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Unlimited);
	return Planner.Plan(Name, Id, Input)->Apply();
}

FString FAgent::UseFinishTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::Finish, Id, Input);
}

FString FAgent::UseCompileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::Compile, Id, Input);
}

FString FAgent::UseExecutePythonTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ExecutePython, Id, Input);
}

FString FAgent::UseCreateFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::CreateFile, Id, Input);
}

FString FAgent::UseCreateCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::CreateCpp, Id, Input);
}

FString FAgent::UseUpdateAndReplaceCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ReplaceCpp, Id, Input);
}

FString FAgent::UseUpdateFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::UpdateFile, Id, Input);
}

FString FAgent::UseInsertIntoFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::InsertIntoFile, Id, Input);
}

FString FAgent::UseDeleteFileTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::DeleteFile, Id, Input);
}

FString FAgent::UseDeleteCPPTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::DeleteCpp, Id, Input);
}

FString FAgent::UseReadTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ReadFile, Id, Input);
}

FString FAgent::UseGetFileSystemTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::GetFileSystemTree, Id, Input);
}

FString FAgent::UseCreateBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::CreateBlueprint, Id, Input);
}

FString FAgent::UseReadBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ReadBlueprint, Id, Input);
}

FString FAgent::UseModifyBlueprintTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ModifyBlueprint, Id, Input);
}

FString FAgent::UseReadBehaviorTreeTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::ReadBehaviorTree, Id, Input);
}

FString FAgent::UseSaveAndCompileAllDirtyBlueprintsTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::SaveAndCompileBlueprints, Id, Input);
}

FString FAgent::UseFindReferenceInAllFilesTool(const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	return UseTool(KestrelToolNames::FindReference, Id, Input);
}

void FAgent::TriggerCompilationWithMessages(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages)
{
	if (FCompilationManager::IsCompiling())
	{
		// The refusal is this conversation's, whichever one compiles; without it, its tool use would never be answered.
		const TGuardValue<TOptional<FString>> Refused(CompilingConversationId, ConversationId);
		FKestrelInterface::Get().AddOwnStatusMessage(FCompilationManager::AlreadyRunning);
		FCompilationManager::CompileGameProject(ToolId, Messages);
		return;
	}
	CompilingConversationId = ConversationId;
	FCompilationManager::CompileGameProject(ToolId, Messages);
}

bool FAgent::IsCompileOfPanel() const
{
	// While another assistant's tool is at work, what it says is redirected; its call is answered with the result.
	const bool bIsOfAnotherAssistant = static_cast<bool>(FKestrelInterface::Get().Redirect);
	return !bIsOfAnotherAssistant &&
		   (!CompilingConversationId.IsSet() || CompilingConversationId.GetValue().Equals(ConversationId));
}

void FAgent::OnCompilationFinished(
	const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess)
{
	const bool bIsOfThisConversation =
		!CompilingConversationId.IsSet() || CompilingConversationId.GetValue().Equals(ConversationId);
	if (IsCompileOfPanel())
	{
		AddToolResult(ToolId, Logs, !bSuccess);
		if (!bSuccess && !FKestrelInterface::IsCompileLabel(ToolId))
		{
			AgentTools::LogFailure(Logs);
		}
		const TSharedRef<FJsonObject> Message = MakeShared<FJsonObject>();
		Message->SetStringField(TEXT("role"), TEXT("user"));
		Message->SetArrayField(TEXT("content"), ToolResults);
		AddStoredMessage(Message);
	}
	const FText Owner = AgentTools::DescribeOwner(ToolId, bIsOfThisConversation);
	if (!Owner.IsEmpty())
	{
		FKestrelInterface::Get().AddHint(Owner);
	}
	FKestrelInterface::Get().AddOwnStatusMessage(
		bSuccess ? TEXT("Compilation successful!") : TEXT("Compilation failed, processing error..."));
}

#undef LOCTEXT_NAMESPACE
