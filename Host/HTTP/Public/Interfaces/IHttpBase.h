#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/** What requests and responses have in common. */
class IHttpBase
{
public:
	virtual ~IHttpBase() = default;
	/** The address that was asked for, also where the server redirected the request. */
	virtual FString GetURL() const = 0;
	/** Empty when there is no such header; names ignore case. */
	virtual FString GetHeader(const FString& HeaderName) const = 0;
	/** "Name: Value", in order. */
	virtual TArray<FString> GetAllHeaders() const = 0;
	virtual FString GetContentType() const = 0;
	virtual uint64 GetContentLength() const = 0;
	virtual const TArray<uint8>& GetContent() const = 0;
};
