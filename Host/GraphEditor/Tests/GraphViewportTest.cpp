#include "GraphViewport.h"

#include <gtest/gtest.h>

namespace
{
const FVector2D PanelSize(800.0, 600.0);

void ExpectNear(const FVector2D& A, const FVector2D& B)
{
	EXPECT_NEAR(A.X, B.X, 1e-6);
	EXPECT_NEAR(A.Y, B.Y, 1e-6);
}

TEST(GraphViewportTest, ZoomingKeepsThePlaceBelowThePointer)
{
	FGraphViewport Viewport;
	Viewport.Pan(FVector2D(-123.0, 45.0));
	const FVector2D Pointer(530.0, 170.0);
	const FVector2D Place = Viewport.ToGraph(Pointer);
	for (const int32 NumSteps : { -1, -3, 2, -100, 100, 5 })
	{
		Viewport.ZoomAbout(Pointer, NumSteps, NumSteps == 5);
		ExpectNear(Viewport.ToGraph(Pointer), Place);
		ExpectNear(Viewport.ToPanel(Place), Pointer);
	}
}

TEST(GraphViewportTest, GoesBeyondTrueSizeOnlyWhenTold)
{
	FGraphViewport Viewport;
	const FVector2D Corner(0.0, 0.0);
	const auto Zoom = [&](int32 NumSteps, bool bBeyond) {
		Viewport.ZoomAbout(Corner, NumSteps, bBeyond);
		return Viewport.GetZoom();
	};
	EXPECT_EQ(Zoom(3, false), 1.0);
	EXPECT_EQ(std::string(TCHAR_TO_UTF8(*Viewport.GetZoomText().ToString())), "Zoom 1:1");
	EXPECT_EQ(Zoom(2, true), 1.375);
	EXPECT_EQ(Zoom(1, false), 1.375) << "no farther, and not thrown back";
	EXPECT_EQ(Zoom(-1, false), 1.25);
	EXPECT_EQ(Zoom(100, true), 2.0);
	EXPECT_EQ(Zoom(-100, false), 0.1);
	EXPECT_EQ(std::string(TCHAR_TO_UTF8(*Viewport.GetZoomText().ToString())), "Zoom -12");
}

TEST(GraphViewportTest, PansByWhatThePointerMoves)
{
	FGraphViewport Viewport;
	Viewport.ZoomAbout(FVector2D(0.0, 0.0), -4, false); // half
	const FVector2D Place = Viewport.ToGraph(FVector2D(100.0, 100.0));
	Viewport.Pan(FVector2D(30.0, -20.0));
	ExpectNear(Viewport.ToPanel(Place), FVector2D(130.0, 80.0));
}

TEST(GraphViewportTest, FramesAllInTheMiddle)
{
	const struct
	{
		FSlateRect Bounds;
		double Zoom;
	} Cases[] = { { FSlateRect(100.0f, 100.0f, 300.0f, 200.0f), 1.0 },
		{ FSlateRect(-1000.0f, 0.0f, 500.0f, 400.0f), 0.5 }, { FSlateRect(0.0f, 0.0f, 400.0f, 1400.0f), 0.375 },
		{ FSlateRect(0.0f, 0.0f, 90000.0f, 90000.0f), 0.1 }, { FSlateRect(), 1.0 } };
	for (const auto& Case : Cases)
	{
		FGraphViewport Viewport;
		Viewport.Frame(Case.Bounds, PanelSize);
		EXPECT_EQ(Viewport.GetZoom(), Case.Zoom);
		const FVector2D Middle = Case.Bounds.GetTopLeft() + Case.Bounds.GetSize() / 2.0;
		ExpectNear(Viewport.ToPanel(Middle), PanelSize / 2.0);
	}
}
}
