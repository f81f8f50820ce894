#include "Styling/SlateStyle.h"

#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateImageBrush.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Rendering/SlateNullRenderer.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Styling/SlateStyleMacros.h"
#include "Styling/SlateStyleRegistry.h"
#include "Textures/SlateIcon.h"

#include <gtest/gtest.h>

namespace SlateStyleTest
{

TEST(SlateStyle, GivesAUsableBrushForAnUnknownName)
{
	EXPECT_EQ(FAppStyle::GetBrush("NoSuchBrush"), FStyleDefaults::GetDefaultBrush());
	EXPECT_EQ(FAppStyle::Get().GetOptionalBrush("NoSuchBrush", nullptr, nullptr), nullptr);
	EXPECT_NE(FAppStyle::GetBrush("ToolPanel.GroupBorder"), FStyleDefaults::GetDefaultBrush());
}

TEST(SlateStyle, BuildsPathsFromItsContentRoot)
{
	FSlateStyleSet Style(FName("TestPaths"));
	Style.SetContentRoot(TEXT("/plugin/Resources"));
#define RootToContentDir Style.RootToContentDir
	Style.Set("Icon", new IMAGE_BRUSH_SVG("Picture", FVector2D(16.0, 16.0)));
#undef RootToContentDir
	const FSlateBrush* const Brush = Style.GetBrush("Icon");
	EXPECT_TRUE(Brush->GetResourceName().ToString().Equals(TEXT("/plugin/Resources/Picture.svg")));
	EXPECT_EQ(Brush->GetImageType(), ESlateBrushImageType::Vector);
	EXPECT_EQ(FVector2D(Brush->GetImageSize()), FVector2D(16.0, 16.0));
	EXPECT_TRUE(Style.RootToContentDir(TEXT("Picture"), TEXT(".png")).Equals(TEXT("/plugin/Resources/Picture.png")));
}

TEST(SlateStyle, ResolvesIconsLate)
{
	const FSlateIcon Icon("TestIcons", "Thing");
	EXPECT_EQ(Icon.GetSmallStyleName(), FName("Thing.Small"));
	EXPECT_EQ(FSlateIcon("TestIcons", "Thing", "Tiny").GetSmallStyleName(), FName("Tiny"));
	EXPECT_EQ(Icon.GetIcon(), FStyleDefaults::GetDefaultBrush());

	FSlateStyleSet Style(FName("TestIcons"));
	FSlateColorBrush* const Brush = new FSlateColorBrush(FLinearColor::Red);
	Style.Set("Thing", Brush);
	FSlateStyleRegistry::RegisterSlateStyle(Style);
	EXPECT_EQ(Icon.GetIcon(), Brush);
	FSlateStyleRegistry::UnRegisterSlateStyle(Style);
	EXPECT_EQ(Icon.GetIcon(), FStyleDefaults::GetDefaultBrush());
	FSlateStyleRegistry::UnRegisterSlateStyle(FName("NeverRegistered"));
}

TEST(SlateStyle, KeepsTheNameOfAnUnknownTypeface)
{
	const FSlateFontInfo Font = FCoreStyle::GetDefaultFontStyle("NoSuchFace", 8.0f);
	EXPECT_EQ(Font.TypefaceFontName, FName("NoSuchFace"));
	EXPECT_EQ(Font.Size, 8.0f);
}

TEST(SlateStyle, MakesAnUnsetColourLoud)
{
	EXPECT_EQ(FSlateColor().GetSpecifiedColor(), FLinearColor(1.0f, 0.0f, 1.0f));
	EXPECT_FALSE(FSlateColor::UseForeground().IsColorSpecified());
}

/** Counts the lines of the log that name a file. */
class FLineCounter final : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		NumLines += FString(V).Contains(TEXT("NoSuchPicture.svg")) ? 1 : 0;
	}
	int32 NumLines = 0;
};

TEST(SlateStyle, ReportsAMissingImageOnceAndOnlyWhenItIsLoaded)
{
	FSlateStyleSet Style(FName("TestMissing"));
	FLineCounter Counter;
	GLog->AddOutputDevice(&Counter);
	Style.Set("Icon", new FSlateVectorImageBrush(TEXT("/nowhere/NoSuchPicture.svg"), FVector2D(16.0, 16.0)));
	FSlateStyleRegistry::RegisterSlateStyle(Style);
	EXPECT_EQ(Counter.NumLines, 0);
	FSlateNullRenderer Renderer;
	Renderer.ReloadTextureResources();
	Renderer.LoadStyleResources(Style);
	EXPECT_EQ(Counter.NumLines, 1);
	FSlateStyleRegistry::UnRegisterSlateStyle(Style);
	GLog->RemoveOutputDevice(&Counter);
}

TEST(SlateStyleDeathTest, RefusesASecondSetOfAName)
{
	FSlateStyleSet First(FName("TestTwice"));
	FSlateStyleSet Second(FName("TestTwice"));
	FSlateStyleRegistry::RegisterSlateStyle(First);
	EXPECT_DEATH(FSlateStyleRegistry::RegisterSlateStyle(Second), "registered already");
	FSlateStyleRegistry::UnRegisterSlateStyle(First);
}

}
