#pragma once

#include "HttpPath.h"
#include "HttpRequestHandler.h"
#include "HttpRouteHandle.h"

/** The routes of one port, shared by everybody who asks for that port. Game thread. */
class IHttpRouter : public TSharedFromThis<IHttpRouter>
{
public:
	virtual ~IHttpRouter() = default;

	/**
	 * Sends requests to a handler whose path is the route's, or lies below it.
	 *
	 * @return null when the path is not valid, or one of the verbs is bound there already
	 */
	virtual FHttpRouteHandle BindRoute(
		const FHttpPath& HttpPath, const EHttpServerRequestVerbs& HttpVerbs, const FHttpRequestHandler& Handler) = 0;
	virtual void UnbindRoute(const FHttpRouteHandle& RouteHandle) = 0;
};
