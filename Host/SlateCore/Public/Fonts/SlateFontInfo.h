#pragma once

#include "CoreMinimal.h"

class UObject;

/** The typefaces of a font family by name; the first serves for names that are not among them. */
struct FCompositeFont
{
	TArray<FName> TypefaceNames;
};

struct FFontOutlineSettings
{
	int32 OutlineSize = 0;
	FLinearColor OutlineColor = FLinearColor::Black;

	bool operator==(const FFontOutlineSettings&) const = default;
};

/** A font as text is drawn with it. Obtained from FCoreStyle or a style set. */
struct FSlateFontInfo
{
	const UObject* FontObject = nullptr;
	TSharedPtr<const FCompositeFont> CompositeFont;
	FName TypefaceFontName;
	/** In points at 96 dots an inch. */
	float Size = 0.0f;
	int32 LetterSpacing = 0;
	float SkewAmount = 0.0f;
	FFontOutlineSettings OutlineSettings;

	bool HasValidFont() const { return CompositeFont.IsValid() || FontObject != nullptr; }
	bool operator==(const FSlateFontInfo&) const;
};
