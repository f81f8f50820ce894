#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Layout/Margin.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateWidgetStyle.h"
#include "Styling/StyleDefaults.h"

/**
 * A set of named brushes, colours, fonts, sizes and widget styles.
 *
 * A name it does not have gives a default that can be used, never null, with a warning in the log. The name may come in
 * two parts: Join of "Button" and ".Hovered" is "Button.Hovered".
 */
class ISlateStyle
{
public:
	virtual ~ISlateStyle() = default;

	virtual const FName& GetStyleSetName() const = 0;

	virtual const FSlateBrush* GetBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const ISlateStyle* RequestingStyle = nullptr) const = 0;
	/** The same without a warning: DefaultBrush for a name that it does not have. */
	virtual const FSlateBrush* GetOptionalBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const FSlateBrush* const DefaultBrush = FStyleDefaults::GetNoBrush()) const = 0;
	virtual float GetFloat(
		const FName PropertyName, const ANSICHAR* Specifier = nullptr, float DefaultValue = 0.0f) const = 0;
	virtual const FLinearColor& GetColor(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const FLinearColor& DefaultValue = FLinearColor::Black) const = 0;
	virtual const FSlateColor GetSlateColor(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
	virtual const FMargin& GetMargin(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
	virtual FSlateFontInfo GetFontStyle(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
	/** The files and other resources of all brushes, each brush once. */
	virtual void GetResources(TArray<const FSlateBrush*>& OutResources) const = 0;

	template <typename WidgetStyleType>
	const WidgetStyleType& GetWidgetStyle(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const WidgetStyleType* DefaultValue = nullptr) const
	{
		const FSlateWidgetStyle* Existing =
			GetWidgetStyleInternal(WidgetStyleType::TypeName, Join(PropertyName, Specifier), DefaultValue == nullptr);
		if (Existing != nullptr)
		{
			return *static_cast<const WidgetStyleType*>(Existing);
		}
		return DefaultValue != nullptr ? *DefaultValue : WidgetStyleType::GetDefault();
	}

	static FName Join(FName A, const ANSICHAR* B);

protected:
	/** Null, with a warning if bWarnIfNotFound, when there is none of this name and type. */
	virtual const FSlateWidgetStyle* GetWidgetStyleInternal(
		const FName DesiredTypeName, const FName StyleName, bool bWarnIfNotFound) const = 0;
};
