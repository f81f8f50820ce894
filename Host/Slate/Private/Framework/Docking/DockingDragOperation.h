#pragma once

#include "CoreMinimal.h"
#include "Input/DragAndDrop.h"
#include "Widgets/Docking/SDockTab.h"

/** A tab on its way to another place. It stays where it is until it is dropped. */
class FDockingDragOperation : public FDragDropOperation
{
public:
	DRAG_DROP_OPERATOR_TYPE(FDockingDragOperation, FDragDropOperation)

	static TSharedRef<FDockingDragOperation> New(const TSharedRef<SDockTab>& InTab);

	const TSharedRef<SDockTab>& GetTab() const { return Tab; }
	virtual TSharedPtr<SWidget> GetDefaultDecorator() const override;

	explicit FDockingDragOperation(const TSharedRef<SDockTab>& InTab)
		: Tab(InTab)
	{
	}

private:
	const TSharedRef<SDockTab> Tab;
};
