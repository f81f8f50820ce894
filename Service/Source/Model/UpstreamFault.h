#pragma once

#include <map>
#include <optional>
#include <string>

/** Why a model server gave no usable answer. */
enum class FaultKind
{
	Unreachable, // no connection
	Silent,      // nothing came, or nothing more
	Broken,      // the answer ended before its end, or is none
	Refused,     // the key, the path, the model: no repetition helps
	NoMoney,
	Busy, // too many requests or overloaded
	Failed,
	Loading,        // the server is still loading its model
	ContextTooLong, // the conversation does not fit
	Cancelled,
};

struct UpstreamFault
{
	FaultKind Kind = FaultKind::Broken;
	/** A sentence for the user; without the key. */
	std::string Message;
	/** What the server asks to wait. */
	std::optional<double> RetryAfterSeconds;
	/** What the server says about repeating, which goes before what the kind says. */
	std::optional<bool> ShouldRetry;

	bool CanRetry() const;
};

/** The headers of a reply, their names in lower case. */
using HeaderMap = std::map<std::string, std::string>;

/** On one line, as valid UTF-8, without characters that a terminal obeys, and of bounded length. */
std::string TidyMessage(const std::string& Text);

/** Understands an error reply of either format, or of something between here and the server. */
UpstreamFault FaultFromReply(long Status, const HeaderMap& Headers, const std::string& Body);
/** Understands an error object in the middle of a stream whose status was 200. */
UpstreamFault FaultFromErrorObject(const std::string& Body);
