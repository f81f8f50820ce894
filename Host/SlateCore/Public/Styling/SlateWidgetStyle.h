#pragma once

#include "CoreMinimal.h"

/** Base of the styles of whole widgets, which a style set keeps by name. */
struct FSlateWidgetStyle
{
	virtual ~FSlateWidgetStyle() = default;
	virtual const FName GetTypeName() const = 0;
};
