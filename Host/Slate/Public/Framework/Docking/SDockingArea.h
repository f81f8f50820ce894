#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SDockTab;
class SHorizontalBox;
class SOverlay;

/** A row of tabs above the content of the one in front; the others are collapsed, so nothing in them ticks. */
class SDockingArea : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SDockingArea) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** Adds a tab that is in no area yet. The first one comes to the front in any case. */
	void AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront);
	void RemoveTab(const TSharedRef<SDockTab>& Tab);
	void BringToFront(const TSharedRef<SDockTab>& Tab);
	/** Null in an empty area. */
	TSharedPtr<SDockTab> GetForegroundTab() const { return ForegroundTab.Pin(); }
	const TArray<TSharedRef<SDockTab>>& GetTabs() const { return Tabs; }

private:
	TArray<TSharedRef<SDockTab>> Tabs;
	TWeakPtr<SDockTab> ForegroundTab;
	TSharedPtr<SHorizontalBox> TabWell;
	TSharedPtr<SOverlay> Contents;
};
