#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

/** A language, and the country that it is spoken in. */
class FCulture
{
public:
	explicit FCulture(const FString& InName)
		: Name(InName)
	{
	}

	/** "en-US"; "en" when no country is given. */
	const FString& GetName() const { return Name; }
	/** ISO 639-1: "en". */
	FString GetTwoLetterISOLanguageName() const { return Name.Left(2); }

private:
	const FString Name;
};

using FCultureRef = TSharedRef<FCulture, ESPMode::ThreadSafe>;
