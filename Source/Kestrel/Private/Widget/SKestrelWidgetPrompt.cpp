#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Containers/Ticker.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widget/SKestrelWidget.h"

void SKestrelWidget::QueuePrompt()
{
	PromptBox->Queue();
	// Not when the state changes: the agent may be in the middle of an answer then.
	FTSTicker::GetCoreTicker().RemoveTicker(QueueTicker);
	QueueTicker =
		FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateSP(this, &SKestrelWidget::SendQueuedPrompt));
}

bool SKestrelWidget::SendQueuedPrompt(float DeltaTime)
{
	const EAgentState State = FAgent::Get().GetAgentState();
	if (!PromptBox->HasQueued())
	{
		return false;
	}
	if (State == EAgentState::Idle)
	{
		UnansweredPrompt = PromptBox->TakeQueued();
		FKestrelInterface::Get().InitialRequest(UnansweredPrompt);
	}
	else if (State == EAgentState::AwaitingUpdate)
	{
		UnansweredPrompt = PromptBox->TakeQueued();
		FKestrelInterface::Get().Continue(UnansweredPrompt);
	}
	return PromptBox->HasQueued();
}

void SKestrelWidget::GiveBackUnansweredPrompt()
{
	const EAgentState State = FAgent::Get().GetAgentState();
	if (State == EAgentState::PollResponse)
	{
		UnansweredPrompt.Empty();
	}
	if (State != EAgentState::Idle)
	{
		return;
	}
	const bool bFailed = FAgent::Get().GetPreviousState() == EAgentState::CancelRequest;
	const bool bWasEmpty = PromptBox->IsEmpty();
	// What waits was meant for the conversation that has just failed or been ended.
	if (bFailed || FAgent::Get().GetPreviousState() == EAgentState::EndRequest)
	{
		PromptBox->Withdraw();
	}
	// Beside what the user has written meanwhile it would only be in the way: Up recalls it.
	if (bFailed && bWasEmpty)
	{
		PromptBox->PutBefore(UnansweredPrompt);
	}
	UnansweredPrompt.Empty();
}
