#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"

#include <cairo.h>

/**
 * Draws smooth lines of a few pixels' width straight into the pixels of an image.
 *
 * A graph that is seen from afar has ten thousand wires, and Cairo takes longer for a curve than for anything else: it
 * computes an outline and fills it. What is thin needs no outline; this takes a tenth of the time.
 */
class FThinLinePainter
{
public:
	/** Lines that are wider have an outline to be seen. */
	static constexpr double MaxWidth = 4.0; // pixels

	/** False for a surface that has no pixels of 32 bits. Clip: whole pixels of the surface. */
	static bool CanDrawOn(cairo_surface_t* Surface);
	FThinLinePainter(cairo_surface_t* InSurface, const FSlateRect& InClip, double InWidth, const FColor& InColor);
	~FThinLinePainter();
	UE_NONCOPYABLE(FThinLinePainter)

	/** A little longer than it is, so that at a corner of two lines nothing is left open. */
	void DrawLine(const FVector2D& From, const FVector2D& To) const;
	/** A cubic curve, as lines that are too short to be told from it. */
	void DrawCurve(const FVector2D (&Points)[4]) const;

private:
	/** Goes along the longer side of the line; across it each pixel is covered by how much of it the line takes. */
	void DrawLine(const FVector2D& From, const FVector2D& To, double Overlap) const;
	void DrawAlong(bool bSteep, const FVector2D& From, const FVector2D& To, double Overlap) const;
	void Blend(int32 X, int32 Y, double Coverage) const;

	cairo_surface_t* const Surface;
	uint8* const Pixels;
	const int32 BytesPerRow;
	const int32 Left, Top, Right, Bottom;
	const double Width;
	const FColor Color;
};
