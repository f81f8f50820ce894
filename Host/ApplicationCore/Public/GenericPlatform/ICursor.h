#pragma once

#include "CoreMinimal.h"

namespace EMouseCursor
{
enum Type
{
	None,
	Default,
	TextEditBeam,
	ResizeLeftRight,
	ResizeUpDown,
	Hand,
	GrabHand,
};
}
