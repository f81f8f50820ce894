#include "ModelRequest.h"

#include "ChatCompletionsFormat.h"
#include "JsonFields.h"
#include "MessagesFormat.h"

const RequestFormat& RequestFormat::Get(ModelFormat Format)
{
	static const ChatCompletionsFormat ChatCompletions;
	static const MessagesFormat Messages;
	return Format == ModelFormat::Messages ? static_cast<const RequestFormat&>(Messages) : ChatCompletions;
}

void SetInput(ToolCall& Call, const std::string& Arguments)
{
	const bool bEmpty = Arguments.find_first_not_of(" \t\r\n") == std::string::npos;
	Json Input = bEmpty ? Json::object() : ParseUntrustedJson(Arguments);
	if (Input.is_object())
	{
		Call.Input = std::move(Input);
		return;
	}
	Call.InputError = "The arguments are not a valid JSON object.";
}
