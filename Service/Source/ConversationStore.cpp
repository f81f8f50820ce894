#include "ConversationStore.h"

#include <algorithm>
#include <random>

namespace
{
std::string NewRequestId()
{
	static const char Digits[] = "0123456789abcdef";
	std::random_device Random;
	std::string Id;
	for (int Index = 0; Index < 32; ++Index)
	{
		Id += Digits[Random() % 16];
	}
	return Id;
}
}

Answer Answer::Completed(const Json& Response)
{
	Answer Result;
	Result.StatusReplies.push_back(HttpReply::FromJson({ { "status", "COMPLETED" }, { "response", Response } }));
	return Result;
}

Answer Answer::Failed(const std::string& Error)
{
	Answer Result;
	Result.StatusReplies.push_back(HttpReply::FromJson({ { "status", "FAILED" }, { "error", Error } }));
	return Result;
}

HttpReply ConversationStore::Command(const std::string& ConversationId, const Turn& UserTurn)
{
	const std::lock_guard Lock(Mutex);
	Entry& Current = Conversations[ConversationId];
	Current.Age = ++NumTurns;
	if (!Current.Talk || !UserTurn.FileStructure.is_null())
	{
		Current.Talk = TheResponder.Begin(UserTurn);
	}
	Answer Answered = Current.Talk->Respond(UserTurn);
	Current.RequestId = NewRequestId();
	Current.StatusReplies = std::move(Answered.StatusReplies);
	Current.NextStatusReply = 0;

	HttpReply Reply = Answered.CommandReply.value_or(HttpReply::FromJson({ { "request_id", Current.RequestId } }));
	Reply.DelaySeconds = Answered.CommandDelaySeconds;
	DropOldest();
	return Reply;
}

HttpReply ConversationStore::Status(const std::string& RequestId)
{
	const std::lock_guard Lock(Mutex);
	const auto Found = std::find_if(Conversations.begin(), Conversations.end(),
		[&RequestId](const auto& Pair) { return Pair.second.RequestId == RequestId; });
	if (Found == Conversations.end() || Found->second.StatusReplies.empty())
	{
		return HttpReply::FromJson({ { "status", "FAILED" }, { "error", "There is no such request." } });
	}
	Entry& Current = Found->second;
	const HttpReply Reply = Current.StatusReplies[Current.NextStatusReply];
	Current.NextStatusReply = std::min(Current.NextStatusReply + 1, Current.StatusReplies.size() - 1);
	return Reply;
}

void ConversationStore::DropOldest()
{
	while (Conversations.size() > MaxConversations)
	{
		Conversations.erase(std::min_element(Conversations.begin(), Conversations.end(),
			[](const auto& A, const auto& B) { return A.second.Age < B.second.Age; }));
	}
}
