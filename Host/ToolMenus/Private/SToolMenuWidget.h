#pragma once

#include "CoreMinimal.h"
#include "ToolMenuEntry.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SHorizontalBox;
class SMenuAnchor;
class SVerticalBox;
struct FToolMenuSection;

/** Asks for the menu beside an open one: Next or Previous. */
DECLARE_DELEGATE_OneParam(FOnMenuLeft, EUINavigation);

/** A menu as it is seen. It is rebuilt in the frame after the menu has changed. */
class SToolMenuWidget : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SToolMenuWidget) {}
	SLATE_ARGUMENT(FName, MenuName)
	SLATE_EVENT(FOnMenuLeft, OnMenuLeft)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	/** Before the buttons and the pop-up: left and right are those of menus here. */
	virtual FReply OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;

private:
	void Rebuild();
	void FillColumn(SVerticalBox& Column, const TArray<FToolMenuSection>& Sections);
	void FillRow(SHorizontalBox& Row, const TArray<FToolMenuSection>& Sections);
	TSharedRef<SWidget> MakeButton(const FToolMenuEntry& Entry, const TSharedRef<SWidget>& Content) const;
	TSharedRef<SWidget> MakeLine(const FToolMenuEntry& Entry) const;
	TSharedRef<SWidget> MakeRowEntry(const FToolMenuEntry& Entry) const;
	TSharedRef<SWidget> MakeSubMenu(const FToolMenuEntry& Entry);
	TSharedRef<SWidget> MakeMenu(FName SubMenuName);

	bool IsMenuBar() const { return Type == EMultiBoxType::MenuBar; }
	FReply OnSubMenuClicked(int32 Index);
	void OpenSubMenu(int32 Index, bool bByKey);
	/** INDEX_NONE when none is. */
	int32 FindOpenSubMenu() const;
	int32 FindFocusedSubMenu() const;
	void GoToNeighbour(EUINavigation Direction);

	struct FSubMenu
	{
		TSharedRef<SMenuAnchor> Anchor;
		TSharedRef<SWidget> Button;
	};

	FName MenuName;
	EMultiBoxType Type = EMultiBoxType::Menu;
	FOnMenuLeft OnMenuLeft;
	TArray<FSubMenu> SubMenus;
	uint32 ShownVersion = 0;
};
