#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/TabManager.h"
#include "Styling/SlateBrush.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SBorder.h"

class SBox;
class SDockingTabStack;
class SDockTab;

enum ETabRole : uint8
{
	MajorTab,
	PanelTab,
	NomadTab,
	DocumentTab,
	NumRoles,
};

enum class ETabActivationCause : uint8
{
	UserClickedOnTab,
	SetDirectly,
};

/** A tab: the handle that is seen in the row of tabs, and the owner of its content. Closed, it lets the content go. */
class SDockTab : public SBorder
{
public:
	DECLARE_DELEGATE_OneParam(FOnTabClosedCallback, TSharedRef<SDockTab>);
	DECLARE_DELEGATE_RetVal(bool, FCanCloseTab);

	SLATE_BEGIN_ARGS(SDockTab)
		: _ContentPadding(FMargin(2.0f))
		, _TabRole(ETabRole::PanelTab)
		, _CanEverClose(true)
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_ATTRIBUTE(FMargin, ContentPadding)
	SLATE_ARGUMENT(ETabRole, TabRole)
	/** By default the spawner's display name. */
	SLATE_ATTRIBUTE(FText, Label)
	SLATE_EVENT(FOnTabClosedCallback, OnTabClosed)
	SLATE_EVENT(FCanCloseTab, OnCanCloseTab)
	SLATE_ARGUMENT(bool, CanEverClose)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	// Of the tab, not of the border that its handle is.
	void SetContent(TSharedRef<SWidget> InContent);
	TSharedRef<SWidget> GetContent() const { return Content; }
	FText GetTabLabel() const { return Label.Get(FText::GetEmpty()); }
	void SetLabel(const TAttribute<FText>& InLabel) { Label = InLabel; }
	bool HasLabel() const { return Label.IsSet(); }
	/** What the tab was invoked by. */
	const FTabId& GetLayoutIdentifier() const { return LayoutIdentifier; }
	void SetLayoutIdentifier(const FTabId& InIdentifier) { LayoutIdentifier = InIdentifier; }

	/** Brings the tab to the front of its row. */
	void ActivateInParent(ETabActivationCause InActivationCause);
	bool IsForeground() const;
	/** False if the tab does not want to be closed. */
	bool RequestCloseTab();
	/** Nothing happens to a tab that is closed already. */
	void CloseWithoutAsking();

	/** Null for a closed tab. */
	TSharedPtr<SDockingTabStack> GetParentDockTabStack() const;
	// For the stack.
	const TSharedRef<SWidget>& GetContentHolder() const;
	void SetParent(const TSharedPtr<SDockingTabStack>& InStack);

private:
	const FSlateBrush* GetHandleBrush() const;
	FReply OnHandleClicked();
	FReply OnCloseClicked();

	TAttribute<FText> Label;
	ETabRole TabRole = ETabRole::PanelTab;
	FTabId LayoutIdentifier;
	bool bCanEverClose = true;
	FOnTabClosedCallback OnTabClosed;
	FCanCloseTab OnCanCloseTab;
	TSharedRef<SWidget> Content = SNullWidget::NullWidget;
	TSharedRef<SWidget> ContentHolder = SNullWidget::NullWidget;
	TSharedPtr<SBox> ContentBox;
	TWeakPtr<SDockingTabStack> ParentStack;
};
