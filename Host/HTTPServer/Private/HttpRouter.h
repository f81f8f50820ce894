#pragma once

#include "IHttpRouter.h"

class FHttpRouter : public IHttpRouter
{
public:
	FHttpRouteHandle BindRoute(const FHttpPath& HttpPath, const EHttpServerRequestVerbs& HttpVerbs,
		const FHttpRequestHandler& Handler) override;
	void UnbindRoute(const FHttpRouteHandle& RouteHandle) override;

	/** The route for a path, the longest one that fits; null when there is none for the verb. */
	FHttpRouteHandle Find(const FString& Path, EHttpServerRequestVerbs Verb) const;

private:
	TArray<FHttpRouteHandle> Routes;
};
