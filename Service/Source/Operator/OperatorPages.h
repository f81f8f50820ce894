#pragma once

#include "Access.h"
#include "OperatorViews.h"

#include <functional>

namespace httplib
{
class Server;
struct Request;
struct Response;
}

/**
 * What is served besides the protocol: the operator page at /, what it asks for, /metrics and /health.
 *
 * The page itself says nothing, and is for everybody; all but it and /health want the operator's key as a bearer token.
 */
class OperatorPages
{
public:
	/** @param InStore  null where conversations are not stored: then there is no page. It must outlive this. */
	OperatorPages(const Access& InAllowed, ModelStore* InStore)
		: Allowed(InAllowed)
		, Store(InStore)
	{
	}

	/** Whether a path is one of these, for which clients' keys mean nothing. */
	static bool IsOwnPath(const std::string& Path);
	void AddRoutes(httplib::Server& Https, const std::function<void()>& CheckHealth);

private:
	using MakeFunction = std::function<HttpReply(const httplib::Request&)>;

	void AddView(httplib::Server& Https, const char* Path, MakeFunction Make);

	const Access& Allowed;
	ModelStore* const Store;
};
