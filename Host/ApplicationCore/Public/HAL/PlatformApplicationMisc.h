#pragma once

#include "CoreMinimal.h"

/** Where the clipboard's text is kept when it is not in this process, as with a windowed platform. */
class IClipboardBackend
{
public:
	virtual ~IClipboardBackend() = default;
	virtual void SetText(const FString& Text) = 0;
	virtual FString GetText() const = 0;
};

struct FPlatformApplicationMisc
{
	static void ClipboardCopy(const TCHAR* Str);
	/** Dest is empty afterwards when the clipboard holds no text. */
	static void ClipboardPaste(FString& Dest);

	/** Host only. Backend must outlive its use; null goes back to the clipboard of this process. */
	static void SetClipboardBackend(IClipboardBackend* Backend);
};
