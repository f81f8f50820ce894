#include "Widgets/Input/SCheckBox.h"

#include "Styling/AppStyle.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace CheckBox
{
// Slate units.
constexpr float BoxSize = 16.0f;
}

void SCheckBox::Construct(const FArguments& InArgs)
{
	State = InArgs._IsChecked;
	OnCheckStateChanged = InArgs._OnCheckStateChanged;
	bIsFocusable = InArgs._IsFocusable;
	// clang-format off
	ChildSlot
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, 4.0f, 0.0f)
		[
			SNew(SBox).WidthOverride(CheckBox::BoxSize).HeightOverride(CheckBox::BoxSize)
			[
				SNew(SBorder)
				.Padding(0.0f)
				.HAlign(HAlign_Center)
				.VAlign(VAlign_Center)
				.BorderImage(this, &SCheckBox::GetBoxBrush)
				[
					SNew(STextBlock)
					.Text(this, &SCheckBox::GetMark)
					.ColorAndOpacity(FSlateColor(FLinearColor::White))
				]
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
		[
			InArgs._Content.Widget
		]
	];
	// clang-format on
}

const FSlateBrush* SCheckBox::GetBoxBrush() const
{
	if (GetCheckedState() != ECheckBoxState::Unchecked)
	{
		return FAppStyle::GetBrush("CheckBox.Checked");
	}
	return FAppStyle::GetBrush(IsHovered() && IsEnabled() ? "CheckBox.Hovered" : "CheckBox.Unchecked");
}

FText SCheckBox::GetMark() const
{
	switch (GetCheckedState())
	{
	case ECheckBoxState::Checked:
		return INVTEXT("\u2713");
	case ECheckBoxState::Undetermined:
		return INVTEXT("\u2013");
	case ECheckBoxState::Unchecked:
		break;
	}
	return FText::GetEmpty();
}

void SCheckBox::ToggleCheckedState()
{
	const ECheckBoxState NewState = IsChecked() ? ECheckBoxState::Unchecked : ECheckBoxState::Checked;
	if (!State.IsBound())
	{
		State = NewState;
	}
	OnCheckStateChanged.ExecuteIfBound(NewState);
}

FReply SCheckBox::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() != EKeys::Enter && InKeyEvent.GetKey() != EKeys::SpaceBar)
	{
		return SCompoundWidget::OnKeyDown(MyGeometry, InKeyEvent);
	}
	ToggleCheckedState();
	return FReply::Handled();
}

FReply SCheckBox::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return MouseEvent.GetEffectingButton() == EKeys::LeftMouseButton ? FReply::Handled().CaptureMouse(AsShared())
																	 : FReply::Unhandled();
}

FReply SCheckBox::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!HasMouseCapture())
	{
		return FReply::Unhandled();
	}
	if (MyGeometry.IsUnderLocation(MouseEvent.GetScreenSpacePosition()))
	{
		ToggleCheckedState();
	}
	return FReply::Handled().ReleaseMouseCapture();
}

FReply SCheckBox::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	return OnMouseButtonDown(InMyGeometry, InMouseEvent);
}

TSharedRef<FSlateAccessibleWidget> SCheckBox::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleCheckBox>(AsShared());
}
