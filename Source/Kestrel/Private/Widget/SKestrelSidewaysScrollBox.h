#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Widgets/Layout/SScrollBox.h"

/**
 * A horizontal scroll box in a list: the wheel over it turns the list, and with Shift the box itself. A row that is
 * wider than the list would otherwise stop whoever scrolls past it.
 */
class SKestrelSidewaysScrollBox : public SScrollBox
{
public:
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override
	{
		return MouseEvent.IsShiftDown() ? SScrollBox::OnMouseWheel(MyGeometry, MouseEvent) : FReply::Unhandled();
	}
};
