#include "Widget/Answer/MarkdownStyle.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Widget/KestrelStyle.h"
#include "Widget/TextSize.h"

namespace KestrelMarkdownStyle
{
namespace
{
// Points by which they differ from the text's size.
constexpr float HeadingGrowth[] = { 0.0f, 5.0f, 3.0f, 2.0f, 1.0f, 0.0f, 0.0f };
constexpr float CodeShrinkage = 0.5f;
constexpr float SmallShrinkage = 1.5f;

float GetTextSize()
{
	return FKestrelInterface::AssistantFontSize;
}

FTextBlockStyle MakeStyle(const FName& Typeface, float Size, const FName& Color)
{
	FTextBlockStyle Style = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	Style.SetFont(FCoreStyle::GetDefaultFontStyle(Typeface, KestrelTextSize::Scale(Size)));
	Style.SetColorAndOpacity(FKestrelStyle::Get().GetSlateColor(Color));
	return Style;
}

FName ColorOf(ECodeToken Token)
{
	switch (Token)
	{
	case ECodeToken::Keyword:
		return "Kestrel.Code.Keyword";
	case ECodeToken::String:
		return "Kestrel.Code.String";
	case ECodeToken::Number:
		return "Kestrel.Code.Number";
	case ECodeToken::Comment:
		return "Kestrel.Code.Comment";
	case ECodeToken::Directive:
		return "Kestrel.Code.Directive";
	case ECodeToken::Plain:
		break;
	}
	return "Kestrel.Code.Plain";
}
}

FTextBlockStyle MakeTextStyle(EMarkdownStyle Style, bool bLink, int32 HeadingLevel)
{
	const FName Color = bLink ? FName("Kestrel.Text.Link") : FName("Kestrel.Text");
	if (EnumHasAnyFlags(Style, EMarkdownStyle::Code))
	{
		const FName CodeColor = bLink ? Color : FName("Kestrel.Text.Code");
		return MakeStyle("Mono", GetTextSize() - CodeShrinkage + HeadingGrowth[HeadingLevel], CodeColor);
	}
	const bool bBold = HeadingLevel > 0 || EnumHasAnyFlags(Style, EMarkdownStyle::Strong);
	const bool bItalic = EnumHasAnyFlags(Style, EMarkdownStyle::Emphasis);
	const FName Typeface = bBold     ? (bItalic ? FName("BoldItalic") : FName("Bold"))
						   : bItalic ? FName("Italic")
									 : FName("Regular");
	return MakeStyle(Typeface, GetTextSize() + HeadingGrowth[HeadingLevel], Color);
}

FTextBlockStyle MakeCodeStyle(ECodeToken Token)
{
	return MakeStyle("Mono", GetTextSize() - CodeShrinkage, ColorOf(Token));
}

FTextBlockStyle MakeSmallStyle()
{
	return MakeStyle("Regular", GetTextSize() - SmallShrinkage, "Kestrel.Text.Quiet");
}
}
