#include "CheckConfig.h"

#include "ModelClient.h"

#include <stdexcept>

namespace
{
constexpr int ReplyTokens = 1024; // models that reason need some before they answer

Json MakeProbeTool()
{
	return Json::array({ { { "name", "report_color" }, { "description", "Reports a color to the user." },
		{ "input_schema", { { "type", "object" }, { "properties", { { "color", { { "type", "string" } } } } },
							  { "required", Json::array({ "color" }) } } } } });
}

/** @return the reply, or nothing after a line that says why */
std::optional<ModelReply> Ask(
	ModelClient& Client, const ModelConfig& Config, const std::string& Prompt, const Json* Tools, std::ostream& Out)
{
	RunningTurn Turn(Config.Timeouts.Request + Config.Timeouts.Retry);
	const UserMessage Message{ {}, Prompt };
	const ModelRequest Request = { "You are being tested. Do exactly what you are asked.", nullptr, &Message, Tools,
		std::min(ReplyTokens, Config.Server.MaxOutputTokens) };
	ModelResult Result = Client.Ask(Client.Prepare(Request), Turn);
	if (const UpstreamFault* const Fault = std::get_if<UpstreamFault>(&Result))
	{
		Out << "no: " << Fault->Message << std::endl;
		return std::nullopt;
	}
	return std::get<ModelReply>(Result);
}

bool CheckWord(ModelClient& Client, const ModelConfig& Config, std::ostream& Out)
{
	Out << "A word: " << std::flush;
	const std::optional<ModelReply> Reply = Ask(Client, Config, "Answer with the word ready.", nullptr, Out);
	if (!Reply)
	{
		return false;
	}
	const bool bAnswered = !Reply->Message.GetText().empty();
	Out << (bAnswered ? "yes" : "no: the answer is empty") << std::endl;
	if (bAnswered)
	{
		Out << "Token counts: "
			<< (Reply->Usage.Input > 0 ? "yes" : "no, so limits of tokens and cost are not effective") << std::endl;
	}
	return bAnswered;
}

bool CheckToolCall(ModelClient& Client, const ModelConfig& Config, std::ostream& Out)
{
	Out << "A tool call: " << std::flush;
	const Json Tools = MakeProbeTool();
	const std::optional<ModelReply> Reply =
		Ask(Client, Config, "Call the tool report_color with the color red.", &Tools, Out);
	if (!Reply)
	{
		return false;
	}
	const std::vector<const ToolCall*> Calls = Reply->Message.GetCalls();
	const bool bCalled = Calls.size() == 1 && Calls[0]->Name == "report_color" && Calls[0]->InputError.empty() &&
						 Calls[0]->Input.contains("color");
	Out << (bCalled ? "yes" : "no: the model answered without a usable call. Docs/Models.md says what helps")
		<< std::endl;
	return bCalled;
}
}

bool CheckConfig(const std::string& Path, std::ostream& Out)
{
	const ModelConfig Config = ModelConfig::Load(Path);
	Out << "Configuration: yes, " << Config.Server.Model << " at " << Config.Server.BaseUrl
		<< (Config.Server.Key.IsEmpty() ? ", without a key" : ", with a key") << std::endl;
	ModelClient Client(Config);
	return CheckWord(Client, Config, Out) && CheckToolCall(Client, Config, Out);
}
