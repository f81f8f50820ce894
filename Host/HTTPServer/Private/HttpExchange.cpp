#include "HttpExchange.h"

#include "Containers/StringConv.h"
#include "IPAddress.h"

namespace HttpExchange
{
class FPeerAddress : public FInternetAddr
{
public:
	FPeerAddress(const FString& InAddress, int32 InPort)
		: Address(InAddress)
		, Port(InPort)
	{
	}
	FString ToString(bool bAppendPort) const override
	{
		return bAppendPort ? FString::Printf(TEXT("%s:%d"), *Address, Port) : Address;
	}

private:
	const FString Address;
	const int32 Port;
};

FString ToText(const std::string& Utf8)
{
	const FUTF8ToTCHAR Text(Utf8.data(), static_cast<int32>(Utf8.size()));
	return FString::ConstructFromPtrSize(Text.Get(), Text.Length());
}

EHttpServerRequestVerbs ToVerb(const std::string& Method)
{
	using enum EHttpServerRequestVerbs;
	static const std::map<std::string, EHttpServerRequestVerbs> Verbs = { { "GET", VERB_GET }, { "POST", VERB_POST },
		{ "PUT", VERB_PUT }, { "PATCH", VERB_PATCH }, { "DELETE", VERB_DELETE }, { "OPTIONS", VERB_OPTIONS } };
	const auto Found = Verbs.find(Method);
	return Found == Verbs.end() ? VERB_NONE : Found->second;
}
}

TUniquePtr<FHttpServerResponse> FHttpExchange::WaitForResponse()
{
	std::unique_lock<std::mutex> Lock(Mutex);
	Changed.wait(Lock, [this] { return bHasResponse; });
	return MoveTemp(Response);
}

void FHttpExchange::Respond(TUniquePtr<FHttpServerResponse>&& InResponse)
{
	bAnswered = true;
	const std::lock_guard<std::mutex> Lock(Mutex);
	Response = MoveTemp(InResponse);
	bHasResponse = true;
	Changed.notify_all();
}

FString FHttpExchange::GetPath() const
{
	return HttpExchange::ToText(Arrived.Path);
}

void FHttpExchange::MakeRequest(FHttpServerRequest& OutRequest)
{
	OutRequest.Verb = HttpExchange::ToVerb(Arrived.Method);
	for (const auto& [Name, Value] : Arrived.Headers)
	{
		OutRequest.Headers.FindOrAdd(HttpExchange::ToText(Name)).Add(HttpExchange::ToText(Value));
	}
	OutRequest.PeerAddress =
		MakeShared<HttpExchange::FPeerAddress>(HttpExchange::ToText(Arrived.PeerAddress), Arrived.PeerPort);
	OutRequest.Body.Append(
		reinterpret_cast<const uint8*>(Arrived.Body.data()), static_cast<int32>(Arrived.Body.size()));
	std::string().swap(Arrived.Body);
}
