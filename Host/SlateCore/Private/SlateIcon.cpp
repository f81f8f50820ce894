#include "Textures/SlateIcon.h"

#include "Styling/ISlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

FSlateIcon::FSlateIcon(const FName& InStyleSetName, const FName& InStyleName, const FName& InSmallStyleName,
	const FName& InStatusOverlayStyleName)
	: StyleSetName(InStyleSetName)
	, StyleName(InStyleName)
	, SmallStyleName(InSmallStyleName.IsNone() ? ISlateStyle::Join(InStyleName, ".Small") : InSmallStyleName)
	, bIsSet(true)
{
}

const ISlateStyle* FSlateIcon::GetStyleSet() const
{
	return FSlateStyleRegistry::FindSlateStyle(StyleSetName);
}

const FSlateBrush* FSlateIcon::GetIcon() const
{
	const FSlateBrush* const Found = GetOptionalIcon();
	return Found != nullptr ? Found : FStyleDefaults::GetDefaultBrush();
}

const FSlateBrush* FSlateIcon::GetOptionalIcon() const
{
	const ISlateStyle* const StyleSet = GetStyleSet();
	return StyleSet != nullptr ? StyleSet->GetOptionalBrush(StyleName, nullptr, nullptr) : nullptr;
}
