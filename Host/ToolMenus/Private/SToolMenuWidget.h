#pragma once

#include "CoreMinimal.h"
#include "ToolMenuEntry.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** A menu as it is seen. It is made anew in the frame after the menu has changed. */
class SToolMenuWidget : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SToolMenuWidget) {}
	SLATE_ARGUMENT(FName, MenuName)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

private:
	void Rebuild();
	TSharedRef<SWidget> MakeEntryWidget(const FToolMenuEntry& Entry, EOrientation SeparatorOrientation) const;

	FName MenuName;
	uint32 ShownVersion = 0;
};
