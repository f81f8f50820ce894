#include "OperatorViews.h"

#include "History.h"
#include "JsonFields.h"
#include "KeyRing.h"

#include <ctime>
#include <limits>

namespace
{
constexpr size_t PageSize = 50;

void AddMessage(Json& Messages, const char* Role, const std::string& Title, const std::string& Text)
{
	if (!Text.empty())
	{
		Messages.push_back({ { "role", Role }, { "title", Title }, { "text", Text } });
	}
}

void AddUserMessage(Json& Messages, const UserMessage& Message)
{
	for (const ToolResult& Result : Message.Results)
	{
		AddMessage(Messages, "tool", Result.bError ? "Tool result, failed" : "Tool result", Result.Content);
	}
	AddMessage(Messages, "user", "User", Message.Text);
}

void AddModelMessage(Json& Messages, const ModelMessage& Message)
{
	AddMessage(Messages, "model", "Model", Message.GetText());
	for (const ToolCall* Call : Message.GetCalls())
	{
		AddMessage(Messages, "model", "Tool call: " + Call->Name, Call->Input.dump(2));
	}
}

/** Turns that the state does not have yet. */
void AddWaitingTurn(Json& Messages, const Turn& Waiting)
{
	for (const Json& Result : Waiting.ToolResults.is_array() ? Waiting.ToolResults : Json::array())
	{
		AddMessage(Messages, "tool", "Tool result", GetText(Result, "content"));
	}
	AddMessage(Messages, "user", "User", Waiting.Message);
}
}

Json OperatorViews::GetOverview() const
{
	constexpr int64_t SecondsOfADay = 24 * 60 * 60;
	const ModelConsumption Today = Store.GetUsage(std::time(nullptr) / SecondsOfADay);
	const SqlRows Running = Store.GetDatabase().Run(
		std::string("SELECT COUNT(*) FROM conversations WHERE reply IS NULL AND lease_until > ") +
		Store.GetDatabase().GetDialect().Now);
	Json Keys = Json::array();
	for (const KeyUse& Each : KeyRing(Store.GetDatabase()).List())
	{
		Keys.push_back({ { "name", Each.Key.Name }, { "budget", Each.Key.Budget }, { "cost", Each.Cost },
			{ "tokens", Each.Tokens }, { "requests", Each.Requests } });
	}
	return { { "today", { { "requests", Today.Requests }, { "tokens", Today.Tokens }, { "cost", Today.Cost },
							{ "running", Running[0].GetInteger(0) } } },
		{ "keys", Keys } };
}

Json OperatorViews::GetConversations(int64_t Before, const std::string& BeforeId) const
{
	Json Page = Json::array();
	const SqlRows Rows = Store.GetDatabase().Run(
		"SELECT id, key_name, updated, tokens, cost, error, CASE WHEN reply IS NULL THEN 1 ELSE 0 END FROM conversations "
		"WHERE updated < $1 OR (updated = $1 AND id > $2) ORDER BY updated DESC, id LIMIT " +
			std::to_string(PageSize + 1),
		{ Before > 0 ? Before : std::numeric_limits<int64_t>::max(), BeforeId });
	for (size_t Index = 0; Index < std::min(Rows.size(), PageSize); ++Index)
	{
		const SqlRow& Row = Rows[Index];
		const bool bWaiting = Row.GetInteger(6) == 1;
		Page.push_back({ { "id", Row.GetText(0) }, { "key", Row.GetText(1) }, { "updated", Row.GetInteger(2) },
			{ "tokens", Row.GetInteger(3) }, { "cost", Row.GetReal(4) }, { "error", bWaiting ? "" : Row.GetText(5) },
			{ "state", bWaiting                 ? "working"
					   : Row.GetText(5).empty() ? "answered"
												: "failed" } });
	}
	return { { "conversations", Page }, { "more", Rows.size() > PageSize } };
}

Json OperatorViews::GetConversation(const std::string& Id) const
{
	const SqlRows Found =
		Store.GetDatabase().Run("SELECT request_id, state, error FROM conversations WHERE id = $1", { Id });
	if (Found.empty())
	{
		return Json();
	}
	Json Messages = Json::array();
	History Said;
	if (Said.FromJson(GetMember(ParseUntrustedJson(Found[0].GetText(1)), "history")))
	{
		for (const Exchange& Each : Said.GetExchanges())
		{
			AddUserMessage(Messages, Each.Request);
			AddModelMessage(Messages, Each.Reply);
		}
		AddUserMessage(Messages, Said.GetPending());
	}
	if (const std::optional<StoredConversation> Stored = Store.Load(Found[0].GetText(0)))
	{
		for (const Turn& Each : Stored->Turns)
		{
			AddWaitingTurn(Messages, Each);
		}
	}
	AddMessage(Messages, "error", "Error", Found[0].GetText(2));
	return { { "messages", Messages } };
}
