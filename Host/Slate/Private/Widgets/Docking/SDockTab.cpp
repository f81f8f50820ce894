#include "Widgets/Docking/SDockTab.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/DockingDragOperation.h"
#include "Framework/Docking/SDockingTabStack.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"

namespace DockTab
{
/** The label, which can be dragged elsewhere. */
class STabHandle : public SButton
{
public:
	void Construct(const FArguments& InArgs, const TSharedRef<SDockTab>& InTab)
	{
		Tab = InTab;
		SButton::Construct(InArgs);
	}

	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override
	{
		FReply Reply = SButton::OnMouseButtonDown(MyGeometry, MouseEvent);
		return Reply.IsEventHandled() ? Reply.DetectDrag(SharedThis(this), EKeys::LeftMouseButton) : Reply;
	}

	virtual FReply OnDragDetected(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override
	{
		const TSharedPtr<SDockTab> Pinned = Tab.Pin();
		return Pinned.IsValid() ? FReply::Handled().BeginDragDrop(FDockingDragOperation::New(Pinned.ToSharedRef()))
								: FReply::Unhandled();
	}

private:
	TWeakPtr<SDockTab> Tab;
};
}

void SDockTab::Construct(const FArguments& InArgs)
{
	using DockTab::STabHandle;

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
				SNew(STabHandle, SharedThis(this))
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

void SDockTab::SetParent(const TSharedPtr<SDockingTabStack>& InStack)
{
	ParentStack = InStack;
}

TSharedPtr<SDockingTabStack> SDockTab::GetParentDockTabStack() const
{
	return ParentStack.Pin();
}

const FSlateBrush* SDockTab::GetHandleBrush() const
{
	return FAppStyle::GetBrush(IsForeground() ? "Tab.Front" : "Tab.Back");
}

void SDockTab::ActivateInParent(ETabActivationCause InActivationCause)
{
	const TSharedPtr<SDockingTabStack> Stack = GetParentDockTabStack();
	if (Stack.IsValid())
	{
		Stack->BringToFront(SharedThis(this));
		// Who calls a tab wants to work in it.
		if (FSlateApplication::IsInitialized() && Content->SupportsKeyboardFocus())
		{
			FSlateApplication::Get().SetKeyboardFocus(Content, EFocusCause::SetDirectly);
		}
	}
}

bool SDockTab::IsForeground() const
{
	const TSharedPtr<SDockingTabStack> Stack = GetParentDockTabStack();
	return Stack.IsValid() && Stack->GetForegroundTab().Get() == this;
}

bool SDockTab::RequestCloseTab()
{
	if (!GetParentDockTabStack().IsValid() || !bCanEverClose || (OnCanCloseTab.IsBound() && !OnCanCloseTab.Execute()))
	{
		return false;
	}
	CloseWithoutAsking();
	return true;
}

void SDockTab::CloseWithoutAsking()
{
	const TSharedPtr<SDockingTabStack> Stack = GetParentDockTabStack();
	if (!Stack.IsValid())
	{
		return;
	}
	const TSharedRef<SDockTab> KeptAlive = SharedThis(this);
	Stack->RemoveTab(KeptAlive);
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
