#include "Support/TestMcpClient.h"

#include "Agent/Agent.h"
#include "Agent/Text/JsonText.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

TArray<uint8> KestrelTest::ToBytes(const FString& Json)
{
	const FString Text = Json.Replace(TEXT("'"), TEXT("\""));
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	return TArray<uint8>(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
}

FKestrelTestMcpServer::FKestrelTestMcpServer()
	: UndoBefore(FAgent::Get().GetUndoConversationID())
	, RedoBefore(FAgent::Get().GetRedoConversationID())
{
}

FKestrelTestMcpServer::~FKestrelTestMcpServer()
{
	FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	FAgent::Get().SetUndoConversationID(UndoBefore);
	FAgent::Get().SetRedoConversationID(RedoBefore);
	FAgent::Get().ClearToolResults();
}

FKestrelTestMcpClient::FKestrelTestMcpClient(FKestrelTestMcpServer& InServer, const TCHAR* Name, const TCHAR* Version)
	: Server(InServer)
	, Meta(FString(Version).Equals(TEXT("2026-07-28"))
			   ? FString::Printf(TEXT("'_meta':{'io.modelcontextprotocol/protocolVersion':'%s',"
									  "'io.modelcontextprotocol/clientCapabilities':{},"
									  "'io.modelcontextprotocol/clientInfo':{'name':'%s'}},"),
					 Version, Name)
			   : FString())
{
	if (!Meta.IsEmpty())
	{
		return;
	}
	FKestrelMcpFault Fault;
	const FString Text = FString::Printf(TEXT("{'jsonrpc':'2.0','id':0,'method':'initialize','params':{"
											  "'protocolVersion':'%s','capabilities':{},'clientInfo':{'name':'%s'}}}"),
		Version, Name);
	const TSharedPtr<FKestrelMcpMessage> Message = FKestrelMcpMessage::Parse(KestrelTest::ToBytes(Text), Fault);
	Answers->Add(0, Server.Dispatcher.Initialize(*Message, Client));
}

int32 FKestrelTestMcpClient::Request(const FString& Method, const FString& Params)
{
	const int32 Number = ++NumRequests;
	FKestrelMcpFault Fault;
	const TSharedPtr<FKestrelMcpMessage> Message = FKestrelMcpMessage::Parse(
		KestrelTest::ToBytes(FString::Printf(TEXT("{'jsonrpc':'2.0','id':%d,'method':'%s','params':{%s'x':0%s}"),
			Number, *Method, *Meta, Params.Len() > 2 ? *(TEXT(",") + Params.RightChop(1)) : TEXT("}"))),
		Fault);
	checkf(Message.IsValid(), TEXT("a test's own message: %s"), *Fault.Message);
	Server.Dispatcher.Handle(
		{ Message.ToSharedRef(), Client, !Meta.IsEmpty() }, [Number, Kept = Answers](const FKestrelMcpAnswer& Answer) {
			checkf(!Kept->Contains(Number), TEXT("a request is answered once"));
			Kept->Add(Number, Answer);
		});
	return Number;
}

int32 FKestrelTestMcpClient::Call(const FString& Tool, const FString& Arguments)
{
	return Request(TEXT("tools/call"), FString::Printf(TEXT("{'name':'%s','arguments':%s}"), *Tool, *Arguments));
}

void FKestrelTestMcpClient::Cancel(int32 Number)
{
	FKestrelMcpFault Fault;
	Server.Dispatcher.Notify(*Client,
		*FKestrelMcpMessage::Parse(
			KestrelTest::ToBytes(FString::Printf(
				TEXT("{'jsonrpc':'2.0','method':'notifications/cancelled','params':{'requestId':%d}}"), Number)),
			Fault));
}

const FKestrelMcpAnswer* FKestrelTestMcpClient::FindAnswer(int32 Number) const
{
	return Answers->Find(Number);
}

FString FKestrelTestMcpClient::GetAnswer(int32 Number) const
{
	const FKestrelMcpAnswer* Answer = FindAnswer(Number);
	if (!Answer)
	{
		return TEXT("waiting");
	}
	if (Answer->Fault.IsSet())
	{
		return FString::Printf(TEXT("%d %s"), Answer->Fault->Code, *Answer->Fault->Message);
	}
	return Answer->Result.IsValid()
			   ? KestrelJson::ToCondensedText(Answer->Result.ToSharedRef()).Replace(TEXT("\""), TEXT("'"))
			   : TEXT("nothing");
}

FString FKestrelTestMcpClient::GetText(int32 Number) const
{
	const FKestrelMcpAnswer* Answer = FindAnswer(Number);
	if (!Answer || !Answer->Result.IsValid() || !Answer->Result->HasField(TEXT("content")))
	{
		return GetAnswer(Number);
	}
	return Answer->Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"));
}

FString FKestrelTestMcpClient::GetMember(int32 Number, const FString& Path) const
{
	const FKestrelMcpAnswer* Answer = FindAnswer(Number);
	TArray<FString> Names;
	Path.ParseIntoArray(Names, TEXT("."));
	TSharedPtr<FJsonObject> Object = Answer ? Answer->Result : nullptr;
	for (int32 Index = 0; Index + 1 < Names.Num() && Object.IsValid(); ++Index)
	{
		const TSharedPtr<FJsonObject>* Next = nullptr;
		Object = Object->TryGetObjectField(Names[Index], Next) ? *Next : nullptr;
	}
	FString Text;
	return Object.IsValid() && Object->TryGetStringField(Names.Last(), Text) ? Text : FString();
}
