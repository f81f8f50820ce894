#include "ConversationStore.h"

#include <algorithm>
#include <random>
#include <utility>

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
	std::vector<std::unique_ptr<Conversation>> Ended; // destroyed after the lock is released
	const std::lock_guard Lock(Mutex);
	Entry& Current = Conversations[ConversationId];
	Current.Age = ++NumTurns;
	if (!Current.Talk || !UserTurn.FileStructure.is_null())
	{
		Ended.push_back(std::exchange(Current.Talk, TheResponder.Begin(UserTurn)));
	}
	Answer Answered = Current.Talk->Respond(UserTurn);
	Current.RequestId = NewRequestId();
	Current.StatusReplies = std::move(Answered.StatusReplies);
	Current.NextStatusReply = 0;
	Current.Pending = std::move(Answered.Pending);

	HttpReply Reply = Answered.CommandReply.value_or(HttpReply::FromJson({ { "request_id", Current.RequestId } }));
	Reply.DelaySeconds = Answered.CommandDelaySeconds;
	while (Conversations.size() > MaxConversations)
	{
		Ended.push_back(TakeOldest());
	}
	return Reply;
}

HttpReply ConversationStore::Status(const std::string& RequestId)
{
	const std::lock_guard Lock(Mutex);
	const auto Found = std::find_if(Conversations.begin(), Conversations.end(),
		[&RequestId](const auto& Pair) { return Pair.second.RequestId == RequestId; });
	if (Found != Conversations.end() && Found->second.Pending)
	{
		return Found->second.Pending->Poll();
	}
	if (Found == Conversations.end() || Found->second.StatusReplies.empty())
	{
		return HttpReply::FromJson({ { "status", "FAILED" }, { "error", "There is no such request." } });
	}
	Entry& Current = Found->second;
	const HttpReply Reply = Current.StatusReplies[Current.NextStatusReply];
	Current.NextStatusReply = std::min(Current.NextStatusReply + 1, Current.StatusReplies.size() - 1);
	return Reply;
}

std::unique_ptr<Conversation> ConversationStore::TakeOldest()
{
	const auto Oldest = std::min_element(Conversations.begin(), Conversations.end(),
		[](const auto& A, const auto& B) { return A.second.Age < B.second.Age; });
	std::unique_ptr<Conversation> Taken = std::move(Oldest->second.Talk);
	Conversations.erase(Oldest);
	return Taken;
}
