#include "Agent/RunStatus.h"

#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Tools/ToolPlan.h"
#include "Dom/JsonObject.h"
#include "HAL/PlatformTime.h"

#define LOCTEXT_NAMESPACE "KestrelRunStatus"

namespace KestrelRunStatus
{
/** A whole number that a person can make something of; a service can send anything. */
TOptional<int64> FindCount(const FJsonObject& Object, const TCHAR* Name)
{
	constexpr double Largest = 1e15;
	double Number = 0.0;
	if (!Object.TryGetNumberField(Name, Number) || !(Number >= 0.0 && Number <= Largest))
	{
		return {};
	}
	return static_cast<int64>(Number);
}

/** The states in which the service works on a turn, and may say how far it is. */
bool IsInTurn(EAgentState State)
{
	return State == EAgentState::PollRequest;
}
}

FKestrelRunStatus& FKestrelRunStatus::Get()
{
	static FKestrelRunStatus Instance;
	return Instance;
}

void FKestrelRunStatus::Start()
{
	if (bIsStarted)
	{
		return;
	}
	bIsStarted = true;
	State = FAgent::Get().GetAgentState();
	StateChangedHandle = FAgent::Get().OnStateChanged().AddRaw(this, &FKestrelRunStatus::OnStateChanged);
	ToolDoneHandle = FAgent::Get().OnToolDone().AddRaw(this, &FKestrelRunStatus::OnToolDone);
	CompileFinishedHandle =
		FCompilationManager::OnCompileFinished().AddRaw(this, &FKestrelRunStatus::OnCompileFinished);
	FHTTPAPI::Get().OnPollStatusUpdate.BindRaw(this, &FKestrelRunStatus::OnPollStatusUpdate);
}

void FKestrelRunStatus::Stop()
{
	if (!bIsStarted)
	{
		return;
	}
	bIsStarted = false;
	FAgent::Get().OnStateChanged().Remove(StateChangedHandle);
	FAgent::Get().OnToolDone().Remove(ToolDoneHandle);
	FCompilationManager::OnCompileFinished().Remove(CompileFinishedHandle);
	FHTTPAPI::Get().OnPollStatusUpdate.Unbind();
}

bool FKestrelRunStatus::IsWaitingForUser(EAgentState State)
{
	return State == EAgentState::Idle || State == EAgentState::Pause || State == EAgentState::AwaitingUpdate ||
		   State == EAgentState::AwaitingApproval;
}

bool FKestrelRunStatus::IsWorking()
{
	return !IsWaitingForUser(FAgent::Get().GetAgentState());
}

double FKestrelRunStatus::GetSecondsOfWork() const
{
	return IsWaitingForUser(State) ? SecondsOfWork : FPlatformTime::Seconds() - WorkBegan;
}

TOptional<double> FKestrelRunStatus::GetSecondsToNextPoll() const
{
	return FHTTPAPI::Get().GetSecondsToNextPoll();
}

void FKestrelRunStatus::OnStateChanged()
{
	const EAgentState Before = State;
	State = FAgent::Get().GetAgentState();
	const double Now = FPlatformTime::Seconds();
	if (IsWaitingForUser(State) && !IsWaitingForUser(Before))
	{
		SecondsOfWork = Now - WorkBegan;
	}
	else if (!IsWaitingForUser(State) && IsWaitingForUser(Before))
	{
		WorkBegan = Now;
	}
	if (State == EAgentState::InitialRequest)
	{
		NumTurns = 0;
		NumActions = 0;
		NumFailures = 0;
	}
	NumTurns += State == EAgentState::PollRequest && Before != State ? 1 : 0;
	if (!KestrelRunStatus::IsInTurn(State))
	{
		Progress = FKestrelServiceProgress();
	}
	// The user has stopped it, or said something else.
	if (State == EAgentState::Idle || State == EAgentState::InitialRequest || State == EAgentState::Pause)
	{
		ForgetFailures();
	}
	Changed.Broadcast();
}

void FKestrelRunStatus::OnToolDone(const FKestrelToolPlan& Plan, const FString& Result)
{
	++NumActions;
	if (FFileUtils::IsError(Result))
	{
		NoteFailure(Plan.Verb, Plan.Target, Result);
	}
	else if (!Plan.LeavesAllAsItIs() && !Plan.AnswersLater())
	{
		ForgetFailures();
	}
	Changed.Broadcast();
}

void FKestrelRunStatus::OnCompileFinished(
	const TArray<TSharedPtr<FJsonObject>>& Messages, const FString& ToolId, const FString& Logs, bool bSuccess)
{
	if (FKestrelInterface::IsCompileLabel(ToolId) || !FAgent::Get().IsCompileOfPanel())
	{
		return;
	}
	if (bSuccess)
	{
		ForgetFailures();
	}
	else
	{
		NoteFailure(LOCTEXT("Compile", "Compile"), FString(), Logs);
	}
	Changed.Broadcast();
}

void FKestrelRunStatus::NoteFailure(const FText& What, const FString& Target, const FString& Result)
{
	++NumFailures;
	const bool bIsSame = NumSameFailures > 0 && LastAction.ToString().Equals(What.ToString()) &&
						 LastTarget.Equals(Target) && LastResult.Equals(Result);
	NumSameFailures = bIsSame ? NumSameFailures + 1 : 1;
	LastAction = What;
	LastTarget = Target;
	LastResult = Result;
}

void FKestrelRunStatus::ForgetFailures()
{
	NumSameFailures = 0;
	LastResult.Empty();
}

FText FKestrelRunStatus::DescribeLastFailure() const
{
	constexpr int32 MaxLength = 200; // two lines of a narrow panel say enough
	const auto Show = [](const FString& Text) {
		const FString Shown = KestrelDisplayText::EscapeLine(KestrelKeyGuard::Hide(Text).Left(MaxLength));
		return FText::FromString(Text.Len() > MaxLength ? Shown + TEXT("\u2026") : Shown);
	};
	const FText Action =
		LastTarget.IsEmpty() ? LastAction : FText::Format(INVTEXT("{0} {1}"), LastAction, Show(LastTarget));
	return FText::Format(INVTEXT("{0}\n{1}"), Action, Show(LastResult));
}

void FKestrelRunStatus::OnPollStatusUpdate(
	const FString& RequestId, const FString& ServiceStatus, const TSharedPtr<FJsonObject> StatusObject)
{
	if (!KestrelRunStatus::IsInTurn(State) || !StatusObject.IsValid())
	{
		return;
	}
	FString Partial;
	if (StatusObject->TryGetStringField(TEXT("partial"), Partial))
	{
		Progress.Partial = KestrelKeyGuard::Hide(Partial).Right(MaxPartialLength);
	}
	Progress.Tokens = KestrelRunStatus::FindCount(*StatusObject, TEXT("tokens"));
	Progress.Attempt = KestrelRunStatus::FindCount(*StatusObject, TEXT("attempt"));
	Changed.Broadcast();
}

#undef LOCTEXT_NAMESPACE
