#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericApplication.h"
#include "InputCoreTypes.h"
#include "Types/SlateEnums.h"
#include "Types/SlateVector2.h"

struct FFocusEvent
{
	FFocusEvent() = default;
	FFocusEvent(const EFocusCause InCause, const uint32 InUserIndex)
		: Cause(InCause)
		, UserIndex(InUserIndex)
	{
	}

	EFocusCause GetCause() const { return Cause; }
	uint32 GetUser() const { return UserIndex; }

private:
	EFocusCause Cause = EFocusCause::SetDirectly;
	uint32 UserIndex = 0;
};

/** The pointer is no longer captured. */
struct FCaptureLostEvent
{
	int32 UserIndex = 0;
	int32 PointerIndex = 0;
};

/** What events of the keyboard and the mouse share: the modifier keys that were down when it happened. */
struct FInputEvent
{
	FInputEvent() = default;
	FInputEvent(const FModifierKeysState& InModifierKeys, const uint32 InUserIndex, const bool bInIsRepeat)
		: ModifierKeys(InModifierKeys)
		, UserIndex(InUserIndex)
		, bIsRepeat(bInIsRepeat)
	{
	}

	bool IsRepeat() const { return bIsRepeat; }
	bool IsShiftDown() const { return ModifierKeys.IsShiftDown(); }
	bool IsLeftShiftDown() const { return ModifierKeys.IsLeftShiftDown(); }
	bool IsRightShiftDown() const { return ModifierKeys.IsRightShiftDown(); }
	bool IsControlDown() const { return ModifierKeys.IsControlDown(); }
	bool IsAltDown() const { return ModifierKeys.IsAltDown(); }
	bool IsCommandDown() const { return ModifierKeys.IsCommandDown(); }
	const FModifierKeysState& GetModifierKeys() const { return ModifierKeys; }
	uint32 GetUserIndex() const { return UserIndex; }

protected:
	FModifierKeysState ModifierKeys;
	uint32 UserIndex = 0;
	bool bIsRepeat = false;
};

struct FKeyEvent : public FInputEvent
{
	FKeyEvent() = default;
	FKeyEvent(const FKey InKey, const FModifierKeysState& InModifierKeys, const uint32 InUserIndex,
		const bool bInIsRepeat, const uint32 InCharacterCode, const uint32 InKeyCode)
		: FInputEvent(InModifierKeys, InUserIndex, bInIsRepeat)
		, Key(InKey)
		, CharacterCode(InCharacterCode)
		, KeyCode(InKeyCode)
	{
	}

	FKey GetKey() const { return Key; }
	uint32 GetCharacter() const { return CharacterCode; }
	uint32 GetKeyCode() const { return KeyCode; }

private:
	FKey Key;
	uint32 CharacterCode = 0;
	uint32 KeyCode = 0;
};

struct FCharacterEvent : public FInputEvent
{
	FCharacterEvent() = default;
	FCharacterEvent(const TCHAR InCharacter, const FModifierKeysState& InModifierKeys, const uint32 InUserIndex,
		const bool bInIsRepeat)
		: FInputEvent(InModifierKeys, InUserIndex, bInIsRepeat)
		, Character(InCharacter)
	{
	}

	TCHAR GetCharacter() const { return Character; }

private:
	TCHAR Character = 0;
};

/** Positions are in absolute space, in pixels of the screen. */
struct FPointerEvent : public FInputEvent
{
	FPointerEvent() = default;
	FPointerEvent(uint32 InPointerIndex, const UE::Slate::FDeprecateVector2DParameter& InScreenSpacePosition,
		const UE::Slate::FDeprecateVector2DParameter& InLastScreenSpacePosition, const TSet<FKey>& InPressedButtons,
		FKey InEffectingButton, float InWheelDelta, const FModifierKeysState& InModifierKeys)
		: FInputEvent(InModifierKeys, 0, false)
		, ScreenSpacePosition(InScreenSpacePosition)
		, LastScreenSpacePosition(InLastScreenSpacePosition)
		, PressedButtons(InPressedButtons)
		, EffectingButton(InEffectingButton)
		, WheelDelta(InWheelDelta)
	{
	}

	UE::Slate::FDeprecateVector2DResult GetScreenSpacePosition() const
	{
		return UE::Slate::FDeprecateVector2DResult(ScreenSpacePosition);
	}
	UE::Slate::FDeprecateVector2DResult GetLastScreenSpacePosition() const
	{
		return UE::Slate::FDeprecateVector2DResult(LastScreenSpacePosition);
	}
	UE::Slate::FDeprecateVector2DResult GetCursorDelta() const
	{
		return UE::Slate::FDeprecateVector2DResult(ScreenSpacePosition - LastScreenSpacePosition);
	}
	/** The button that was pressed or let go. */
	FKey GetEffectingButton() const { return EffectingButton; }
	bool IsMouseButtonDown(FKey MouseButton) const { return PressedButtons.Contains(MouseButton); }
	/** Notches of the wheel, positive away from the user. */
	float GetWheelDelta() const { return WheelDelta; }

private:
	FVector2D ScreenSpacePosition = FVector2D(0.0, 0.0);
	FVector2D LastScreenSpacePosition = FVector2D(0.0, 0.0);
	TSet<FKey> PressedButtons;
	FKey EffectingButton;
	float WheelDelta = 0.0f;
};
