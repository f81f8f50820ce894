#pragma once

#include "Containers/UnrealString.h"

/** An address of the network, with a port. */
class FInternetAddr
{
public:
	virtual ~FInternetAddr() = default;

	/** "127.0.0.1" or "127.0.0.1:8080". */
	virtual FString ToString(bool bAppendPort) const = 0;
};
