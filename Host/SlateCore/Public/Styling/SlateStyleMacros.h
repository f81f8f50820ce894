#pragma once

#include "Brushes/SlateImageBrush.h"

// The bare RootToContentDir is found in a class derived from FSlateStyleSet, or through a macro of that name.
#define IMAGE_BRUSH(RelativePath, ...) FSlateImageBrush(RootToContentDir(RelativePath, TEXT(".png")), __VA_ARGS__)
#define IMAGE_BRUSH_SVG(RelativePath, ...)                                                                             \
	FSlateVectorImageBrush(RootToContentDir(RelativePath, TEXT(".svg")), __VA_ARGS__)
