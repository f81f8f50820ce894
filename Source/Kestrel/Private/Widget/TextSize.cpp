#include "Widget/TextSize.h"

#include "KestrelSettings.h"
#include "UObject/Class.h"

float KestrelTextSize::Scale(float Points)
{
	// A file can hold any number.
	constexpr int32 Least = 6;
	constexpr int32 Most = 32;
	const int32 Size = FMath::Clamp(GetDefault<UKestrelSettings>()->TextSize, Least, Most);
	return Points * static_cast<float>(Size) / static_cast<float>(UKestrelSettings::DefaultTextSize);
}
