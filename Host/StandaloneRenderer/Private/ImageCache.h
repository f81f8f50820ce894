#pragma once

#include "CoreMinimal.h"

#include <cairo.h>

/** Images of brushes, drawn once for each size in which they are needed. */
class FImageCache
{
public:
	FImageCache() = default;
	~FImageCache();
	UE_NONCOPYABLE(FImageCache)

	/**
	 * @param FileName  an SVG or PNG file
	 * @param Width, Height  in pixels
	 * @return null for a file that cannot be read; the log says so once
	 */
	cairo_surface_t* Find(const FString& FileName, int32 Width, int32 Height);
	void Clear();

private:
	TMap<FString, cairo_surface_t*> Surfaces; // by file and size
};
