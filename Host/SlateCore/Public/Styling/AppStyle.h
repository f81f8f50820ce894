#pragma once

#include "CoreMinimal.h"
#include "Styling/ISlateStyle.h"

/** The style of the running program; here that of Slate itself. */
class FAppStyle
{
public:
	static const ISlateStyle& Get();

	static const FSlateBrush* GetBrush(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetBrush(PropertyName, Specifier);
	}
	static const FSlateBrush* GetOptionalBrush(FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const FSlateBrush* const DefaultBrush = FStyleDefaults::GetNoBrush())
	{
		return Get().GetOptionalBrush(PropertyName, Specifier, DefaultBrush);
	}
	static const FSlateBrush* GetNoBrush() { return FStyleDefaults::GetNoBrush(); }
	static const FSlateBrush* GetDefaultBrush() { return FStyleDefaults::GetDefaultBrush(); }
	static float GetFloat(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetFloat(PropertyName, Specifier);
	}
	static const FMargin& GetMargin(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetMargin(PropertyName, Specifier);
	}
	static const FSlateColor GetSlateColor(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetSlateColor(PropertyName, Specifier);
	}
	static FSlateFontInfo GetFontStyle(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetFontStyle(PropertyName, Specifier);
	}
	template <typename WidgetStyleType>
	static const WidgetStyleType& GetWidgetStyle(FName PropertyName, const ANSICHAR* Specifier = nullptr)
	{
		return Get().GetWidgetStyle<WidgetStyleType>(PropertyName, Specifier);
	}
};
