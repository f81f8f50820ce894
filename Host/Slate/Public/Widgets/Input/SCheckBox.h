#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** A box with a tick and a label beside it: toggled by a click, or by Enter or Space while it has the focus. */
class SCheckBox : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SCheckBox)
		: _IsChecked(ECheckBoxState::Unchecked)
		, _IsFocusable(true)
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	/** A bound state is what is shown, whatever the user has clicked. */
	SLATE_ATTRIBUTE(ECheckBoxState, IsChecked)
	SLATE_EVENT(FOnCheckStateChanged, OnCheckStateChanged)
	SLATE_ARGUMENT(bool, IsFocusable)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	bool IsChecked() const { return GetCheckedState() == ECheckBoxState::Checked; }
	ECheckBoxState GetCheckedState() const { return State.Get(); }
	/** As a click does: checked becomes unchecked, anything else checked. */
	void ToggleCheckedState();

	virtual bool SupportsKeyboardFocus() const override { return bIsFocusable; }
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;

	virtual bool CanChildrenBeAccessible() const override { return false; }
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Summary; }

private:
	const FSlateBrush* GetBoxBrush() const;
	FText GetMark() const;

	TAttribute<ECheckBoxState> State;
	FOnCheckStateChanged OnCheckStateChanged;
	bool bIsFocusable = true;
};
