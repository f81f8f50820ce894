#include "Mcp/McpClient.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/DisplayText.h"
#include "HAL/PlatformTime.h"
#include "Mcp/McpSecret.h"
#include "Mcp/McpVersions.h"
#include "Misc/Guid.h"

#define LOCTEXT_NAMESPACE "KestrelMcp"

namespace McpClient
{
/** A name that a person can read in a line, whatever the client calls itself. */
FString MakeShownName(const FString& Name)
{
	constexpr int32 MaxLength = 60;
	const FString Shown = KestrelDisplayText::EscapeLine(Name.TrimStartAndEnd().Left(MaxLength));
	return Shown.IsEmpty() ? LOCTEXT("UnnamedClient", "unnamed client").ToString() : Shown;
}
}

FKestrelMcpClient::FKestrelMcpClient(const FString& InName, const FString& InProtocolVersion)
	: Name(McpClient::MakeShownName(InName))
	, ProtocolVersion(InProtocolVersion)
	, LastSeen(FPlatformTime::Seconds())
{
}

TSharedRef<FKestrelMcpChanges> FKestrelMcpClient::GetOrAddChanges()
{
	if (IsStateless() || Changes.IsEmpty())
	{
		Changes.Add(MakeShared<FKestrelMcpChanges>(Name));
	}
	if (Changes.Num() > MaxChanges)
	{
		Changes.RemoveAt(0);
	}
	return Changes.Last();
}

TSharedPtr<FKestrelMcpChanges> FKestrelMcpClient::FindChanges(const FString& Key) const
{
	const TSharedRef<FKestrelMcpChanges>* Found = Changes.FindByPredicate(
		[&Key](const TSharedRef<FKestrelMcpChanges>& Each) { return KestrelMcpSecret::IsSame(Each->Key, Key); });
	return Found ? TSharedPtr<FKestrelMcpChanges>(*Found) : nullptr;
}

bool FKestrelMcpClient::IsStateless() const
{
	return ProtocolVersion.Equals(KestrelMcpVersions::Stateless);
}

bool FKestrelMcpClient::TakesStructuredContent() const
{
	return ProtocolVersion.Compare(KestrelMcpVersions::FirstWithStructuredContent) >= 0;
}

FKestrelMcpChanges::FKestrelMcpChanges(const FString& InClientName)
	: Key(KestrelMcpSecret::Make())
	, ConversationId(FGuid::NewGuid().ToString(EGuidFormats::Digits))
	, ClientName(InClientName)
{
}

void FKestrelMcpChanges::Record(const FKestrelTranscriptEntry& Entry)
{
	if (!bIsRecorded)
	{
		bIsRecorded = true;
		Writer.Begin(FKestrelInterface::Get().GetTranscript().GetStore(), ConversationId,
			FText::Format(LOCTEXT("ConversationOf", "{0} (another assistant)"), FText::FromString(ClientName))
				.ToString(),
			EKestrelConversationOwner::Client);
	}
	Writer.Append(Entry);
}

FKestrelMcpScope::FKestrelMcpScope(FKestrelMcpChanges& InChanges)
	: Changes(InChanges)
	, ConversationBefore(FAgent::Get().GetConversationId())
{
	FAgent::Get().SetConversationId(Changes.ConversationId);
	FKestrelInterface::Get().Redirect = [this](const FKestrelTranscriptEntry& Entry) {
		Changes.Record(Entry);
		if (Entry.Kind != EKestrelTranscriptKind::Change)
		{
			Lines.Add(Entry.Text);
		}
	};
}

FKestrelMcpScope::~FKestrelMcpScope()
{
	FKestrelInterface::Get().Redirect.Reset();
	FAgent::Get().SetConversationId(ConversationBefore);
}

TSharedRef<FKestrelMcpClient> FKestrelMcpClients::Open(const FString& Name, const FString& ProtocolVersion)
{
	MakeRoom();
	const TSharedRef<FKestrelMcpClient> Client = MakeShared<FKestrelMcpClient>(Name, ProtocolVersion);
	Client->SessionId = KestrelMcpSecret::Make();
	Clients.Add(Client);
	OnChanged.Broadcast();
	return Client;
}

TSharedPtr<FKestrelMcpClient> FKestrelMcpClients::Find(const FString& SessionId)
{
	for (const TSharedRef<FKestrelMcpClient>& Client : Clients)
	{
		if (!Client->SessionId.IsEmpty() && KestrelMcpSecret::IsSame(Client->SessionId, SessionId))
		{
			Client->LastSeen = FPlatformTime::Seconds();
			return Client;
		}
	}
	return nullptr;
}

TSharedRef<FKestrelMcpClient> FKestrelMcpClients::FindOrAddStateless(const FString& Name)
{
	const TSharedRef<FKestrelMcpClient> New = MakeShared<FKestrelMcpClient>(Name, KestrelMcpVersions::Stateless);
	for (const TSharedRef<FKestrelMcpClient>& Client : Clients)
	{
		if (Client->IsStateless() && Client->Name.Equals(New->Name))
		{
			Client->LastSeen = FPlatformTime::Seconds();
			return Client;
		}
	}
	MakeRoom();
	Clients.Add(New);
	OnChanged.Broadcast();
	return New;
}

void FKestrelMcpClients::MakeRoom()
{
	EndIdle();
	if (Clients.Num() < MaxClients)
	{
		return;
	}
	TSharedRef<FKestrelMcpClient> Oldest = Clients[0];
	for (const TSharedRef<FKestrelMcpClient>& Client : Clients)
	{
		Oldest = Client->LastSeen < Oldest->LastSeen ? Client : Oldest;
	}
	End(Oldest);
}

void FKestrelMcpClients::End(const TSharedRef<FKestrelMcpClient>& Client)
{
	OnEnded.ExecuteIfBound(*Client);
	Clients.RemoveAt(Clients.Find(Client)); // which Client may be an entry of
	OnChanged.Broadcast();
}

void FKestrelMcpClients::EndAll()
{
	while (!Clients.IsEmpty())
	{
		End(Clients.Last());
	}
}

void FKestrelMcpClients::EndIdle()
{
	const double Now = FPlatformTime::Seconds();
	for (int32 Index = Clients.Num() - 1; Index >= 0; --Index)
	{
		if (Now - Clients[Index]->LastSeen > IdleSeconds)
		{
			End(Clients[Index]);
		}
	}
}

#undef LOCTEXT_NAMESPACE
