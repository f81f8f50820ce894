#pragma once

#include "GenericPlatform/GenericApplication.h"
#include "InputCoreTypes.h"

#include <SDL.h>

/** The user's input, from SDL's events to those of the Slate application. */
class FSdlInput
{
public:
	/** @param WindowPosition  where the event's window lies in absolute space */
	void HandleEvent(
		const SDL_Event& Event, const TSharedPtr<class FGenericWindow>& Window, const FVector2D& WindowPosition);

	static FModifierKeysState GetModifierKeys();
	/** Not valid for a key that the engine has no name for. */
	static FKey ToKey(SDL_Keycode Code);

private:
	void HandleKey(const SDL_KeyboardEvent& Event);
	void HandleText(const SDL_TextInputEvent& Event);
	void HandleComposition(const char* Utf8, int32 NumCharactersBeforeCursor);
	void HandleButton(const SDL_MouseButtonEvent& Event, const TSharedPtr<class FGenericWindow>& Window,
		const FVector2D& WindowPosition);
	void HandleMotion(const SDL_MouseMotionEvent& Event, const FVector2D& WindowPosition);
	void HandleWheel(const SDL_MouseWheelEvent& Event);

	FVector2D LastPosition = FVector2D(0.0, 0.0); // absolute
	TSet<FKey> PressedButtons;
};
