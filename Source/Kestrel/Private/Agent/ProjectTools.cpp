#include "Agent/Agent.h"
#include "Agent/CompilationManager.h"
#include "Agent/KestrelFindUtils.h"
#include "Agent/KestrelPythonUtils.h"
#include "Agent/ToolInput.h"
#include "Agent/TransactionLookup.h"
#include "Dom/JsonObject.h"
#include "ScopedTransaction.h"
#include "Widget/KestrelInterface.h"

FString FAgent::UseFinishTool(const FString& Id, const FJsonObject& Input)
{
	SetAgentState(EAgentState::AwaitingUpdate, nullptr);
	return TEXT("Finished");
}

FString FAgent::UseCompileTool(const FString& Id, const FJsonObject& Input)
{
	KestrelTools::ShowStatus(TEXT("Compiling..."));
	TriggerCompilationWithMessages(Id, StoredMessages);
	return TEXT("Compilation executed");
}

void FAgent::TriggerCompilationWithMessages(const FString& ToolId, const TArray<TSharedPtr<FJsonObject>>& Messages)
{
	if (FCompilationManager::IsCompiling())
	{
		// The refusal is this conversation's, whichever one compiles; without it, its tool use would never be answered.
		const TGuardValue<TOptional<FString>> Refused(CompilingConversationId, ConversationId);
		KestrelTools::ShowStatus(FCompilationManager::AlreadyRunning);
		FCompilationManager::CompileGameProject(ToolId, Messages);
		return;
	}
	CompilingConversationId = ConversationId;
	FCompilationManager::CompileGameProject(ToolId, Messages);
}

FString FAgent::UseExecutePythonTool(const FString& Id, const FJsonObject& Input)
{
	FString Code;
	if (!KestrelTools::ReadFields(Input, { { TEXT("code"), &Code } }))
	{
		return TEXT("Error: Missing code field");
	}
	KestrelTools::ShowStatus(TEXT("Executing Unreal Engine Api Python Script ..."));
	const FScopedTransaction Transaction(FText::FromString(GetKestrelTransactionName(ConversationId)));
	const FPythonScriptResult Result = FKestrelPythonUtils::CreateAndExecutePythonScript(Code);
	return FString::Printf(TEXT("%s: %s"), *Result.Message, *Result.Error);
}

FString FAgent::UseFindReferenceInAllFilesTool(const FString& Id, const FJsonObject& Input)
{
	FString Reference;
	if (!KestrelTools::ReadFields(Input, { { TEXT("reference_string"), &Reference } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Finding Reference In All Files ..."));
	return FKestrelFindUtils::FindInAllFiles(Reference);
}

void FAgent::OnCompilationFinished(
	const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess)
{
	if (!CompilingConversationId.IsSet() || CompilingConversationId.GetValue().Equals(ConversationId))
	{
		AddToolResult(ToolId, Logs, !bSuccess);
		const TSharedRef<FJsonObject> Message = MakeShared<FJsonObject>();
		Message->SetStringField(TEXT("role"), TEXT("user"));
		Message->SetArrayField(TEXT("content"), ToolResults);
		AddStoredMessage(Message);
	}
	KestrelTools::ShowStatus(
		bSuccess ? TEXT("Compilation successful!") : TEXT("Compilation failed, processing error..."));
}
