#include "Agent/Backend/ServiceReply.h"

namespace KestrelServiceReply
{
namespace
{
/** Scheme, host and port of a URL. */
FString GetOrigin(const FString& Url)
{
	const int32 Host = Url.Find(TEXT("://")) + 3;
	int32 End = Url.Len();
	for (int32 Index = Host; Index < Url.Len(); ++Index)
	{
		if (Url[Index] == TEXT('/') || Url[Index] == TEXT('?') || Url[Index] == TEXT('#'))
		{
			End = Index;
			break;
		}
	}
	FString Origin = Url.Left(End);
	Origin.RemoveFromEnd(TEXT(":443")); // the port of https
	return Origin;
}

/** Where a reply came from in the end; empty on engines that do not tell (before 5.5). */
template <typename ReplyType>
FString GetEffectiveUrl(const ReplyType& Reply)
{
	if constexpr (requires { Reply.GetEffectiveURL(); })
	{
		return Reply.GetEffectiveURL();
	}
	else
	{
		return FString();
	}
}
}

bool IsOfAnotherServer(const IHttpRequest& Request, const IHttpResponse& Response)
{
	constexpr int32 FirstRedirect = 300;
	constexpr int32 LastRedirect = 399;
	const FString Effective = GetEffectiveUrl(Response);
	const bool bMoved =
		!Effective.IsEmpty() && !GetOrigin(Effective).Equals(GetOrigin(Request.GetURL()), ESearchCase::IgnoreCase);
	return bMoved || (Response.GetResponseCode() >= FirstRedirect && Response.GetResponseCode() <= LastRedirect);
}
}
