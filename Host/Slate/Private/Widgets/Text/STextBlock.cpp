#include "Widgets/Text/STextBlock.h"

#include "Rendering/DrawElements.h"
#include "Styling/AppStyle.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"

void STextBlock::Construct(const FArguments& InArgs)
{
	SetTextStyle(InArgs._TextStyle != nullptr ? InArgs._TextStyle
											  : &FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText"));
	Text.Assign(this, InArgs._Text);
	Font.Assign(this, InArgs._Font);
	ColorAndOpacity.Assign(this, InArgs._ColorAndOpacity);
	WrapTextAt.Assign(this, InArgs._WrapTextAt);
	AutoWrapText.Assign(this, InArgs._AutoWrapText);
	Margin.Assign(this, InArgs._Margin);
	Justification.Assign(this, InArgs._Justification);
	MinDesiredWidth.Assign(this, InArgs._MinDesiredWidth);
	SetCanTick(true);
}

void STextBlock::SetTextStyle(const FTextBlockStyle* InTextStyle)
{
	const FTextBlockStyle& Style = InTextStyle != nullptr ? *InTextStyle : FTextBlockStyle::GetDefault();
	Font.Assign(this, TAttribute<FSlateFontInfo>(Style.Font));
	ColorAndOpacity.Assign(this, TAttribute<FSlateColor>(Style.ColorAndOpacity));
}

void STextBlock::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	const float NewWidth = AllottedGeometry.GetLocalSize().X;
	if (NewWidth != AllottedWidth)
	{
		AllottedWidth = NewWidth;
		if (AutoWrapText.Get())
		{
			Invalidate(EInvalidateWidgetReason::Layout);
		}
	}
}

float STextBlock::GetWrapWidth() const
{
	const float AllottedWrapWidth =
		AutoWrapText.Get() ? AllottedWidth - Margin.Get().GetTotalSpaceAlong<Orient_Horizontal>() : 0.0f;
	if (WrapTextAt.Get() > 0.0f)
	{
		return AllottedWrapWidth > 0.0f ? FMath::Min(AllottedWrapWidth, WrapTextAt.Get()) : WrapTextAt.Get();
	}
	return AllottedWrapWidth;
}

FVector2D STextBlock::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	const FString& Current = Text.Get().ToString();
	if (Paragraphs.Num() == 0 || !LaidOutText.Equals(Current))
	{
		LaidOutText = Current;
		Paragraphs = FWrappedText::SplitIntoParagraphs(Current);
	}
	FWrappedText::FSource Source;
	Source.Paragraphs = &Paragraphs;
	Source.Font = Font.Get();
	Source.WrapWidth = GetWrapWidth();
	Layout.Update(Source);
	const FVector2D Size = Layout.GetSize() + Margin.Get().GetDesiredSize();
	return FVector2D(FMath::Max(Size.X, static_cast<double>(MinDesiredWidth.Get())), Size.Y);
}

namespace TextBlock
{
static float GetIndent(ETextJustify::Type Justification, float SpareWidth)
{
	if (Justification == ETextJustify::Left || SpareWidth <= 0.0f)
	{
		return 0.0f;
	}
	return Justification == ETextJustify::Center ? SpareWidth / 2.0f : SpareWidth;
}
}

int32 STextBlock::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	const FLinearColor Tint = InWidgetStyle.GetColorAndOpacityTint() * ColorAndOpacity.Get().GetColor(InWidgetStyle);
	const FMargin& Space = Margin.Get();
	const FVector2D Allotted = AllottedGeometry.GetLocalSize();
	const float FreeWidth = static_cast<float>(Allotted.X) - Space.GetTotalSpaceAlong<Orient_Horizontal>();
	const float ViewTop = AllottedGeometry.AbsoluteToLocal(MyCullingRect.GetTopLeft()).Y - Space.Top;
	const float ViewEnd = ViewTop + static_cast<float>(MyCullingRect.GetSize().Y) / AllottedGeometry.GetScale();
	int32 First = 0;
	int32 Count = 0;
	Layout.FindLinesBetween(ViewTop, ViewEnd, First, Count);
	for (int32 Index = First; Index < First + Count; ++Index)
	{
		const FWrappedText::FLine& Line = Layout.GetLines()[Index];
		const FVector2D Offset(
			Space.Left + TextBlock::GetIndent(Justification.Get(), FreeWidth - Line.Width), Space.Top + Line.Top);
		const FGeometry LineGeometry =
			AllottedGeometry.MakeChild(FVector2D(Line.Width, Line.Height), FSlateLayoutTransform(Offset));
		FSlateDrawElement::MakeText(
			OutDrawElements, LayerId, LineGeometry, MyCullingRect, FString(Layout.GetText(Line)), Font.Get(), Tint);
	}
	return LayerId;
}

TSharedRef<FSlateAccessibleWidget> STextBlock::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleTextBlock>(AsShared());
}
