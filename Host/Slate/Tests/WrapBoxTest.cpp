#include "SlateTestFixture.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SWrapBox.h"

namespace WrapBoxTest
{
static TSharedRef<SImage> MakeBlock(double Width, double Height)
{
	return SNew(SImage).DesiredSizeOverride(TOptional<FVector2D>(FVector2D(Width, Height)));
}

TEST_F(FSlateTest, AWrapBoxGoesOnInTheNextLineWhereItsWidthEnds)
{
	const TSharedRef<SImage> Hidden = MakeBlock(500.0, 500.0);
	Hidden->SetVisibility(EVisibility::Collapsed);
	TArray<TSharedRef<SWidget>> Blocks = { MakeBlock(60.0, 20.0), MakeBlock(60.0, 30.0), MakeBlock(300.0, 10.0) };
	TSharedPtr<SWrapBox> Wrap;
	TSharedPtr<SBox> Box;
	// clang-format off
	Show(SNew(SBox)
		.HAlign(HAlign_Left)
		.VAlign(VAlign_Top)
		[
			SAssignNew(Box, SBox)
			.WidthOverride(130.0f)
			[
				SAssignNew(Wrap, SWrapBox)
				.UseAllottedSize(true)
				.InnerSlotPadding(FVector2D(10.0, 5.0))
				+ SWrapBox::Slot()[ Blocks[0] ]
				+ SWrapBox::Slot()[ Hidden ]
				+ SWrapBox::Slot().VAlign(VAlign_Center)[ Blocks[1] ]
				+ SWrapBox::Slot()[ Blocks[2] ]
			]
		]);
	// clang-format on
	Tick();
	const auto PlaceOf = [&Blocks](int32 Index) { return Blocks[Index]->GetCachedGeometry().GetLayoutBoundingRect(); };
	EXPECT_EQ(PlaceOf(0), FSlateRect(0.0f, 0.0f, 60.0f, 30.0f)) << "as high as its line";
	EXPECT_EQ(PlaceOf(1), FSlateRect(70.0f, 0.0f, 130.0f, 30.0f)) << "the line is just long enough";
	EXPECT_EQ(PlaceOf(2), FSlateRect(0.0f, 35.0f, 300.0f, 45.0f)) << "wider than any line";
	EXPECT_EQ(FVector2D(Wrap->GetDesiredSize()).Y, 45.0);

	Box->SetWidthOverride(129.0f);
	Tick();
	Tick();
	EXPECT_EQ(PlaceOf(1), FSlateRect(0.0f, 25.0f, 60.0f, 55.0f));
	EXPECT_EQ(FVector2D(Wrap->GetDesiredSize()).Y, 70.0);
}
}
