#pragma once

#include "ScriptedModelServer.h"
#include "ToolCatalog.h"
#include "TurnRunner.h"

#include <memory>

/** A conversation with a scripted model server, turn by turn, without the service around it. */
class ModelTalk
{
public:
	static constexpr const char* Key = "canary-key-5309";

	explicit ModelTalk(ModelFormat InFormat, std::vector<ScriptedReply> Replies = {})
		: Server(InFormat, std::move(Replies))
	{
		ModelConfig& Config = Context.Config;
		Config.Server.Format = InFormat;
		Config.Server.BaseUrl = Server.GetUrl();
		Config.Server.Model = "scripted";
		Config.Server.Key = Secret(Key);
		Config.Server.ContextTokens = 100'000;
		Config.Timeouts = { 2, 1, 1, 20, 20, 60 };
		Config.Retries = { 3, 0.01, 0.02 };
		Config.AutoContinueTools = ToolCatalog::Get().ReadOnlyTools();
	}

	/** @return the status reply that ends the turn */
	Json Send(const std::string& Message, const Json& Results = Json())
	{
		if (!Runner)
		{
			Runner = std::make_unique<TurnRunner>(Context);
		}
		Turn UserTurn;
		UserTurn.Message = Message;
		UserTurn.EngineVersion = "5.4";
		UserTurn.ToolResults = Results;
		UserTurn.FileStructure = std::exchange(Tree, Json());
		RunningTurn Running(60);
		return Runner->Run(UserTurn, Running);
	}

	/** All that a user would read in a reply: its text or its error. */
	static std::string TextOf(const Json& Reply)
	{
		std::string Text = Reply.value("error", "");
		for (const Json& Block : BlocksOf(Reply))
		{
			Text += Block.value("text", "");
		}
		return Text;
	}
	static Json BlocksOf(const Json& Reply)
	{
		return Reply.contains("response") ? Reply["response"]["response"] : Json::array();
	}
	/** The tool uses of a reply. */
	static std::vector<Json> CallsOf(const Json& Reply)
	{
		std::vector<Json> Calls;
		for (const Json& Block : BlocksOf(Reply))
		{
			if (Block["type"] == "tool_use")
			{
				Calls.push_back(Block);
			}
		}
		return Calls;
	}

	ScriptedModelServer Server;
	ModelContext Context;
	Json Tree = Json::object(); // sent with the first turn
	std::unique_ptr<TurnRunner> Runner;
};

inline const char* NameOf(ModelFormat Format)
{
	return Format == ModelFormat::Messages ? "messages" : "chat completions";
}

inline const ModelFormat BothFormats[] = { ModelFormat::ChatCompletions, ModelFormat::Messages };

/** A model's reply as a stream. */
inline ScriptedReply Says(ModelFormat Format, const Json& Said)
{
	ScriptedReply Reply;
	Reply.Body = RenderStream(Format, Said);
	return Reply;
}

inline ScriptedReply SaysText(ModelFormat Format, const std::string& Text)
{
	return Says(Format, { { "text", Text } });
}

inline Json MakeCall(const std::string& Id, const std::string& Name, const Json& Input)
{
	return { { "id", Id }, { "name", Name }, { "input", Input } };
}

inline Json MakeToolResult(const std::string& Id, const std::string& Content, bool bError = false)
{
	return { { "type", "tool_result" }, { "tool_use_id", Id }, { "content", Content }, { "is_error", bError } };
}
