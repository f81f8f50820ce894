#include "SdlInput.h"

#include "Framework/Application/SlateApplication.h"
#include "GenericPlatform/GenericWindow.h"

namespace SdlInput
{
struct FKeyName
{
	SDL_Keycode Code;
	const FKey& Key;
};

const FKeyName KeyNames[] = {
	{ SDLK_BACKSPACE, EKeys::BackSpace },
	{ SDLK_TAB, EKeys::Tab },
	{ SDLK_RETURN, EKeys::Enter },
	{ SDLK_KP_ENTER, EKeys::Enter },
	{ SDLK_ESCAPE, EKeys::Escape },
	{ SDLK_SPACE, EKeys::SpaceBar },
	{ SDLK_PAGEUP, EKeys::PageUp },
	{ SDLK_PAGEDOWN, EKeys::PageDown },
	{ SDLK_END, EKeys::End },
	{ SDLK_HOME, EKeys::Home },
	{ SDLK_LEFT, EKeys::Left },
	{ SDLK_UP, EKeys::Up },
	{ SDLK_RIGHT, EKeys::Right },
	{ SDLK_DOWN, EKeys::Down },
	{ SDLK_INSERT, EKeys::Insert },
	{ SDLK_DELETE, EKeys::Delete },
	{ SDLK_COMMA, EKeys::Comma },
	{ SDLK_PERIOD, EKeys::Period },
	{ SDLK_MINUS, EKeys::Hyphen },
	{ SDLK_SEMICOLON, EKeys::Semicolon },
	{ SDLK_SLASH, EKeys::Slash },
	{ SDLK_LSHIFT, EKeys::LeftShift },
	{ SDLK_RSHIFT, EKeys::RightShift },
	{ SDLK_LCTRL, EKeys::LeftControl },
	{ SDLK_RCTRL, EKeys::RightControl },
	{ SDLK_LALT, EKeys::LeftAlt },
	{ SDLK_RALT, EKeys::RightAlt },
};

/** Keys that SDL's text input says nothing of, and the character that widgets expect of them. */
struct FControlCharacter
{
	SDL_Keycode Code;
	TCHAR Character;
};

const FControlCharacter ControlCharacters[] = {
	{ SDLK_BACKSPACE, 8 },
	{ SDLK_TAB, 9 },
	{ SDLK_RETURN, 13 },
	{ SDLK_KP_ENTER, 13 },
	{ SDLK_ESCAPE, 27 },
};

FKey ToButton(uint8 Button)
{
	switch (Button)
	{
	case SDL_BUTTON_LEFT:
		return EKeys::LeftMouseButton;
	case SDL_BUTTON_MIDDLE:
		return EKeys::MiddleMouseButton;
	case SDL_BUTTON_RIGHT:
		return EKeys::RightMouseButton;
	default:
		return FKey();
	}
}

FVector2D ToAbsolute(int32 X, int32 Y, const FVector2D& WindowPosition)
{
	return WindowPosition + FVector2D(X, Y);
}
}

FModifierKeysState FSdlInput::GetModifierKeys()
{
	const auto IsDown = [](int32 Which) { return (Modifiers & Which) != 0; };
	return FModifierKeysState(IsDown(KMOD_LSHIFT), IsDown(KMOD_RSHIFT), IsDown(KMOD_LCTRL), IsDown(KMOD_RCTRL),
		IsDown(KMOD_LALT), IsDown(KMOD_RALT), IsDown(KMOD_LGUI), IsDown(KMOD_RGUI), IsDown(KMOD_CAPS));
}

FKey FSdlInput::ToKey(SDL_Keycode Code)
{
	for (const SdlInput::FKeyName& Name : SdlInput::KeyNames)
	{
		if (Name.Code == Code)
		{
			return Name.Key;
		}
	}
	if (Code >= SDLK_a && Code <= SDLK_z)
	{
		const TCHAR Letter = static_cast<TCHAR>(u'A' + (Code - SDLK_a));
		return FKey(FName(*FString::Chr(Letter)));
	}
	if (Code >= SDLK_0 && Code <= SDLK_9)
	{
		const FKey Digits[] = { EKeys::Zero, EKeys::One, EKeys::Two, EKeys::Three, EKeys::Four, EKeys::Five, EKeys::Six,
			EKeys::Seven, EKeys::Eight, EKeys::Nine };
		return Digits[Code - SDLK_0];
	}
	if (Code >= SDLK_F1 && Code <= SDLK_F12)
	{
		return FKey(FName(*FString::Printf(TEXT("F%d"), Code - SDLK_F1 + 1)));
	}
	return FKey();
}

void FSdlInput::HandleEvent(
	const SDL_Event& Event, const TSharedPtr<FGenericWindow>& Window, const FVector2D& WindowPosition)
{
	switch (Event.type)
	{
	case SDL_KEYDOWN:
	case SDL_KEYUP:
		HandleKey(Event.key);
		break;
	case SDL_TEXTINPUT:
		HandleText(Event.text);
		break;
	case SDL_TEXTEDITING:
		HandleComposition(Event.edit.text, Event.edit.start);
		break;
	case SDL_TEXTEDITING_EXT:
		HandleComposition(Event.editExt.text, Event.editExt.start);
		SDL_free(Event.editExt.text);
		break;
	case SDL_MOUSEBUTTONDOWN:
	case SDL_MOUSEBUTTONUP:
		HandleButton(Event.button, Window, WindowPosition);
		break;
	case SDL_MOUSEMOTION:
		HandleMotion(Event.motion, WindowPosition);
		break;
	case SDL_DROPBEGIN:
		DroppedFiles.Empty();
		break;
	case SDL_DROPFILE:
		DroppedFiles.Add(FString(Event.drop.file));
		SDL_free(Event.drop.file);
		break;
	case SDL_DROPCOMPLETE:
		HandleDrop(WindowPosition);
		break;
	case SDL_MOUSEWHEEL:
		HandleWheel(Event.wheel);
		break;
	default:
		break;
	}
}

void FSdlInput::HandleKey(const SDL_KeyboardEvent& Event)
{
	FSlateApplication& Slate = FSlateApplication::Get();
	Modifiers = Event.keysym.mod;
	const bool bRepeat = Event.repeat != 0;
	const uint32 Character = Event.keysym.sym < 0x80 ? static_cast<uint32>(Event.keysym.sym) : 0;
	const FKeyEvent KeyEvent(
		ToKey(Event.keysym.sym), GetModifierKeys(), 0, bRepeat, Character, static_cast<uint32>(Event.keysym.scancode));
	if (Event.type == SDL_KEYUP)
	{
		Slate.ProcessKeyUpEvent(KeyEvent);
		return;
	}
	Slate.ProcessKeyDownEvent(KeyEvent);
	for (const SdlInput::FControlCharacter& Control : SdlInput::ControlCharacters)
	{
		if (Control.Code == Event.keysym.sym)
		{
			Slate.ProcessKeyCharEvent(FCharacterEvent(Control.Character, GetModifierKeys(), 0, bRepeat));
		}
	}
}

void FSdlInput::HandleComposition(const char* Utf8, int32 NumCharactersBeforeCursor)
{
	const FString Text(Utf8);
	// SDL counts characters; beyond the first 65,536 one takes two units.
	int32 Offset = 0;
	for (int32 Count = 0; Count < NumCharactersBeforeCursor && Offset < Text.Len(); ++Count)
	{
		constexpr TCHAR HighSurrogates = 0xD800;
		constexpr TCHAR SurrogateMask = 0xFC00;
		Offset += (Text[Offset] & SurrogateMask) == HighSurrogates ? 2 : 1;
	}
	FSlateApplication::Get().ProcessTextComposition(Text, Offset);
}

void FSdlInput::HandleText(const SDL_TextInputEvent& Event)
{
	// Chosen: it is no draft any more.
	FSlateApplication::Get().ProcessTextComposition(FString(), 0);
	for (const TCHAR C : FString(Event.text))
	{
		FSlateApplication::Get().ProcessKeyCharEvent(FCharacterEvent(C, GetModifierKeys(), 0, false));
	}
}

void FSdlInput::HandleButton(
	const SDL_MouseButtonEvent& Event, const TSharedPtr<FGenericWindow>& Window, const FVector2D& WindowPosition)
{
	const FKey Button = SdlInput::ToButton(Event.button);
	if (!Button.IsValid())
	{
		return;
	}
	const bool bDown = Event.type == SDL_MOUSEBUTTONDOWN;
	bDown ? void(PressedButtons.Add(Button)) : void(PressedButtons.Remove(Button));
	const FVector2D Position = SdlInput::ToAbsolute(Event.x, Event.y, WindowPosition);
	const FPointerEvent PointerEvent(0, Position, LastPosition, PressedButtons, Button, 0.0f, GetModifierKeys());
	LastPosition = Position;
	FSlateApplication& Slate = FSlateApplication::Get();
	// In a fast row each second press is one: two double clicks may follow each other.
	const bool bDoubleClick = Event.clicks > 0 && Event.clicks % 2 == 0;
	if (!bDown)
	{
		Slate.ProcessMouseButtonUpEvent(PointerEvent);
		return;
	}
	bDoubleClick ? Slate.ProcessMouseButtonDoubleClickEvent(Window, PointerEvent)
				 : Slate.ProcessMouseButtonDownEvent(Window, PointerEvent);
}

void FSdlInput::HandleMotion(const SDL_MouseMotionEvent& Event, const FVector2D& WindowPosition)
{
	const FVector2D Position = SdlInput::ToAbsolute(Event.x, Event.y, WindowPosition);
	FSlateApplication::Get().ProcessMouseMoveEvent(
		FPointerEvent(0, Position, LastPosition, PressedButtons, FKey(), 0.0f, GetModifierKeys()));
	LastPosition = Position;
}

void FSdlInput::HandleDrop(const FVector2D& WindowPosition)
{
	int X = 0;
	int Y = 0;
	SDL_GetMouseState(&X, &Y);
	// Without a pointer in a window, as in a test, where it was last.
	const bool bIsKnown = SDL_GetMouseFocus() != nullptr;
	LastPosition = bIsKnown ? SdlInput::ToAbsolute(X, Y, WindowPosition) : LastPosition;
	if (!DroppedFiles.IsEmpty())
	{
		const FPointerEvent Pointer(0, LastPosition, LastPosition, PressedButtons, FKey(), 0.0f, GetModifierKeys());
		FSlateApplication::Get().ProcessDropEvent(
			FDragDropEvent(Pointer, FExternalDragOperation::NewFiles(MoveTemp(DroppedFiles))));
	}
	DroppedFiles.Empty();
}

void FSdlInput::HandleWheel(const SDL_MouseWheelEvent& Event)
{
	const float Notches = Event.direction == SDL_MOUSEWHEEL_FLIPPED ? -Event.preciseY : Event.preciseY;
	FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(
		FPointerEvent(0, LastPosition, LastPosition, PressedButtons, EKeys::MouseWheelAxis, Notches, GetModifierKeys()),
		nullptr);
}
