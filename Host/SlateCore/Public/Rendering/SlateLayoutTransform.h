#pragma once

#include "CoreMinimal.h"

/** A scale followed by a move: all that layout does to a widget's space. */
class FSlateLayoutTransform
{
public:
	explicit FSlateLayoutTransform(float InScale = 1.0f, const FVector2D& InTranslation = FVector2D(0.0, 0.0))
		: Scale(InScale)
		, Translation(InTranslation)
	{
	}
	explicit FSlateLayoutTransform(const FVector2D& InTranslation)
		: Translation(InTranslation)
	{
	}

	float GetScale() const { return Scale; }
	FVector2D GetTranslation() const { return Translation; }

private:
	float Scale = 1.0f;
	FVector2D Translation;
};
