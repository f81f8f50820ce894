#include "Widgets/Docking/SDockTab.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/SDockingArea.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"

void SDockTab::Construct(const FArguments& InArgs)
{
	Label = InArgs._Label;
	TabRole = InArgs._TabRole;
	bCanEverClose = InArgs._CanEverClose;
	OnTabClosed = InArgs._OnTabClosed;
	OnCanCloseTab = InArgs._OnCanCloseTab;
	ContentBox = SNew(SBox).Padding(InArgs._ContentPadding);
	ContentHolder = ContentBox.ToSharedRef();
	SetContent(InArgs._Content.Widget);

	const FButtonStyle* const HandleStyle = &FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton");
	const EVisibility CloseVisibility = bCanEverClose ? EVisibility::Visible : EVisibility::Collapsed;
	// clang-format off
	SBorder::Construct(SBorder::FArguments()
		.Padding(2.0f)
		.BorderImage_Lambda([this] { return GetHandleBrush(); })
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()
			[
				SNew(SButton)
				.ButtonStyle(HandleStyle)
				.Text(this, &SDockTab::GetTabLabel)
				.OnClicked(this, &SDockTab::OnHandleClicked)
			]
			+ SHorizontalBox::Slot().AutoWidth()
			[
				SNew(SButton)
				.ButtonStyle(HandleStyle)
				.Visibility(CloseVisibility)
				.AccessibleText_Lambda([this] { return FText::Format(INVTEXT("Close {0}"), GetTabLabel()); })
				.Text(INVTEXT("\u00d7"))
				.OnClicked(this, &SDockTab::OnCloseClicked)
			]
		]);
	// clang-format on
}

void SDockTab::SetContent(TSharedRef<SWidget> InContent)
{
	Content = InContent;
	ContentBox->SetContent(InContent);
}

const TSharedRef<SWidget>& SDockTab::GetContentHolder() const
{
	return ContentHolder;
}

void SDockTab::SetParentArea(const TSharedPtr<SDockingArea>& InArea)
{
	ParentArea = InArea;
}

TSharedPtr<SDockingArea> SDockTab::GetParentArea() const
{
	return ParentArea.Pin();
}

const FSlateBrush* SDockTab::GetHandleBrush() const
{
	return FAppStyle::GetBrush(IsForeground() ? "Tab.Front" : "Tab.Back");
}

void SDockTab::ActivateInParent(ETabActivationCause InActivationCause)
{
	const TSharedPtr<SDockingArea> Area = GetParentArea();
	if (Area.IsValid())
	{
		Area->BringToFront(SharedThis(this));
		// Who calls a tab wants to work in it.
		if (FSlateApplication::IsInitialized() && Content->SupportsKeyboardFocus())
		{
			FSlateApplication::Get().SetKeyboardFocus(Content, EFocusCause::SetDirectly);
		}
	}
}

bool SDockTab::IsForeground() const
{
	const TSharedPtr<SDockingArea> Area = GetParentArea();
	return Area.IsValid() && Area->GetForegroundTab().Get() == this;
}

bool SDockTab::RequestCloseTab()
{
	if (!GetParentArea().IsValid() || !bCanEverClose || (OnCanCloseTab.IsBound() && !OnCanCloseTab.Execute()))
	{
		return false;
	}
	CloseWithoutAsking();
	return true;
}

void SDockTab::CloseWithoutAsking()
{
	const TSharedPtr<SDockingArea> Area = GetParentArea();
	if (!Area.IsValid())
	{
		return;
	}
	const TSharedRef<SDockTab> KeptAlive = SharedThis(this);
	Area->RemoveTab(KeptAlive);
	OnTabClosed.ExecuteIfBound(KeptAlive);
	SetContent(SNullWidget::NullWidget);
}

FReply SDockTab::OnHandleClicked()
{
	ActivateInParent(ETabActivationCause::UserClickedOnTab);
	return FReply::Handled();
}

FReply SDockTab::OnCloseClicked()
{
	RequestCloseTab();
	return FReply::Handled();
}
