#pragma once

#include "CoreMinimal.h"
#include "Rendering/SlateRenderer.h"

class SWindow;

/** A renderer with Cairo and Pango, which draws into windows that have been opened on a display. */
TSharedRef<FSlateRenderer> GetStandardStandaloneRenderer();

/**
 * Writes what a window shows into a PNG file.
 *
 * @return false when the window is not open on a display, or the file cannot be written
 */
bool SaveWindowPicture(const TSharedRef<SWindow>& Window, const FString& FileName);
