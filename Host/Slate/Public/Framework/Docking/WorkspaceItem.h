#pragma once

#include "CoreMinimal.h"
#include "Textures/SlateIcon.h"

/** An entry of the menu that lists tabs. */
class FWorkspaceItem : public TSharedFromThis<FWorkspaceItem>
{
public:
	virtual ~FWorkspaceItem() = default;

	const FText& GetDisplayName() const { return DisplayName; }
	const FText& GetTooltipText() const { return TooltipText; }
	const FSlateIcon& GetIcon() const { return Icon; }

protected:
	FText DisplayName;
	FText TooltipText;
	FSlateIcon Icon;
};
