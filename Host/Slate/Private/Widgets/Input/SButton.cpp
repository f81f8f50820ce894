#include "Widgets/Input/SButton.h"

#include "Styling/AppStyle.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/Text/STextBlock.h"

namespace Button
{
static bool IsAcceptKey(const FKey& Key)
{
	return Key == EKeys::Enter || Key == EKeys::SpaceBar || Key == EKeys::Virtual_Accept;
}

static TSharedRef<SWidget> MakeContent(const SButton::FArguments& InArgs)
{
	if (InArgs._Content.Widget != SNullWidget::NullWidget || !InArgs._Text.IsSet())
	{
		return InArgs._Content.Widget;
	}
	const FTextBlockStyle* const TextStyle = InArgs._TextStyle != nullptr
												 ? InArgs._TextStyle
												 : &FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("ButtonText");
	return SNew(STextBlock).Text(InArgs._Text).TextStyle(TextStyle);
}

/** What the style keeps around the content, and the button around that. */
static TAttribute<FMargin> MakePadding(const TAttribute<FMargin>& ContentPadding, const FButtonStyle& Style)
{
	if (!ContentPadding.IsBound())
	{
		return ContentPadding.Get() + Style.NormalPadding;
	}
	return TAttribute<FMargin>::CreateLambda(
		[ContentPadding, Extra = Style.NormalPadding] { return ContentPadding.Get() + Extra; });
}
}

void SButton::Construct(const FArguments& InArgs)
{
	ButtonStyle =
		InArgs._ButtonStyle != nullptr ? InArgs._ButtonStyle : &FAppStyle::Get().GetWidgetStyle<FButtonStyle>("Button");
	OnClicked = InArgs._OnClicked;
	ClickMethod = InArgs._ClickMethod;
	PressMethod = InArgs._PressMethod;
	bIsFocusable = InArgs._IsFocusable;
	// clang-format off
	SBorder::Construct(SBorder::FArguments()
		.HAlign(InArgs._HAlign)
		.VAlign(InArgs._VAlign)
		.Padding(Button::MakePadding(InArgs._ContentPadding, *ButtonStyle))
		.ForegroundColor(InArgs._ForegroundColor)
		[
			Button::MakeContent(InArgs)
		]);
	// clang-format on
	SetBorderBackgroundColor(InArgs._ButtonColorAndOpacity);
}

void SButton::SetButtonStyle(const FButtonStyle* InButtonStyle)
{
	checkf(InButtonStyle != nullptr, TEXT("A button needs a style"));
	ButtonStyle = InButtonStyle;
}

FReply SButton::ExecuteOnClick()
{
	return OnClicked.IsBound() ? OnClicked.Execute() : FReply::Handled();
}

void SButton::OnFocusLost(const FFocusEvent& InFocusEvent)
{
	bIsPressed = false;
}

FReply SButton::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (!IsEnabled() || !Button::IsAcceptKey(InKeyEvent.GetKey()))
	{
		return SBorder::OnKeyDown(MyGeometry, InKeyEvent);
	}
	bIsPressed = true;
	return PressMethod == EButtonPressMethod::ButtonPress ? ExecuteOnClick() : FReply::Handled();
}

FReply SButton::OnKeyUp(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (!IsEnabled() || !Button::IsAcceptKey(InKeyEvent.GetKey()))
	{
		return FReply::Unhandled();
	}
	const bool bWasPressed = bIsPressed;
	bIsPressed = false;
	const bool bClicks = PressMethod == EButtonPressMethod::ButtonRelease ||
						 (PressMethod == EButtonPressMethod::DownAndUp && bWasPressed);
	return bClicks ? ExecuteOnClick() : FReply::Handled();
}

FReply SButton::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!IsEnabled() || MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	bIsPressed = true;
	if (ClickMethod == EButtonClickMethod::MouseDown)
	{
		return ExecuteOnClick();
	}
	return FReply::Handled().CaptureMouse(AsShared());
}

FReply SButton::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	const bool bWasPressed = bIsPressed;
	bIsPressed = false;
	const bool bIsOverButton = MyGeometry.IsUnderLocation(MouseEvent.GetScreenSpacePosition());
	const bool bMayClick = IsEnabled() && bIsOverButton && ClickMethod != EButtonClickMethod::MouseDown;
	const bool bClicks = bMayClick && (bWasPressed || ClickMethod == EButtonClickMethod::MouseUp);
	FReply Reply = bClicks ? ExecuteOnClick() : FReply::Handled();
	return Reply.GetMouseCaptor().IsValid() ? Reply : Reply.ReleaseMouseCapture();
}

FReply SButton::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	return OnMouseButtonDown(InMyGeometry, InMouseEvent);
}

const FSlateBrush* SButton::GetBrushToPaint(bool bEnabled) const
{
	if (!bEnabled)
	{
		return &ButtonStyle->Disabled;
	}
	if (bIsPressed)
	{
		return &ButtonStyle->Pressed;
	}
	const bool bChosenByKey = HasAnyUserFocus() == EFocusCause::Navigation;
	return IsHovered() || bChosenByKey ? &ButtonStyle->Hovered : &ButtonStyle->Normal;
}

FSlateColor SButton::GetForegroundColor() const
{
	return IsEnabled() ? SBorder::GetForegroundColor() : ButtonStyle->DisabledForeground;
}

TSharedRef<FSlateAccessibleWidget> SButton::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleButton>(AsShared());
}
