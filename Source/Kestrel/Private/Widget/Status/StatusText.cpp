#include "Widget/Status/StatusText.h"

#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/RunStatus.h"

#define LOCTEXT_NAMESPACE "KestrelStatusText"

namespace KestrelStatusText
{
namespace
{
/** Empty in states in which there is nothing to tell. */
FText DescribeState()
{
	const FAgent& Agent = FAgent::Get();
	switch (Agent.GetAgentState())
	{
	case EAgentState::None:
	case EAgentState::Indexing:
	case EAgentState::Idle:
		return FText::GetEmpty();
	case EAgentState::AwaitingApproval:
		return LOCTEXT("AwaitingApproval", "Waits for you");
	case EAgentState::AwaitingUpdate:
		return LOCTEXT("AwaitingUpdate", "Done");
	case EAgentState::Pause:
		return LOCTEXT("Paused", "Paused");
	default:
		return Agent.WasPaused() ? LOCTEXT("Pausing", "Pausing") : LOCTEXT("Working", "Working");
	}
}

FText DescribeActions(const FKestrelRunStatus& Run)
{
	const FText Actions = FText::Format(
		LOCTEXT("Actions", "{0} {0}|plural(one=action,other=actions)"), FText::AsNumber(Run.GetNumActions()));
	return Run.GetNumFailures() == 0
			   ? Actions
			   : FText::Format(LOCTEXT("Failures", "{0}, {1} failed"), Actions, FText::AsNumber(Run.GetNumFailures()));
}

/** Work in the editor itself that takes several frames; empty when there is none. */
FText DescribeWork()
{
	if (const TOptional<int32> NumFolders = FHTTPAPI::Get().GetNumFoldersListed())
	{
		return FText::Format(
			LOCTEXT("Listing", "listing the project: {0} {0}|plural(one=folder,other=folders)"), NumFolders.GetValue());
	}
	const TOptional<float> Progress = FAgent::Get().GetToolProgress();
	if (!Progress.IsSet())
	{
		return FText::GetEmpty();
	}
	constexpr float Hundred = 100.0f;
	return Progress.GetValue() < 0.0f ? LOCTEXT("Tool", "a tool is at work")
									  : FText::Format(LOCTEXT("ToolProgress", "tool at {0} %"),
											FText::AsNumber(FMath::FloorToInt(Progress.GetValue() * Hundred)));
}

/** What is known at the moment, in the order in which it is shown. */
TArray<FText> CollectItems(const FKestrelRunStatus& Run)
{
	TArray<FText> Items;
	Items.Add(
		FText::Format(INVTEXT("{0} {1}"), DescribeState(), FText::FromString(DescribeSeconds(Run.GetSecondsOfWork()))));
	const FText Work = DescribeWork();
	if (!Work.IsEmpty())
	{
		Items.Add(Work);
	}
	if (Run.GetNumTurns() > 0)
	{
		Items.Add(FText::Format(LOCTEXT("Turn", "turn {0}"), FText::AsNumber(Run.GetNumTurns())));
	}
	if (Run.GetNumActions() > 0 || Run.GetNumFailures() > 0)
	{
		Items.Add(DescribeActions(Run));
	}
	if (const TOptional<double> Poll = Run.GetSecondsToNextPoll())
	{
		Items.Add(
			FText::Format(LOCTEXT("Poll", "next poll {0} s"), FText::AsNumber(FMath::CeilToInt(Poll.GetValue()))));
	}
	const FKestrelServiceProgress& Progress = Run.GetProgress();
	if (Progress.Tokens.IsSet())
	{
		Items.Add(
			FText::Format(LOCTEXT("Tokens", "{0} {0}|plural(one=token,other=tokens)"), Progress.Tokens.GetValue()));
	}
	if (Progress.Attempt.Get(1) > 1)
	{
		Items.Add(FText::Format(LOCTEXT("Attempt", "attempt {0}"), FText::AsNumber(Progress.Attempt.GetValue())));
	}
	return Items;
}

FText Join(const TArray<FText>& Items, const TCHAR* Between)
{
	TArray<FString> Words;
	for (const FText& Item : Items)
	{
		Words.Add(Item.ToString());
	}
	return FText::FromString(FString::Join(Words, Between));
}
}

FString DescribeSeconds(double Seconds)
{
	constexpr int32 SecondsOfMinute = 60;
	constexpr int32 SecondsOfHour = 3600;
	constexpr double MostSeconds = 1e6; // a conversation that was forgotten for days
	const int32 Whole = static_cast<int32>(FMath::Clamp(Seconds, 0.0, MostSeconds));
	const int32 Minutes = Whole % SecondsOfHour / SecondsOfMinute;
	return Whole < SecondsOfHour
			   ? FString::Printf(TEXT("%d:%02d"), Minutes, Whole % SecondsOfMinute)
			   : FString::Printf(TEXT("%d:%02d:%02d"), Whole / SecondsOfHour, Minutes, Whole % SecondsOfMinute);
}

FText MakeLine()
{
	return DescribeState().IsEmpty() ? FText::GetEmpty()
									 : Join(CollectItems(FKestrelRunStatus::Get()), TEXT(" \u00B7 "));
}

FText MakeToolTip()
{
	const FText Meaning = LOCTEXT("Meaning",
		"The time is that of the work since your last word; a turn is one answer of the service. Tokens and attempts are "
		"what the service reports about the present turn.");
	return FText::Format(INVTEXT("{0}\n\n{1}"), Join(CollectItems(FKestrelRunStatus::Get()), TEXT("\n")), Meaning);
}
}

#undef LOCTEXT_NAMESPACE
