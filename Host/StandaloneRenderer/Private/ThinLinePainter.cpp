#include "ThinLinePainter.h"

#include <cmath>

namespace ThinLinePainter
{
constexpr double PixelsPerLine = 10.0; // of a curve
constexpr int32 MostLines = 64;
constexpr double CornerOverlap = 0.5; // pixels

bool IsSteep(const FVector2D& From, const FVector2D& To)
{
	return FMath::Abs(To.Y - From.Y) > FMath::Abs(To.X - From.X);
}

FVector2D Swap(const FVector2D& Point)
{
	return FVector2D(Point.Y, Point.X);
}

constexpr int32 Whole = 256;

/** Share: of Above, up to Whole. */
uint8 Mix(uint8 Below, uint8 Above, int32 Share)
{
	return static_cast<uint8>(Below + (Above - Below) * Share / Whole);
}

FVector2D PointOfCurve(const FVector2D (&Points)[4], double T)
{
	const double U = 1.0 - T;
	return Points[0] * (U * U * U) + Points[1] * (3.0 * U * U * T) + Points[2] * (3.0 * U * T * T) +
		   Points[3] * (T * T * T);
}

double Distance(const FVector2D& A, const FVector2D& B)
{
	return std::hypot(B.X - A.X, B.Y - A.Y);
}
}

bool FThinLinePainter::CanDrawOn(cairo_surface_t* Surface)
{
	if (cairo_surface_get_type(Surface) != CAIRO_SURFACE_TYPE_IMAGE)
	{
		return false;
	}
	const cairo_format_t Format = cairo_image_surface_get_format(Surface);
	return Format == CAIRO_FORMAT_RGB24 || Format == CAIRO_FORMAT_ARGB32;
}

FThinLinePainter::FThinLinePainter(
	cairo_surface_t* InSurface, const FSlateRect& InClip, double InWidth, const FColor& InColor)
	: Surface(InSurface)
	, Pixels((cairo_surface_flush(InSurface), cairo_image_surface_get_data(InSurface)))
	, BytesPerRow(cairo_image_surface_get_stride(InSurface))
	, Left(FMath::Max(static_cast<int32>(InClip.Left), 0))
	, Top(FMath::Max(static_cast<int32>(InClip.Top), 0))
	, Right(FMath::Min(static_cast<int32>(InClip.Right), cairo_image_surface_get_width(InSurface)))
	, Bottom(FMath::Min(static_cast<int32>(InClip.Bottom), cairo_image_surface_get_height(InSurface)))
	, Width(InWidth)
	, Color(InColor)
{
}

FThinLinePainter::~FThinLinePainter()
{
	cairo_surface_mark_dirty(Surface);
}

void FThinLinePainter::DrawCurve(const FVector2D (&Points)[4]) const
{
	using namespace ThinLinePainter;
	const double Length =
		Distance(Points[0], Points[1]) + Distance(Points[1], Points[2]) + Distance(Points[2], Points[3]);
	const int32 NumLines = FMath::Clamp(static_cast<int32>(Length / PixelsPerLine), 4, MostLines);
	FVector2D From = Points[0];
	bool bWasSteep = false;
	for (int32 Index = 1; Index <= NumLines; ++Index)
	{
		const FVector2D To = PointOfCurve(Points, static_cast<double>(Index) / NumLines);
		// Pieces in one direction share no pixel and leave none out; drawn twice, a smooth edge would show dots.
		const bool bTurns = Index > 1 && IsSteep(From, To) != bWasSteep;
		DrawLine(From, To, bTurns ? CornerOverlap : 0.0);
		bWasSteep = IsSteep(From, To);
		From = To;
	}
}

void FThinLinePainter::DrawLine(const FVector2D& From, const FVector2D& To) const
{
	DrawLine(From, To, ThinLinePainter::CornerOverlap);
}

void FThinLinePainter::DrawLine(const FVector2D& From, const FVector2D& To, double Overlap) const
{
	const bool bSteep = ThinLinePainter::IsSteep(From, To);
	const FVector2D A = bSteep ? ThinLinePainter::Swap(From) : From;
	const FVector2D B = bSteep ? ThinLinePainter::Swap(To) : To;
	A.X <= B.X ? DrawAlong(bSteep, A, B, Overlap) : DrawAlong(bSteep, B, A, Overlap);
}

void FThinLinePainter::DrawAlong(bool bSteep, const FVector2D& From, const FVector2D& To, double Overlap) const
{
	const double Run = To.X - From.X;
	const double Slope = Run > 0.0 ? (To.Y - From.Y) / Run : 0.0;
	const double Half = Width * std::sqrt(1.0 + Slope * Slope) / 2.0;
	const int32 Least = bSteep ? Top : Left;
	const int32 Most = bSteep ? Bottom : Right;
	const int32 Begin = FMath::Max(static_cast<int32>(std::ceil(From.X - 0.5 - Overlap)), Least);
	const int32 End = FMath::Min(static_cast<int32>(std::ceil(To.X - 0.5 + Overlap)), Most);
	for (int32 Along = Begin; Along < End; ++Along)
	{
		const double Middle = From.Y + Slope * (Along + 0.5 - From.X);
		const int32 First = FMath::Max(static_cast<int32>(std::floor(Middle - Half)), bSteep ? Left : Top);
		const int32 Last = FMath::Min(static_cast<int32>(std::floor(Middle + Half)), (bSteep ? Right : Bottom) - 1);
		for (int32 Across = First; Across <= Last; ++Across)
		{
			const double Coverage =
				FMath::Min<double>(Across + 1.0, Middle + Half) - FMath::Max<double>(Across, Middle - Half);
			bSteep ? Blend(Across, Along, Coverage) : Blend(Along, Across, Coverage);
		}
	}
}

void FThinLinePainter::Blend(int32 X, int32 Y, double Coverage) const
{
	// Blue, green, red, alpha; what is drawn on is opaque.
	uint8* const Pixel = Pixels + static_cast<int64>(Y) * BytesPerRow + static_cast<int64>(X) * 4;
	const int32 Share = static_cast<int32>(Coverage * Color.A * ThinLinePainter::Whole / 255.0);
	Pixel[0] = ThinLinePainter::Mix(Pixel[0], Color.B, Share);
	Pixel[1] = ThinLinePainter::Mix(Pixel[1], Color.G, Share);
	Pixel[2] = ThinLinePainter::Mix(Pixel[2], Color.R, Share);
}
