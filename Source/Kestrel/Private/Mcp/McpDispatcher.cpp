#include "Mcp/McpDispatcher.h"

#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Mcp/McpHistoryTools.h"
#include "Mcp/McpPrompts.h"
#include "Mcp/McpResources.h"
#include "Mcp/McpTools.h"
#include "Mcp/McpVersions.h"
#include "Misc/App.h"
#include "Serialization/JsonTypes.h"

namespace McpDispatcher
{
const TCHAR* const VersionField = TEXT("io.modelcontextprotocol/protocolVersion");
const TCHAR* const ClientInfoField = TEXT("io.modelcontextprotocol/clientInfo");
const TCHAR* const CapabilitiesField = TEXT("io.modelcontextprotocol/clientCapabilities");
const TCHAR* const ServerInfoField = TEXT("io.modelcontextprotocol/serverInfo");
const TCHAR* const DiscoverMethod = TEXT("server/discover");
const TCHAR* const CallMethod = TEXT("tools/call");

constexpr int32 BadRequest = 400;
constexpr int32 NotFound = 404;
/** Of lists that are the same as long as the server runs. */
constexpr int32 ListKeptSeconds = 3600;
constexpr int32 NotKept = 0;
constexpr int32 NeverKept = -1;

TSharedRef<FJsonObject> MakeServerInfo()
{
	const TSharedRef<FJsonObject> Info = MakeShared<FJsonObject>();
	Info->SetStringField(TEXT("name"), TEXT("kestrel"));
	Info->SetStringField(TEXT("title"), TEXT("Kestrel"));
	Info->SetStringField(TEXT("version"), TEXT("1.0"));
	return Info;
}

TSharedRef<FJsonObject> MakeCapabilities()
{
	const TSharedRef<FJsonObject> Capabilities = MakeShared<FJsonObject>();
	for (const TCHAR* Name : { TEXT("tools"), TEXT("resources"), TEXT("prompts"), TEXT("completions") })
	{
		Capabilities->SetObjectField(Name, MakeShared<FJsonObject>());
	}
	return Capabilities;
}

FString MakeInstructions()
{
	return FString::Printf(
		TEXT(
			"These tools work in the Unreal Editor, in the project %s. What only reads the project runs at once. What "
			"changes something waits until the person at the editor has approved it: while a result has a call_id, call "
			"get_call_result with it. Paths are relative to the project directory. undo_changes reverts everything that "
			"you have changed."),
		FApp::GetProjectName());
}

FString GetString(const FJsonObject& Object, const TCHAR* Field)
{
	const TSharedPtr<FJsonValue> Value = Object.TryGetField(Field);
	FString Text;
	if (Value.IsValid() && Value->Type == EJson::String)
	{
		Value->TryGetString(Text);
	}
	return Text;
}

/** An object member; empty when it is absent or null, and null when it is something else. */
TSharedPtr<FJsonObject> GetOptionalObject(const FJsonObject& Object, const TCHAR* Field)
{
	const TSharedPtr<FJsonValue> Value = Object.TryGetField(Field);
	if (!Value.IsValid() || Value->IsNull())
	{
		return MakeShared<FJsonObject>();
	}
	return Value->Type == EJson::Object ? Value->AsObject() : nullptr;
}

FString GetClientName(const FJsonObject& Holder, const TCHAR* Field)
{
	const TSharedPtr<FJsonObject> Info = GetOptionalObject(Holder, Field);
	return Info.IsValid() ? GetString(*Info, TEXT("name")) : FString();
}

/** Everything is on the first page. */
bool AsksForAnotherPage(const FKestrelMcpMessage& Message)
{
	const TSharedPtr<FJsonValue> Cursor = Message.Params->TryGetField(TEXT("cursor"));
	return Cursor.IsValid() && !Cursor->IsNull();
}

FKestrelMcpAnswer AnswerList(const FKestrelMcpMessage& Message, TSharedRef<FJsonObject> (*MakeList)())
{
	return AsksForAnotherPage(Message) ? FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, TEXT("Unknown cursor"))
									   : FKestrelMcpAnswer::Of(MakeList());
}

TSharedRef<FJsonObject> MakeToolList()
{
	return KestrelMcpTools::MakeList(/*bStateless*/ false);
}

TSharedRef<FJsonObject> MakeStatelessToolList()
{
	return KestrelMcpTools::MakeList(/*bStateless*/ true);
}

/**
 * What a call is to belong to, and its arguments without that.
 *
 * @return false when there are no such changes, or have to be some
 */
bool FindChanges(FKestrelMcpClient& Client, const FKestrelTool& Tool, TSharedRef<FJsonObject>& InOutArguments,
	TSharedPtr<FKestrelMcpChanges>& OutChanges)
{
	if (Tool.Kind == EKestrelToolKind::Read)
	{
		return true;
	}
	if (!Client.IsStateless())
	{
		OutChanges = Client.GetOrAddChanges();
		return true;
	}
	const FString Key = GetString(*InOutArguments, KestrelMcpTools::ChangesId);
	const TSharedRef<FJsonObject> Others = MakeShared<FJsonObject>();
	Others->Values = InOutArguments->Values;
	Others->RemoveField(KestrelMcpTools::ChangesId);
	InOutArguments = Others;
	OutChanges = Client.FindChanges(Key);
	return OutChanges.IsValid() || (Key.IsEmpty() && !KestrelMcpHistoryTools::IsOne(Tool));
}

TArray<TSharedPtr<FJsonValue>> ListVersions()
{
	TArray<TSharedPtr<FJsonValue>> Versions = { MakeShared<FJsonValueString>(KestrelMcpVersions::Stateless) };
	for (const TCHAR* Version : KestrelMcpVersions::WithSessions)
	{
		Versions.Add(MakeShared<FJsonValueString>(Version));
	}
	return Versions;
}
}

/** A method that answers at once. */
struct FKestrelMcpDispatcher::FMethod
{
	enum class EEra : uint8
	{
		Both,
		WithSessions,
		Stateless,
	};

	const TCHAR* Name;
	EEra Era;
	FKestrelMcpAnswer (FKestrelMcpDispatcher::*Answer)(const FKestrelMcpMessage&, FKestrelMcpClient&);
	int32 KeptSeconds; // less than 0: is not told
};

const TArray<FKestrelMcpDispatcher::FMethod>& FKestrelMcpDispatcher::GetMethods()
{
	using namespace McpDispatcher;
	static const TArray<FMethod> Methods = {
		{ TEXT("ping"), FMethod::EEra::WithSessions, &FKestrelMcpDispatcher::Ping, NeverKept },
		{ DiscoverMethod, FMethod::EEra::Stateless, &FKestrelMcpDispatcher::Discover, ListKeptSeconds },
		{ TEXT("tools/list"), FMethod::EEra::Both, &FKestrelMcpDispatcher::ListTools, ListKeptSeconds },
		{ TEXT("resources/list"), FMethod::EEra::Both, &FKestrelMcpDispatcher::ListResources, ListKeptSeconds },
		{ TEXT("resources/templates/list"), FMethod::EEra::Both, &FKestrelMcpDispatcher::ListResourceTemplates,
			ListKeptSeconds },
		{ TEXT("resources/read"), FMethod::EEra::Both, &FKestrelMcpDispatcher::ReadResource, NotKept },
		{ TEXT("prompts/list"), FMethod::EEra::Both, &FKestrelMcpDispatcher::ListPrompts, ListKeptSeconds },
		{ TEXT("prompts/get"), FMethod::EEra::Both, &FKestrelMcpDispatcher::GetPrompt, NeverKept },
		{ TEXT("completion/complete"), FMethod::EEra::Both, &FKestrelMcpDispatcher::Complete, NeverKept },
	};
	return Methods;
}

FKestrelMcpDispatcher::FKestrelMcpDispatcher()
{
	Clients.OnEnded.BindLambda([this](const FKestrelMcpClient& Client) { Calls.WithdrawAllOf(Client); });
}

bool FKestrelMcpDispatcher::IsStateless(const FKestrelMcpMessage& Message)
{
	return Message.Meta->HasField(McpDispatcher::VersionField) || Message.Method.Equals(McpDispatcher::DiscoverMethod);
}

bool FKestrelMcpDispatcher::CheckEnvelope(const FKestrelMcpMessage& Message, FKestrelMcpFault& OutFault)
{
	const FString Version = McpDispatcher::GetString(*Message.Meta, McpDispatcher::VersionField);
	const TSharedPtr<FJsonValue> Capabilities = Message.Meta->TryGetField(McpDispatcher::CapabilitiesField);
	if (Version.IsEmpty() || !Capabilities.IsValid() || Capabilities->Type != EJson::Object)
	{
		OutFault = { KestrelMcpError::InvalidParams,
			TEXT("_meta must name the protocol version and the client's capabilities"), nullptr,
			McpDispatcher::BadRequest };
		return false;
	}
	if (!Version.Equals(KestrelMcpVersions::Stateless))
	{
		const TSharedRef<FJsonObject> Data = MakeShared<FJsonObject>();
		Data->SetArrayField(TEXT("supported"), McpDispatcher::ListVersions());
		Data->SetStringField(TEXT("requested"), Version);
		OutFault = { KestrelMcpError::UnsupportedVersion, TEXT("Unsupported protocol version"), Data,
			McpDispatcher::BadRequest };
		return false;
	}
	return true;
}

FKestrelMcpAnswer FKestrelMcpDispatcher::Seal(const FKestrelMcpAnswer& Answer, int32 KeptSeconds)
{
	if (!Answer.Result.IsValid())
	{
		return Answer;
	}
	if (!Answer.Result->HasField(TEXT("resultType")))
	{
		Answer.Result->SetStringField(TEXT("resultType"), TEXT("complete"));
	}
	if (KeptSeconds >= 0)
	{
		constexpr int32 MillisecondsPerSecond = 1000;
		Answer.Result->SetNumberField(TEXT("ttlMs"), KeptSeconds * MillisecondsPerSecond);
		Answer.Result->SetStringField(TEXT("cacheScope"), TEXT("private"));
	}
	const TSharedRef<FJsonObject> Meta = MakeShared<FJsonObject>();
	Meta->SetObjectField(McpDispatcher::ServerInfoField, McpDispatcher::MakeServerInfo());
	Answer.Result->SetObjectField(TEXT("_meta"), Meta);
	return Answer;
}

void FKestrelMcpDispatcher::Handle(const FKestrelMcpRequest& Request, const FKestrelMcpReply& Reply)
{
	const FKestrelMcpMessage& Message = *Request.Message;
	FKestrelMcpFault Fault;
	if (Request.bIsStateless && !CheckEnvelope(Message, Fault))
	{
		FKestrelMcpAnswer Answer;
		Answer.Fault = Fault;
		Reply(Answer);
		return;
	}
	const TSharedRef<FKestrelMcpClient> Client =
		Request.bIsStateless || !Request.Client.IsValid()
			? Clients.FindOrAddStateless(McpDispatcher::GetClientName(*Message.Meta, McpDispatcher::ClientInfoField))
			: Request.Client.ToSharedRef();
	if (Message.Method.Equals(McpDispatcher::CallMethod))
	{
		CallTool(Message, Client,
			Client->IsStateless() ? FKestrelMcpReply([Reply](const FKestrelMcpAnswer& Answer) {
				Reply(Seal(Answer, McpDispatcher::NeverKept));
			})
								  : Reply);
		return;
	}
	const FMethod::EEra OtherEra = Client->IsStateless() ? FMethod::EEra::WithSessions : FMethod::EEra::Stateless;
	const FMethod* Method = GetMethods().FindByPredicate(
		[&](const FMethod& Each) { return Message.Method.Equals(Each.Name) && Each.Era != OtherEra; });
	if (!Method)
	{
		Reply(FKestrelMcpAnswer::Fail(KestrelMcpError::MethodNotFound, TEXT("Method not found"),
			Client->IsStateless() ? McpDispatcher::NotFound : 200));
		return;
	}
	if (Method->KeptSeconds == McpDispatcher::ListKeptSeconds && !McpDispatcher::AsksForAnotherPage(Message))
	{
		Reply(AnswerConstant(*Method, Message, *Client));
		return;
	}
	const FKestrelMcpAnswer Answer = (this->*Method->Answer)(Message, *Client);
	Reply(Client->IsStateless() ? Seal(Answer, Method->KeptSeconds) : Answer);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::AnswerConstant(
	const FMethod& Method, const FKestrelMcpMessage& Message, FKestrelMcpClient& Client)
{
	const bool bStateless = Client.IsStateless();
	TSharedPtr<const FString>& Text =
		Constants.FindOrAdd(FString(Method.Name) + (bStateless ? TEXT(" stateless") : TEXT("")));
	if (!Text.IsValid())
	{
		FKestrelMcpAnswer Answer = (this->*Method.Answer)(Message, Client);
		Answer = bStateless ? Seal(Answer, Method.KeptSeconds) : Answer;
		Text = MakeShared<FString>(KestrelJson::ToCondensedText(Answer.Result.ToSharedRef()));
	}
	FKestrelMcpAnswer Answer;
	Answer.ResultText = Text;
	return Answer;
}

void FKestrelMcpDispatcher::Notify(const FKestrelMcpClient& Client, const FKestrelMcpMessage& Message)
{
	if (Message.Method.Equals(TEXT("notifications/cancelled")))
	{
		Calls.Cancel(Client, Message.Params->TryGetField(TEXT("requestId")));
	}
}

FKestrelMcpAnswer FKestrelMcpDispatcher::Initialize(
	const FKestrelMcpMessage& Message, TSharedPtr<FKestrelMcpClient>& OutClient)
{
	const FString Asked = McpDispatcher::GetString(*Message.Params, TEXT("protocolVersion"));
	if (Asked.IsEmpty())
	{
		return FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, TEXT("protocolVersion is missing"));
	}
	OutClient = Clients.Open(
		McpDispatcher::GetClientName(*Message.Params, TEXT("clientInfo")), KestrelMcpVersions::Negotiate(Asked));
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("protocolVersion"), OutClient->ProtocolVersion);
	Result->SetObjectField(TEXT("capabilities"), McpDispatcher::MakeCapabilities());
	Result->SetObjectField(TEXT("serverInfo"), McpDispatcher::MakeServerInfo());
	Result->SetStringField(TEXT("instructions"), McpDispatcher::MakeInstructions());
	return FKestrelMcpAnswer::Of(Result);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::Ping(const FKestrelMcpMessage&, FKestrelMcpClient&)
{
	return FKestrelMcpAnswer::Of(MakeShared<FJsonObject>());
}

FKestrelMcpAnswer FKestrelMcpDispatcher::Discover(const FKestrelMcpMessage&, FKestrelMcpClient&)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetArrayField(TEXT("supportedVersions"), McpDispatcher::ListVersions());
	Result->SetObjectField(TEXT("capabilities"), McpDispatcher::MakeCapabilities());
	Result->SetStringField(TEXT("instructions"), McpDispatcher::MakeInstructions());
	return FKestrelMcpAnswer::Of(Result);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::ListTools(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client)
{
	return McpDispatcher::AnswerList(
		Message, Client.IsStateless() ? &McpDispatcher::MakeStatelessToolList : &McpDispatcher::MakeToolList);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::ListResources(const FKestrelMcpMessage& Message, FKestrelMcpClient&)
{
	return McpDispatcher::AnswerList(Message, &KestrelMcpResources::MakeList);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::ListResourceTemplates(const FKestrelMcpMessage& Message, FKestrelMcpClient&)
{
	return McpDispatcher::AnswerList(Message, &KestrelMcpResources::MakeTemplateList);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::ReadResource(const FKestrelMcpMessage& Message, FKestrelMcpClient& Client)
{
	const FString Uri = McpDispatcher::GetString(*Message.Params, TEXT("uri"));
	FString Error = TEXT("uri is missing");
	const TSharedPtr<FJsonObject> Result = Uri.IsEmpty() ? nullptr : KestrelMcpResources::Read(Uri, Error);
	if (Result.IsValid())
	{
		return FKestrelMcpAnswer::Of(Result.ToSharedRef());
	}
	FKestrelMcpAnswer Answer = FKestrelMcpAnswer::Fail(
		Client.IsStateless() ? KestrelMcpError::InvalidParams : KestrelMcpError::ResourceNotFound, Error);
	Answer.Fault->Data = MakeShared<FJsonObject>();
	Answer.Fault->Data->SetStringField(TEXT("uri"), Uri);
	return Answer;
}

FKestrelMcpAnswer FKestrelMcpDispatcher::ListPrompts(const FKestrelMcpMessage& Message, FKestrelMcpClient&)
{
	return McpDispatcher::AnswerList(Message, &KestrelMcpPrompts::MakeList);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::GetPrompt(const FKestrelMcpMessage& Message, FKestrelMcpClient&)
{
	const TSharedPtr<FJsonObject> Arguments = McpDispatcher::GetOptionalObject(*Message.Params, TEXT("arguments"));
	FString Error = TEXT("arguments must be an object");
	const TSharedPtr<FJsonObject> Result =
		Arguments.IsValid()
			? KestrelMcpPrompts::Get(McpDispatcher::GetString(*Message.Params, TEXT("name")), *Arguments, Error)
			: nullptr;
	return Result.IsValid() ? FKestrelMcpAnswer::Of(Result.ToSharedRef())
							: FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, Error);
}

FKestrelMcpAnswer FKestrelMcpDispatcher::Complete(const FKestrelMcpMessage& Message, FKestrelMcpClient&)
{
	const TSharedPtr<FJsonObject> Reference = McpDispatcher::GetOptionalObject(*Message.Params, TEXT("ref"));
	const TSharedPtr<FJsonObject> Argument = McpDispatcher::GetOptionalObject(*Message.Params, TEXT("argument"));
	if (!Reference.IsValid() || !Argument.IsValid())
	{
		return FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, TEXT("ref and argument must be objects"));
	}
	const FString Name = McpDispatcher::GetString(*Argument, TEXT("name"));
	const bool bOfPrompt = McpDispatcher::GetString(*Reference, TEXT("type")).Equals(TEXT("ref/prompt"));
	if (bOfPrompt && !KestrelMcpPrompts::HasArgument(McpDispatcher::GetString(*Reference, TEXT("name")), Name))
	{
		return FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, TEXT("Unknown prompt or argument"));
	}
	const TOptional<TArray<FString>> Found =
		KestrelMcpResources::Complete(Name, McpDispatcher::GetString(*Argument, TEXT("value")));
	if (!Found.IsSet() && !bOfPrompt)
	{
		return FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidParams, TEXT("Unknown resource template or variable"));
	}
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FString& Value : Found.Get(TArray<FString>()))
	{
		Values.Add(MakeShared<FJsonValueString>(Value));
	}
	const TSharedRef<FJsonObject> Completion = MakeShared<FJsonObject>();
	Completion->SetArrayField(TEXT("values"), Values);
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetObjectField(TEXT("completion"), Completion);
	return FKestrelMcpAnswer::Of(Result);
}

void FKestrelMcpDispatcher::CallTool(
	const FKestrelMcpMessage& Message, const TSharedRef<FKestrelMcpClient>& Client, const FKestrelMcpReply& Reply)
{
	const FKestrelTool* Tool = KestrelMcpTools::Find(McpDispatcher::GetString(*Message.Params, TEXT("name")));
	const TSharedPtr<FJsonObject> Arguments = McpDispatcher::GetOptionalObject(*Message.Params, TEXT("arguments"));
	if (!Tool || !Arguments.IsValid())
	{
		Reply(FKestrelMcpAnswer::Fail(
			KestrelMcpError::InvalidParams, Tool ? TEXT("arguments must be an object") : TEXT("Unknown tool")));
		return;
	}
	TSharedRef<FJsonObject> Input = Arguments.ToSharedRef();
	TSharedPtr<FKestrelMcpChanges> Changes;
	const FString State = McpDispatcher::GetString(*Message.Params, TEXT("requestState"));
	if (!McpDispatcher::FindChanges(*Client, *Tool, Input, Changes))
	{
		Reply(FKestrelMcpAnswer::Of(KestrelMcpTools::MakeResult(*Client, Tool->WireName,
			TEXT("Error: No changes are known under this changes_id. The result of each change has one."))));
	}
	else if (!State.IsEmpty())
	{
		const FKestrelMcpCall* Call = Calls.Find(State);
		const bool bIsSameCall =
			Call && Call->Tool == Tool && Call->Client == Client && (!Changes.IsValid() || Call->Changes == Changes) &&
			KestrelJson::ToCondensedText(Call->Arguments).Equals(KestrelJson::ToCondensedText(Input));
		AskAgain(bIsSameCall ? State : FString(), Message, *Client, Reply);
	}
	else if (FCString::Strcmp(Tool->WireName, KestrelMcpTools::GetCallResult) == 0)
	{
		AskAgain(McpDispatcher::GetString(*Input, KestrelMcpTools::CallId), Message, *Client, Reply);
	}
	else
	{
		Calls.Add(Client, Message.Id, *Tool, Input, Changes, Reply);
	}
}

void FKestrelMcpDispatcher::AskAgain(
	const FString& Handle, const FKestrelMcpMessage& Message, FKestrelMcpClient& Client, const FKestrelMcpReply& Reply)
{
	if (!Calls.AskAgain(Handle, Message.Id, Reply))
	{
		Reply(FKestrelMcpAnswer::Of(KestrelMcpTools::MakeResult(Client, KestrelMcpTools::GetCallResult,
			TEXT("Error: No call waits under this id. It has been withdrawn, or its result was fetched."))));
	}
}
