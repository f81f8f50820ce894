#include "Widgets/Input/SMenuAnchor.h"

#include "Framework/Application/MenuStack.h"
#include "Framework/Application/SPopup.h"
#include "Framework/Application/SlateApplication.h"

SMenuAnchor::~SMenuAnchor()
{
	const TSharedPtr<SPopup> Popup = OpenMenu.Pin();
	if (Popup.IsValid() && FSlateApplication::IsInitialized())
	{
		FSlateApplication::Get().DismissMenuByWidget(Popup.ToSharedRef());
	}
}

void SMenuAnchor::Construct(const FArguments& InArgs)
{
	OnGetMenuContent = InArgs._OnGetMenuContent;
	OnMenuOpenChanged = InArgs._OnMenuOpenChanged;
	Placement = InArgs._Placement;
	ChildSlot[InArgs._Content.Widget];
}

void SMenuAnchor::SetIsOpen(bool InIsOpen, const bool bFocusMenu)
{
	if (InIsOpen == IsOpen())
	{
		return;
	}
	if (!InIsOpen)
	{
		FSlateApplication::Get().DismissMenuByWidget(OpenMenu.Pin().ToSharedRef());
		return;
	}
	if (!OnGetMenuContent.IsBound())
	{
		return;
	}
	OpenMenu = FSlateApplication::Get().GetMenuStack().Push(AsShared(), OnGetMenuContent.Execute(), Placement,
		bFocusMenu, FSimpleDelegate::CreateSP(this, &SMenuAnchor::OnMenuDismissed));
	if (IsOpen())
	{
		OnMenuOpenChanged.ExecuteIfBound(true);
	}
}

void SMenuAnchor::OnMenuDismissed()
{
	OpenMenu.Reset();
	bDismissedThisTick = true;
	OnMenuOpenChanged.ExecuteIfBound(false);
}

void SMenuAnchor::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	bDismissedThisTick = false;
}
