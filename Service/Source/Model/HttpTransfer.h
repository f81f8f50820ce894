#pragma once

#include "ModelConfig.h"
#include "UpstreamFault.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** A POST to a model server, or a GET if it has no body. */
struct UpstreamRequest
{
	std::string Url;
	std::vector<std::string> Headers; // "Name: value"
	std::string Body;
};

/** What is known of a reply when its body begins. */
struct ReplyHead
{
	long Status = 0;
	HeaderMap Headers;
};

/**
 * Talks HTTP to a model server: TLS verified, redirects not followed since the key would go along, some connections
 * kept for further requests.
 */
class HttpTransfer
{
public:
	/** Called with the body's bytes as they come. @return false ends the transfer as broken */
	using ReceiveFunction = std::function<bool(const ReplyHead&, std::string_view)>;
	/** Asked at least once a second, also while nothing comes. */
	using StopFunction = std::function<bool()>;

	HttpTransfer(const ModelServer& InServer, const ModelTimeouts& InTimeouts);

	/** @return what kept the whole reply from coming; its status may be any */
	std::optional<UpstreamFault> Run(const UpstreamRequest& Request, ReplyHead& Head, const ReceiveFunction& Receive,
		const StopFunction& ShouldStop);

private:
	const ModelServer& Server;
	const ModelTimeouts& Timeouts;
};
