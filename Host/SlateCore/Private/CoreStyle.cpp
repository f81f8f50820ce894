#include "Styling/CoreStyle.h"

#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateNoResource.h"
#include "Brushes/SlateRoundedBoxBrush.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

namespace CoreStyle
{

constexpr float SmallTextPoints = 8.0f;
constexpr float NormalTextPoints = 9.0f;
constexpr float LargeTextPoints = 11.0f;
constexpr float CornerRadius = 4.0f;

static const FColor Accent(0, 112, 224);

static FLinearColor Gray(uint8 Level)
{
	return FLinearColor(FColor(Level, Level, Level));
}

static void SetBrushes(FSlateStyleSet& Style)
{
	Style.Set("WhiteBrush", new FSlateColorBrush(FLinearColor::White));
	Style.Set("WhiteRoundedBrush", new FSlateRoundedBoxBrush(FLinearColor::White, CornerRadius));
	Style.Set("NoBorder", new FSlateNoResource());
	Style.Set("NoBrush", new FSlateNoResource());
	Style.Set("Border", new FSlateRoundedBoxBrush(Gray(47), CornerRadius));
	Style.Set("ToolPanel.GroupBorder", new FSlateColorBrush(Gray(36)));
	Style.Set("Menu.Background", new FSlateRoundedBoxBrush(Gray(56), CornerRadius, Gray(90), 1.0f));
	Style.Set("ToolTip.Background", new FSlateRoundedBoxBrush(Gray(26), CornerRadius, Gray(110), 1.0f));
	Style.Set("FocusRectangle", new FSlateRoundedBoxBrush(FLinearColor(Accent).CopyWithNewOpacity(0.1f), CornerRadius,
									FLinearColor(Accent), 1.5f));
	Style.Set("TextBox.Background.Normal", new FSlateRoundedBoxBrush(Gray(15), CornerRadius, Gray(56), 1.0f));
	Style.Set("TextBox.Background.Hovered", new FSlateRoundedBoxBrush(Gray(15), CornerRadius, Gray(110), 1.0f));
	Style.Set(
		"TextBox.Background.Focused", new FSlateRoundedBoxBrush(Gray(15), CornerRadius, FLinearColor(Accent), 1.0f));
	Style.Set("TextBox.Background.ReadOnly", new FSlateRoundedBoxBrush(Gray(36), CornerRadius, Gray(56), 1.0f));
	Style.Set("CheckBox.Unchecked", new FSlateRoundedBoxBrush(Gray(15), CornerRadius, Gray(90), 1.0f));
	Style.Set("CheckBox.Hovered", new FSlateRoundedBoxBrush(Gray(26), CornerRadius, Gray(150), 1.0f));
	Style.Set("CheckBox.Checked", new FSlateRoundedBoxBrush(FLinearColor(Accent), CornerRadius));
	Style.Set("Brushes.Panel", new FSlateColorBrush(Gray(36)));
	Style.Set("Brushes.Recessed", new FSlateColorBrush(Gray(26)));
	Style.Set("Brushes.Header", new FSlateColorBrush(Gray(47)));
	Style.Set("Brushes.Title", new FSlateColorBrush(Gray(21)));
	Style.Set("Separator", new FSlateColorBrush(Gray(72)));
	Style.Set("TableView.Selected", new FSlateRoundedBoxBrush(FColor(0, 80, 160), CornerRadius));
	Style.Set("TableView.SelectedInactive", new FSlateRoundedBoxBrush(Gray(64), CornerRadius));
	Style.Set("TableView.Hovered", new FSlateRoundedBoxBrush(Gray(42), CornerRadius));
	Style.Set("Tab.Front", new FSlateRoundedBoxBrush(Gray(36), CornerRadius));
	Style.Set("Tab.Back", new FSlateRoundedBoxBrush(Gray(26), CornerRadius));
}

static void SetTextStyles(FSlateStyleSet& Style)
{
	FTextBlockStyle Text;
	Text.SetFont(FCoreStyle::GetDefaultFontStyle("Regular", NormalTextPoints));
	Style.Set("NormalText", Text);
	Style.Set("SmallText", FTextBlockStyle(Text).SetFontSize(SmallTextPoints));
	Style.Set("LargeText", FTextBlockStyle(Text).SetFontSize(LargeTextPoints));
	Style.Set("ButtonText", Text);
	Style.Set("NormalFont", Text.Font);
	Style.Set("SmallFont", FCoreStyle::GetDefaultFontStyle("Regular", SmallTextPoints));
	Style.Set("BoldFont", FCoreStyle::GetDefaultFontStyle("Bold", NormalTextPoints));
}

static FButtonStyle MakeButton(const FLinearColor& Normal, const FLinearColor& Hovered, const FLinearColor& Pressed)
{
	return FButtonStyle()
		.SetNormal(FSlateRoundedBoxBrush(Normal, CornerRadius))
		.SetHovered(FSlateRoundedBoxBrush(Hovered, CornerRadius))
		.SetPressed(FSlateRoundedBoxBrush(Pressed, CornerRadius))
		.SetDisabled(FSlateRoundedBoxBrush(Gray(42), CornerRadius))
		.SetNormalPadding(FMargin(8.0f, 2.0f))
		.SetPressedPadding(FMargin(8.0f, 2.0f));
}

static void SetButtonStyles(FSlateStyleSet& Style)
{
	Style.Set("Button", MakeButton(Gray(56), Gray(87), Gray(36)));
	Style.Set("PrimaryButton", MakeButton(Accent, FColor(14, 134, 255), FColor(0, 80, 160)));
	Style.Set("SimpleButton", MakeButton(FLinearColor::Transparent, Gray(56), Gray(36))
								  .SetDisabled(FSlateNoResource())
								  .SetNormalPadding(FMargin(2.0f, 1.0f))
								  .SetPressedPadding(FMargin(2.0f, 1.0f)));
	// A line of a menu: what the pointer or the keyboard has chosen stands out.
	Style.Set("Menu.Button", MakeButton(FLinearColor::Transparent, Accent, FColor(0, 80, 160))
								 .SetDisabled(FSlateNoResource())
								 .SetNormalPadding(FMargin(2.0f, 1.0f))
								 .SetPressedPadding(FMargin(2.0f, 1.0f)));
	Style.Set("ScrollBar", FScrollBarStyle()
							   .SetNormalThumbImage(FSlateRoundedBoxBrush(Gray(87), CornerRadius))
							   .SetHoveredThumbImage(FSlateRoundedBoxBrush(Gray(128), CornerRadius)));
}

static TSharedRef<FSlateStyleSet> Make()
{
	const TSharedRef<FSlateStyleSet> Style = MakeShared<FSlateStyleSet>(FName("CoreStyle"));
	SetBrushes(Style.Get());
	SetTextStyles(Style.Get());
	SetButtonStyles(Style.Get());
	FSlateStyleRegistry::RegisterSlateStyle(Style.Get());
	return Style;
}

}

const ISlateStyle& FCoreStyle::Get()
{
	static const TSharedRef<FSlateStyleSet> Style = CoreStyle::Make();
	return Style.Get();
}

const ISlateStyle& FAppStyle::Get()
{
	return FCoreStyle::Get();
}

TSharedRef<const FCompositeFont> FCoreStyle::GetDefaultFont()
{
	static const TSharedRef<FCompositeFont> Font = [] {
		const TSharedRef<FCompositeFont> NewFont = MakeShared<FCompositeFont>();
		NewFont->TypefaceNames = { "Regular", "Italic", "Bold", "BoldItalic", "Light", "Medium", "Black",
			"BoldCondensed", "BoldCondensedItalic", "Mono" };
		return NewFont;
	}();
	return Font;
}

FSlateFontInfo FCoreStyle::GetDefaultFontStyle(
	const FName InTypefaceFontName, const float InSize, const FFontOutlineSettings& InOutlineSettings)
{
	FSlateFontInfo Font;
	Font.CompositeFont = GetDefaultFont();
	Font.TypefaceFontName = InTypefaceFontName;
	Font.Size = InSize;
	Font.OutlineSettings = InOutlineSettings;
	return Font;
}
