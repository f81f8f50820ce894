#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Widgets/Input/SButton.h"

/**
 * A button that the second press of a double click does not press.
 *
 * Approval can show its list again, when a file has changed. The second press comes too soon after the first for
 * anybody to have read that list. Keys, and two clicks that are no double click, press as usual.
 */
class SKestrelApproveButton : public SButton
{
public:
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override
	{
		return FReply::Handled();
	}
};
