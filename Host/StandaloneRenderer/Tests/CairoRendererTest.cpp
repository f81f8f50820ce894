#include "CairoRenderer.h"
#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateRoundedBoxBrush.h"
#include "Styling/CoreStyle.h"

#include <gtest/gtest.h>

namespace
{
const FSlateRect Canvas(0.0f, 0.0f, 100.0f, 60.0f);

FSlateDrawElement MakeElement(float Left, float Top, float Width, float Height)
{
	FSlateDrawElement Element;
	Element.Geometry = FGeometry::MakeRoot(FVector2D(Width, Height), FSlateLayoutTransform(1.0f, FVector2D(Left, Top)));
	Element.ClippingRect = Canvas;
	Element.Tint = FLinearColor::White;
	return Element;
}

FSlateDrawElement MakeBox(
	const FSlateBrush& Brush, const FLinearColor& Tint, float Left, float Top, float Width, float Height)
{
	FSlateDrawElement Element = MakeElement(Left, Top, Width, Height);
	Element.Brush = &Brush;
	Element.Tint = Tint;
	return Element;
}

FSlateDrawElement MakeText(const TCHAR* Text, float Left, float Top)
{
	FSlateDrawElement Element = MakeElement(Left, Top, 80.0f, 20.0f);
	Element.Text = Text;
	Element.Font = FCoreStyle::GetDefaultFontStyle("Regular", 10.0f);
	return Element;
}

/** A picture of elements, to look at single pixels. */
class FPicture
{
public:
	explicit FPicture(const TArray<FSlateDrawElement>& Elements)
		: Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 100, 60))
	{
		FCairoRenderer().DrawAll(Surface, FVector2D(0.0, 0.0), Elements, Canvas);
		cairo_surface_flush(Surface);
	}
	~FPicture() { cairo_surface_destroy(Surface); }
	UE_NONCOPYABLE(FPicture)

	/** 0xRRGGBB */
	uint32 At(int32 X, int32 Y) const
	{
		const unsigned char* const Row =
			cairo_image_surface_get_data(Surface) + Y * cairo_image_surface_get_stride(Surface);
		return reinterpret_cast<const uint32*>(Row)[X] & 0xFFFFFF;
	}
	int32 CountLit(int32 Left, int32 Right) const
	{
		int32 Count = 0;
		for (int32 Y = 0; Y < 60; ++Y)
		{
			for (int32 X = Left; X < Right; ++X)
			{
				Count += (At(X, Y) & 0xFF) > 0x80 ? 1 : 0;
			}
		}
		return Count;
	}

private:
	cairo_surface_t* const Surface;
};

constexpr uint32 Background = 0x151515;
}

TEST(CairoRendererTest, DrawsBoxesAndText)
{
	const FSlateColorBrush Plain(FLinearColor::White);
	const FSlateRoundedBoxBrush Rounded(FLinearColor::White, 8.0f);
	const FPicture Picture({ MakeBox(Plain, FLinearColor(FColor(10, 200, 30)), 10.0f, 10.0f, 20.0f, 20.0f),
		MakeBox(Rounded, FLinearColor::White, 60.0f, 10.0f, 30.0f, 30.0f) });
	EXPECT_EQ(Picture.At(9, 15), Background);
	EXPECT_EQ(Picture.At(10, 10), 0x0AC81Eu) << "sharp at its corner, in its colour";
	EXPECT_EQ(Picture.At(29, 29), 0x0AC81Eu);
	EXPECT_EQ(Picture.At(30, 30), Background);
	EXPECT_EQ(Picture.At(60, 10), Background) << "the corner is cut";
	EXPECT_EQ(Picture.At(75, 25), 0xFFFFFFu);

	const FPicture Text({ MakeText(TEXT("Hello"), 5.0f, 5.0f) });
	EXPECT_GT(Text.CountLit(5, 45), 30);
	EXPECT_EQ(Text.CountLit(60, 100), 0);
	FSlateDrawElement Clipped = MakeText(TEXT("Hello"), 5.0f, 5.0f);
	Clipped.ClippingRect = FSlateRect(0.0f, 0.0f, 12.0f, 60.0f);
	EXPECT_EQ(FPicture({ Clipped }).CountLit(12, 100), 0);
}

TEST(CairoRendererTest, DrawsEachTypefaceDifferently)
{
	TArray<TArray<uint32>> Drawn;
	for (const char* Typeface : { "Regular", "Bold", "Italic", "BoldItalic", "Mono" })
	{
		FSlateDrawElement Element = MakeText(TEXT("Hello"), 5.0f, 5.0f);
		Element.Font.TypefaceFontName = FName(Typeface);
		const FPicture Picture({ Element });
		TArray<uint32> Pixels;
		for (int32 Index = 0; Index < 100 * 60; ++Index)
		{
			Pixels.Add(Picture.At(Index % 100, Index / 100));
		}
		EXPECT_FALSE(Drawn.Contains(Pixels)) << Typeface;
		Drawn.Add(Pixels);
	}
}

TEST(CairoRendererTest, DrawsLinesCurvesAndPolygons)
{
	const FGeometry Moved =
		FGeometry::MakeRoot(FVector2D(10.0, 10.0), FSlateLayoutTransform(2.0f, FVector2D(10.0, 0.0)));
	FSlateWindowElementList List;
	FSlateDrawElement::MakeLines(
		List, 0, Moved, Canvas, { FVector2D(0.0, 5.0), FVector2D(20.0, 5.0) }, FLinearColor::White, 2.0f);
	FSlateDrawElement::MakePolygon(List, 0, Moved, Canvas,
		{ FVector2D(0.0, 10.0), FVector2D(10.0, 10.0), FVector2D(0.0, 20.0) }, FLinearColor::White);
	FSlateDrawElement::MakeCubicBezierSpline(List, 0, Moved, Canvas, FVector2D(20.0, 10.0), FVector2D(40.0, 10.0),
		FVector2D(20.0, 25.0), FVector2D(40.0, 25.0), 2.0f, FLinearColor::White);
	ASSERT_EQ(List.GetElements().Num(), 3);
	const FPicture Picture(List.GetElements());
	EXPECT_EQ(Picture.At(30, 9), 0xFFFFFFu) << "the geometry's place and scale count";
	EXPECT_EQ(Picture.At(30, 13), Background);
	EXPECT_EQ(Picture.At(12, 25), 0xFFFFFFu);
	EXPECT_EQ(Picture.At(28, 38), Background) << "beyond the slanted edge";
	EXPECT_EQ(Picture.At(70, 35), 0xFFFFFFu) << "the middle of the curve";
	EXPECT_EQ(List.GetElements()[2].GetBounds(), FSlateRect(44.0f, 14.0f, 96.0f, 56.0f));
}

TEST(CairoRendererTest, FindsWhatHasChanged)
{
	const FSlateColorBrush Plain(FLinearColor::White);
	const auto Box = [&Plain](float Left) { return MakeBox(Plain, FLinearColor::White, Left, 10.0f, 10.0f, 10.0f); };
	const TArray<FSlateDrawElement> Before = { Box(0.0f), Box(20.0f), Box(40.0f) };
	const auto ExpectChange = [&Before](const TArray<FSlateDrawElement>& After, const FSlateRect& Expected) {
		EXPECT_EQ(CairoRenderer::FindChange(Before, After), Expected);
	};
	ExpectChange({ Box(0.0f), Box(20.0f), Box(40.0f) }, FSlateRect());
	ExpectChange({ Box(0.0f), Box(25.0f), Box(40.0f) }, FSlateRect(20.0f, 10.0f, 35.0f, 20.0f));
	ExpectChange({ Box(0.0f), Box(40.0f) }, FSlateRect(20.0f, 10.0f, 30.0f, 20.0f));
	ExpectChange({ Box(0.0f), Box(20.0f), Box(60.0f), Box(40.0f) }, FSlateRect(60.0f, 10.0f, 70.0f, 20.0f));
	ExpectChange({}, FSlateRect(0.0f, 10.0f, 50.0f, 20.0f));
}
