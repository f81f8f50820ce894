#include "Framework/Docking/SDockingTabStack.h"

#include "Framework/Docking/DockingDragOperation.h"
#include "Framework/Docking/SDockingArea.h"
#include "Styling/AppStyle.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/STextBlock.h"

namespace DockingTabStack
{
/** Of the content's width or height, from an edge. */
constexpr double EdgeShare = 0.25;
}

TSharedRef<FDockingDragOperation> FDockingDragOperation::New(const TSharedRef<SDockTab>& InTab)
{
	return MakeShared<FDockingDragOperation>(InTab);
}

TSharedPtr<SWidget> FDockingDragOperation::GetDefaultDecorator() const
{
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("Tab.Front"))
		.Padding(8.0f, 4.0f)
		[
			SNew(STextBlock).Text(Tab->GetTabLabel())
		];
	// clang-format on
}

void SDockingTabStack::Construct(const FArguments& InArgs, const TSharedRef<SDockingArea>& InArea)
{
	Area = InArea;
	SetVisibility(
		MakeAttributeLambda([this] { return Tabs.IsEmpty() ? EVisibility::Collapsed : EVisibility::Visible; }));
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
			SNew(SOverlay)
			+ SOverlay::Slot()
			[
				SAssignNew(Contents, SOverlay)
			]
			+ SOverlay::Slot().Padding(MakeAttributeSP(this, &SDockingTabStack::GetTargetPadding))
			[
				SNew(SBorder)
				.BorderImage(FAppStyle::GetBrush("FocusRectangle"))
				.Visibility(this, &SDockingTabStack::GetTargetVisibility)
			]
		]
	];
	// clang-format on
}

void SDockingTabStack::AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront)
{
	checkf(!Tab->GetParentDockTabStack().IsValid(), TEXT("A tab can be in one stack at a time"));
	Tabs.Add(Tab);
	AddPlace(Tab->GetLayoutIdentifier().TabType);
	Tab->SetParent(SharedThis(this));
	TabWell->AddSlot().AutoWidth()[Tab];
	Contents->AddSlot()[Tab->GetContentHolder()];
	Tab->GetContentHolder()->SetVisibility(EVisibility::Collapsed);
	if (bBringToFront || Tabs.Num() == 1)
	{
		BringToFront(Tab);
	}
}

void SDockingTabStack::RemoveTab(const TSharedRef<SDockTab>& Tab)
{
	const bool bWasInFront = GetForegroundTab() == Tab;
	Tabs.Remove(Tab);
	TabWell->RemoveSlot(Tab);
	Contents->RemoveSlot(Tab->GetContentHolder());
	Tab->SetParent(nullptr);
	if (bWasInFront && Tabs.Num() > 0)
	{
		BringToFront(Tabs.Last());
	}
}

void SDockingTabStack::BringToFront(const TSharedRef<SDockTab>& Tab)
{
	ForegroundTab = Tab;
	for (const TSharedRef<SDockTab>& Other : Tabs)
	{
		Other->GetContentHolder()->SetVisibility(
			Other == Tab ? EVisibility::SelfHitTestInvisible : EVisibility::Collapsed);
	}
}

EDockingSide SDockingTabStack::FindSide(const FGeometry& MyGeometry, const FVector2D& ScreenPosition) const
{
	const FGeometry& Content = Contents->GetCachedGeometry();
	const FVector2D Size(Content.GetLocalSize());
	const FVector2D Place(Content.AbsoluteToLocal(ScreenPosition));
	if (!Content.IsUnderLocation(ScreenPosition) || Size.X <= 0.0 || Size.Y <= 0.0)
	{
		return EDockingSide::Into; // the row of tabs
	}
	const struct
	{
		EDockingSide Side;
		double Distance; // as a share of the size
	} Edges[] = { { EDockingSide::Left, Place.X / Size.X }, { EDockingSide::Right, 1.0 - Place.X / Size.X },
		{ EDockingSide::Above, Place.Y / Size.Y }, { EDockingSide::Below, 1.0 - Place.Y / Size.Y } };
	EDockingSide Nearest = EDockingSide::Into;
	double Least = DockingTabStack::EdgeShare;
	for (const auto& Edge : Edges)
	{
		if (Edge.Distance < Least)
		{
			Nearest = Edge.Side;
			Least = Edge.Distance;
		}
	}
	return Nearest;
}

FReply SDockingTabStack::OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	if (!DragDropEvent.GetOperationAs<FDockingDragOperation>().IsValid())
	{
		return FReply::Unhandled();
	}
	TargetSide = FindSide(MyGeometry, DragDropEvent.GetScreenSpacePosition());
	return FReply::Handled();
}

void SDockingTabStack::OnDragLeave(const FDragDropEvent& DragDropEvent)
{
	TargetSide.Reset();
}

FReply SDockingTabStack::OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	TargetSide.Reset();
	const TSharedPtr<FDockingDragOperation> Operation = DragDropEvent.GetOperationAs<FDockingDragOperation>();
	const TSharedPtr<SDockingArea> Pinned = Area.Pin();
	if (!Operation.IsValid() || !Pinned.IsValid())
	{
		return FReply::Unhandled();
	}
	Pinned->MoveTab(
		Operation->GetTab(), SharedThis(this), FindSide(MyGeometry, DragDropEvent.GetScreenSpacePosition()));
	return FReply::Handled();
}

EVisibility SDockingTabStack::GetTargetVisibility() const
{
	return TargetSide.IsSet() ? EVisibility::HitTestInvisible : EVisibility::Collapsed;
}

FMargin SDockingTabStack::GetTargetPadding() const
{
	const FVector2D Half = FVector2D(Contents->GetCachedGeometry().GetLocalSize()) * 0.5;
	const float X = static_cast<float>(Half.X);
	const float Y = static_cast<float>(Half.Y);
	switch (TargetSide.Get(EDockingSide::Into))
	{
	case EDockingSide::Left:
		return FMargin(0.0f, 0.0f, X, 0.0f);
	case EDockingSide::Right:
		return FMargin(X, 0.0f, 0.0f, 0.0f);
	case EDockingSide::Above:
		return FMargin(0.0f, 0.0f, 0.0f, Y);
	case EDockingSide::Below:
		return FMargin(0.0f, Y, 0.0f, 0.0f);
	case EDockingSide::Into:
		break;
	}
	return FMargin(0.0f);
}
