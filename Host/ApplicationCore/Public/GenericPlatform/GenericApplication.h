#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericApplicationMessageHandler.h"

/** Which modifier keys were down at one moment, side by side. */
class FModifierKeysState
{
public:
	FModifierKeysState() = default;
	FModifierKeysState(const bool bInIsLeftShiftDown, const bool bInIsRightShiftDown, const bool bInIsLeftControlDown,
		const bool bInIsRightControlDown, const bool bInIsLeftAltDown, const bool bInIsRightAltDown,
		const bool bInIsLeftCommandDown, const bool bInIsRightCommandDown, const bool bInAreCapsLocked)
		: bIsLeftShiftDown(bInIsLeftShiftDown)
		, bIsRightShiftDown(bInIsRightShiftDown)
		, bIsLeftControlDown(bInIsLeftControlDown)
		, bIsRightControlDown(bInIsRightControlDown)
		, bIsLeftAltDown(bInIsLeftAltDown)
		, bIsRightAltDown(bInIsRightAltDown)
		, bIsLeftCommandDown(bInIsLeftCommandDown)
		, bIsRightCommandDown(bInIsRightCommandDown)
		, bAreCapsLocked(bInAreCapsLocked)
	{
	}

	bool IsShiftDown() const { return bIsLeftShiftDown || bIsRightShiftDown; }
	bool IsLeftShiftDown() const { return bIsLeftShiftDown; }
	bool IsRightShiftDown() const { return bIsRightShiftDown; }
	bool IsControlDown() const { return bIsLeftControlDown || bIsRightControlDown; }
	bool IsLeftControlDown() const { return bIsLeftControlDown; }
	bool IsRightControlDown() const { return bIsRightControlDown; }
	bool IsAltDown() const { return bIsLeftAltDown || bIsRightAltDown; }
	bool IsLeftAltDown() const { return bIsLeftAltDown; }
	bool IsRightAltDown() const { return bIsRightAltDown; }
	bool IsCommandDown() const { return bIsLeftCommandDown || bIsRightCommandDown; }
	bool IsLeftCommandDown() const { return bIsLeftCommandDown; }
	bool IsRightCommandDown() const { return bIsRightCommandDown; }
	bool AreCapsLocked() const { return bAreCapsLocked; }

	/** True when every modifier of the set is down, whatever else is; so always true for EModifierKey::None. */
	bool AreModifersDown(EModifierKey::Type ModiferKeys) const
	{
		const EModifierKey::Type Down =
			EModifierKey::FromBools(IsControlDown(), IsAltDown(), IsShiftDown(), IsCommandDown());
		return (Down & ModiferKeys) == ModiferKeys;
	}

private:
	bool bIsLeftShiftDown = false;
	bool bIsRightShiftDown = false;
	bool bIsLeftControlDown = false;
	bool bIsRightControlDown = false;
	bool bIsLeftAltDown = false;
	bool bIsRightAltDown = false;
	bool bIsLeftCommandDown = false;
	bool bIsRightCommandDown = false;
	bool bAreCapsLocked = false;
};

/** The platform below the widgets. This one has no keyboard and no windows; a windowed platform derives from it. */
class GenericApplication
{
public:
	virtual ~GenericApplication() = default;

	/** The keys that are down now, which need not be those of the event being handled. */
	virtual FModifierKeysState GetModifierKeys() const { return FModifierKeysState(); }
};
