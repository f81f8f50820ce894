#pragma once

#include "CoreMinimal.h"

/** A length in Slate units that need not be set. */
struct FOptionalSize
{
	FOptionalSize() = default;
	FOptionalSize(const float SpecifiedSize)
		: Size(SpecifiedSize)
	{
	}

	bool IsSet() const { return Size.IsSet(); }
	float Get() const { return Size.GetValue(); }
	float Get(float Default) const { return Size.Get(Default); }

	bool operator==(const FOptionalSize& Other) const = default;

private:
	TOptional<float> Size;
};
