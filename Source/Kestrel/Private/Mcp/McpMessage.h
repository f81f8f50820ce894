#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;

/** Error codes of JSON-RPC and of the Model Context Protocol. */
namespace KestrelMcpError
{
constexpr int32 Parse = -32700;
constexpr int32 InvalidRequest = -32600;
constexpr int32 MethodNotFound = -32601;
constexpr int32 InvalidParams = -32602;
/** Of the versions with sessions only. */
constexpr int32 ResourceNotFound = -32002;
// Of the versions without sessions only: an older client that is told one of these takes the server for a newer one.
constexpr int32 HeaderMismatch = -32020;
constexpr int32 UnsupportedVersion = -32022;
}

/** Why a request has no result. */
struct FKestrelMcpFault
{
	int32 Code = 0;
	FString Message;
	TSharedPtr<FJsonObject> Data; // may be null
	int32 HttpStatus = 200;
};

/** What a request is answered with: a result, a fault, or nothing when it was cancelled. */
struct KESTREL_API FKestrelMcpAnswer
{
	static FKestrelMcpAnswer Of(const TSharedRef<FJsonObject>& Result);
	static FKestrelMcpAnswer Fail(int32 Code, const FString& Message, int32 HttpStatus = 200);

	/** Of a request that was cancelled: nobody waits for an answer. */
	bool IsNothing() const { return !Result.IsValid() && !ResultText.IsValid() && !Fault.IsSet(); }

	TSharedPtr<FJsonObject> Result;
	/** In place of Result: its JSON text, of one that is the same each time. */
	TSharedPtr<const FString> ResultText;
	TOptional<FKestrelMcpFault> Fault;
};

/** Called once for a request, at once or later, on the game thread. */
using FKestrelMcpReply = TFunction<void(const FKestrelMcpAnswer&)>;

enum class EKestrelMcpMessageKind : uint8
{
	Request,
	Notification,
	Response,
};

/** One message of JSON-RPC 2.0. */
struct KESTREL_API FKestrelMcpMessage
{
	/** Larger messages are refused: nothing that a tool takes comes near. */
	static constexpr int32 MaxBytes = 4 * 1024 * 1024;
	/** Messages in a batch. */
	static constexpr int32 MaxBatch = 64;

	/**
	 * Reads a message.
	 *
	 * @param Bytes     UTF-8
	 * @param OutFault  why there is none
	 */
	static TSharedPtr<FKestrelMcpMessage> Parse(const TArray<uint8>& Bytes, FKestrelMcpFault& OutFault);
	/** Whether bytes may be a batch, and no message. */
	static bool IsBatch(const TArray<uint8>& Bytes);
	/**
	 * Reads several messages that came as one.
	 *
	 * @param OutFaults  why a message is null, by its index
	 * @param OutFault   why there are none at all: when it is set, the result is empty
	 */
	static TArray<TSharedPtr<FKestrelMcpMessage>> ParseBatch(
		const TArray<uint8>& Bytes, TArray<FKestrelMcpFault>& OutFaults, FKestrelMcpFault& OutFault);
	/** An answer as JSON text. @param Id  null when it could not be read */
	static FString MakeText(const TSharedPtr<FJsonValue>& Id, const FKestrelMcpAnswer& Answer);
	/** Whether two ids are the same, of the same JSON type. */
	static bool IsSameId(const TSharedPtr<FJsonValue>& A, const TSharedPtr<FJsonValue>& B);

	EKestrelMcpMessageKind Kind = EKestrelMcpMessageKind::Request;
	TSharedPtr<FJsonValue> Id; // a string or a number; null for a notification
	FString Method;
	TSharedRef<FJsonObject> Params; // empty when there were none
	TSharedRef<FJsonObject> Meta;   // "_meta" of the parameters; empty when there was none

private:
	FKestrelMcpMessage();
	static TSharedPtr<FKestrelMcpMessage> Make(const FJsonObject& Object, FKestrelMcpFault& OutFault);
};
