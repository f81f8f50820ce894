#include "Mcp/McpEndpoint.h"

#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HttpPath.h"
#include "HttpRequestHandler.h"
#include "HttpServerConstants.h"
#include "HttpServerModule.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"
#include "IHttpRouter.h"
#include "Mcp/McpAccess.h"
#include "Mcp/McpBatch.h"
#include "Mcp/McpDispatcher.h"
#include "Mcp/McpSecret.h"
#include "Mcp/McpVersions.h"
#include "Misc/Base64.h"

const TCHAR* const FKestrelMcpEndpoint::Path = TEXT("/mcp");

namespace McpEndpoint
{
const TCHAR* const JsonType = TEXT("application/json");
const TCHAR* const SessionHeader = TEXT("Mcp-Session-Id");
const TCHAR* const VersionHeader = TEXT("MCP-Protocol-Version");
const TCHAR* const MethodHeader = TEXT("Mcp-Method");
const TCHAR* const NameHeader = TEXT("Mcp-Name");
const TCHAR* const VersionField = TEXT("io.modelcontextprotocol/protocolVersion");

void SendEmpty(EHttpServerResponseCodes Code, const FHttpResultCallback& OnComplete)
{
	TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>();
	Response->Code = Code;
	if (Code == EHttpServerResponseCodes::Denied)
	{
		Response->Headers.Add(TEXT("WWW-Authenticate"), { TEXT("Bearer") });
	}
	OnComplete(MoveTemp(Response));
}

/** @param Id  null when the message could not be read */
TUniquePtr<FHttpServerResponse> MakeResponse(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer)
{
	TUniquePtr<FHttpServerResponse> Response =
		FHttpServerResponse::Create(FKestrelMcpMessage::MakeText(Id, Answer), JsonType);
	if (Answer.Fault.IsSet())
	{
		Response->Code = static_cast<EHttpServerResponseCodes>(Answer.Fault->HttpStatus);
	}
	return Response;
}

void Send(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer, const FHttpResultCallback& OnComplete)
{
	if (Answer.IsNothing())
	{
		SendEmpty(EHttpServerResponseCodes::Accepted, OnComplete);
		return;
	}
	OnComplete(MakeResponse(Id, Answer));
}

void Refuse(int32 Code, const TCHAR* Message, EHttpServerResponseCodes Status, const FHttpResultCallback& OnComplete,
	const TSharedPtr<FJsonValue>& Id = nullptr)
{
	Send(Id, FKestrelMcpAnswer::Fail(Code, Message, static_cast<int32>(Status)), OnComplete);
}

/** A name in a header, which is encoded when it is not plain ASCII. */
FString DecodeName(const FString& Value)
{
	FString Encoded = Value;
	TArray<uint8> Bytes;
	if (!Encoded.RemoveFromStart(TEXT("=?base64?")) || !Encoded.RemoveFromEnd(TEXT("?=")) ||
		!FBase64::Decode(Encoded, Bytes))
	{
		return Value;
	}
	const FUTF8ToTCHAR Text(reinterpret_cast<const ANSICHAR*>(Bytes.GetData()), Bytes.Num());
	return FString::ConstructFromPtrSize(Text.Get(), Text.Length());
}

/** Which parameter of a method is repeated in a header; null for none. */
const TCHAR* FindNamedField(const FString& Method)
{
	const bool bByName = Method.Equals(TEXT("tools/call")) || Method.Equals(TEXT("prompts/get"));
	return bByName ? TEXT("name") : Method.Equals(TEXT("resources/read")) ? TEXT("uri") : nullptr;
}

FString GetText(const FJsonObject& Object, const TCHAR* Field)
{
	FString Text;
	Object.TryGetStringField(Field, Text);
	return Text;
}

/** Whether the headers say of a stateless message what it says itself: others on the way may go by them. */
bool FitsHeaders(const FHttpServerRequest& Request, const FKestrelMcpMessage& Message)
{
	const auto Fits = [&Request](const TCHAR* Header, const FString& Expected) {
		const TOptional<FString> Value = KestrelMcpAccess::GetHeader(Request, Header);
		return Value.IsSet() && DecodeName(*Value).Equals(Expected);
	};
	const TCHAR* NamedField = FindNamedField(Message.Method);
	return Fits(VersionHeader, GetText(*Message.Meta, VersionField)) && Fits(MethodHeader, Message.Method) &&
		   (!NamedField || Fits(NameHeader, GetText(*Message.Params, NamedField)));
}

bool IsJson(const FHttpServerRequest& Request)
{
	const FString Type = KestrelMcpAccess::GetHeader(Request, TEXT("Content-Type")).Get(FString());
	return Type.Equals(JsonType, ESearchCase::IgnoreCase) ||
		   Type.StartsWith(FString(JsonType) + TEXT(";"), ESearchCase::IgnoreCase);
}
}

FKestrelMcpEndpoint::FKestrelMcpEndpoint(FKestrelMcpDispatcher& InDispatcher, uint32 InPort, const FString& InToken)
	: Port(InPort)
	, Token(InToken)
	, Dispatcher(InDispatcher)
	, Nonce(KestrelMcpSecret::Make())
{
}

FKestrelMcpEndpoint::~FKestrelMcpEndpoint()
{
	Unbind();
}

bool FKestrelMcpEndpoint::Bind()
{
	FHttpServerModule& Module = FHttpServerModule::Get();
	Router = Module.GetHttpRouter(Port, /*bFailOnBindFailure*/ true);
	if (!Router.IsValid())
	{
		return false;
	}
	const EHttpServerRequestVerbs Verbs = EHttpServerRequestVerbs::VERB_GET | EHttpServerRequestVerbs::VERB_POST |
										  EHttpServerRequestVerbs::VERB_PUT | EHttpServerRequestVerbs::VERB_PATCH |
										  EHttpServerRequestVerbs::VERB_DELETE | EHttpServerRequestVerbs::VERB_OPTIONS;
	Route =
		Router->BindRoute(FHttpPath(Path), Verbs, FHttpRequestHandler::CreateSP(this, &FKestrelMcpEndpoint::Handle));
	Module.StartAllListeners();
	return Route.IsValid();
}

void FKestrelMcpEndpoint::Unbind()
{
	if (Route.IsValid())
	{
		Router->UnbindRoute(Route);
		Route.Reset();
	}
}

bool FKestrelMcpEndpoint::Handle(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	const FString& Below = Request.RelativePath.GetPath();
	if (KestrelMcpAccess::IsFromThisMachine(Request) && KestrelMcpSecret::IsSame(TEXT("/") + Nonce, Below))
	{
		bWasProbed = true;
	}
	const EHttpServerResponseCodes Code = KestrelMcpAccess::Check(Request, Port, Token);
	if (Code != EHttpServerResponseCodes::Ok)
	{
		McpEndpoint::SendEmpty(Code, OnComplete);
	}
	else if (!Below.IsEmpty() && !Below.Equals(TEXT("/")))
	{
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::NotFound, OnComplete);
	}
	else
	{
		HandleAllowed(Request, OnComplete);
	}
	return true;
}

void FKestrelMcpEndpoint::HandleAllowed(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	Dispatcher.GetClients().EndIdle();
	if (Request.Verb == EHttpServerRequestVerbs::VERB_POST)
	{
		HandlePost(Request, OnComplete);
	}
	else if (Request.Verb == EHttpServerRequestVerbs::VERB_DELETE)
	{
		HandleDelete(Request, OnComplete);
	}
	else
	{
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::BadMethod, OnComplete);
	}
}

void FKestrelMcpEndpoint::HandlePost(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	if (Request.Body.Num() > FKestrelMcpMessage::MaxBytes)
	{
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::RequestTooLarge, OnComplete);
		return;
	}
	if (!McpEndpoint::IsJson(Request))
	{
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::UnsupportedMedia, OnComplete);
		return;
	}
	if (FKestrelMcpMessage::IsBatch(Request.Body))
	{
		HandleBatch(Request, OnComplete);
		return;
	}
	FKestrelMcpFault Fault;
	const TSharedPtr<FKestrelMcpMessage> Message = FKestrelMcpMessage::Parse(Request.Body, Fault);
	if (!Message.IsValid())
	{
		FKestrelMcpAnswer Answer;
		Answer.Fault = Fault;
		McpEndpoint::Send(nullptr, Answer, OnComplete);
		return;
	}
	const bool bIsStateless = FKestrelMcpDispatcher::IsStateless(*Message) ||
							  KestrelMcpAccess::GetHeader(Request, McpEndpoint::MethodHeader).IsSet();
	if (bIsStateless)
	{
		HandleStateless(Request, Message.ToSharedRef(), OnComplete);
	}
	else if (Message->Method.Equals(TEXT("initialize")) && Message->Kind == EKestrelMcpMessageKind::Request)
	{
		Initialize(Message.ToSharedRef(), OnComplete);
	}
	else
	{
		HandleInSession(Request, Message.ToSharedRef(), OnComplete);
	}
}

void FKestrelMcpEndpoint::HandleStateless(const FHttpServerRequest& Request,
	const TSharedRef<FKestrelMcpMessage>& Message, const FHttpResultCallback& OnComplete)
{
	if (Message->Kind != EKestrelMcpMessageKind::Request)
	{
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::Accepted, OnComplete);
		return;
	}
	const bool bNamesVersion = Message->Meta->HasField(McpEndpoint::VersionField);
	if (bNamesVersion && !McpEndpoint::FitsHeaders(Request, *Message))
	{
		McpEndpoint::Refuse(KestrelMcpError::HeaderMismatch, TEXT("A header is missing or differs from the message"),
			EHttpServerResponseCodes::BadRequest, OnComplete, Message->Id);
		return;
	}
	const FKestrelMcpRequest Parts{ Message, nullptr, /*bIsStateless*/ true };
	Dispatcher.Handle(Parts,
		[Id = Message->Id, OnComplete](const FKestrelMcpAnswer& Answer) { McpEndpoint::Send(Id, Answer, OnComplete); });
}

void FKestrelMcpEndpoint::Initialize(
	const TSharedRef<FKestrelMcpMessage>& Message, const FHttpResultCallback& OnComplete)
{
	TSharedPtr<FKestrelMcpClient> Client;
	const FKestrelMcpAnswer Answer = Dispatcher.Initialize(*Message, Client);
	TUniquePtr<FHttpServerResponse> Response = McpEndpoint::MakeResponse(Message->Id, Answer);
	if (Client.IsValid())
	{
		Response->Headers.Add(McpEndpoint::SessionHeader, { Client->SessionId });
	}
	OnComplete(MoveTemp(Response));
}

TSharedPtr<FKestrelMcpClient> FKestrelMcpEndpoint::FindSession(
	const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete) const
{
	const TOptional<FString> SessionId = KestrelMcpAccess::GetHeader(Request, McpEndpoint::SessionHeader);
	if (!SessionId.IsSet())
	{
		McpEndpoint::Refuse(KestrelMcpError::InvalidRequest, TEXT("Mcp-Session-Id is missing: send initialize first"),
			EHttpServerResponseCodes::BadRequest, OnComplete);
		return nullptr;
	}
	const TSharedPtr<FKestrelMcpClient> Client = Dispatcher.GetClients().Find(*SessionId);
	if (!Client.IsValid())
	{
		McpEndpoint::Refuse(KestrelMcpError::InvalidRequest, TEXT("The session has ended: send initialize again"),
			EHttpServerResponseCodes::NotFound, OnComplete);
	}
	return Client;
}

void FKestrelMcpEndpoint::HandleInSession(const FHttpServerRequest& Request,
	const TSharedRef<FKestrelMcpMessage>& Message, const FHttpResultCallback& OnComplete)
{
	const TSharedPtr<FKestrelMcpClient> Client = FindSession(Request, OnComplete);
	if (!Client.IsValid())
	{
		return;
	}
	const TOptional<FString> Version = KestrelMcpAccess::GetHeader(Request, McpEndpoint::VersionHeader);
	if (Version.IsSet() && !KestrelMcpVersions::IsKnownWithSessions(*Version))
	{
		McpEndpoint::Refuse(KestrelMcpError::InvalidRequest, TEXT("Unsupported MCP-Protocol-Version"),
			EHttpServerResponseCodes::BadRequest, OnComplete, Message->Id);
		return;
	}
	if (Message->Kind != EKestrelMcpMessageKind::Request)
	{
		Dispatcher.Notify(*Client, *Message);
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::Accepted, OnComplete);
		return;
	}
	const FKestrelMcpRequest Parts{ Message, Client };
	Dispatcher.Handle(Parts,
		[Id = Message->Id, OnComplete](const FKestrelMcpAnswer& Answer) { McpEndpoint::Send(Id, Answer, OnComplete); });
}

void FKestrelMcpEndpoint::HandleBatch(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	const TSharedPtr<FKestrelMcpClient> Client = FindSession(Request, OnComplete);
	if (!Client.IsValid())
	{
		return;
	}
	const FString Version =
		KestrelMcpAccess::GetHeader(Request, McpEndpoint::VersionHeader).Get(Client->ProtocolVersion);
	if (!Client->ProtocolVersion.Equals(KestrelMcpVersions::WithBatches) || !Version.Equals(Client->ProtocolVersion))
	{
		McpEndpoint::Refuse(KestrelMcpError::InvalidRequest, TEXT("This version of the protocol has no batches"),
			EHttpServerResponseCodes::BadRequest, OnComplete);
		return;
	}
	FKestrelMcpAnswer Answer;
	FKestrelMcpFault Fault;
	TArray<FKestrelMcpFault> Faults;
	const TArray<TSharedPtr<FKestrelMcpMessage>> Messages = FKestrelMcpMessage::ParseBatch(Request.Body, Faults, Fault);
	if (Messages.IsEmpty())
	{
		Answer.Fault = Fault;
		McpEndpoint::Send(nullptr, Answer, OnComplete);
		return;
	}
	MakeShared<FKestrelMcpBatch>(OnComplete)->Handle(Dispatcher, Client.ToSharedRef(), Messages, Faults);
}

void FKestrelMcpEndpoint::HandleDelete(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	const TSharedPtr<FKestrelMcpClient> Client = FindSession(Request, OnComplete);
	if (Client.IsValid())
	{
		Dispatcher.GetClients().End(Client.ToSharedRef());
		McpEndpoint::SendEmpty(EHttpServerResponseCodes::NoContent, OnComplete);
	}
}
