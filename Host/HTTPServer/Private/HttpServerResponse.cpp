#include "HttpServerResponse.h"

#include "Containers/StringConv.h"

TUniquePtr<FHttpServerResponse> FHttpServerResponse::Create(const FString& Text, FString ContentType)
{
	TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>();
	Response->Code = EHttpServerResponseCodes::Ok;
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	Response->Body.Append(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	Response->Headers.Add(TEXT("Content-Type"), { MoveTemp(ContentType) });
	return Response;
}
