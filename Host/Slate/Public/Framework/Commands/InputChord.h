#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericApplicationMessageHandler.h"
#include "InputCoreTypes.h"

/** A key together with the modifiers that are held down with it. Empty by default: no keys at all. */
struct FInputChord
{
	FKey Key;
	bool bShift = false;
	bool bCtrl = false;
	bool bAlt = false;
	bool bCmd = false;

	FInputChord() = default;
	FInputChord(const FKey InKey)
		: Key(InKey)
	{
	}
	FInputChord(const FKey InKey, const bool bInShift, const bool bInCtrl, const bool bInAlt, const bool bInCmd)
		: Key(InKey)
		, bShift(bInShift)
		, bCtrl(bInCtrl)
		, bAlt(bInAlt)
		, bCmd(bInCmd)
	{
	}
	FInputChord(const FKey InKey, const EModifierKey::Type InModifierKeys)
		: FInputChord(InKey, (InModifierKeys & EModifierKey::Shift) != 0, (InModifierKeys & EModifierKey::Control) != 0,
			  (InModifierKeys & EModifierKey::Alt) != 0, (InModifierKeys & EModifierKey::Command) != 0)
	{
	}
	FInputChord(const EModifierKey::Type InModifierKeys, const FKey InKey)
		: FInputChord(InKey, InModifierKeys)
	{
	}

	bool IsValidChord() const { return Key.IsValid() && !Key.IsModifierKey(); }
	/** "Ctrl+Shift+S"; empty for an empty chord. */
	FText GetInputText() const;

	bool operator==(const FInputChord& Other) const = default;
};
