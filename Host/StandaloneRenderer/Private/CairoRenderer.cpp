#include "CairoRenderer.h"

#include "Application/SlateApplicationBase.h"
#include "CairoPainter.h"
#include "StandaloneRenderer.h"
#include "Widgets/SWindow.h"

#include <cmath>

namespace CairoRenderer
{
/** What lies behind all widgets. */
const FLinearColor Background = FLinearColor(FColor(21, 21, 21));

bool IsEmpty(const FSlateRect& Rect)
{
	return Rect.Right <= Rect.Left || Rect.Bottom <= Rect.Top;
}

bool IsSame(const FSlateDrawElement& A, const FSlateDrawElement& B)
{
	return A.LayerId == B.LayerId && A.Brush == B.Brush && A.Tint == B.Tint && A.ClippingRect == B.ClippingRect &&
		   A.Geometry == B.Geometry && A.Text.Equals(B.Text) && A.Points == B.Points &&
		   (A.Points.IsEmpty() || (A.Shape == B.Shape && A.Thickness == B.Thickness)) &&
		   (!A.IsText() || A.Font == B.Font);
}

void Include(FSlateRect& Sum, const FSlateRect& Rect)
{
	if (IsEmpty(Rect))
	{
		return;
	}
	Sum = IsEmpty(Sum) ? Rect
					   : FSlateRect(FMath::Min(Sum.Left, Rect.Left), FMath::Min(Sum.Top, Rect.Top),
							 FMath::Max(Sum.Right, Rect.Right), FMath::Max(Sum.Bottom, Rect.Bottom));
}

FSlateRect FindChange(const TArray<FSlateDrawElement>& Before, const TArray<FSlateDrawElement>& After)
{
	// What was put in or taken out lies between an equal beginning and an equal end.
	const int32 NumCommon = FMath::Min(Before.Num(), After.Num());
	int32 Begin = 0;
	while (Begin < NumCommon && IsSame(Before[Begin], After[Begin]))
	{
		++Begin;
	}
	int32 NumEnd = 0;
	while (NumEnd < NumCommon - Begin && IsSame(Before[Before.Num() - 1 - NumEnd], After[After.Num() - 1 - NumEnd]))
	{
		++NumEnd;
	}
	FSlateRect Change;
	const bool bPaired = Before.Num() == After.Num();
	for (int32 Index = Begin; Index < Before.Num() - NumEnd; ++Index)
	{
		if (!bPaired || !IsSame(Before[Index], After[Index]))
		{
			Include(Change, Before[Index].GetBounds());
		}
	}
	for (int32 Index = Begin; Index < After.Num() - NumEnd; ++Index)
	{
		if (!bPaired || !IsSame(Before[Index], After[Index]))
		{
			Include(Change, After[Index].GetBounds());
		}
	}
	return Change;
}

/** Whole pixels, and one more at each side for what is smoothed. */
FSlateRect ToPixels(const FSlateRect& Rect)
{
	return FSlateRect(std::floor(Rect.Left) - 1.0f, std::floor(Rect.Top) - 1.0f, std::ceil(Rect.Right) + 1.0f,
		std::ceil(Rect.Bottom) + 1.0f);
}

TArray<FSlateDrawElement> InOrderOfLayers(const FSlateWindowElementList& List)
{
	TArray<FSlateDrawElement> Elements = List.GetElements();
	Elements.StableSort([](const FSlateDrawElement& A, const FSlateDrawElement& B) { return A.LayerId < B.LayerId; });
	return Elements;
}
}

FCairoRenderer::FCairoRenderer()
	: FSlateRenderer(MakeShared<FPangoFonts>())
	, Fonts(static_cast<FPangoFonts&>(GetFontMeasureService().Get()))
{
}

void FCairoRenderer::ReloadTextureResources()
{
	FSlateRenderer::ReloadTextureResources();
	Images.Clear();
}

void FCairoRenderer::DrawAll(cairo_surface_t* Surface, const FVector2D& Origin,
	const TArray<FSlateDrawElement>& Elements, const FSlateRect& Area)
{
	cairo_t* const Cairo = cairo_create(Surface);
	cairo_rectangle(Cairo, Area.Left - Origin.X, Area.Top - Origin.Y, Area.Right - Area.Left, Area.Bottom - Area.Top);
	cairo_clip(Cairo);
	const FColor Back = CairoRenderer::Background.ToFColor(true);
	cairo_set_source_rgb(Cairo, Back.R / 255.0, Back.G / 255.0, Back.B / 255.0);
	cairo_paint(Cairo);
	FCairoPainter Painter(Cairo, Origin, Fonts, Images);
	for (const FSlateDrawElement& Element : Elements)
	{
		if (FSlateRect::DoRectanglesIntersect(Element.GetBounds(), Area))
		{
			Painter.Draw(Element);
		}
	}
	cairo_destroy(Cairo);
}

void FCairoRenderer::DrawWindow(const TSharedRef<SWindow>& Window, FSlateWindowElementList& DrawElements)
{
	TArray<FSlateDrawElement> Elements = CairoRenderer::InOrderOfLayers(DrawElements);
	const TSharedPtr<FGenericWindow> Native = Window->GetNativeWindow();
	// Every native window here was made by the display of this module.
	IPaintedWindow* const Painted = static_cast<IPaintedWindow*>(Native.Get());
	if (!Painted)
	{
		return;
	}
	const FVector2D Origin = Window->GetPositionInScreen();
	const FSlateRect WholeWindow(Origin, Origin + Window->GetClientSizeInScreen());
	FSlateRect Change = Painted->Shown.IsEmpty() ? WholeWindow : CairoRenderer::FindChange(Painted->Shown, Elements);
	if (CairoRenderer::IsEmpty(Change))
	{
		return;
	}
	Change = CairoRenderer::ToPixels(Change).IntersectionWith(WholeWindow);
	cairo_surface_t* const Surface = Painted->LockSurface();
	if (!Surface)
	{
		return;
	}
	DrawAll(Surface, Origin, Elements, Change);
	Painted->ShowSurface(FSlateRect(Change.GetTopLeft() - Origin, FVector2D(Change.Right, Change.Bottom) - Origin));
	Painted->Shown = MoveTemp(Elements);
}

TSharedRef<FSlateRenderer> GetStandardStandaloneRenderer()
{
	return MakeShared<FCairoRenderer>();
}

bool SaveWindowPicture(const TSharedRef<SWindow>& Window, const FString& FileName)
{
	IPaintedWindow* const Painted = static_cast<IPaintedWindow*>(Window->GetNativeWindow().Get());
	cairo_surface_t* const Surface = Painted ? Painted->LockSurface() : nullptr;
	return Surface && cairo_surface_write_to_png(Surface, TCHAR_TO_UTF8(*FileName)) == CAIRO_STATUS_SUCCESS;
}
