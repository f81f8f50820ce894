#pragma once

#include "CoreMinimal.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"

/** A style set that is filled by its owner. It owns its brushes. */
class FSlateStyleSet : public ISlateStyle
{
public:
	explicit FSlateStyleSet(const FName& InStyleSetName)
		: StyleSetName(InStyleSetName)
	{
	}
	virtual ~FSlateStyleSet() override;
	UE_NONCOPYABLE(FSlateStyleSet)

	virtual const FName& GetStyleSetName() const override { return StyleSetName; }
	/** The folder that relative image names start from. It is stored, not looked at. */
	virtual void SetContentRoot(const FString& InContentRootDir) { ContentRootDir = InContentRootDir; }

	/** The content root, RelativePath and Extension put together. */
	virtual FString RootToContentDir(const FString& RelativePath, const TCHAR* Extension) const;
	virtual FString RootToContentDir(const FString& RelativePath) const;
	FString RootToContentDir(const ANSICHAR* RelativePath, const TCHAR* Extension) const;
	FString RootToContentDir(const WIDECHAR* RelativePath, const TCHAR* Extension) const;
	FString RootToContentDir(const ANSICHAR* RelativePath) const;
	FString RootToContentDir(const WIDECHAR* RelativePath) const;

	/** Takes InBrush over, which was made with `new`. A brush already set under this name is replaced. */
	template <typename BrushType>
	requires std::is_base_of_v<FSlateBrush, BrushType>
	void Set(const FName PropertyName, BrushType* InBrush) { SetBrush(PropertyName, InBrush); }
	template <typename DefinitionType>
	requires std::is_base_of_v<FSlateWidgetStyle, DefinitionType>
	void Set(const FName PropertyName, const DefinitionType& InStyle)
	{
		WidgetStyles.Add(PropertyName, MakeShared<DefinitionType>(InStyle));
	}
	void Set(const FName PropertyName, const float Value) { Floats.Add(PropertyName, Value); }
	void Set(const FName PropertyName, const FVector2D& Value) { Vectors.Add(PropertyName, Value); }
	void Set(const FName PropertyName, const FVector2f& Value) { Vectors.Add(PropertyName, FVector2D(Value)); }
	void Set(const FName PropertyName, const FLinearColor& Value) { Colors.Add(PropertyName, Value); }
	void Set(const FName PropertyName, const FColor& Value) { Colors.Add(PropertyName, FLinearColor(Value)); }
	void Set(const FName PropertyName, const FSlateColor& Value) { SlateColors.Add(PropertyName, Value); }
	void Set(const FName PropertyName, const FMargin& Value) { Margins.Add(PropertyName, Value); }
	void Set(const FName PropertyName, const FSlateFontInfo& Value) { Fonts.Add(PropertyName, Value); }

	virtual const FSlateBrush* GetBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const ISlateStyle* RequestingStyle = nullptr) const override;
	virtual const FSlateBrush* GetOptionalBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const FSlateBrush* const DefaultBrush = FStyleDefaults::GetNoBrush()) const override;
	virtual float GetFloat(
		const FName PropertyName, const ANSICHAR* Specifier = nullptr, float DefaultValue = 0.0f) const override;
	virtual const FLinearColor& GetColor(const FName PropertyName, const ANSICHAR* Specifier = nullptr,
		const FLinearColor& DefaultValue = FLinearColor::Black) const override;
	virtual const FSlateColor GetSlateColor(
		const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	virtual const FMargin& GetMargin(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	virtual FSlateFontInfo GetFontStyle(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	virtual void GetResources(TArray<const FSlateBrush*>& OutResources) const override;

protected:
	virtual const FSlateWidgetStyle* GetWidgetStyleInternal(
		const FName DesiredTypeName, const FName StyleName, bool bWarnIfNotFound) const override;

private:
	void SetBrush(FName PropertyName, FSlateBrush* InBrush);
	void WarnOnce(FName Name, const TCHAR* What) const;

	const FName StyleSetName;
	FString ContentRootDir;
	TMap<FName, TSharedPtr<FSlateBrush>> Brushes;
	TMap<FName, TSharedPtr<FSlateWidgetStyle>> WidgetStyles;
	TMap<FName, float> Floats;
	TMap<FName, FVector2D> Vectors;
	TMap<FName, FLinearColor> Colors;
	TMap<FName, FSlateColor> SlateColors;
	TMap<FName, FMargin> Margins;
	TMap<FName, FSlateFontInfo> Fonts;
	mutable TSet<FName> WarnedNames;
};
