#include "Widgets/Input/SComboButton.h"

#include "Framework/Application/SlateApplication.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

void SComboButton::Construct(const FArguments& InArgs)
{
	ShownContent = InArgs._ButtonContent.Widget;
	// clang-format off
	SMenuAnchor::Construct(SMenuAnchor::FArguments()
		.Placement(InArgs._MenuPlacement)
		.OnGetMenuContent(InArgs._OnGetMenuContent)
		.OnMenuOpenChanged(InArgs._OnMenuOpenChanged)
		[
			SNew(SButton)
			.ButtonStyle(InArgs._ButtonStyle)
			.ContentPadding(InArgs._ContentPadding)
			.IsFocusable(InArgs._IsFocusable)
			// On release, the press would have closed an open menu long before.
			.ClickMethod(EButtonClickMethod::MouseDown)
			.OnClicked(this, &SComboButton::OnButtonClicked)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
				[
					InArgs._ButtonContent.Widget
				]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(6.0f, 0.0f, 2.0f, 0.0f)
				[
					SNew(STextBlock)
					.Text(INVTEXT("\u25BE"))
					.Visibility(InArgs._HasDownArrow ? EVisibility::HitTestInvisible : EVisibility::Collapsed)
				]
			]
		]);
	// clang-format on
}

FReply SComboButton::OnButtonClicked()
{
	if (ShouldOpenDueToClick())
	{
		SetIsOpen(true);
	}
	else
	{
		SetIsOpen(false);
	}
	return FReply::Handled();
}

FReply SComboButton::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() != EKeys::Down || IsOpen())
	{
		return SMenuAnchor::OnKeyDown(MyGeometry, InKeyEvent);
	}
	SetIsOpen(true);
	return FReply::Handled().SetNavigation(EUINavigation::Next);
}

TSharedRef<FSlateAccessibleWidget> SComboButton::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleComboButton>(AsShared());
}
