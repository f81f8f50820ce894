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

	/**
	 * Those that were down at the event that is handled. SDL's own state is that of the last event in the queue, where
	 * a key of a quick chord may be up again.
	 */
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
	/** SDL tells of each file by itself, and of where they were dropped not at all. */
	void HandleDrop(const FVector2D& WindowPosition);

	inline static uint16 Modifiers = KMOD_NONE;   // of SDL; the keyboard is one
	FVector2D LastPosition = FVector2D(0.0, 0.0); // absolute
	TSet<FKey> PressedButtons;
	TArray<FString> DroppedFiles;
};
