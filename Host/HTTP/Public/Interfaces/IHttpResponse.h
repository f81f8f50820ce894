#pragma once

#include "Interfaces/IHttpBase.h"
#include "Templates/SharedPointer.h"

class IHttpResponse : public IHttpBase
{
public:
	virtual int32 GetResponseCode() const = 0;
	/** The body, taken as UTF-8 whatever the headers say. */
	virtual FString GetContentAsString() const = 0;
};

using FHttpResponsePtr = TSharedPtr<IHttpResponse, ESPMode::ThreadSafe>;
