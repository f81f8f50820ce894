#include "CairoRenderer.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextComposition.h"
#include "HAL/PlatformApplicationMisc.h"
#include "HostDisplay.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "SdlInput.h"
#include "XErrors.h"

#include <cmath>
#include <csignal>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

DEFINE_LOG_CATEGORY_STATIC(LogDisplay, Log, All);

namespace SdlDisplay
{
constexpr int32 MillisecondsPerSecond = 1000;
// Of a window's upper edge, in pixels, that has to be on a screen for the window to count as seen.
constexpr int GrabWidth = 100;
constexpr int GrabHeight = 30;

/** What the pointer looks like over a widget, as SDL names it. */
SDL_SystemCursor ToSdl(EMouseCursor::Type Cursor)
{
	switch (Cursor)
	{
	case EMouseCursor::TextEditBeam:
		return SDL_SYSTEM_CURSOR_IBEAM;
	case EMouseCursor::ResizeLeftRight:
		return SDL_SYSTEM_CURSOR_SIZEWE;
	case EMouseCursor::ResizeUpDown:
		return SDL_SYSTEM_CURSOR_SIZENS;
	case EMouseCursor::Hand:
	case EMouseCursor::GrabHand:
		return SDL_SYSTEM_CURSOR_HAND;
	default:
		return SDL_SYSTEM_CURSOR_ARROW;
	}
}

class FSdlClipboard final : public IClipboardBackend
{
public:
	void SetText(const FString& Text) override { SDL_SetClipboardText(TCHAR_TO_UTF8(*Text)); }
	FString GetText() const override
	{
		char* const Text = SDL_GetClipboardText();
		const FString Result(Text);
		SDL_free(Text);
		return Result;
	}
};

/** The keyboard as it is now. */
class FSdlApplication final : public GenericApplication
{
public:
	FModifierKeysState GetModifierKeys() const override { return FSdlInput::GetModifierKeys(); }
};

/** Pixels for a Slate unit: as -DPIScale says; or as the first screen asks for, in whole steps. */
float FindScale()
{
	constexpr float OrdinaryDpi = 96.0f;
	constexpr float LargestScale = 4.0f;
	float Dpi = 0.0f;
	FString Wanted;
	const float Scale = FParse::Value(FCommandLine::Get(), TEXT("-DPIScale="), Wanted) ? FCString::Atof(*Wanted)
						: SDL_GetDisplayDPI(0, &Dpi, nullptr, nullptr) == 0            ? std::floor(Dpi / OrdinaryDpi)
																					   : 1.0f;
	return FMath::Clamp(Scale, 1.0f, LargestScale);
}

/** A window of SDL, with the pixels that SDL keeps for it. */
class FSdlWindow final : public IPaintedWindow
{
public:
	FSdlWindow(const SWindow& Window, const SDL_Rect& Place)
		: Handle(SDL_CreateWindow(TCHAR_TO_UTF8(*Window.GetTitle().ToString()), Place.x, Place.y, Place.w, Place.h,
			  SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI))
	{
	}
	~FSdlWindow() override
	{
		cairo_surface_destroy(Surface);
		SDL_DestroyWindow(Handle);
	}
	UE_NONCOPYABLE(FSdlWindow)

	virtual float GetDPIScaleFactor() const override { return Scale; }
	virtual void DrawAttention(const FWindowDrawAttentionParameters& Parameters) override
	{
		const bool bStop = Parameters.RequestType == EWindowDrawAttentionRequestType::Stop;
		SDL_FlashWindow(Handle, bStop ? SDL_FLASH_CANCEL : SDL_FLASH_UNTIL_FOCUSED);
	}
	uint32 GetId() const { return SDL_GetWindowID(Handle); }
	FVector2D GetSize() const
	{
		int Width = 0;
		int Height = 0;
		SDL_GetWindowSize(Handle, &Width, &Height);
		return FVector2D(Width, Height);
	}

	FVector2D GetPosition() const
	{
		int X = 0;
		int Y = 0;
		SDL_GetWindowPosition(Handle, &X, &Y);
		return FVector2D(X, Y);
	}

	cairo_surface_t* LockSurface() override
	{
		SDL_Surface* const Pixels = SDL_GetWindowSurface(Handle);
		if (!Pixels || Pixels->format->BytesPerPixel != 4)
		{
			return nullptr;
		}
		// SDL makes new pixels when the size changes.
		if (!Surface || cairo_image_surface_get_data(Surface) != Pixels->pixels)
		{
			cairo_surface_destroy(Surface);
			Surface = cairo_image_surface_create_for_data(
				static_cast<unsigned char*>(Pixels->pixels), CAIRO_FORMAT_RGB24, Pixels->w, Pixels->h, Pixels->pitch);
		}
		return Surface;
	}

	void ShowSurface(const FSlateRect& Changed) override
	{
		cairo_surface_flush(Surface);
		const SDL_Rect Rect{ static_cast<int>(Changed.Left), static_cast<int>(Changed.Top),
			static_cast<int>(Changed.Right - Changed.Left), static_cast<int>(Changed.Bottom - Changed.Top) };
		SDL_UpdateWindowSurfaceRects(Handle, &Rect, 1);
	}

private:
	SDL_Window* const Handle;
	const float Scale = FindScale();
	cairo_surface_t* Surface = nullptr;
};

/**
 * Whether a screen can be opened within a few seconds. A server that takes the connection and then says nothing would
 * block SDL forever, so a child process tries first.
 */
bool DoesScreenAnswer()
{
	constexpr int32 LongestMilliseconds = 4000;
	constexpr int32 PollMilliseconds = 10;
	const pid_t Trial = fork();
	if (Trial == 0)
	{
		_exit(SDL_Init(SDL_INIT_VIDEO) == 0 ? 0 : 1);
	}
	int Status = 0;
	for (int32 Waited = 0; Trial > 0 && Waited < LongestMilliseconds; Waited += PollMilliseconds)
	{
		if (waitpid(Trial, &Status, WNOHANG) == Trial)
		{
			return true; // also when it failed: SDL says why soon enough
		}
		SDL_Delay(PollMilliseconds);
	}
	if (Trial > 0)
	{
		kill(Trial, SIGKILL);
		waitpid(Trial, &Status, 0);
	}
	return false;
}

class FSdlDisplay final : public FHostDisplay
{
public:
	FSdlDisplay()
	{
		FPlatformApplicationMisc::SetClipboardBackend(&Clipboard);
		SDL_StartTextInput();
		IgnoreWakingOfClosedWindows();
	}
	~FSdlDisplay() override
	{
		FPlatformApplicationMisc::SetClipboardBackend(nullptr);
		for (const auto& Pair : Cursors)
		{
			SDL_FreeCursor(Pair.Value);
		}
		SDL_Quit();
	}
	UE_NONCOPYABLE(FSdlDisplay)

	TSharedRef<GenericApplication> GetPlatformApplication() override { return Application; }

	bool HandleEvents() override
	{
		OpenWindows();
		bool bAny = false;
		SDL_Event Event;
		while (SDL_PollEvent(&Event))
		{
			HandleEvent(Event);
			bAny = true;
		}
		ShowCursor();
		PlaceInputMethod();
		return bAny;
	}

	void WaitForEvent(double Seconds) override
	{
		SDL_WaitEventTimeout(nullptr, static_cast<int>(Seconds * MillisecondsPerSecond));
	}

private:
	static TSharedPtr<SWindow> FindWindow(uint32 Id)
	{
		for (const TSharedRef<SWindow>& Window : FSlateApplication::Get().GetTopLevelWindows())
		{
			const TSharedPtr<FGenericWindow> Native = Window->GetNativeWindow();
			if (Native && static_cast<FSdlWindow&>(*Native).GetId() == Id)
			{
				return Window;
			}
		}
		return nullptr;
	}

	/** Where a window wants to be; or the middle of the screen, if it wants that or would not be seen there. */
	static SDL_Rect FindPlace(const SWindow& Window)
	{
		SDL_Rect Place{ static_cast<int>(Window.GetPositionInScreen().X),
			static_cast<int>(Window.GetPositionInScreen().Y), static_cast<int>(Window.GetClientSizeInScreen().X),
			static_cast<int>(Window.GetClientSizeInScreen().Y) };
		bool bIsSeen = false;
		for (int Index = 0; Index < SDL_GetNumVideoDisplays() && !Window.IsAutoCentered(); ++Index)
		{
			// What the mouse can take hold of.
			const SDL_Rect Handle{ Place.x, Place.y, Place.w, GrabHeight };
			SDL_Rect Screen{ 0, 0, 0, 0 };
			SDL_Rect Common{ 0, 0, 0, 0 };
			SDL_GetDisplayUsableBounds(Index, &Screen);
			bIsSeen |= SDL_IntersectRect(&Handle, &Screen, &Common) && Common.w >= GrabWidth && Common.h == GrabHeight;
		}
		if (!bIsSeen)
		{
			SDL_Rect Screen{ 0, 0, Place.w, Place.h };
			SDL_GetDisplayUsableBounds(0, &Screen);
			Place.w = FMath::Min(Place.w, Screen.w);
			Place.h = FMath::Min(Place.h, Screen.h);
			Place.x = Screen.x + (Screen.w - Place.w) / 2;
			Place.y = Screen.y + (Screen.h - Place.h) / 2;
		}
		return Place;
	}

	static void OpenWindows()
	{
		for (const TSharedRef<SWindow>& Window : FSlateApplication::Get().GetTopLevelWindows())
		{
			if (!Window->GetNativeWindow())
			{
				const TSharedRef<FSdlWindow> Native = MakeShared<FSdlWindow>(Window.Get(), FindPlace(Window.Get()));
				Window->SetNativeWindow(Native);
				Window->Resize(Native->GetSize());
				Window->MoveWindowTo(Native->GetPosition());
			}
		}
	}

	void HandleEvent(const SDL_Event& Event)
	{
		if (Event.type == SDL_QUIT)
		{
			return; // the last window's own event has closed it
		}
		// The window's number is at the same place in all events that have one.
		const TSharedPtr<SWindow> Window = FindWindow(Event.window.windowID);
		if (!Window)
		{
			return;
		}
		// Where no window manager does it.
		const bool bAltF4 =
			Event.type == SDL_KEYDOWN && Event.key.keysym.sym == SDLK_F4 && (Event.key.keysym.mod & KMOD_ALT) != 0;
		if (bAltF4)
		{
			FSlateApplication::Get().RequestDestroyWindow(Window.ToSharedRef());
			return;
		}
		if (Event.type == SDL_WINDOWEVENT)
		{
			HandleWindowEvent(Event.window, Window.ToSharedRef());
			return;
		}
		Input.HandleEvent(Event, Window->GetNativeWindow(), Window->GetPositionInScreen());
	}

	static void HandleWindowEvent(const SDL_WindowEvent& Event, const TSharedRef<SWindow>& Window)
	{
		FSdlWindow& Native = static_cast<FSdlWindow&>(*Window->GetNativeWindow());
		switch (Event.event)
		{
		case SDL_WINDOWEVENT_SIZE_CHANGED:
			Window->Resize(Native.GetSize());
			Native.Shown.Empty();
			break;
		case SDL_WINDOWEVENT_MOVED:
			Window->MoveWindowTo(Native.GetPosition());
			Native.Shown.Empty();
			break;
		case SDL_WINDOWEVENT_FOCUS_GAINED:
			FSlateApplication::Get().ProcessApplicationActivationEvent(true);
			break;
		case SDL_WINDOWEVENT_FOCUS_LOST:
			FSlateApplication::Get().DismissAllMenus();
			// It may have gone to another window of this program.
			FSlateApplication::Get().ProcessApplicationActivationEvent(SDL_GetKeyboardFocus() != nullptr);
			break;
		case SDL_WINDOWEVENT_EXPOSED:
			Native.Shown.Empty();
			break;
		case SDL_WINDOWEVENT_MINIMIZED:
			Window->SetMinimized(true);
			break;
		case SDL_WINDOWEVENT_RESTORED:
		case SDL_WINDOWEVENT_SHOWN:
			Window->SetMinimized(false);
			break;
		case SDL_WINDOWEVENT_CLOSE:
			FSlateApplication::Get().RequestDestroyWindow(Window);
			break;
		default:
			break;
		}
	}

	/** The choices of an input method come up below the text cursor. */
	void PlaceInputMethod()
	{
		const FSlateApplication& Slate = FSlateApplication::Get();
		const ITextCompositionTarget* const Target = Slate.GetTextCompositionTarget();
		const TSharedPtr<SWindow> Window =
			Target ? Slate.FindWidgetWindow(Slate.GetKeyboardFocusedWidget().ToSharedRef()) : nullptr;
		if (!Window.IsValid())
		{
			return;
		}
		const FSlateRect Cursor = Target->GetCursorRect();
		const FVector2D Place = Cursor.GetTopLeft() - Window->GetPositionInScreen();
		const SDL_Rect Rect{ static_cast<int>(Place.X), static_cast<int>(Place.Y), static_cast<int>(Cursor.GetSize().X),
			static_cast<int>(Cursor.GetSize().Y) };
		if (!SDL_RectEquals(&Rect, &InputMethodPlace))
		{
			InputMethodPlace = Rect;
			SDL_SetTextInputRect(&Rect);
		}
	}

	void ShowCursor()
	{
		const SDL_SystemCursor Wanted = ToSdl(FSlateApplication::Get().GetCursorUnderPointer());
		if (Wanted == CurrentCursor)
		{
			return;
		}
		CurrentCursor = Wanted;
		SDL_Cursor*& Cursor = Cursors.FindOrAdd(Wanted);
		Cursor = Cursor ? Cursor : SDL_CreateSystemCursor(Wanted);
		SDL_SetCursor(Cursor);
	}

	const TSharedRef<FSdlApplication> Application = MakeShared<FSdlApplication>();
	FSdlClipboard Clipboard;
	FSdlInput Input;
	SDL_Rect InputMethodPlace{ 0, 0, 0, 0 };
	TMap<int32, SDL_Cursor*> Cursors;
	int32 CurrentCursor = SDL_SYSTEM_CURSOR_ARROW;
};
}

TUniquePtr<FHostDisplay> FHostDisplay::Open()
{
	// Where neither answers, SDL would take a screen that nobody sees.
	SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11,wayland");
	// The console has the first word on Ctrl-C.
	SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
	// The pixels are drawn in memory: a way through OpenGL would only take longer, above all to start.
	SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
	SDL_SetHint(SDL_HINT_IME_SHOW_UI, "1");
	SDL_SetHint(SDL_HINT_IME_SUPPORT_EXTENDED_TEXT, "1");
	// SDL loads D-Bus for input methods and unloads it again. It is not made for that: what it keeps would be lost.
	dlopen("libdbus-1.so.3", RTLD_LAZY | RTLD_NODELETE);
	const bool bAnswers = SdlDisplay::DoesScreenAnswer();
	if (!bAnswers || SDL_Init(SDL_INIT_VIDEO) != 0)
	{
		UE_LOG(LogDisplay, Warning, TEXT("There is no screen to open a window on: %s"),
			bAnswers ? UTF8_TO_TCHAR(SDL_GetError()) : TEXT("the screen does not answer"));
		return nullptr;
	}
	return MakeUnique<SdlDisplay::FSdlDisplay>();
}
