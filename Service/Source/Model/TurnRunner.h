#pragma once

#include "ContextBudget.h"
#include "HistoryCompactor.h"
#include "KeyRing.h"
#include "ModelClient.h"
#include "ModelStore.h"
#include "ProjectTree.h"
#include "RepeatedFailures.h"
#include "SystemPrompt.h"
#include "UsageLimits.h"

/** What all conversations with a model share. */
struct ModelContext
{
	ModelConfig Config;
	std::shared_ptr<ModelStore> Store; // null where nothing has to last
	std::unique_ptr<KeyRing> Keys;     // null where there are none
	DailyConsumption Today;
};

/**
 * Works out the answers of one conversation: gives the model what the client sent, and the client what it can use of
 * what the model answers. One thread at a time.
 */
class TurnRunner
{
public:
	explicit TurnRunner(ModelContext& InContext);

	/** @return the status reply that ends the turn */
	Json Run(const Turn& UserTurn, RunningTurn& Running);
	/** Remembers what the client sent in a turn that another one has replaced. */
	void Absorb(const Turn& UserTurn);

	/** By the whole conversation. */
	const ModelConsumption& GetUsed() const { return Used; }

	/** All that a later run of the service needs to continue. */
	Json ToJson() const;
	/** @return false when it is not what ToJson makes */
	bool FromJson(const Json& State);

private:
	/** Describes the project, once. @return the call that reads its rules, if it has any */
	std::optional<ToolCall> Begin(const Turn& UserTurn);
	std::vector<ToolResult> ReadResults(const Json& Results, std::string& Text);
	/** Continues the prompt that waited for the rules. */
	void EndReadingRules(const Turn& UserTurn, std::vector<ToolResult>& Results, std::string& Text);
	void TakeRules(std::vector<ToolResult>& Results);
	void NoteResult(ToolResult& Result, const Json& Sent);
	/** Counts a failure, and tells the model when it has been one too many. */
	void NoteOutcome(const ToolCall& Call, ToolResult& Result);

	Json Answer(const std::string& KeyName, RunningTurn& Running);
	ModelResult AskModel(const std::string& KeyName, RunningTurn& Running);
	void RecordUsage(const std::string& KeyName, const ModelUsage& Usage, double Seconds, RunningTurn& Running);
	/** Checks the reply's calls. @return the results that tell the model what is wrong; none if all is well */
	std::vector<ToolResult> CheckCalls(ModelReply& Reply);
	bool MayContinue(const ToolCall& Call) const;
	/** Whether builds are all that there is no result of yet. */
	bool IsOnlyBuilding() const;
	Json Complete(const ModelReply& Reply);
	ModelRequest MakeRequest() const;

	ModelContext& Context;
	ModelClient Client;
	ContextBudget Budget;
	HistoryCompactor Compactor;
	History Conversation;
	RepeatedFailures Failures;
	ModelConsumption Used;
	std::string System;
	ProjectDescription Project;
	std::string RulesCallId;    // while the project's rules are being read
	std::string DelayedMessage; // the prompt that waits for them
	bool bTruncatedByServer = false;
	bool bToldOfTruncation = false;
};
