#include "Widgets/SBoxPanel.h"

#include "Layout/LayoutUtils.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/SOverlay.h"

#include <gtest/gtest.h>

namespace BoxPanelTest
{

static TSharedRef<SImage> MakeBlock(double Width, double Height)
{
	return SNew(SImage).DesiredSizeOverride(TOptional<FVector2D>(FVector2D(Width, Height)));
}

static TArray<FSlateRect> Arrange(const TSharedRef<SWidget>& Panel, double Width, double Height)
{
	Panel->SlatePrepass();
	FArrangedChildren Arranged(EVisibility::Visible);
	Panel->ArrangeChildren(FGeometry::MakeRoot(FVector2D(Width, Height), FSlateLayoutTransform()), Arranged);
	TArray<FSlateRect> Rectangles;
	for (const FArrangedWidget& Child : Arranged.GetInternalArray())
	{
		Rectangles.Add(Child.Geometry.GetLayoutBoundingRect());
	}
	return Rectangles;
}

TEST(BoxPanel, SharesWhatFixedSlotsLeave)
{
	// clang-format off
	const TSharedRef<SVerticalBox> Box = SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight().Padding(5.0f)[ MakeBlock(50.0, 20.0) ]
		+ SVerticalBox::Slot()[ MakeBlock(10.0, 10.0) ]
		+ SVerticalBox::Slot().FillHeight(3.0f).HAlign(HAlign_Right).VAlign(VAlign_Center)[ MakeBlock(10.0, 10.0) ];
	// clang-format on
	const TArray<FSlateRect> Places = Arrange(Box, 100.0, 110.0);
	ASSERT_EQ(Places.Num(), 3);
	EXPECT_EQ(Places[0], FSlateRect(5.0f, 5.0f, 95.0f, 25.0f));
	EXPECT_EQ(Places[1], FSlateRect(0.0f, 30.0f, 100.0f, 50.0f));
	EXPECT_EQ(Places[2], FSlateRect(90.0f, 75.0f, 100.0f, 85.0f));
	EXPECT_EQ(FVector2D(Box->GetDesiredSize()), FVector2D(60.0, 50.0));
}

TEST(BoxPanel, GivesCollapsedChildrenNoSpaceAndHiddenOnesTheirs)
{
	const TSharedRef<SImage> First = MakeBlock(30.0, 10.0);
	const TSharedRef<SImage> Second = MakeBlock(20.0, 10.0);
	// clang-format off
	const TSharedRef<SHorizontalBox> Box = SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth()[ First ]
		+ SHorizontalBox::Slot().AutoWidth()[ Second ];
	// clang-format on
	First->SetVisibility(EVisibility::Hidden);
	const TArray<FSlateRect> WithHidden = Arrange(Box, 100.0, 10.0);
	ASSERT_EQ(WithHidden.Num(), 1);
	EXPECT_EQ(WithHidden[0].Left, 30.0f);

	First->SetVisibility(EVisibility::Collapsed);
	const TArray<FSlateRect> WithCollapsed = Arrange(Box, 100.0, 10.0);
	ASSERT_EQ(WithCollapsed.Num(), 1);
	EXPECT_EQ(WithCollapsed[0].Left, 0.0f);
	EXPECT_EQ(FVector2D(Box->GetDesiredSize()).X, 20.0);
}

TEST(BoxPanel, NoticesChangesDeepInTheTree)
{
	const TSharedRef<SImage> Image = MakeBlock(10.0, 10.0);
	const TSharedRef<SVerticalBox> Inner = SNew(SVerticalBox) + SVerticalBox::Slot().AutoHeight()[Image];
	const TSharedRef<SOverlay> Outer = SNew(SOverlay) + SOverlay::Slot()[Inner];
	Outer->SlatePrepass();
	Inner->SetVisibility(EVisibility::Collapsed);
	Outer->SlatePrepass();
	EXPECT_EQ(FVector2D(Outer->GetDesiredSize()).Y, 0.0);

	// Changed while out of sight, then shown again.
	Inner->AddSlot().AutoHeight()[MakeBlock(10.0, 15.0)];
	Outer->SlatePrepass();
	Inner->SetVisibility(EVisibility::Visible);
	Outer->SlatePrepass();
	EXPECT_EQ(FVector2D(Outer->GetDesiredSize()).Y, 25.0);
}

}
