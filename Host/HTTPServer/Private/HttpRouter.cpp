#include "HttpRouter.h"

namespace HttpRouter
{
bool IsAtOrBelow(const FString& Path, const FString& Route)
{
	return Path.Equals(Route) || Route.Equals(TEXT("/")) ||
		   Path.StartsWith(Route + TEXT("/"), ESearchCase::CaseSensitive);
}
}

FHttpRouteHandle FHttpRouter::BindRoute(
	const FHttpPath& HttpPath, const EHttpServerRequestVerbs& HttpVerbs, const FHttpRequestHandler& Handler)
{
	checkf(IsInGameThread(), TEXT("Routes are bound on the game thread"));
	const bool bTaken = Routes.ContainsByPredicate([&](const FHttpRouteHandle& Route) {
		return Route->Path.Equals(HttpPath.GetPath()) && !!(Route->Verbs & HttpVerbs);
	});
	if (bTaken || !HttpPath.IsValidPath() || !HttpVerbs || !Handler.IsBound())
	{
		return nullptr;
	}
	const FHttpRouteHandle Handle =
		MakeShared<FHttpRouteHandleInternal>(FHttpRouteHandleInternal{ HttpPath.GetPath(), HttpVerbs, Handler });
	Routes.Add(Handle);
	return Handle;
}

void FHttpRouter::UnbindRoute(const FHttpRouteHandle& RouteHandle)
{
	checkf(IsInGameThread(), TEXT("Routes are unbound on the game thread"));
	Routes.Remove(RouteHandle);
}

FHttpRouteHandle FHttpRouter::Find(const FString& Path, EHttpServerRequestVerbs Verb) const
{
	FHttpRouteHandle Best;
	for (const FHttpRouteHandle& Route : Routes)
	{
		const bool bFits = !!(Route->Verbs & Verb) && HttpRouter::IsAtOrBelow(Path, Route->Path);
		if (bFits && (!Best || Route->Path.Len() > Best->Path.Len()))
		{
			Best = Route;
		}
	}
	return Best;
}
