#pragma once

#include "CoreMinimal.h"

/** What about a widget has changed; a set of bits. */
enum class EInvalidateWidgetReason : uint8
{
	None = 0,
	Layout = 1 << 0,
	Paint = 1 << 1,
	Volatility = 1 << 2,
	ChildOrder = 1 << 3,
	RenderTransform = 1 << 4,
	Visibility = 1 << 5,
	AttributeRegistration = 1 << 6,
	Prepass = 1 << 7,
	PaintAndVolatility = Paint | Volatility,
	LayoutAndVolatility = Layout | Volatility,
};

constexpr EInvalidateWidgetReason operator|(EInvalidateWidgetReason A, EInvalidateWidgetReason B)
{
	return static_cast<EInvalidateWidgetReason>(static_cast<uint8>(A) | static_cast<uint8>(B));
}
constexpr EInvalidateWidgetReason operator&(EInvalidateWidgetReason A, EInvalidateWidgetReason B)
{
	return static_cast<EInvalidateWidgetReason>(static_cast<uint8>(A) & static_cast<uint8>(B));
}
