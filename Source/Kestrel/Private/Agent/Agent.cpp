#include "Agent/Agent.h"

#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/PendingTools.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Work/TextWork.h"
#include "Agent/Work/WorkRunner.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Kestrel.h"
#include "KestrelSettings.h"
#include "Misc/Guid.h"
#include "Templates/UniquePtr.h"
#include "UObject/Class.h"

#define LOCTEXT_NAMESPACE "KestrelAgent"

/** What is done on entering a state; the text is the state's payload, or empty. */
struct FAgent::FEntryAction
{
	EAgentState State;
	void (FAgent::*Enter)(const FString& Text);
};

namespace KestrelAgent
{
const TCHAR* const Pausing = TEXT("Pausing request...");

void ShowUserText(const FString& Text)
{
	FKestrelInterface::Get().OnAddStatusMessage(
		Text, FKestrelInterface::UserColor, FKestrelInterface::RegularFontName, FKestrelInterface::UserFontSize);
}

void ShowAssistantText(const FString& Text)
{
	FKestrelInterface::Get().OnAddStatusMessage(FString::Printf(TEXT(" [ Kestrel ] \n\n%s\n"), *Text),
		FKestrelInterface::AssistantColor, FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
}

/** Finds assets for the tools of an answer: the content folders are walked once for all that only read. */
class FSharedFinder
{
public:
	const TSharedRef<FKestrelAssetFinder>& Get() const { return Finder; }
	void NoteThatRan(const FKestrelToolPlan& Plan)
	{
		if (!Plan.LeavesAllAsItIs())
		{
			Finder = MakeShared<FKestrelAssetFinder>();
		}
	}

private:
	TSharedRef<FKestrelAssetFinder> Finder = MakeShared<FKestrelAssetFinder>();
};

/** Tools of one answer that are looked at: each takes its time before anyone is asked, and its row in the list. */
constexpr int32 MaxToolUses = 500;

/** The answer to a tool use behind these. */
FString DescribeTooManyTools()
{
	return FString::Printf(
		TEXT("Error: Not run, since an answer may not use more than %d tools. Use it again in a later answer."),
		MaxToolUses);
}

/** A content block's kind; letter case is ignored. */
bool IsOfType(const FJsonObject& Block, const TCHAR* Type)
{
	FString BlockType;
	return Block.TryGetStringField(TEXT("type"), BlockType) && BlockType.Equals(Type, ESearchCase::IgnoreCase);
}
}

/** Tools at work, one after the other: those of an answer, or those that the user has approved. */
class FAgent::FTurn : public IKestrelSlicedWork
{
public:
	explicit FTurn(FAgent& InAgent)
		: Agent(InAgent)
	{
	}

	virtual bool Step(double Deadline) override { return Agent.StepTurn(*this, Deadline); }
	virtual float GetProgress() const override { return Work ? Work->GetProgress() : -1.0f; }
	virtual bool IsElsewhere() const override { return Work && Work->IsElsewhere(); }

	const FKestrelApprovalRules Rules;
	KestrelAgent::FSharedFinder Finder;
	TSharedPtr<FKestrelToolPlan> Plan; // of the tool at work; null between them
	TSharedPtr<IKestrelTextWork> Work;
	bool bGoesOn = true; // false once a tool has ended the turn

	// An answer's blocks.
	TArray<TSharedPtr<FJsonValue>> Blocks;
	int32 NumHandled = 0;
	TUniquePtr<FKestrelToolPlanner> Planner;
	int32 NumToolUses = 0;
	int32 NumEarlierResults = 0;       // of a compile for instance, which are no reason to send a request
	int64 NumBytesOfEarlierFrames = 0; // that the planner has read
	bool bDenied = false;
	bool bRanByRule = false;

	// Approved tools.
	TArray<FKestrelPendingTools::FTool> Approved;
	int32 NumStarted = 0;

	/** Whether plans have read so much since this was last so that the next ones had better wait for a frame. */
	bool HasReadMuch()
	{
		constexpr int64 MaxBytesOfFrame = 4 * 1024 * 1024;
		const int64 NumBytes = Planner ? Planner->GetNumBytesRead() : 0;
		const bool bMuch = NumBytes - NumBytesOfEarlierFrames > MaxBytesOfFrame;
		// Each planner counts anew.
		NumBytesOfEarlierFrames = bMuch ? NumBytes : FMath::Min(NumBytes, NumBytesOfEarlierFrames);
		return bMuch;
	}

	/** Does the next thing, or begins it. @return false when there is none left */
	bool (FAgent::*DoNext)(FTurn& InOutTurn) = nullptr;
	void (FAgent::*End)(FTurn& InOutTurn) = nullptr;

private:
	FAgent& Agent;
};

FAgent& FAgent::Get()
{
	static FAgent Instance;
	return Instance;
}

FAgent::FAgent()
	: PendingTools(MakeShared<FKestrelPendingTools>())
	, TurnRunner(MakeShared<FKestrelWorkRunner>())
{
	FHTTPAPI& Backend = FHTTPAPI::Get();
	Backend.OnRegularRequest.BindRaw(this, &FAgent::HandleRegularRequest);
	Backend.OnRegularRequestFailed.BindRaw(this, &FAgent::HandleRegularRequestFailed);
	Backend.OnPollStatusRequestStarted.BindRaw(this, &FAgent::HandlePollStatusRequestStarted);
	Backend.OnPollStatusRequestCompleted.BindRaw(this, &FAgent::HandlePollStatusRequestCompleted);
	Backend.OnPollStatusRequestFailed.BindRaw(this, &FAgent::HandlePollStatusRequestFailed);
	Backend.OnPollStatusRequestProcessing.BindRaw(this, &FAgent::HandlePollStatusRequestProcessing);
	CompileFinishedHandle = FCompilationManager::OnCompileFinished().AddRaw(this, &FAgent::OnCompilationFinished);
}

FAgent::~FAgent()
{
	FHTTPAPI& Backend = FHTTPAPI::Get();
	Backend.OnRegularRequest.Unbind();
	Backend.OnRegularRequestFailed.Unbind();
	Backend.OnPollStatusRequestStarted.Unbind();
	Backend.OnPollStatusRequestCompleted.Unbind();
	Backend.OnPollStatusRequestFailed.Unbind();
	Backend.OnPollStatusRequestProcessing.Unbind();
	FCompilationManager::OnCompileFinished().Remove(CompileFinishedHandle);
}

void FAgent::Initialize()
{
	SetAgentState(EAgentState::Idle, nullptr);
}

const TArray<FAgent::FEntryAction>& FAgent::GetEntryActions()
{
	static const TArray<FEntryAction> EntryActions = {
		{ EAgentState::Idle, &FAgent::EnterIdle },
		{ EAgentState::InitialRequest, &FAgent::EnterInitialRequest },
		{ EAgentState::RegularRequest, &FAgent::EnterRegularRequest },
		{ EAgentState::Continue, &FAgent::EnterContinue },
		{ EAgentState::AwaitingUpdate, &FAgent::EnterAwaitingUpdate },
		{ EAgentState::Pause, &FAgent::EnterPause },
		{ EAgentState::CancelRequest, &FAgent::EnterCancelRequest },
		{ EAgentState::EndRequest, &FAgent::EnterEndRequest },
	};
	return EntryActions;
}

void FAgent::SetAgentState(EAgentState NewState, const FAgentStateData* Data)
{
	if (NewState == State)
	{
		return;
	}
	PreviousState = State;
	State = NewState;
	const FEntryAction* EntryAction =
		GetEntryActions().FindByPredicate([NewState](const FEntryAction& Action) { return Action.State == NewState; });
	if (EntryAction)
	{
		// Only states with a text have a payload.
		const FString Text = Data ? static_cast<const FTextAgentStateData*>(Data)->Text : FString();
		(this->*EntryAction->Enter)(Text);
	}
	StateChanged.Broadcast();
}

void FAgent::EnterIdle(const FString&)
{
	SetPaused(false);
	SetApproved(false);
	PendingTools->Empty();
	DropTurn();
	ClearConversationId();
	FHTTPAPI::Get().CancelPolling();
}

void FAgent::DropTurn()
{
	TurnRunner->Stop();
	Turn.Reset();
}

void FAgent::BeginTurn(const TSharedRef<FTurn>& NewTurn)
{
	DropTurn();
	Turn = NewTurn;
	TurnRunner->Start(NewTurn, [this, NewTurn]() {
		Turn.Reset();
		(this->*NewTurn->End)(*NewTurn);
	});
}

bool FAgent::StepTurn(FTurn& InOutTurn, double Deadline)
{
	// Not by the time that it takes: how the results of tools are put together is not to depend on how busy the machine
	// is. Nor between a plan and its tool: what it was planned on may change until the next frame.
	while (InOutTurn.Work || !InOutTurn.HasReadMuch())
	{
		if (!InOutTurn.Work && !(this->*InOutTurn.DoNext)(InOutTurn))
		{
			return true;
		}
		if (InOutTurn.Work)
		{
			if (!InOutTurn.Work->Step(Deadline))
			{
				return false;
			}
			FinishTool(InOutTurn);
			if (Turn.Get() != &InOutTurn)
			{
				return true; // the tool has dropped it
			}
		}
	}
	return false;
}

void FAgent::EnterInitialRequest(const FString& Prompt)
{
	const FString NewId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	FKestrelInterface::Get().BeginConversation(NewId, Prompt);
	KestrelAgent::ShowUserText(FString::Printf(TEXT(" [ User Start ]\n\n%s\n"), *Prompt));
	SetConversationId(NewId);
	SetUndoConversationID(ConversationId);
	StoredMessages.Empty();
	ClearToolResults();
	PendingTools->Empty();
	if (FKestrelModule::IsStageRefused())
	{
		CancelRequest(LOCTEXT("StageRefused",
			"Nothing was sent. The service's address in Config/DefaultPlugin.ini must be a host, with a port and a path "
			"if need be, and nothing else: as in localhost:8443/v1.")
						  .ToString());
		return;
	}
	if (FKestrelModule::IsServiceOfProject())
	{
		FKestrelInterface::Get().AddHint(
			FText::Format(LOCTEXT("ServiceOfProject", "This project sends requests to {0} (Config/DefaultPlugin.ini)."),
				FText::FromString(KestrelDisplayText::EscapeLine(FKestrelModule::GetApiHost()))));
	}
	if (FKestrelApprovalRules().AllowAnything())
	{
		FKestrelInterface::Get().AddHint(LOCTEXT("RulesAllow",
			"Rules let some tools run without asking: Project Settings, Plugins, Kestrel. Each such run leaves a "
			"line here."));
	}
	FHTTPAPI::Get().InitialPromptRequest(Prompt);
}

void FAgent::EnterRegularRequest(const FString& Message)
{
	KestrelAgent::ShowUserText(FString::Printf(TEXT(" [ User ]\n\n%s\n"), *Message));
	FHTTPAPI::Get().RegularPromptRequest(Message);
}

void FAgent::EnterContinue(const FString& Message)
{
	SetPaused(false);
	SetApproved(true);
	KestrelAgent::ShowUserText(Message.IsEmpty() ? FString(TEXT(" [ User ]\n\nThe process has been resumed.\n"))
												 : FString::Printf(TEXT(" [ User ]\n\n%s\n"), *Message));
	if (!Message.IsEmpty())
	{
		AbortPendingTools();
		SendContinue(Message);
		return;
	}
	const TSharedRef<FTurn> NewTurn = MakeShared<FTurn>(*this);
	NewTurn->Approved = PendingTools->Take();
	NewTurn->DoNext = &FAgent::RunNextApproved;
	NewTurn->End = &FAgent::EndOfApproved;
	BeginTurn(NewTurn);
}

void FAgent::SendContinue(const FString& Message)
{
	const TSharedRef<FJsonObject> Body = MakeShared<FJsonObject>();
	Body->SetStringField(TEXT("message"), Message);
	if (!ToolResults.IsEmpty())
	{
		Body->SetArrayField(TEXT("tool_results"), ToolResults);
	}
	Body->SetBoolField(TEXT("was_confirmed"), WasApproved());
	SendAndClearToolResults(Body);
}

bool FAgent::RunNextApproved(FTurn& InOutTurn)
{
	if (InOutTurn.NumStarted == InOutTurn.Approved.Num())
	{
		return false;
	}
	if (bPaused)
	{
		KeepApproved(InOutTurn);
		return false;
	}
	const FKestrelPendingTools::FTool Tool = InOutTurn.Approved[InOutTurn.NumStarted];
	const bool bAborted = Tool.Answer == EKestrelAnswer::Rejected || !InOutTurn.bGoesOn;
	const bool bDenied = !bAborted && InOutTurn.Rules.Judge(Tool.Plan->MakeSubject()) == EKestrelRuling::Deny;
	if (!bAborted && !bDenied && !Tool.Plan->StillHolds(*InOutTurn.Finder.Get()))
	{
		KeepApproved(InOutTurn);
		PendingTools->PlanAgain(InOutTurn.Finder.Get());
		FKestrelInterface::Get().AddHint(LOCTEXT(
			"PlanAgain", "A file has changed since its change was shown. Look at what is left, and approve again."));
		return false;
	}
	++InOutTurn.NumStarted;
	if (bAborted)
	{
		AbortTool(Tool.Plan->ToolUseId);
	}
	else if (bDenied)
	{
		DenyTool(*Tool.Plan);
	}
	else
	{
		BeginTool(InOutTurn, Tool.Plan);
	}
	return true;
}

void FAgent::KeepApproved(FTurn& InOutTurn)
{
	for (; InOutTurn.NumStarted < InOutTurn.Approved.Num(); ++InOutTurn.NumStarted)
	{
		const FKestrelPendingTools::FTool& Tool = InOutTurn.Approved[InOutTurn.NumStarted];
		const bool bRejected = Tool.Answer == EKestrelAnswer::Rejected;
		PendingTools->Add(Tool.Plan, bRejected ? EKestrelAnswer::Rejected : EKestrelAnswer::None);
	}
}

void FAgent::EndOfApproved(FTurn&)
{
	if (PendingTools->IsEmpty())
	{
		SendContinue(FString());
		return;
	}
	SetApproved(false);
	SetAgentState(bPaused ? EAgentState::Pause : EAgentState::AwaitingApproval, nullptr);
}

void FAgent::AnswerPendingTool(int32 Index, EKestrelAnswer Answer)
{
	if (State != EAgentState::AwaitingApproval && State != EAgentState::Pause)
	{
		return;
	}
	PendingTools->Answer(Index, Answer);
	if (PendingTools->IsEmpty() || !PendingTools->AreAllAnswered())
	{
		StateChanged.Broadcast();
		return;
	}
	if (State == EAgentState::AwaitingApproval)
	{
		SetAgentState(EAgentState::Approved, nullptr);
	}
	Continue(FString());
}

void FAgent::AbortPendingTools()
{
	for (const FKestrelPendingTools::FTool& Each : PendingTools->Take())
	{
		AbortTool(Each.Plan->ToolUseId);
	}
}

void FAgent::EnterAwaitingUpdate(const FString&)
{
	SetPaused(false);
	SetApproved(false);
}

void FAgent::EnterPause(const FString&)
{
	KestrelAgent::ShowUserText(TEXT(" [ User ]\n\nThe process has been paused.\n"));
}

void FAgent::EnterCancelRequest(const FString& Reason)
{
	KestrelAgent::ShowUserText(
		Reason.IsEmpty() ? FString(TEXT(" [ Cancelled ]")) : FString::Printf(TEXT(" [ Cancelled ]\n\n%s\n"), *Reason));
	SetAgentState(EAgentState::Idle, nullptr);
}

void FAgent::EnterEndRequest(const FString& Message)
{
	// No line break at the end, unlike the other templates.
	KestrelAgent::ShowUserText(
		Message.IsEmpty() ? FString(TEXT(" [ User End ]")) : FString::Printf(TEXT(" [ User End ]\n\n%s"), *Message));
	SetAgentState(EAgentState::Idle, nullptr);
}

void FAgent::SetPaused(bool bInPaused)
{
	const bool bBegins = bInPaused && !bPaused;
	bPaused = bInPaused;
	if (bBegins)
	{
		FKestrelInterface::Get().AddOwnStatusMessage(KestrelAgent::Pausing);
	}
}

void FAgent::PauseRequest()
{
	if (State != EAgentState::Idle)
	{
		SetPaused(true);
	}
}

void FAgent::Continue(const FString& Message)
{
	const FMessageAgentStateData Data(Message);
	SetAgentState(EAgentState::Continue, &Data);
}

void FAgent::EndRequest(const FString& Message)
{
	const FEndRequestStateData Data(Message);
	SetAgentState(EAgentState::EndRequest, &Data);
}

void FAgent::CancelRequest(const FString& Message)
{
	const FCancelRequestStateData Data(Message);
	SetAgentState(EAgentState::CancelRequest, &Data);
}

bool FAgent::MayActWithoutAsking() const
{
	return GetDefault<UKestrelSettings>()->bAutoApprove || WasApproved();
}

void FAgent::SendAndClearToolResults(const TSharedRef<FJsonObject>& Body)
{
	const FString Text = KestrelJson::ToCondensedText(Body);
	FHTTPAPI::Get().RegularRequest(Text);
	ClearToolResults();
}

void FAgent::HandleRegularRequest(
	const FString& Text, const FLinearColor& Color, const FName& FontStyle, float FontSize)
{
	FKestrelInterface::Get().OnAddStatusMessage(Text, Color, FontStyle, FontSize);
}

void FAgent::HandleRegularRequestFailed(const FString& Message)
{
	// The reply to a request that the user has given up meanwhile is no news.
	if (State != EAgentState::Idle)
	{
		CancelRequest(Message);
	}
}

void FAgent::HandlePollStatusRequestStarted()
{
	// The client polls whatever reply it gets; one that comes after the conversation was ended must not revive it.
	if (State == EAgentState::Idle)
	{
		FHTTPAPI::Get().CancelPolling();
		return;
	}
	SetAgentState(EAgentState::PollRequest, nullptr);
}

void FAgent::HandlePollStatusRequestProcessing()
{
	FKestrelInterface::Get().AddOwnStatusMessage(bPaused ? KestrelAgent::Pausing : TEXT("Processing request..."));
}

void FAgent::HandlePollStatusRequestFailed(const FString& Error)
{
	CancelRequest(FString::Printf(TEXT("Request failed: %s"), *Error));
}

void FAgent::HandlePollStatusRequestCompleted(const TSharedPtr<FJsonObject> Response)
{
	if (!Response.IsValid())
	{
		CancelRequest(TEXT("Failed to parse API response"));
		return;
	}
	SetAgentState(EAgentState::PollResponse, nullptr);
	SetStoredJsonBody(Response);
	bool bAutoContinue = false;
	Response->TryGetBoolField(TEXT("auto_continue"), bAutoContinue);
	SetApproved(bAutoContinue);
	// A tool that an earlier answer left behind is not approved along with this one's.
	AbortPendingTools();

	StoreAnswer(Response);
	const TArray<TSharedPtr<FJsonValue>>* Content = nullptr;
	if (!Response->TryGetArrayField(TEXT("response"), Content))
	{
		return;
	}
	const TSharedRef<FTurn> NewTurn = MakeShared<FTurn>(*this);
	NewTurn->Blocks = *Content;
	NewTurn->NumEarlierResults = ToolResults.Num();
	NewTurn->DoNext = &FAgent::HandleNextBlock;
	NewTurn->End = &FAgent::EndOfAnswer;
	BeginTurn(NewTurn);
}

void FAgent::StoreAnswer(const TSharedPtr<FJsonObject>& Response)
{
	const TArray<TSharedPtr<FJsonValue>>* Messages = nullptr;
	if (Response->TryGetArrayField(TEXT("messages"), Messages))
	{
		for (const TSharedPtr<FJsonValue>& Message : *Messages)
		{
			const TSharedPtr<FJsonObject>* Object = nullptr;
			if (Message.IsValid() && Message->TryGetObject(Object))
			{
				AddStoredMessage(*Object);
			}
		}
	}
	const TArray<TSharedPtr<FJsonValue>>* Content = nullptr;
	if (Response->TryGetArrayField(TEXT("response"), Content))
	{
		const TSharedRef<FJsonObject> Message = MakeShared<FJsonObject>();
		Message->SetStringField(TEXT("role"), TEXT("assistant"));
		Message->SetArrayField(TEXT("content"), *Content);
		AddStoredMessage(Message);
	}
}

bool FAgent::HandleNextBlock(FTurn& InOutTurn)
{
	if (InOutTurn.NumHandled == InOutTurn.Blocks.Num())
	{
		return false;
	}
	const TSharedPtr<FJsonValue> Value = InOutTurn.Blocks[InOutTurn.NumHandled++];
	const TSharedPtr<FJsonObject>* Block = nullptr;
	if (!Value.IsValid() || !Value->TryGetObject(Block))
	{
		return true;
	}
	FString Text;
	if (KestrelAgent::IsOfType(**Block, TEXT("text")) && (*Block)->TryGetStringField(TEXT("text"), Text))
	{
		KestrelAgent::ShowAssistantText(Text);
	}
	else if (KestrelAgent::IsOfType(**Block, TEXT("tool_use")))
	{
		HandleToolUse(InOutTurn, **Block);
	}
	return true;
}

void FAgent::EndOfAnswer(FTurn& InOutTurn)
{
	if (InOutTurn.bDenied)
	{
		// They were planned on top of what never happens.
		PendingTools->PlanAgain(InOutTurn.Finder.Get());
	}
	if (InOutTurn.bRanByRule && PendingTools->IsEmpty())
	{
		SetApproved(true);
	}
	// Paused, even the answers to tools that a rule denies wait: an assistant that insists on one goes on otherwise.
	if (bPaused || ToolResults.Num() == InOutTurn.NumEarlierResults || !PendingTools->IsEmpty())
	{
		FinishAnswerWithoutToolResults();
		return;
	}
	SendToolResults();
}

void FAgent::HandleToolUse(FTurn& InOutTurn, const FJsonObject& Block)
{
	if (++InOutTurn.NumToolUses > KestrelAgent::MaxToolUses)
	{
		constexpr bool bIsError = true;
		FString Id;
		Block.TryGetStringField(TEXT("id"), Id);
		AddToolResult(Id, KestrelAgent::DescribeTooManyTools(), bIsError);
		return;
	}
	if (!InOutTurn.Planner || PendingTools->IsEmpty())
	{
		// What ran is on the disk; what waits, for those behind it, only in the planner's view.
		InOutTurn.Planner = MakeUnique<FKestrelToolPlanner>(EKestrelLookAhead::Limited, InOutTurn.Finder.Get());
	}
	const TSharedRef<FKestrelToolPlan> Plan = InOutTurn.Planner->Plan(Block);
	if (InOutTurn.bGoesOn)
	{
		RunOrKeep(InOutTurn, Plan);
	}
	else
	{
		AbortTool(Plan->ToolUseId);
	}
}

void FAgent::RunOrKeep(FTurn& InOutTurn, const TSharedRef<FKestrelToolPlan>& Plan)
{
	const EKestrelRuling Ruling = InOutTurn.Rules.Judge(Plan->MakeSubject());
	// Tools run in order: one that waits keeps those behind it waiting.
	const bool bIsItsTurn = !bPaused && PendingTools->IsEmpty();
	if (Ruling == EKestrelRuling::Deny)
	{
		DenyTool(*Plan);
		InOutTurn.bDenied = true;
	}
	else if (bIsItsTurn && MayRunWithoutAsking(*Plan, Ruling))
	{
		if (Ruling == EKestrelRuling::Allow)
		{
			FKestrelInterface::Get().AddHint(
				FText::Format(LOCTEXT("Allowed", "Allowed by a rule: {0}"), Plan->Describe()));
			InOutTurn.bRanByRule = true;
		}
		BeginTool(InOutTurn, Plan);
	}
	else
	{
		PendingTools->Add(Plan);
	}
}

bool FAgent::MayRunWithoutAsking(const FKestrelToolPlan& Plan, EKestrelRuling Ruling) const
{
	if (GetDefault<UKestrelSettings>()->bAutoApprove || Ruling == EKestrelRuling::Allow)
	{
		return true;
	}
	return Ruling != EKestrelRuling::Ask && WasApproved() && Plan.Cautions.IsEmpty();
}

void FAgent::BeginTool(FTurn& InOutTurn, const TSharedRef<FKestrelToolPlan>& Plan)
{
	InOutTurn.Plan = Plan;
	InOutTurn.Work = Plan->Begin();
}

void FAgent::FinishTool(FTurn& InOutTurn)
{
	const TSharedPtr<FKestrelToolPlan> Plan = MoveTemp(InOutTurn.Plan);
	const TSharedPtr<IKestrelTextWork> Work = MoveTemp(InOutTurn.Work);
	InOutTurn.bGoesOn = KeepResult(*Plan, Work->TakeText());
	InOutTurn.Finder.NoteThatRan(*Plan);
}

void FAgent::FinishAnswerWithoutToolResults()
{
	if (bPaused)
	{
		SetAgentState(EAgentState::Pause, nullptr);
		return;
	}
	const bool bMayGoOn = PendingTools->IsEmpty() && MayActWithoutAsking();
	SetAgentState(bMayGoOn ? EAgentState::AwaitingUpdate : EAgentState::AwaitingApproval, nullptr);
}

void FAgent::SendToolResults()
{
	const TSharedRef<FJsonObject> Body = MakeShared<FJsonObject>();
	Body->SetArrayField(TEXT("tool_results"), ToolResults);
	if (!GetDefault<UKestrelSettings>()->bAutoApprove)
	{
		Body->SetBoolField(TEXT("was_confirmed"), WasApproved());
	}
	SendAndClearToolResults(Body);
}

#undef LOCTEXT_NAMESPACE
