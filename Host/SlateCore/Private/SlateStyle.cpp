#include "Styling/SlateStyle.h"

#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateNoResource.h"
#include "Styling/CoreStyle.h"

DEFINE_LOG_CATEGORY_STATIC(LogSlateStyle, Log, All);

const FSlateBrush* FStyleDefaults::GetDefaultBrush()
{
	static const FSlateColorBrush Brush(FLinearColor::White);
	return &Brush;
}

const FSlateBrush* FStyleDefaults::GetNoBrush()
{
	static const FSlateNoResource Brush;
	return &Brush;
}

FName ISlateStyle::Join(FName A, const ANSICHAR* B)
{
	return B == nullptr ? A : FName(A.ToString() + FString(B));
}

FSlateStyleSet::~FSlateStyleSet() = default;

FString FSlateStyleSet::RootToContentDir(const FString& RelativePath, const TCHAR* Extension) const
{
	return RootToContentDir(RelativePath) + Extension;
}

FString FSlateStyleSet::RootToContentDir(const FString& RelativePath) const
{
	return ContentRootDir / RelativePath;
}

FString FSlateStyleSet::RootToContentDir(const ANSICHAR* RelativePath, const TCHAR* Extension) const
{
	return RootToContentDir(FString(RelativePath), Extension);
}

FString FSlateStyleSet::RootToContentDir(const WIDECHAR* RelativePath, const TCHAR* Extension) const
{
	return RootToContentDir(FString(RelativePath), Extension);
}

FString FSlateStyleSet::RootToContentDir(const ANSICHAR* RelativePath) const
{
	return RootToContentDir(FString(RelativePath));
}

FString FSlateStyleSet::RootToContentDir(const WIDECHAR* RelativePath) const
{
	return RootToContentDir(FString(RelativePath));
}

void FSlateStyleSet::SetBrush(FName PropertyName, FSlateBrush* InBrush)
{
	Brushes.Add(PropertyName, MakeShareable(InBrush));
}

void FSlateStyleSet::WarnOnce(FName Name, const TCHAR* What) const
{
	if (!WarnedNames.Contains(Name))
	{
		WarnedNames.Add(Name);
		UE_LOG(LogSlateStyle, Warning, TEXT("The style set '%s' has no %s named '%s'"), *StyleSetName.ToString(), What,
			*Name.ToString());
	}
}

const FSlateBrush* FSlateStyleSet::GetBrush(
	const FName PropertyName, const ANSICHAR* Specifier, const ISlateStyle* RequestingStyle) const
{
	const FName Name = Join(PropertyName, Specifier);
	const FSlateBrush* const Found = GetOptionalBrush(Name, nullptr, nullptr);
	if (Found == nullptr)
	{
		WarnOnce(Name, TEXT("brush"));
		return FStyleDefaults::GetDefaultBrush();
	}
	return Found;
}

const FSlateBrush* FSlateStyleSet::GetOptionalBrush(
	const FName PropertyName, const ANSICHAR* Specifier, const FSlateBrush* const DefaultBrush) const
{
	const TSharedPtr<FSlateBrush>* const Found = Brushes.Find(Join(PropertyName, Specifier));
	return Found != nullptr ? Found->Get() : DefaultBrush;
}

float FSlateStyleSet::GetFloat(const FName PropertyName, const ANSICHAR* Specifier, float DefaultValue) const
{
	const float* const Found = Floats.Find(Join(PropertyName, Specifier));
	return Found != nullptr ? *Found : DefaultValue;
}

const FLinearColor& FSlateStyleSet::GetColor(
	const FName PropertyName, const ANSICHAR* Specifier, const FLinearColor& DefaultValue) const
{
	const FLinearColor* const Found = Colors.Find(Join(PropertyName, Specifier));
	return Found != nullptr ? *Found : DefaultValue;
}

const FSlateColor FSlateStyleSet::GetSlateColor(const FName PropertyName, const ANSICHAR* Specifier) const
{
	const FName Name = Join(PropertyName, Specifier);
	const FSlateColor* const Found = SlateColors.Find(Name);
	return Found != nullptr ? *Found : FSlateColor(GetColor(Name));
}

const FMargin& FSlateStyleSet::GetMargin(const FName PropertyName, const ANSICHAR* Specifier) const
{
	static const FMargin None;
	const FMargin* const Found = Margins.Find(Join(PropertyName, Specifier));
	return Found != nullptr ? *Found : None;
}

FSlateFontInfo FSlateStyleSet::GetFontStyle(const FName PropertyName, const ANSICHAR* Specifier) const
{
	constexpr float DefaultSizePoints = 9.0f;
	const FName Name = Join(PropertyName, Specifier);
	const FSlateFontInfo* const Found = Fonts.Find(Name);
	if (Found == nullptr)
	{
		WarnOnce(Name, TEXT("font"));
		return FCoreStyle::GetDefaultFontStyle(FName(TEXT("Regular")), DefaultSizePoints);
	}
	return *Found;
}

void FSlateStyleSet::GetResources(TArray<const FSlateBrush*>& OutResources) const
{
	for (const auto& Named : Brushes)
	{
		OutResources.AddUnique(Named.Value.Get());
	}
}

const FSlateWidgetStyle* FSlateStyleSet::GetWidgetStyleInternal(
	const FName DesiredTypeName, const FName StyleName, bool bWarnIfNotFound) const
{
	const TSharedPtr<FSlateWidgetStyle>* const Found = WidgetStyles.Find(StyleName);
	if (Found != nullptr && (*Found)->GetTypeName() == DesiredTypeName)
	{
		return Found->Get();
	}
	if (bWarnIfNotFound)
	{
		WarnOnce(StyleName, TEXT("widget style of this type"));
	}
	return nullptr;
}
