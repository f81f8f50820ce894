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

HttpReply ConversationStore::Command(Turn UserTurn)
{
	std::vector<std::unique_ptr<Conversation>> Ended; // destroyed after the lock is released
	const std::lock_guard Lock(Mutex);
	Entry& Current = Conversations[UserTurn.ConversationId];
	Current.Age = ++NumTurns;
	if (!Current.Talk && UserTurn.FileStructure.is_null())
	{
		Current.Talk = TheResponder.Reopen(UserTurn.ConversationId);
	}
	if (!Current.Talk || !UserTurn.FileStructure.is_null())
	{
		Ended.push_back(std::exchange(Current.Talk, TheResponder.Begin(UserTurn)));
	}
	Current.RequestId = UserTurn.RequestId = NewRequestId();
	Answer Answered = Current.Talk->Respond(UserTurn);
	HttpReply Reply = Answered.CommandReply.value_or(HttpReply::FromJson({ { "request_id", Current.RequestId } }));
	Reply.DelaySeconds = Answered.CommandDelaySeconds;
	Current.Take(std::move(Answered));
	while (Conversations.size() > MaxConversations)
	{
		Ended.push_back(TakeOldest());
	}
	return Reply;
}

void ConversationStore::Entry::Take(Answer Answered)
{
	StatusReplies = std::move(Answered.StatusReplies);
	NextStatusReply = 0;
	Pending = std::move(Answered.Pending);
}

ConversationStore::Entry* ConversationStore::FindRequest(const std::string& RequestId)
{
	const auto Found = std::find_if(Conversations.begin(), Conversations.end(),
		[&RequestId](const auto& Pair) { return Pair.second.RequestId == RequestId; });
	if (Found != Conversations.end())
	{
		return &Found->second;
	}
	const std::string Id = TheResponder.FindConversation(RequestId);
	std::unique_ptr<Conversation> Reopened = Id.empty() || Conversations.count(Id) ? nullptr : TheResponder.Reopen(Id);
	if (!Reopened)
	{
		return nullptr;
	}
	Entry& Current = Conversations[Id];
	Current.Talk = std::move(Reopened);
	Current.RequestId = RequestId;
	Current.Age = ++NumTurns;
	Current.Take(Current.Talk->Resume());
	return &Current;
}

HttpReply ConversationStore::Status(const std::string& RequestId)
{
	const std::lock_guard Lock(Mutex);
	Entry* const Current = FindRequest(RequestId);
	if (Current && Current->Pending)
	{
		return Current->Pending->Poll();
	}
	if (!Current || Current->StatusReplies.empty())
	{
		return HttpReply::FromJson({ { "status", "FAILED" }, { "error", "There is no such request." } });
	}
	const HttpReply Reply = Current->StatusReplies[Current->NextStatusReply];
	Current->NextStatusReply = std::min(Current->NextStatusReply + 1, Current->StatusReplies.size() - 1);
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
