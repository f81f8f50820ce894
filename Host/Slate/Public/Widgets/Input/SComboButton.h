#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateTypes.h"
#include "Widgets/Input/SMenuAnchor.h"

class SButton;

/** A button with an arrow; pressed, it shows a menu. */
class SComboButton : public SMenuAnchor
{
public:
	SLATE_BEGIN_ARGS(SComboButton)
		: _ButtonStyle(nullptr)
		, _HasDownArrow(true)
		, _IsFocusable(true)
		, _MenuPlacement(MenuPlacement_ComboBox)
		, _ContentPadding(FMargin(4.0f, 2.0f))
	{
	}
	SLATE_NAMED_SLOT(FArguments, ButtonContent)
	SLATE_STYLE_ARGUMENT(FButtonStyle, ButtonStyle)
	SLATE_EVENT(FOnGetContent, OnGetMenuContent)
	SLATE_EVENT(FOnIsOpenChanged, OnMenuOpenChanged)
	SLATE_ARGUMENT(bool, HasDownArrow)
	SLATE_ARGUMENT(bool, IsFocusable)
	SLATE_ARGUMENT(EMenuPlacement, MenuPlacement)
	SLATE_ATTRIBUTE(FMargin, ContentPadding)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	virtual bool CanChildrenBeAccessible() const override { return false; }
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;

protected:
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }

private:
	friend class FSlateAccessibleComboButton;
	FReply OnButtonClicked();

	TSharedPtr<SWidget> ShownContent;
};
