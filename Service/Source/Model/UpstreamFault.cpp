#include "UpstreamFault.h"

#include "CommandBody.h"
#include "JsonFields.h"
#include "Utf8.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <ctime>
#include <curl/curl.h>

namespace
{
constexpr size_t MaxMessageBytes = 600;

/** The parts of an error body, in the forms that servers give it. */
struct ErrorBody
{
	std::string Message;
	std::string Type; // or code, which says the same in one of the formats
	std::string Code;
};

std::string TextOrNumber(const Json& Value)
{
	return Value.is_string() ? Value.get<std::string>() : Value.is_number() ? Value.dump() : "";
}

ErrorBody ReadErrorBody(const std::string& Body)
{
	const Json Document = ParseUntrustedJson(Body);
	if (!Document.is_object())
	{
		// A page of a proxy says nothing to a user.
		const bool bPage = Body.find('<') < Body.find_first_of("abcdefghijklmnopqrstuvwxyz");
		return { bPage ? "" : Body, "", "" };
	}
	const Json& Error = GetMember(Document, "error");
	const Json& Holder = Error.is_object() ? Error : Document;
	const std::string Detail = TextOrNumber(GetMember(Document, "detail"));
	const std::string Message = GetText(Holder, "message");
	return { Error.is_string()             ? Error.get<std::string>()
			 : !Message.empty()            ? Message
			 : !Detail.empty()             ? Detail
			 : Document.contains("detail") ? Document["detail"].dump(-1, ' ', false, Json::error_handler_t::replace)
										   : "",
		TextOrNumber(GetMember(Holder, "type")), TextOrNumber(GetMember(Holder, "code")) };
}

bool Contains(const std::string& Text, const std::string& Part)
{
	const auto Same = [](unsigned char A, unsigned char B) { return std::tolower(A) == std::tolower(B); };
	return std::search(Text.begin(), Text.end(), Part.begin(), Part.end(), Same) != Text.end();
}

/** Servers agree on no code for this, so that their wording decides too. */
bool IsContextOverflow(const ErrorBody& Error)
{
	static const char* const Signs[] = { "context_length_exceeded", "exceed_context_size", "maximum context length",
		"context window", "prompt is too long", "context size", "too many tokens" };
	return std::any_of(std::begin(Signs), std::end(Signs), [&Error](const char* Sign) {
		return Contains(Error.Code, Sign) || Contains(Error.Type, Sign) || Contains(Error.Message, Sign);
	});
}

FaultKind Classify(long Status, const ErrorBody& Error)
{
	const auto Is = [&Error](const char* Name) { return Error.Type == Name || Error.Code == Name; };
	if (IsContextOverflow(Error))
	{
		return FaultKind::ContextTooLong;
	}
	if (Is("insufficient_quota") || Is("billing_error") || Status == 402)
	{
		return FaultKind::NoMoney;
	}
	if (Is("overloaded_error") || Is("rate_limit_error") || Status == 429 || Status == 529)
	{
		return FaultKind::Busy;
	}
	if (Status == 503)
	{
		return Contains(Error.Message, "loading model") ? FaultKind::Loading : FaultKind::Busy;
	}
	if (Status >= 500 || Status == 408 || Status == 409 || Is("api_error") || Is("timeout_error") || Is("server_error"))
	{
		return FaultKind::Failed;
	}
	return FaultKind::Refused;
}

std::string Explain(FaultKind Kind, long Status)
{
	switch (Kind)
	{
	case FaultKind::ContextTooLong:
		return "The conversation is too long for the model";
	case FaultKind::NoMoney:
		return "The account at the model server has no credit left";
	case FaultKind::Busy:
		return "The model server is busy";
	case FaultKind::Loading:
		return "The model server is still loading its model";
	case FaultKind::Failed:
		return "The model server failed";
	default:
		break;
	}
	if (Status == 401 || Status == 403)
	{
		return "The model server rejected the key";
	}
	if (Status == 404)
	{
		return "The model server knows no such address or model: check server.base_url and server.model";
	}
	return Status >= 300 && Status < 400 ? "The model server redirects elsewhere: check server.base_url"
										 : "The model server refused the request";
}

std::optional<double> ParseSeconds(const std::string& Text)
{
	char* End = nullptr;
	const double Seconds = std::strtod(Text.c_str(), &End);
	return End != Text.c_str() && *End == '\0' && std::isfinite(Seconds) && Seconds >= 0 ? std::optional(Seconds)
																						 : std::nullopt;
}

std::optional<double> ReadRetryAfter(const HeaderMap& Headers)
{
	if (const auto Found = Headers.find("retry-after-ms"); Found != Headers.end())
	{
		if (const std::optional<double> Milliseconds = ParseSeconds(Found->second))
		{
			return *Milliseconds / 1000;
		}
	}
	const auto Found = Headers.find("retry-after");
	if (Found == Headers.end())
	{
		return std::nullopt;
	}
	if (const std::optional<double> Seconds = ParseSeconds(Found->second))
	{
		return Seconds;
	}
	const time_t When = curl_getdate(Found->second.c_str(), nullptr);
	return When < 0 ? std::nullopt : std::optional(std::max(0.0, std::difftime(When, std::time(nullptr))));
}

UpstreamFault MakeFault(long Status, const std::string& Body)
{
	const ErrorBody Error = ReadErrorBody(Body);
	UpstreamFault Fault;
	Fault.Kind = Classify(Status, Error);
	const std::string Code = Status == 200 ? "" : " (HTTP " + std::to_string(Status) + ")";
	Fault.Message = Explain(Fault.Kind, Status) + Code + (Error.Message.empty() ? "." : ": " + Error.Message);
	return Fault;
}
}

std::string TidyMessage(const std::string& Text)
{
	// Controls beyond ASCII, and characters that reverse the direction of writing.
	static const char* const Obeyed[] = { "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA", "\xE2\x80\xAB",
		"\xE2\x80\xAC", "\xE2\x80\xAD", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8",
		"\xE2\x81\xA9" };
	const bool bUtf8 = IsUtf8(Text);
	std::string Result;
	for (size_t At = 0; At < Text.size(); ++At)
	{
		const unsigned char C = static_cast<unsigned char>(Text[At]);
		const bool bControl = C == 0xC2 && At + 1 < Text.size() && static_cast<unsigned char>(Text[At + 1]) < 0xA0;
		const bool bDirection = C == 0xE2 && std::any_of(std::begin(Obeyed), std::end(Obeyed),
												 [&](const char* Each) { return Text.compare(At, 3, Each) == 0; });
		At += bUtf8 && bControl ? 1 : bUtf8 && bDirection ? 2 : 0;
		Result += !bUtf8 && C >= 0x80                               ? '?'
				  : C < 0x20 || C == 0x7F || bControl || bDirection ? ' '
																	: static_cast<char>(C);
	}
	const size_t End = FindCharacterStart(Result, MaxMessageBytes);
	return Result.substr(0, End) + (End < Result.size() ? "..." : "");
}

bool UpstreamFault::CanRetry() const
{
	switch (Kind)
	{
	case FaultKind::Unreachable:
	case FaultKind::Silent:
	case FaultKind::Broken:
	case FaultKind::Busy:
	case FaultKind::Failed:
	case FaultKind::Loading:
		return ShouldRetry.value_or(true);
	default:
		return false;
	}
}

UpstreamFault FaultFromReply(long Status, const HeaderMap& Headers, const std::string& Body)
{
	UpstreamFault Fault = MakeFault(Status, Body);
	Fault.RetryAfterSeconds = ReadRetryAfter(Headers);
	if (const auto Found = Headers.find("x-should-retry"); Found != Headers.end())
	{
		Fault.ShouldRetry = Found->second == "true";
	}
	return Fault;
}

UpstreamFault FaultFromErrorObject(const std::string& Body)
{
	UpstreamFault Fault = MakeFault(200, Body);
	// The request itself was accepted.
	Fault.Kind = Fault.Kind == FaultKind::Refused ? FaultKind::Failed : Fault.Kind;
	if (Fault.Kind == FaultKind::Failed)
	{
		Fault.Message = MakeFault(500, Body).Message;
	}
	return Fault;
}
