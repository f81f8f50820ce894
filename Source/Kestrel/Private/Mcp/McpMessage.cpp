#include "Mcp/McpMessage.h"

#include "Agent/Text/JsonText.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Serialization/JsonTypes.h"

namespace McpMessage
{
const TCHAR* const Version = TEXT("2.0");

/** A number that comes back as it was sent. */
bool IsWholeNumber(const FJsonValue& Value)
{
	constexpr double MaxExact = 9007199254740992.0; // 2^53
	double Number = 0.0;
	return Value.Type == EJson::Number && Value.TryGetNumber(Number) && FMath::Abs(Number) <= MaxExact &&
		   static_cast<double>(static_cast<int64>(Number)) == Number;
}

bool IsId(const TSharedPtr<FJsonValue>& Value)
{
	return Value.IsValid() && (Value->Type == EJson::String || IsWholeNumber(*Value));
}

TSharedRef<FJsonObject> GetObject(const FJsonObject& Object, const TCHAR* Field)
{
	const TSharedPtr<FJsonObject>* Found = nullptr;
	return Object.TryGetObjectField(Field, Found) && Found->IsValid() ? Found->ToSharedRef()
																	  : MakeShared<FJsonObject>();
}

FString ToText(const TArray<uint8>& Bytes)
{
	const FUTF8ToTCHAR Utf8(reinterpret_cast<const ANSICHAR*>(Bytes.GetData()), Bytes.Num());
	return FString::ConstructFromPtrSize(Utf8.Get(), Utf8.Length());
}

bool Refuse(int32 Code, const TCHAR* Message, FKestrelMcpFault& OutFault)
{
	constexpr int32 BadRequest = 400;
	OutFault = { Code, Message, nullptr, BadRequest };
	return false;
}

/** @return false, with the fault, for what is no message of the protocol */
bool Check(const FJsonObject& Object, FKestrelMcpFault& OutFault)
{
	FString Text;
	if (!Object.TryGetStringField(TEXT("jsonrpc"), Text) || !Text.Equals(Version))
	{
		return Refuse(KestrelMcpError::InvalidRequest, TEXT("\"jsonrpc\" must be \"2.0\""), OutFault);
	}
	const TSharedPtr<FJsonValue> Method = Object.TryGetField(TEXT("method"));
	const bool bIsResponse = Object.HasField(TEXT("result")) || Object.HasField(TEXT("error"));
	if (Method.IsValid() ? Method->Type != EJson::String : !bIsResponse)
	{
		return Refuse(KestrelMcpError::InvalidRequest, TEXT("\"method\" must be a string"), OutFault);
	}
	if (Object.HasField(TEXT("id")) && !IsId(Object.TryGetField(TEXT("id"))))
	{
		return Refuse(KestrelMcpError::InvalidRequest, TEXT("\"id\" must be a string or an integer"), OutFault);
	}
	const TSharedPtr<FJsonValue> Params = Object.TryGetField(TEXT("params"));
	if (Params.IsValid() && Params->Type != EJson::Object)
	{
		return Refuse(KestrelMcpError::InvalidRequest, TEXT("\"params\" must be an object"), OutFault);
	}
	return true;
}
}

FKestrelMcpAnswer FKestrelMcpAnswer::Of(const TSharedRef<FJsonObject>& Result)
{
	FKestrelMcpAnswer Answer;
	Answer.Result = Result;
	return Answer;
}

FKestrelMcpAnswer FKestrelMcpAnswer::Fail(int32 Code, const FString& Message, int32 HttpStatus)
{
	FKestrelMcpAnswer Answer;
	Answer.Fault = FKestrelMcpFault{ Code, Message, nullptr, HttpStatus };
	return Answer;
}

FKestrelMcpMessage::FKestrelMcpMessage()
	: Params(MakeShared<FJsonObject>())
	, Meta(MakeShared<FJsonObject>())
{
}

TSharedPtr<FKestrelMcpMessage> FKestrelMcpMessage::Parse(const TArray<uint8>& Bytes, FKestrelMcpFault& OutFault)
{
	const TSharedPtr<FJsonObject> Object = KestrelJson::ParseObject(McpMessage::ToText(Bytes));
	if (!Object.IsValid())
	{
		McpMessage::Refuse(KestrelMcpError::Parse, TEXT("The body is not a JSON object"), OutFault);
		return nullptr;
	}
	return Make(*Object, OutFault);
}

bool FKestrelMcpMessage::IsBatch(const TArray<uint8>& Bytes)
{
	const uint8* First =
		Bytes.FindByPredicate([](uint8 Byte) { return Byte != ' ' && Byte != '\t' && Byte != '\r' && Byte != '\n'; });
	return First && *First == '[';
}

TArray<TSharedPtr<FKestrelMcpMessage>> FKestrelMcpMessage::ParseBatch(
	const TArray<uint8>& Bytes, TArray<FKestrelMcpFault>& OutFaults, FKestrelMcpFault& OutFault)
{
	const TOptional<TArray<TSharedPtr<FJsonValue>>> Values = KestrelJson::ParseArray(McpMessage::ToText(Bytes));
	TArray<TSharedPtr<FKestrelMcpMessage>> Messages;
	if (!Values.IsSet())
	{
		McpMessage::Refuse(KestrelMcpError::Parse, TEXT("The body is not a JSON array"), OutFault);
		return Messages;
	}
	if (Values->IsEmpty() || Values->Num() > MaxBatch)
	{
		McpMessage::Refuse(KestrelMcpError::InvalidRequest,
			Values->IsEmpty() ? TEXT("The batch is empty") : TEXT("The batch has too many messages"), OutFault);
		return Messages;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Values)
	{
		FKestrelMcpFault& Fault = OutFaults.AddDefaulted_GetRef();
		const TSharedPtr<FJsonObject>* Object = nullptr;
		const bool bIsObject = Value.IsValid() && Value->TryGetObject(Object);
		if (!bIsObject)
		{
			McpMessage::Refuse(KestrelMcpError::InvalidRequest, TEXT("A message must be an object"), Fault);
		}
		Messages.Add(bIsObject ? Make(**Object, Fault) : nullptr);
	}
	return Messages;
}

TSharedPtr<FKestrelMcpMessage> FKestrelMcpMessage::Make(const FJsonObject& Object, FKestrelMcpFault& OutFault)
{
	if (!McpMessage::Check(Object, OutFault))
	{
		return nullptr;
	}
	const TSharedRef<FKestrelMcpMessage> Message = MakeShareable(new FKestrelMcpMessage());
	Message->Id = Object.TryGetField(TEXT("id"));
	const bool bHasMethod = Object.TryGetStringField(TEXT("method"), Message->Method);
	Message->Kind = !bHasMethod             ? EKestrelMcpMessageKind::Response
					: Message->Id.IsValid() ? EKestrelMcpMessageKind::Request
											: EKestrelMcpMessageKind::Notification;
	Message->Params = McpMessage::GetObject(Object, TEXT("params"));
	Message->Meta = McpMessage::GetObject(*Message->Params, TEXT("_meta"));
	return Message;
}

FString FKestrelMcpMessage::MakeText(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer)
{
	const TSharedRef<FJsonObject> Message = MakeShared<FJsonObject>();
	Message->SetStringField(TEXT("jsonrpc"), McpMessage::Version);
	if (Id.IsValid())
	{
		Message->SetField(TEXT("id"), Id);
	}
	if (Answer.ResultText.IsValid())
	{
		return KestrelJson::ToCondensedText(Message).LeftChop(1) + TEXT(",\"result\":") + *Answer.ResultText +
			   TEXT("}");
	}
	if (Answer.Fault.IsSet())
	{
		const TSharedRef<FJsonObject> Error = MakeShared<FJsonObject>();
		Error->SetNumberField(TEXT("code"), Answer.Fault->Code);
		Error->SetStringField(TEXT("message"), Answer.Fault->Message);
		if (Answer.Fault->Data.IsValid())
		{
			Error->SetObjectField(TEXT("data"), Answer.Fault->Data);
		}
		Message->SetObjectField(TEXT("error"), Error);
	}
	else
	{
		Message->SetObjectField(TEXT("result"), Answer.Result);
	}
	return KestrelJson::ToCondensedText(Message);
}

bool FKestrelMcpMessage::IsSameId(const TSharedPtr<FJsonValue>& A, const TSharedPtr<FJsonValue>& B)
{
	FString TextOfA;
	FString TextOfB;
	return A.IsValid() && B.IsValid() && A->Type == B->Type && A->TryGetString(TextOfA) && B->TryGetString(TextOfB) &&
		   TextOfA.Equals(TextOfB);
}
