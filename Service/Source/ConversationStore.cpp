#include "ConversationStore.h"

#include "RandomId.h"

#include <algorithm>
#include <utility>

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

HttpReply ConversationStore::Command(Turn UserTurn)
{
	std::vector<std::unique_ptr<Conversation>> Ended; // destroyed after the lock is released
	const std::lock_guard Lock(Mutex);
	Entry& Current = Conversations[{ UserTurn.KeyName, UserTurn.ConversationId }];
	Current.Age = ++NumTurns;
	if (!Current.Talk || !UserTurn.FileStructure.is_null())
	{
		Ended.push_back(std::exchange(Current.Talk, TheResponder->Begin(UserTurn)));
	}
	Current.RequestId = UserTurn.RequestId = NewRandomId();
	Answer Answered = Current.Talk->Respond(UserTurn);
	HttpReply Reply = Answered.CommandReply.value_or(HttpReply::FromJson({ { "request_id", Current.RequestId } }));
	Reply.DelaySeconds = Answered.CommandDelaySeconds;
	Current.StatusReplies = std::move(Answered.StatusReplies);
	Current.NextStatusReply = 0;
	while (Conversations.size() > MaxConversations)
	{
		Ended.push_back(TakeOldest());
	}
	return Reply;
}

HttpReply ConversationStore::Status(const std::string& RequestId, const std::string& KeyName)
{
	const std::lock_guard Lock(Mutex);
	const auto Found = std::find_if(Conversations.begin(), Conversations.end(),
		[&](const auto& Pair) { return Pair.second.RequestId == RequestId && Pair.first.first == KeyName; });
	if (Found == Conversations.end() || Found->second.StatusReplies.empty())
	{
		return NoSuchRequest();
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
