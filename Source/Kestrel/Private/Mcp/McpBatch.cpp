#include "Mcp/McpBatch.h"

#include "HttpServerConstants.h"
#include "HttpServerResponse.h"
#include "Mcp/McpDispatcher.h"

void FKestrelMcpBatch::Handle(FKestrelMcpDispatcher& Dispatcher, const TSharedRef<FKestrelMcpClient>& Client,
	const TArray<TSharedPtr<FKestrelMcpMessage>>& Messages, const TArray<FKestrelMcpFault>& Faults)
{
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		const TSharedPtr<FKestrelMcpMessage>& Message = Messages[Index];
		if (!Message.IsValid())
		{
			Add(nullptr, FKestrelMcpAnswer::Fail(Faults[Index].Code, Faults[Index].Message));
		}
		else if (Message->Kind == EKestrelMcpMessageKind::Request)
		{
			HandleRequest(Dispatcher, Client, Message.ToSharedRef());
		}
		else
		{
			Dispatcher.Notify(*Client, *Message);
		}
	}
	Close();
}

void FKestrelMcpBatch::HandleRequest(FKestrelMcpDispatcher& Dispatcher, const TSharedRef<FKestrelMcpClient>& Client,
	const TSharedRef<FKestrelMcpMessage>& Message)
{
	if (Message->Method.Equals(TEXT("initialize")) || FKestrelMcpDispatcher::IsStateless(*Message))
	{
		Add(Message->Id,
			FKestrelMcpAnswer::Fail(KestrelMcpError::InvalidRequest, TEXT("This must not be part of a batch")));
		return;
	}
	++NumAwaited;
	Dispatcher.Handle({ Message, Client }, [This = AsShared(), Id = Message->Id](const FKestrelMcpAnswer& Answer) {
		if (!Answer.IsNothing())
		{
			This->Add(Id, Answer);
		}
		This->Close();
	});
}

void FKestrelMcpBatch::Add(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer)
{
	Answers.Add(FKestrelMcpMessage::MakeText(Id, Answer));
}

void FKestrelMcpBatch::Close()
{
	if (--NumAwaited > 0)
	{
		return;
	}
	// There is nothing to answer to notifications, nor to what was cancelled.
	TUniquePtr<FHttpServerResponse> Response =
		Answers.IsEmpty() ? MakeUnique<FHttpServerResponse>()
						  : FHttpServerResponse::Create(
								TEXT("[") + FString::Join(Answers, TEXT(",")) + TEXT("]"), TEXT("application/json"));
	Response->Code = Answers.IsEmpty() ? EHttpServerResponseCodes::Accepted : EHttpServerResponseCodes::Ok;
	OnComplete(MoveTemp(Response));
}
