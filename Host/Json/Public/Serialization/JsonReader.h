#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

/** A text to be parsed once. */
template <typename CharType = TCHAR>
class TJsonReader
{
public:
	explicit TJsonReader(FString InText)
		: Text(MoveTemp(InText))
	{
	}

	/** What was wrong, and at which unit of the text; empty before a failure. */
	const FString& GetErrorMessage() const { return ErrorMessage; }

private:
	friend class FJsonSerializer;

	FString Text;
	FString ErrorMessage;
};

template <typename CharType = TCHAR>
class TJsonReaderFactory
{
public:
	static TSharedRef<TJsonReader<CharType>> Create(const FString& JsonString)
	{
		return MakeShared<TJsonReader<CharType>>(JsonString);
	}
	static TSharedRef<TJsonReader<CharType>> Create(FString&& JsonString)
	{
		return MakeShared<TJsonReader<CharType>>(MoveTemp(JsonString));
	}
};
