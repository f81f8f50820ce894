#pragma once

#include "CoreMinimal.h"

#include "KestrelAgentState.generated.h"

/** The states of the agent, which manage the flow of requests and responses between the user, the AI system and the
 * editor. */
UENUM()
enum class EAgentState : uint8
{
	/** Default state */
	None,
	/** Indexing state */
	Indexing,
	/** State when no request is being processed */
	Idle,
	/** Processing the initial user request/prompt */
	InitialRequest,
	/** Sending a follow-up prompt of the user within the conversation */
	RegularRequest,
	/** Actively polling the AI system for a response */
	PollRequest,
	/** Processing a received response from the AI system */
	PollResponse,
	/** Waiting for user Approval before proceeding with an action */
	AwaitingApproval,
	/** User has approved the action, proceeding with execution */
	Approved,
	/** User want to update the request */
	Continue,
	/** Waiting for user Update before proceeding with an action */
	AwaitingUpdate,
	/** Request has been Paused */
	Pause,
	/** Request has been cancelled, cleaning up and returning to Idle */
	CancelRequest,
	/** Request processing has completed successfully */
	EndRequest
};

/** What goes with a new state. */
struct FAgentStateData
{
	virtual ~FAgentStateData() = default;
};

/** A state that needs a text. */
struct FTextAgentStateData : public FAgentStateData
{
	explicit FTextAgentStateData(const FString& InText)
		: Text(InText)
	{
	}

	FString Text;
};

/** The prompt, for `InitialRequest`. */
struct FInitialRequestStateData : public FTextAgentStateData
{
	using FTextAgentStateData::FTextAgentStateData;
};

/** The message, for `RegularRequest`. */
struct FRegularRequestStateData : public FTextAgentStateData
{
	using FTextAgentStateData::FTextAgentStateData;
};

/** A message, for `Continue`; may be empty. */
struct FMessageAgentStateData : public FTextAgentStateData
{
	using FTextAgentStateData::FTextAgentStateData;
};

/** The reason, for `CancelRequest`; may be empty. */
struct FCancelRequestStateData : public FTextAgentStateData
{
	using FTextAgentStateData::FTextAgentStateData;
};

/** The closing text, for `EndRequest`; may be empty. */
struct FEndRequestStateData : public FTextAgentStateData
{
	using FTextAgentStateData::FTextAgentStateData;
};
