#include "Mcp/McpAccess.h"

#include "CoreGlobals.h"
#include "HttpServerRequest.h"
#include "IPAddress.h"
#include "Mcp/McpSecret.h"
#include "Misc/ConfigCacheIni.h"

namespace McpAccess
{
const TCHAR* const ConfigSection = TEXT("HTTPServer.Listeners");
const TCHAR* const Scheme = TEXT("Bearer ");

bool IsOwnOrigin(const FString& Origin, uint32 Port)
{
	FString Authority = Origin;
	return Authority.RemoveFromStart(TEXT("http://")) && KestrelMcpAccess::IsOwnAuthority(Authority, Port);
}

bool HasToken(const FHttpServerRequest& Request, const FString& Token)
{
	const TOptional<FString> Authorization = KestrelMcpAccess::GetHeader(Request, TEXT("Authorization"));
	FString Given = Authorization.Get(FString());
	return Given.RemoveFromStart(Scheme, ESearchCase::IgnoreCase) &&
		   KestrelMcpSecret::IsSame(Token, Given.TrimStartAndEnd());
}

/** Of a line like (Port=8080,BindAddress="127.0.0.1"); empty when it is absent. */
FString GetMember(const FString& Line, const TCHAR* Name)
{
	FString Inner = Line.TrimStartAndEnd();
	Inner.RemoveFromStart(TEXT("("));
	Inner.RemoveFromEnd(TEXT(")"));
	TArray<FString> Members;
	Inner.ParseIntoArray(Members, TEXT(","));
	for (const FString& Member : Members)
	{
		FString Key;
		FString Value;
		if (Member.Split(TEXT("="), &Key, &Value) && Key.TrimStartAndEnd().Equals(Name, ESearchCase::IgnoreCase))
		{
			return Value.TrimStartAndEnd().TrimQuotes();
		}
	}
	return FString();
}

bool IsThisMachine(const FString& BindAddress)
{
	return BindAddress.Equals(TEXT("localhost"), ESearchCase::IgnoreCase) || KestrelMcpAccess::IsLoopback(BindAddress);
}
}

TOptional<FString> KestrelMcpAccess::GetHeader(const FHttpServerRequest& Request, const TCHAR* Name)
{
	const TArray<FString>* Values = Request.Headers.Find(Name);
	if (!Values || Values->IsEmpty())
	{
		return {};
	}
	return Values->Num() == 1 ? (*Values)[0].TrimStartAndEnd() : FString();
}

bool KestrelMcpAccess::IsLoopback(const FString& Address)
{
	FString Rest = Address;
	Rest.RemoveFromStart(TEXT("::ffff:"), ESearchCase::IgnoreCase);
	return Rest.StartsWith(TEXT("127.")) || Address.Equals(TEXT("::1")) || Address.Equals(TEXT("[::1]"));
}

bool KestrelMcpAccess::IsOwnAuthority(const FString& Authority, uint32 Port)
{
	FString Host = Authority;
	if (!Host.RemoveFromEnd(FString::Printf(TEXT(":%u"), Port)))
	{
		return false;
	}
	return Host.Equals(TEXT("127.0.0.1")) || Host.Equals(TEXT("localhost"), ESearchCase::IgnoreCase) ||
		   Host.Equals(TEXT("[::1]"));
}

bool KestrelMcpAccess::IsFromThisMachine(const FHttpServerRequest& Request)
{
	return Request.PeerAddress.IsValid() && IsLoopback(Request.PeerAddress->ToString(/*bAppendPort*/ false));
}

EHttpServerResponseCodes KestrelMcpAccess::Check(const FHttpServerRequest& Request, uint32 Port, const FString& Token)
{
	const TOptional<FString> Origin = GetHeader(Request, TEXT("Origin"));
	if (!IsFromThisMachine(Request) || !IsOwnAuthority(GetHeader(Request, TEXT("Host")).Get(FString()), Port) ||
		(Origin.IsSet() && !McpAccess::IsOwnOrigin(*Origin, Port)))
	{
		return EHttpServerResponseCodes::Forbidden;
	}
	return McpAccess::HasToken(Request, Token) ? EHttpServerResponseCodes::Ok : EHttpServerResponseCodes::Denied;
}

FString KestrelMcpAccess::FindForeignBindAddress(uint32 Port)
{
	FString Address;
	if (GConfig->GetString(McpAccess::ConfigSection, TEXT("DefaultBindAddress"), Address, GEngineIni) &&
		!Address.IsEmpty() && !McpAccess::IsThisMachine(Address))
	{
		return Address;
	}
	TArray<FString> Overrides;
	GConfig->GetArray(McpAccess::ConfigSection, TEXT("ListenerOverrides"), Overrides, GEngineIni);
	for (const FString& Override : Overrides)
	{
		const FString OverriddenPort = McpAccess::GetMember(Override, TEXT("Port"));
		Address = McpAccess::GetMember(Override, TEXT("BindAddress"));
		const bool bIsOurs = FCString::Atoi64(*OverriddenPort) == static_cast<int64>(Port);
		if (bIsOurs && !Address.IsEmpty() && !McpAccess::IsThisMachine(Address))
		{
			return Address;
		}
	}
	return FString();
}
