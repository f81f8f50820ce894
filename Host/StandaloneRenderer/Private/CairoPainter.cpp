#include "CairoPainter.h"

#include "ThinLinePainter.h"

#include <cmath>
#include <numbers>

namespace CairoPainter
{
/** Rounded corners of a rectangle, in pixels: top left, top right, bottom right, bottom left. */
void AddRoundedRectangle(cairo_t* Cairo, double Left, double Top, double Right, double Bottom, const double (&Radii)[4])
{
	constexpr double Quarter = std::numbers::pi / 2.0;
	cairo_new_sub_path(Cairo);
	cairo_arc(Cairo, Left + Radii[0], Top + Radii[0], Radii[0], 2.0 * Quarter, 3.0 * Quarter);
	cairo_arc(Cairo, Right - Radii[1], Top + Radii[1], Radii[1], 3.0 * Quarter, 4.0 * Quarter);
	cairo_arc(Cairo, Right - Radii[2], Bottom - Radii[2], Radii[2], 0.0, Quarter);
	cairo_arc(Cairo, Left + Radii[3], Bottom - Radii[3], Radii[3], Quarter, 2.0 * Quarter);
	cairo_close_path(Cairo);
}
}

void FCairoPainter::SetColor(const FLinearColor& Color)
{
	constexpr bool bSrgb = true;
	const FColor Shown = Color.ToFColor(bSrgb);
	cairo_set_source_rgba(Cairo, Shown.R / 255.0, Shown.G / 255.0, Shown.B / 255.0, Shown.A / 255.0);
}

void FCairoPainter::AddRectangle(const FSlateRect& Rect)
{
	// On whole pixels: edges stay sharp.
	const double Left = std::round(Rect.Left - Origin.X);
	const double Top = std::round(Rect.Top - Origin.Y);
	const double Right = std::round(Rect.Right - Origin.X);
	const double Bottom = std::round(Rect.Bottom - Origin.Y);
	cairo_rectangle(Cairo, Left, Top, Right - Left, Bottom - Top);
}

void FCairoPainter::Draw(const FSlateDrawElement& Element)
{
	cairo_save(Cairo);
	AddRectangle(Element.ClippingRect);
	cairo_clip(Cairo);
	if (!Element.Points.IsEmpty())
	{
		DrawShape(Element);
	}
	else
	{
		Element.Brush ? DrawBrush(Element) : DrawText(Element);
	}
	cairo_restore(Cairo);
}

void FCairoPainter::DrawShape(const FSlateDrawElement& Element)
{
	TArray<FVector2D> Places;
	for (const FVector2D& Point : Element.Points)
	{
		Places.Add(FVector2D(Element.Geometry.LocalToAbsolute(Point)) - Origin);
	}
	const double Width = Element.Thickness * Element.Geometry.GetScale();
	const bool bIsLine = Element.Shape != FSlateDrawElement::EShape::Polygon;
	if (bIsLine && Width <= FThinLinePainter::MaxWidth && FThinLinePainter::CanDrawOn(cairo_get_target(Cairo)))
	{
		DrawThinLines(Element, Places, Width);
		return;
	}
	SetColor(Element.Tint);
	cairo_set_line_width(Cairo, Width);
	cairo_set_line_join(Cairo, CAIRO_LINE_JOIN_ROUND);
	cairo_move_to(Cairo, Places[0].X, Places[0].Y);
	if (Element.Shape == FSlateDrawElement::EShape::Spline)
	{
		cairo_curve_to(Cairo, Places[1].X, Places[1].Y, Places[2].X, Places[2].Y, Places[3].X, Places[3].Y);
		cairo_stroke(Cairo);
		return;
	}
	for (int32 Index = 1; Index < Places.Num(); ++Index)
	{
		cairo_line_to(Cairo, Places[Index].X, Places[Index].Y);
	}
	Element.Shape == FSlateDrawElement::EShape::Polygon ? cairo_fill(Cairo) : cairo_stroke(Cairo);
}

void FCairoPainter::DrawThinLines(const FSlateDrawElement& Element, const TArray<FVector2D>& Places, double Width)
{
	double Left = 0.0;
	double Top = 0.0;
	double Right = 0.0;
	double Bottom = 0.0;
	cairo_clip_extents(Cairo, &Left, &Top, &Right, &Bottom);
	const FSlateRect Clip(FVector2D(Left, Top), FVector2D(Right, Bottom));
	const FThinLinePainter Painter(cairo_get_target(Cairo), Clip, Width, Element.Tint.ToFColor(true));
	if (Element.Shape == FSlateDrawElement::EShape::Spline)
	{
		Painter.DrawCurve({ Places[0], Places[1], Places[2], Places[3] });
		return;
	}
	for (int32 Index = 1; Index < Places.Num(); ++Index)
	{
		Painter.DrawLine(Places[Index - 1], Places[Index]);
	}
}

void FCairoPainter::DrawText(const FSlateDrawElement& Element)
{
	const FSlateRect Rect = Element.Geometry.GetLayoutBoundingRect();
	cairo_translate(Cairo, std::round(Rect.Left - Origin.X), std::round(Rect.Top - Origin.Y));
	cairo_scale(Cairo, Element.Geometry.GetScale(), Element.Geometry.GetScale());
	SetColor(Element.Tint);
	pango_cairo_show_layout(Cairo, Fonts.LayOut(Element.Text, Element.Font));
}

void FCairoPainter::DrawBrush(const FSlateDrawElement& Element)
{
	if (Element.Brush->DrawAs == ESlateBrushDrawType::RoundedBox)
	{
		DrawRoundedBox(Element);
	}
	else if (!Element.Brush->GetResourceName().IsNone())
	{
		DrawImage(Element);
	}
	else
	{
		SetColor(Element.Tint);
		AddRectangle(Element.Geometry.GetLayoutBoundingRect());
		cairo_fill(Cairo);
	}
}

void FCairoPainter::DrawRoundedBox(const FSlateDrawElement& Element)
{
	const FSlateRect Rect = Element.Geometry.GetLayoutBoundingRect();
	const FSlateBrushOutlineSettings& Outline = Element.Brush->OutlineSettings;
	const double Scale = Element.Geometry.GetScale();
	const double LineWidth = Outline.Width * Scale;
	const double Inset = LineWidth / 2.0;
	const double Left = std::round(Rect.Left - Origin.X) + Inset;
	const double Top = std::round(Rect.Top - Origin.Y) + Inset;
	const double Right = std::round(Rect.Right - Origin.X) - Inset;
	const double Bottom = std::round(Rect.Bottom - Origin.Y) - Inset;
	const double MaxRadius = FMath::Max(0.0, FMath::Min(Right - Left, Bottom - Top) / 2.0);
	double Radii[4];
	for (int32 Corner = 0; Corner < 4; ++Corner)
	{
		Radii[Corner] = FMath::Min(Outline.CornerRadii[Corner] * Scale, MaxRadius);
	}
	CairoPainter::AddRoundedRectangle(Cairo, Left, Top, Right, Bottom, Radii);
	SetColor(Element.Tint);
	cairo_fill_preserve(Cairo);
	if (LineWidth > 0.0)
	{
		SetColor(Outline.Color.GetSpecifiedColor());
		cairo_set_line_width(Cairo, LineWidth);
		cairo_stroke(Cairo);
	}
	cairo_new_path(Cairo);
}

void FCairoPainter::DrawImage(const FSlateDrawElement& Element)
{
	const FSlateRect Rect = Element.Geometry.GetLayoutBoundingRect();
	const double Left = std::round(Rect.Left - Origin.X);
	const double Top = std::round(Rect.Top - Origin.Y);
	cairo_surface_t* const Image = Images.Find(Element.Brush->GetResourceName().ToString(),
		static_cast<int32>(std::round(Rect.Right - Rect.Left)), static_cast<int32>(std::round(Rect.Bottom - Rect.Top)));
	if (!Image)
	{
		return;
	}
	// A white tint leaves the image's own colours; another is laid over its shape.
	if (Element.Tint.R >= 1.0f && Element.Tint.G >= 1.0f && Element.Tint.B >= 1.0f)
	{
		cairo_set_source_surface(Cairo, Image, Left, Top);
		cairo_paint_with_alpha(Cairo, Element.Tint.A);
		return;
	}
	SetColor(Element.Tint);
	cairo_mask_surface(Cairo, Image, Left, Top);
}
