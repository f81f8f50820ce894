#include "CommandBody.h"

#include "JsonFields.h"

#include <algorithm>
#include <string_view>

namespace
{
const std::string_view MessageStart = "{\"message\": \"";
const std::string_view ToolResultsStart = "{\"tool_results\": ";
const std::string_view MessageBehindResults = ", \"message\": \"";
const std::string_view MessageEnd = "\"}";

bool StartsWith(std::string_view Text, std::string_view Prefix)
{
	return Text.substr(0, Prefix.size()) == Prefix;
}

bool EndsWith(std::string_view Text, std::string_view Suffix)
{
	return Text.size() >= Suffix.size() && Text.substr(Text.size() - Suffix.size()) == Suffix;
}

Turn FromJson(const Json& Body)
{
	Turn Result;
	const auto Get = [&Body](const char* Name) { return Body.contains(Name) ? Body[Name] : Json(); };
	if (Get("message").is_string())
	{
		Result.Message = Body["message"].get<std::string>();
	}
	if (Get("file_structure").is_object())
	{
		Result.FileStructure = Body["file_structure"];
	}
	if (Get("tool_results").is_array())
	{
		Result.ToolResults = Body["tool_results"];
	}
	if (Get("is_confirmation_mode").is_boolean())
	{
		Result.bConfirmationMode = Body["is_confirmation_mode"].get<bool>();
	}
	if (Get("was_confirmed").is_boolean())
	{
		Result.WasConfirmed = Body["was_confirmed"].get<bool>();
	}
	return Result;
}

std::optional<Turn> FromTemplate(std::string_view Body)
{
	if (StartsWith(Body, MessageStart) && EndsWith(Body, MessageEnd) &&
		Body.size() >= MessageStart.size() + MessageEnd.size())
	{
		Turn Result;
		Result.Message = Body.substr(MessageStart.size(), Body.size() - MessageStart.size() - MessageEnd.size());
		return Result;
	}
	if (!StartsWith(Body, ToolResultsStart) || !EndsWith(Body, MessageEnd))
	{
		return std::nullopt;
	}
	// The first place that splits off a valid array is the right one: texts inside the array have their quotes escaped.
	for (size_t Split = Body.find(MessageBehindResults); Split != std::string_view::npos;
		 Split = Body.find(MessageBehindResults, Split + 1))
	{
		const std::string_view Array = Body.substr(ToolResultsStart.size(), Split - ToolResultsStart.size());
		Json Results = ParseUntrustedJson(Array);
		const size_t MessageAt = Split + MessageBehindResults.size();
		if (Results.is_array() && Body.size() >= MessageAt + MessageEnd.size())
		{
			Turn Result;
			Result.ToolResults = std::move(Results);
			Result.Message = Body.substr(MessageAt, Body.size() - MessageAt - MessageEnd.size());
			return Result;
		}
	}
	return std::nullopt;
}
}

bool IsUtf8(const std::string& Text)
{
	struct Form
	{
		unsigned char FirstLow; // range of the first byte
		unsigned char FirstHigh;
		size_t NumMore;
		unsigned char SecondLow; // range of the second; any further ones are 0x80 to 0xBF
		unsigned char SecondHigh;
	};
	// Table 3-7 of the Unicode Standard.
	static const Form Forms[] = {
		{ 0x00, 0x7F, 0, 0x80, 0xBF },
		{ 0xC2, 0xDF, 1, 0x80, 0xBF },
		{ 0xE0, 0xE0, 2, 0xA0, 0xBF },
		{ 0xE1, 0xEC, 2, 0x80, 0xBF },
		{ 0xED, 0xED, 2, 0x80, 0x9F },
		{ 0xEE, 0xEF, 2, 0x80, 0xBF },
		{ 0xF0, 0xF0, 3, 0x90, 0xBF },
		{ 0xF1, 0xF3, 3, 0x80, 0xBF },
		{ 0xF4, 0xF4, 3, 0x80, 0x8F },
	};
	const auto IsIn = [&Text](size_t Index, unsigned char Low, unsigned char High) {
		const unsigned char Byte = Index < Text.size() ? static_cast<unsigned char>(Text[Index]) : 0;
		return Byte >= Low && Byte <= High;
	};
	for (size_t Index = 0; Index < Text.size();)
	{
		const auto Found = std::find_if(std::begin(Forms), std::end(Forms),
			[&](const Form& Each) { return IsIn(Index, Each.FirstLow, Each.FirstHigh); });
		if (Found == std::end(Forms))
		{
			return false;
		}
		for (size_t More = 1; More <= Found->NumMore; ++More)
		{
			if (!(More == 1 ? IsIn(Index + 1, Found->SecondLow, Found->SecondHigh) : IsIn(Index + More, 0x80, 0xBF)))
			{
				return false;
			}
		}
		Index += 1 + Found->NumMore;
	}
	return true;
}

std::optional<Turn> ParseCommandBody(const std::string& Body)
{
	const Json Parsed = ParseUntrustedJson(Body);
	if (Parsed.is_object())
	{
		return FromJson(Parsed);
	}
	return Parsed.is_discarded() ? FromTemplate(Body) : std::nullopt;
}
