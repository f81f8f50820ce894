#include "Brushes/SlateColorBrush.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateStyle.h"

#include <gtest/gtest.h>

namespace StyleValuesTest
{
TEST(StyleValues, AreFoundByNameWithAndWithoutASpecifier)
{
	FSlateStyleSet Style(FName("TestValues"));
	Style.Set("Gap", 4.0f);
	Style.Set("Gap.Wide", 8.0f);
	Style.Set("Tint", FLinearColor::Red);
	Style.Set("Tint.Bytes", FColor(255, 0, 0));
	Style.Set("Ink", FSlateColor(FLinearColor::Blue));
	Style.Set("Space", FMargin(1.0f, 2.0f));
	EXPECT_EQ(Style.GetFloat("Gap"), 4.0f);
	EXPECT_EQ(Style.GetFloat("Gap", ".Wide"), 8.0f);
	EXPECT_EQ(Style.GetFloat("Nothing"), 0.0f);
	EXPECT_EQ(Style.GetFloat("Nothing", nullptr, 3.0f), 3.0f);
	EXPECT_EQ(Style.GetColor("Tint"), FLinearColor::Red);
	EXPECT_EQ(Style.GetColor("Tint", ".Bytes"), FLinearColor::Red) << "full red is the same in sRGB";
	EXPECT_EQ(Style.GetColor("Nothing"), FLinearColor::Black);
	EXPECT_EQ(Style.GetColor("Nothing", nullptr, FLinearColor::Green), FLinearColor::Green);
	EXPECT_EQ(Style.GetSlateColor("Ink").GetSpecifiedColor(), FLinearColor::Blue);
	EXPECT_EQ(Style.GetSlateColor("Tint").GetSpecifiedColor(), FLinearColor::Red) << "a plain colour does, too";
	EXPECT_EQ(Style.GetMargin("Space"), FMargin(1.0f, 2.0f));
	EXPECT_EQ(Style.GetMargin("Nothing"), FMargin());
	Style.Set("Gap", 5.0f);
	EXPECT_EQ(Style.GetFloat("Gap"), 5.0f) << "the last one set";
}

TEST(StyleValues, ABrushIsReplacedAndListedOnce)
{
	FSlateStyleSet Style(FName("TestBrushes"));
	Style.Set("Box", new FSlateColorBrush(FLinearColor::Red));
	FSlateColorBrush* const Second = new FSlateColorBrush(FLinearColor::Blue);
	Style.Set("Box", Second);
	EXPECT_EQ(Style.GetBrush("Box"), Second);
	TArray<const FSlateBrush*> Resources;
	Style.GetResources(Resources);
	EXPECT_EQ(Resources, (TArray<const FSlateBrush*>{ Second }));
	EXPECT_EQ(Style.GetOptionalBrush("Nothing"), FStyleDefaults::GetNoBrush());
	Style.SetContentRoot(TEXT("/a"));
	EXPECT_TRUE(Style.RootToContentDir("b").Equals(TEXT("/a/b")));
	EXPECT_TRUE(Style.RootToContentDir("b", TEXT(".svg")).Equals(TEXT("/a/b.svg")));
}

TEST(StyleValues, OfTheEditorAreThereForThePlugin)
{
	EXPECT_NE(FAppStyle::GetDefaultBrush(), nullptr);
	EXPECT_EQ(FAppStyle::GetFloat("NoSuchValue"), 0.0f);
	EXPECT_EQ(FAppStyle::GetMargin("NoSuchValue"), FMargin());
}

TEST(Margin, IsMadeFromOneTwoOrFourNumbers)
{
	const struct
	{
		FMargin Margin;
		float Left, Top, Right, Bottom;
	} Cases[] = {
		{ FMargin(3.0f), 3, 3, 3, 3 },
		{ FMargin(1.0f, 2.0f), 1, 2, 1, 2 },
		{ FMargin(1.0, 2.0, 3.0, 4.0), 1, 2, 3, 4 },
		{ FMargin(FVector2D(5.0, 6.0)), 5, 6, 5, 6 },
		{ FMargin(1.0f) + FMargin(1.0, 2.0, 3.0, 4.0), 2, 3, 4, 5 },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Case.Margin.Left, Case.Left);
		EXPECT_EQ(Case.Margin.Top, Case.Top);
		EXPECT_EQ(Case.Margin.Right, Case.Right);
		EXPECT_EQ(Case.Margin.Bottom, Case.Bottom);
		EXPECT_EQ(Case.Margin.GetDesiredSize(), FVector2D(Case.Left + Case.Right, Case.Top + Case.Bottom));
		EXPECT_EQ(Case.Margin.GetTotalSpaceAlong<Orient_Horizontal>(), Case.Left + Case.Right);
		EXPECT_EQ(Case.Margin.GetTotalSpaceAlong<Orient_Vertical>(), Case.Top + Case.Bottom);
	}
}

TEST(Visibility, SaysWhatIsDrawnTakesSpaceAndIsHit)
{
	const struct
	{
		EVisibility Visibility;
		const TCHAR* Name;
		bool bDrawn, bSpace, bHit, bChildrenHit;
	} Cases[] = {
		{ EVisibility::Visible, TEXT("Visible"), true, true, true, true },
		{ EVisibility::Collapsed, TEXT("Collapsed"), false, false, false, false },
		{ EVisibility::Hidden, TEXT("Hidden"), false, true, false, false },
		{ EVisibility::HitTestInvisible, TEXT("HitTestInvisible"), true, true, false, false },
		{ EVisibility::SelfHitTestInvisible, TEXT("SelfHitTestInvisible"), true, true, false, true },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_TRUE(Case.Visibility.ToString().Equals(Case.Name));
		EXPECT_EQ(Case.Visibility.IsVisible(), Case.bDrawn) << TCHAR_TO_UTF8(Case.Name);
		EXPECT_EQ(Case.Visibility.TakesSpace(), Case.bSpace) << TCHAR_TO_UTF8(Case.Name);
		EXPECT_EQ(Case.Visibility.IsHitTestVisible(), Case.bHit) << TCHAR_TO_UTF8(Case.Name);
		EXPECT_EQ(Case.Visibility.AreChildrenHitTestVisible(), Case.bChildrenHit) << TCHAR_TO_UTF8(Case.Name);
		EXPECT_EQ(Case.Visibility != EVisibility::Visible, Case.Visibility.ToString() != TEXT("Visible"));
	}
	EXPECT_EQ(EVisibility(), EVisibility::Visible);
}
}
