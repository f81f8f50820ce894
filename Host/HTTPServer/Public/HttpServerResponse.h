#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "HttpServerConstants.h"
#include "Templates/UniquePtr.h"

/** A whole response; the module adds its Content-Length. */
struct FHttpServerResponse
{
	FHttpServerResponse() = default;

	/** 200 with the text in UTF-8. */
	static TUniquePtr<FHttpServerResponse> Create(const FString& Text, FString ContentType);

	TArray<uint8> Body;
	EHttpServerResponseCodes Code = EHttpServerResponseCodes::Unknown;
	TMap<FString, TArray<FString>> Headers;
};
