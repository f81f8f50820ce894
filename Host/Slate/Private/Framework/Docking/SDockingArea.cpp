#include "Framework/Docking/SDockingArea.h"

#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"

void SDockingArea::Construct(const FArguments& InArgs)
{
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SAssignNew(TabWell, SHorizontalBox)
		]
		+ SVerticalBox::Slot().FillHeight(1.0f)
		[
			SAssignNew(Contents, SOverlay)
		]
	];
	// clang-format on
}

void SDockingArea::AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront)
{
	checkf(!Tab->GetParentArea().IsValid(), TEXT("A tab can be in one area at a time"));
	Tabs.Add(Tab);
	Tab->SetParentArea(SharedThis(this));
	TabWell->AddSlot().AutoWidth()[Tab];
	Contents->AddSlot()[Tab->GetContentHolder()];
	Tab->GetContentHolder()->SetVisibility(EVisibility::Collapsed);
	if (bBringToFront || Tabs.Num() == 1)
	{
		BringToFront(Tab);
	}
}

void SDockingArea::RemoveTab(const TSharedRef<SDockTab>& Tab)
{
	const bool bWasInFront = GetForegroundTab() == Tab;
	Tabs.Remove(Tab);
	TabWell->RemoveSlot(Tab);
	Contents->RemoveSlot(Tab->GetContentHolder());
	Tab->SetParentArea(nullptr);
	if (bWasInFront && Tabs.Num() > 0)
	{
		BringToFront(Tabs.Last());
	}
}

void SDockingArea::BringToFront(const TSharedRef<SDockTab>& Tab)
{
	ForegroundTab = Tab;
	for (const TSharedRef<SDockTab>& Other : Tabs)
	{
		Other->GetContentHolder()->SetVisibility(
			Other == Tab ? EVisibility::SelfHitTestInvisible : EVisibility::Collapsed);
	}
}
