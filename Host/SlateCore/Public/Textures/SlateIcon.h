#pragma once

#include "CoreMinimal.h"

class ISlateStyle;
struct FSlateBrush;

/** An icon by the names of its style set and brush; looked up each time, so the set may be registered later. */
struct FSlateIcon
{
	FSlateIcon() = default;
	/** The small brush is named StyleName + ".Small" unless InSmallStyleName says otherwise. */
	FSlateIcon(const FName& InStyleSetName, const FName& InStyleName, const FName& InSmallStyleName = NAME_None,
		const FName& InStatusOverlayStyleName = NAME_None);

	bool IsSet() const { return bIsSet; }
	/** The default brush when the style set or the brush is unknown. */
	const FSlateBrush* GetIcon() const;
	/** Null in that case. */
	const FSlateBrush* GetOptionalIcon() const;
	const ISlateStyle* GetStyleSet() const;

	const FName& GetStyleSetName() const { return StyleSetName; }
	const FName& GetStyleName() const { return StyleName; }
	const FName& GetSmallStyleName() const { return SmallStyleName; }

	bool operator==(const FSlateIcon& Other) const = default;

private:
	FName StyleSetName;
	FName StyleName;
	FName SmallStyleName;
	bool bIsSet = false;
};
