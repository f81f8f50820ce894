#include "Agent/Agent.h"
#include "Agent/History/TransactionLookup.h"
#include "Agent/Project/KestrelPythonUtils.h"
#include "Agent/Tools/ToolPlan.h"
#include "ScopedTransaction.h"

#define LOCTEXT_NAMESPACE "KestrelTurnTools"

namespace TurnTools
{
const FKestrelToolField Code = { TEXT("code"), EKestrelFieldType::Text,
	TEXT("The script. What it prints is the result. The editor's interface is the module 'unreal'."),
	EKestrelPresence::Required, TEXT("Error: Missing code field") };

FString ApplyFinish(const FKestrelToolPlan&)
{
	FAgent::Get().SetAgentState(EAgentState::AwaitingUpdate, nullptr);
	return TEXT("Finished");
}

FString ApplyCompile(const FKestrelToolPlan& Plan)
{
	FAgent::Get().TriggerCompilationWithMessages(Plan.ToolUseId, FAgent::Get().GetStoredMessages());
	return TEXT("Compilation executed");
}

void PlanScript(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.SetChange(View, FString(), Plan.Input.Get(Code));
	Plan.Caution(LOCTEXT("ScriptCannotBeUndone", "can do anything that you can, and not all of it can be undone"));
}

FString ApplyScript(const FKestrelToolPlan& Plan)
{
	FAgent::Get().OfferUndoOfThisConversation();
	const FScopedTransaction Transaction(
		FText::FromString(GetKestrelTransactionName(FAgent::Get().GetConversationId())));
	const FPythonScriptResult Result = FKestrelPythonUtils::CreateAndExecutePythonScript(Plan.Input.Get(Code));
	return FString::Printf(TEXT("%s: %s"), *Result.Message, *Result.Error);
}
}

void KestrelTools::AddTurnTools(TArray<FKestrelTool>& OutTools)
{
	using namespace TurnTools;
	OutTools.Add({ KestrelToolNames::Finish, EKestrelToolKind::Finish, LOCTEXT("Finish", "End the turn"),
		TEXT("Ends the turn: the user may type the next prompt."), {}, nullptr, nullptr, EKestrelNameInPanel::Shown,
		nullptr, ApplyFinish });
	OutTools.Add({ KestrelToolNames::Compile, EKestrelToolKind::Compile, LOCTEXT("Compile", "Compile the game"),
		TEXT("Compiles the game's C++ code in the running editor. The compiler's messages come with a later request."),
		{}, nullptr, TEXT("Compiling..."), EKestrelNameInPanel::Shown, nullptr, ApplyCompile, EKestrelAnswers::Later });
	OutTools.Add({ KestrelToolNames::ExecutePython, EKestrelToolKind::Run, LOCTEXT("Script", "Run a script"),
		TEXT("Runs a Python script in the editor."), { Code }, nullptr,
		TEXT("Executing Unreal Engine Api Python Script ..."), EKestrelNameInPanel::Hidden, PlanScript, ApplyScript });
}

#undef LOCTEXT_NAMESPACE
