#pragma once

#include "CoreMinimal.h"

namespace EMouseButtons
{
enum Type
{
	Left = 0,
	Middle,
	Right,
	Invalid,
};
}

/** A set of modifier keys as bits; which side of the keyboard does not matter. */
namespace EModifierKey
{
typedef uint8 Type;

constexpr Type None = 0;
constexpr Type Control = 1 << 0;
constexpr Type Alt = 1 << 1;
constexpr Type Shift = 1 << 2;
constexpr Type Command = 1 << 3;

inline constexpr Type FromBools(const bool bControl, const bool bAlt, const bool bShift, const bool bCommand)
{
	return static_cast<Type>(
		(bControl ? Control : None) | (bAlt ? Alt : None) | (bShift ? Shift : None) | (bCommand ? Command : None));
}
}
