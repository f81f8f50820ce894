#include "ImageCache.h"

// GLib has a type that is called as the engine's error device is.
#define GError GLibError
#include <librsvg/rsvg.h>
#undef GError

DEFINE_LOG_CATEGORY_STATIC(LogImageCache, Log, All);

namespace ImageCache
{
constexpr int32 MaxImages = 512;

bool DrawSvg(const FString& FileName, cairo_t* Cairo, int32 Width, int32 Height)
{
	GLibError* Error = nullptr;
	RsvgHandle* const Handle = rsvg_handle_new_from_file(TCHAR_TO_UTF8(*FileName), &Error);
	if (!Handle)
	{
		g_clear_error(&Error);
		return false;
	}
	const RsvgRectangle Viewport{ 0.0, 0.0, static_cast<double>(Width), static_cast<double>(Height) };
	const bool bDrawn = rsvg_handle_render_document(Handle, Cairo, &Viewport, nullptr);
	g_object_unref(Handle);
	return bDrawn;
}

bool DrawPng(const FString& FileName, cairo_t* Cairo, int32 Width, int32 Height)
{
	cairo_surface_t* const Image = cairo_image_surface_create_from_png(TCHAR_TO_UTF8(*FileName));
	const bool bRead = cairo_surface_status(Image) == CAIRO_STATUS_SUCCESS;
	if (bRead)
	{
		cairo_scale(Cairo, static_cast<double>(Width) / cairo_image_surface_get_width(Image),
			static_cast<double>(Height) / cairo_image_surface_get_height(Image));
		cairo_set_source_surface(Cairo, Image, 0.0, 0.0);
		cairo_paint(Cairo);
	}
	cairo_surface_destroy(Image);
	return bRead;
}

cairo_surface_t* Draw(const FString& FileName, int32 Width, int32 Height)
{
	cairo_surface_t* const Surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, Width, Height);
	cairo_t* const Cairo = cairo_create(Surface);
	const bool bDrawn = FileName.EndsWith(TEXT(".svg")) ? DrawSvg(FileName, Cairo, Width, Height)
														: DrawPng(FileName, Cairo, Width, Height);
	cairo_destroy(Cairo);
	if (bDrawn)
	{
		return Surface;
	}
	UE_LOG(LogImageCache, Warning, TEXT("The image '%s' cannot be read"), *FileName);
	cairo_surface_destroy(Surface);
	return nullptr;
}
}

FImageCache::~FImageCache()
{
	Clear();
}

void FImageCache::Clear()
{
	for (const auto& Pair : Surfaces)
	{
		cairo_surface_destroy(Pair.Value); // null is allowed
	}
	Surfaces.Empty();
}

cairo_surface_t* FImageCache::Find(const FString& FileName, int32 Width, int32 Height)
{
	if (Width <= 0 || Height <= 0)
	{
		return nullptr;
	}
	const FString Key = FString::Printf(TEXT("%s|%dx%d"), *FileName, Width, Height);
	if (cairo_surface_t* const* Known = Surfaces.Find(Key))
	{
		return *Known;
	}
	if (Surfaces.Num() >= ImageCache::MaxImages)
	{
		Clear();
	}
	return Surfaces.Add(Key, ImageCache::Draw(FileName, Width, Height));
}
