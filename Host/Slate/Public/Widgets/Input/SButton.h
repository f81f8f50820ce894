#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SBorder.h"

/** Something to click on: with the mouse, or with Enter or Space while it has the keyboard focus. */
class SButton : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SButton)
		: _ButtonStyle(nullptr)
		, _TextStyle(nullptr)
		, _HAlign(HAlign_Fill)
		, _VAlign(VAlign_Fill)
		, _ContentPadding(FMargin(4.0f, 2.0f))
		, _ClickMethod(EButtonClickMethod::DownAndUp)
		, _PressMethod(EButtonPressMethod::DownAndUp)
		, _ForegroundColor(FSlateColor::UseForeground())
		, _IsFocusable(true)
	{
	}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	/** Kept by address. */
	SLATE_STYLE_ARGUMENT(FButtonStyle, ButtonStyle)
	SLATE_STYLE_ARGUMENT(FTextBlockStyle, TextStyle)
	SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
	SLATE_ARGUMENT(EVerticalAlignment, VAlign)
	SLATE_ATTRIBUTE(FMargin, ContentPadding)
	/** Shown if there is no content. */
	SLATE_ATTRIBUTE(FText, Text)
	SLATE_EVENT(FOnClicked, OnClicked)
	SLATE_ARGUMENT(EButtonClickMethod::Type, ClickMethod)
	SLATE_ARGUMENT(EButtonPressMethod::Type, PressMethod)
	SLATE_ATTRIBUTE(FSlateColor, ButtonColorAndOpacity)
	SLATE_ATTRIBUTE(FSlateColor, ForegroundColor)
	/** False: a click leaves the keyboard focus where it is. */
	SLATE_ARGUMENT(bool, IsFocusable)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	void SetButtonStyle(const FButtonStyle* InButtonStyle);

	virtual bool SupportsKeyboardFocus() const override { return bIsFocusable; }
	virtual void OnFocusLost(const FFocusEvent& InFocusEvent) override;
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnKeyUp(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual void OnMouseCaptureLost(const FCaptureLostEvent& CaptureLostEvent) override { bIsPressed = false; }
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;

	virtual bool CanChildrenBeAccessible() const override { return false; }
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual const FSlateBrush* GetBrushToPaint(bool bEnabled) const override;
	virtual FSlateColor GetForegroundColor() const override;
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Summary; }

private:
	FReply ExecuteOnClick();
	friend class FSlateAccessibleButton;

	const FButtonStyle* ButtonStyle = nullptr;
	FOnClicked OnClicked;
	EButtonClickMethod::Type ClickMethod = EButtonClickMethod::DownAndUp;
	EButtonPressMethod::Type PressMethod = EButtonPressMethod::DownAndUp;
	bool bIsFocusable = true;
	bool bIsPressed = false;
};
