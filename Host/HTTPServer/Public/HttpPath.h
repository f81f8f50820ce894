#pragma once

#include "Containers/UnrealString.h"

/** The path of a route, or what is left of a request's path behind its route. */
struct FHttpPath
{
	FHttpPath() = default;
	explicit FHttpPath(const FString& InPath)
		: Path(InPath)
	{
	}

	const FString& GetPath() const { return Path; }
	void SetPath(const FString& InPath) { Path = InPath; }
	/** It starts with a slash. */
	bool IsValidPath() const { return Path.StartsWith(TEXT("/")); }

private:
	FString Path;
};
