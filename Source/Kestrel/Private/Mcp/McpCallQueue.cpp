#include "Mcp/McpCallQueue.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Work/TextWork.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/PlatformTime.h"
#include "Mcp/McpApproval.h"
#include "Mcp/McpClient.h"
#include "Mcp/McpHistoryTools.h"
#include "Mcp/McpSecret.h"
#include "Mcp/McpTools.h"

#define LOCTEXT_NAMESPACE "KestrelMcpCallQueue"

namespace McpCallQueue
{
/** Of a frame, for calls that are quick. */
constexpr double MaxSecondsPerFrame = 0.004;
const TCHAR* const ToolUsePrefix = TEXT("mcp-");

const TCHAR* const Rejected =
	TEXT("Error: The person at the editor has rejected this call, and nothing was changed. Do "
		 "not repeat it unchanged: ask what to do instead.");
const TCHAR* const Refused =
	TEXT("Error: Not allowed. This editor was started for clients that may not do this, and nobody is at it to ask. It "
		 "depends on --allow, and paths must lie within the project.");
const TCHAR* const Denied = TEXT("Error: Not run, since a rule of the user's denies it.");
const TCHAR* const TooMany = TEXT("Error: Too many calls wait already. Wait for their results first.");

FString MakeToolUseId(const FKestrelMcpCall& Call)
{
	return ToolUsePrefix + Call.Handle;
}

/** For the client: what its call waits for. */
FString DescribeWait(const FKestrelMcpCall& Call)
{
	switch (Call.State)
	{
	case EKestrelMcpCallState::AwaitingApproval:
		return TEXT("the approval of the person at the editor");
	case EKestrelMcpCallState::Running:
		return Call.Runner.IsRunning() ? TEXT("the end of the search") : TEXT("the end of the compilation");
	default:
		return FKestrelMcpCallQueue::IsPanelAtWork() ? TEXT("the conversation in the editor's own panel")
													 : TEXT("the calls before it");
	}
}

FString DescribeCompile(const FString& Logs, bool bSuccess)
{
	const FString Text = Logs.IsEmpty() ? FString(TEXT("The compiler said nothing.")) : Logs;
	return (bSuccess ? TEXT("Compilation successful.\n") : TEXT("Error: Compilation failed.\n")) + Text;
}
}

FKestrelMcpCall::FKestrelMcpCall(const TSharedRef<FKestrelMcpClient>& InClient,
	const TSharedPtr<FJsonValue>& InRequestId, const FKestrelTool& InTool, const TSharedRef<FJsonObject>& InArguments)
	: Handle(KestrelMcpSecret::Make())
	, Client(InClient)
	, RequestId(InRequestId)
	, Tool(&InTool)
	, Arguments(InArguments)
{
}

FKestrelMcpCallQueue::FKestrelMcpCallQueue()
{
	CompileFinishedHandle =
		FCompilationManager::OnCompileFinished().AddRaw(this, &FKestrelMcpCallQueue::OnCompileFinished);
}

FKestrelMcpCallQueue::~FKestrelMcpCallQueue()
{
	FCompilationManager::OnCompileFinished().Remove(CompileFinishedHandle);
	FTSTicker::RemoveTicker(TickerHandle);
}

bool FKestrelMcpCallQueue::IsPanelAtWork()
{
	const EAgentState State = FAgent::Get().GetAgentState();
	return State != EAgentState::None && State != EAgentState::Idle && State != EAgentState::AwaitingUpdate;
}

void FKestrelMcpCallQueue::Add(const TSharedRef<FKestrelMcpClient>& Client, const TSharedPtr<FJsonValue>& RequestId,
	const FKestrelTool& Tool, const TSharedRef<FJsonObject>& Arguments, const TSharedPtr<FKestrelMcpChanges>& Changes,
	const FKestrelMcpReply& Reply)
{
	const int32 NumOfClient =
		Calls.FilterByPredicate([&Client](const FCallRef& Call) { return Call->Client == Client; }).Num();
	if (Calls.Num() >= MaxCalls || NumOfClient >= MaxCallsOfClient)
	{
		Reply(FKestrelMcpAnswer::Of(KestrelMcpTools::MakeResult(*Client, Tool.WireName, McpCallQueue::TooMany)));
		return;
	}
	const FCallRef Call = MakeShared<FKestrelMcpCall>(Client, RequestId, Tool, Arguments);
	Call->Changes = Changes;
	Call->Reply = Reply;
	Call->AskedAt = FPlatformTime::Seconds();
	Calls.Add(Call);
	StartTicker();
	Advance();
}

void FKestrelMcpCallQueue::StartTicker()
{
	if (!TickerHandle.IsValid())
	{
		TickerHandle = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([this](float) {
			Tick(FPlatformTime::Seconds());
			const bool bGoesOn = !Calls.IsEmpty();
			if (!bGoesOn)
			{
				TickerHandle.Reset();
			}
			return bGoesOn;
		}));
	}
}

FKestrelMcpCallQueue::FCallRef* FKestrelMcpCallQueue::FindCall(const FString& Handle)
{
	return Calls.FindByPredicate(
		[&Handle](const FCallRef& Call) { return KestrelMcpSecret::IsSame(Call->Handle, Handle); });
}

const FKestrelMcpCall* FKestrelMcpCallQueue::Find(const FString& Handle) const
{
	const FCallRef* Call = const_cast<FKestrelMcpCallQueue*>(this)->FindCall(Handle);
	return Call ? &Call->Get() : nullptr;
}

bool FKestrelMcpCallQueue::AskAgain(
	const FString& Handle, const TSharedPtr<FJsonValue>& RequestId, const FKestrelMcpReply& Reply)
{
	FCallRef* Found = FindCall(Handle);
	if (!Found)
	{
		return false;
	}
	const FCallRef Call = *Found;
	const double Now = FPlatformTime::Seconds();
	if (Call->Reply)
	{
		AnswerWithHandle(*Call, Now); // the request before this one
	}
	Call->RequestId = RequestId;
	Call->Reply = Reply;
	Call->AskedAt = Now;
	if (Call->State == EKestrelMcpCallState::Done)
	{
		Finish(Call, Call->Result);
	}
	return true;
}

void FKestrelMcpCallQueue::Cancel(const FKestrelMcpClient& Client, const TSharedPtr<FJsonValue>& RequestId)
{
	for (const FCallRef& Call : TArray<FCallRef>(Calls))
	{
		if (&Call->Client.Get() == &Client && FKestrelMcpMessage::IsSameId(Call->RequestId, RequestId))
		{
			Withdraw(Call);
		}
	}
}

void FKestrelMcpCallQueue::WithdrawAllOf(const FKestrelMcpClient& Client)
{
	for (const FCallRef& Call : TArray<FCallRef>(Calls))
	{
		if (&Call->Client.Get() == &Client)
		{
			Withdraw(Call);
		}
	}
}

void FKestrelMcpCallQueue::WithdrawAll(const FKestrelMcpAnswer& Answer)
{
	for (const FCallRef& Call : TArray<FCallRef>(Calls))
	{
		Withdraw(Call, Answer);
	}
}

void FKestrelMcpCallQueue::Withdraw(const FCallRef& Call, const FKestrelMcpAnswer& Answer)
{
	const FKestrelMcpReply Reply = MoveTemp(Call->Reply);
	Call->Reply.Reset();
	if (Reply)
	{
		Reply(Answer);
	}
	if (Call->State == EKestrelMcpCallState::Running && !Call->Runner.IsRunning())
	{
		return; // what has begun to change something ends
	}
	Call->Runner.Stop();
	Calls.Remove(Call);
	if (Call->State == EKestrelMcpCallState::AwaitingApproval)
	{
		OnWithdrawn.ExecuteIfBound(*Call);
		OnChanged.Broadcast();
	}
}

TArray<TSharedRef<FKestrelMcpCall>> FKestrelMcpCallQueue::GetAwaitingApproval() const
{
	return Calls.FilterByPredicate(
		[](const FCallRef& Call) { return Call->State == EKestrelMcpCallState::AwaitingApproval; });
}

void FKestrelMcpCallQueue::Approve(const FString& Handle)
{
	FCallRef* Found = FindCall(Handle);
	if (!Found || (*Found)->State != EKestrelMcpCallState::AwaitingApproval || IsPanelAtWork())
	{
		return;
	}
	const FCallRef Call = *Found;
	if (KestrelMcpApproval::Decide(*Call->Plan) == EKestrelMcpDecision::Deny)
	{
		Finish(Call, McpCallQueue::Denied); // the rules have changed since
	}
	else if (StillHolds(*Call))
	{
		Run(Call);
	}
	else
	{
		Call->Plan = MakePlan(*Call);
	}
	OnChanged.Broadcast();
}

void FKestrelMcpCallQueue::Reject(const FString& Handle)
{
	FCallRef* Found = FindCall(Handle);
	if (Found && (*Found)->State == EKestrelMcpCallState::AwaitingApproval)
	{
		Finish(FCallRef(*Found), McpCallQueue::Rejected);
		OnChanged.Broadcast();
	}
}

void FKestrelMcpCallQueue::Tick(double Now)
{
	for (const FCallRef& Call : TArray<FCallRef>(Calls))
	{
		const double Waited = Now - Call->AskedAt;
		if (Call->Reply)
		{
			if (Waited >= LongestWaitSeconds)
			{
				AnswerWithHandle(*Call, Now);
			}
		}
		else if (Waited >= (Call->State == EKestrelMcpCallState::Done ? ResultKeptSeconds : WithdrawSeconds))
		{
			Withdraw(Call);
		}
	}
	Advance();
}

void FKestrelMcpCallQueue::AnswerWithHandle(FKestrelMcpCall& Call, double Now)
{
	const FKestrelMcpReply Reply = MoveTemp(Call.Reply);
	Call.Reply.Reset();
	Call.AskedAt = Now;
	Reply(FKestrelMcpAnswer::Of(
		KestrelMcpTools::MakeWaiting(*Call.Client, Call.Handle, McpCallQueue::DescribeWait(Call))));
}

TSharedPtr<FKestrelMcpCall> FKestrelMcpCallQueue::FindNext() const
{
	TArray<const FKestrelMcpClient*> Held;
	for (const FCallRef& Call : Calls)
	{
		const FKestrelMcpClient* Client = &Call->Client.Get();
		if (Call->State == EKestrelMcpCallState::Running)
		{
			return nullptr;
		}
		if (Call->State == EKestrelMcpCallState::AwaitingApproval)
		{
			Held.Add(Client);
		}
		else if (Call->State == EKestrelMcpCallState::Queued && !Held.Contains(Client))
		{
			return Call;
		}
	}
	return nullptr;
}

void FKestrelMcpCallQueue::Advance()
{
	if (bIsAdvancing)
	{
		return; // a tool may let the editor tick
	}
	const TGuardValue<bool> Advancing(bIsAdvancing, true);
	const double Start = FPlatformTime::Seconds();
	while (!IsPanelAtWork() && FPlatformTime::Seconds() - Start < McpCallQueue::MaxSecondsPerFrame)
	{
		const TSharedPtr<FKestrelMcpCall> Next = FindNext();
		if (!Next.IsValid())
		{
			return;
		}
		Decide(Next.ToSharedRef());
	}
}

TSharedRef<FKestrelToolPlan> FKestrelMcpCallQueue::MakePlan(const FKestrelMcpCall& Call) const
{
	const FString ToolUseId = McpCallQueue::MakeToolUseId(Call);
	if (KestrelMcpHistoryTools::IsOne(*Call.Tool))
	{
		return KestrelMcpHistoryTools::Plan(
			*Call.Tool, Call.Changes.IsValid() ? Call.Changes->ConversationId : FString(), ToolUseId);
	}
	const EKestrelLookAhead LookAhead =
		Call.Tool->Kind == EKestrelToolKind::Read ? EKestrelLookAhead::Unlimited : EKestrelLookAhead::Limited;
	FKestrelToolPlanner Planner(LookAhead);
	return Planner.Plan(Call.Tool->WireName, ToolUseId, Call.Arguments);
}

bool FKestrelMcpCallQueue::StillHolds(const FKestrelMcpCall& Call) const
{
	// What an undo would take changes with whatever anybody has done meanwhile.
	return KestrelMcpHistoryTools::IsOne(*Call.Tool) ? MakePlan(Call)->LooksLike(*Call.Plan) : Call.Plan->StillHolds();
}

void FKestrelMcpCallQueue::Decide(const FCallRef& Call)
{
	Call->Plan = MakePlan(*Call);
	// Nobody is asked about what would fail; but that, too, tells something of a place that one is asked about.
	if (!Call->Plan->Refusal.IsEmpty() && Call->Plan->Cautions.IsEmpty())
	{
		Finish(Call, Call->Plan->Refusal);
		return;
	}
	switch (KestrelMcpApproval::Decide(*Call->Plan))
	{
	case EKestrelMcpDecision::Run:
		NoteThatNobodyWasAsked(*Call);
		Run(Call);
		break;
	case EKestrelMcpDecision::Deny:
		Finish(Call, McpCallQueue::Denied);
		break;
	case EKestrelMcpDecision::Refuse:
		Finish(Call, McpCallQueue::Refused);
		break;
	case EKestrelMcpDecision::Ask:
		Call->State = EKestrelMcpCallState::AwaitingApproval;
		OnChanged.Broadcast();
		break;
	}
}

void FKestrelMcpCallQueue::NoteThatNobodyWasAsked(const FKestrelMcpCall& Call) const
{
	if (Call.Plan->Kind != EKestrelToolKind::Read && KestrelMcpApproval::GetAllowedByCommandLine().IsEmpty())
	{
		FKestrelInterface::Get().AddHint(FText::Format(LOCTEXT("Allowed", "Allowed by a rule, for {0}: {1}"),
			FText::FromString(Call.Client->Name), Call.Plan->Describe()));
	}
}

void FKestrelMcpCallQueue::Run(const FCallRef& Call)
{
	Call->State = EKestrelMcpCallState::Running;
	if (Call->Plan->Kind == EKestrelToolKind::Read)
	{
		RunReading(Call);
		return;
	}
	Call->Changes = Call->Changes.IsValid() ? Call->Changes : Call->Client->GetOrAddChanges();
	FKestrelMcpScope Scope(*Call->Changes);
	FString Result = Call->Plan->Apply();
	Result = Result.IsEmpty() ? FString::Join(Scope.GetLines(), TEXT("\n")) : Result;
	// A compile that could not even begin has ended by now.
	const bool bGoesOn = Call->Plan->AnswersLater() && !FFileUtils::IsError(Result);
	if (Call->State == EKestrelMcpCallState::Running && !bGoesOn)
	{
		Finish(Call, Result);
	}
}

void FKestrelMcpCallQueue::RunReading(const FCallRef& Call)
{
	// Nobody needs to be told.
	const TSharedRef<IKestrelTextWork> Work = Call->Plan->Begin(EKestrelStatusLine::Hidden);
	Call->Runner.Start(Work, [this, Weak = TWeakPtr<FKestrelMcpCall>(Call), Work]() {
		if (const TSharedPtr<FKestrelMcpCall> Ended = Weak.Pin())
		{
			Finish(Ended.ToSharedRef(), Work->TakeText());
		}
	});
}

void FKestrelMcpCallQueue::Finish(const FCallRef& Call, const FString& Result)
{
	Call->State = EKestrelMcpCallState::Done;
	Call->Result = Result;
	const FKestrelMcpReply Reply = MoveTemp(Call->Reply);
	Call->Reply.Reset();
	if (Reply)
	{
		Calls.Remove(Call);
		const TSharedRef<FJsonObject> Answer = KestrelMcpTools::MakeResult(*Call->Client, Call->Tool->WireName, Result);
		if (Call->Client->IsStateless() && Call->Changes.IsValid())
		{
			KestrelMcpTools::AddChangesId(*Answer, Call->Changes->Key);
		}
		Reply(FKestrelMcpAnswer::Of(Answer));
	}
}

void FKestrelMcpCallQueue::OnCompileFinished(
	const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess)
{
	for (const FCallRef& Call : TArray<FCallRef>(Calls))
	{
		if (ToolId.Equals(McpCallQueue::MakeToolUseId(*Call)) && Call->State == EKestrelMcpCallState::Running)
		{
			Finish(Call, McpCallQueue::DescribeCompile(Logs, bSuccess));
		}
	}
}

#undef LOCTEXT_NAMESPACE
