#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/TabManager.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SBorder;
class SDockingArea;
class SDockTab;
class SHorizontalBox;
class SOverlay;

/** Where a tab is put that is dropped on a stack. */
enum class EDockingSide : uint8
{
	/** Into the stack. */
	Into,
	Left,
	Right,
	Above,
	Below,
};

/**
 * A row of tabs above the content of the one in front; the others are collapsed, so nothing in them ticks. It also
 * knows the closed tabs that open here. Without an open tab it takes no space.
 */
class SDockingTabStack : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SDockingTabStack) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<SDockingArea>& InArea);

	/** Adds a tab that is in no stack yet. The first one comes to the front in any case. */
	void AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront);
	/** The tab's place stays, unless another stack is to have it. */
	void RemoveTab(const TSharedRef<SDockTab>& Tab);
	void BringToFront(const TSharedRef<SDockTab>& Tab);
	/** Null in an empty stack. */
	TSharedPtr<SDockTab> GetForegroundTab() const { return ForegroundTab.Pin(); }
	const TArray<TSharedRef<SDockTab>>& GetTabs() const { return Tabs; }

	/** Tabs that open here, open ones and closed ones. */
	const TArray<FName>& GetPlaces() const { return Places; }
	void AddPlace(FName TabType) { Places.AddUnique(TabType); }
	void RemovePlace(FName TabType) { Places.Remove(TabType); }

	virtual FReply OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override;
	virtual void OnDragLeave(const FDragDropEvent& DragDropEvent) override;
	virtual FReply OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override;

private:
	/** Near an edge of the content that edge, otherwise the stack itself. */
	EDockingSide FindSide(const FGeometry& MyGeometry, const FVector2D& ScreenPosition) const;
	EVisibility GetTargetVisibility() const;
	FMargin GetTargetPadding() const;

	TWeakPtr<SDockingArea> Area;
	TArray<TSharedRef<SDockTab>> Tabs;
	TArray<FName> Places;
	TWeakPtr<SDockTab> ForegroundTab;
	TSharedPtr<SHorizontalBox> TabWell;
	TSharedPtr<SOverlay> Contents;
	TOptional<EDockingSide> TargetSide; // while a tab is dragged over it
};
