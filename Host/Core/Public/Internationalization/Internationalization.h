#pragma once

#include "Internationalization/Culture.h"

/** In which language texts are shown. The host has texts in one. */
class FInternationalization
{
public:
	static FInternationalization& Get();

	FCultureRef GetCurrentLanguage() const { return Language; }

private:
	FInternationalization() = default;

	const FCultureRef Language = MakeShared<FCulture, ESPMode::ThreadSafe>(TEXT("en"));
};
