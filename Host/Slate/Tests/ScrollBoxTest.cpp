#include "SlateTestFixture.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace ScrollBoxTest
{

/** A block that counts how often it was measured and painted. */
class SBlock : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SBlock)
		: _Height(50.0f)
	{
	}
	SLATE_ARGUMENT(float, Height)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { Height = InArgs._Height; }

	static int32 NumMeasured;
	static int32 NumPainted;
	float Height = 0.0f;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override
	{
		++NumMeasured;
		return FVector2D(10.0, Height);
	}
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override
	{
		++NumPainted;
		return LayerId;
	}
};
int32 SBlock::NumMeasured = 0;
int32 SBlock::NumPainted = 0;

class FScrollBoxTest : public FSlateTest
{
protected:
	FScrollBoxTest()
	{
		SAssignNew(Box, SScrollBox).OnUserScrolled_Lambda([this](float Offset) { Reported.Add(Offset); });
		Show(Box.ToSharedRef());
	}

	TSharedRef<SBlock> AddBlock(float Height = 50.0f)
	{
		const TSharedRef<SBlock> Block = SNew(SBlock).Height(Height);
		Box->AddSlot()[Block];
		return Block;
	}
	void AddBlocks(int32 Count)
	{
		for (int32 Index = 0; Index < Count; ++Index)
		{
			AddBlock();
		}
	}

	const FVector2D Inside = FVector2D(200.0, 150.0);
	TSharedPtr<SScrollBox> Box;
	TArray<float> Reported;
};

TEST_F(FScrollBoxTest, ScrollsToTheEndInTheNextTickWithWhatWasAddedUntilThen)
{
	AddBlocks(10);
	Tick();
	EXPECT_EQ(Box->GetScrollOffsetOfEnd(), 200.0f);
	AddBlock(100.0f);
	Box->ScrollToEnd();
	EXPECT_EQ(Box->GetScrollOffset(), 0.0f);
	AddBlock(30.0f);
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 330.0f);
	EXPECT_EQ(Box->GetScrollOffsetOfEnd(), 330.0f);
	EXPECT_EQ(Reported.Num(), 0) << "nobody but the user scrolls here";
}

TEST_F(FScrollBoxTest, ReportsWhatTheUserScrolls)
{
	AddBlocks(10);
	Tick();
	EXPECT_TRUE(Wheel(Inside, -2.0f));
	EXPECT_EQ(Box->GetScrollOffset(), 64.0f);
	ASSERT_EQ(Reported.Num(), 1);
	EXPECT_EQ(Reported[0], 64.0f);
	Box->SetScrollOffset(0.0f);
	Tick();
	EXPECT_FALSE(Wheel(Inside, 1.0f)) << "at the start the wheel is left to the parents";
	EXPECT_TRUE(Wheel(Inside, -100.0f));
	EXPECT_EQ(Box->GetScrollOffset(), 200.0f);
}

TEST_F(FScrollBoxTest, ComesBackWhenTheContentShrinks)
{
	AddBlocks(10);
	Box->ScrollToEnd();
	Tick();
	Box->ClearChildren();
	AddBlock();
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 0.0f);
	EXPECT_EQ(Box->GetScrollOffsetOfEnd(), 0.0f);
	EXPECT_EQ(Box->GetViewFraction(), 1.0f);
}

TEST_F(FScrollBoxTest, BringsAWidgetIntoView)
{
	AddBlocks(10);
	const TSharedRef<SBlock> Wanted = AddBlock();
	AddBlocks(10);
	Box->ScrollDescendantIntoView(Wanted);
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 250.0f) << "the shortest way puts it at the bottom";
	Box->ScrollDescendantIntoView(Wanted, false, EDescendantScrollDestination::TopOrLeft);
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 500.0f);
}

TEST_F(FScrollBoxTest, LeavesWhatIsOutOfViewAlone)
{
	AddBlocks(5000);
	Tick();
	Box->SetScrollOffset(100000.0f);
	Tick();
	SBlock::NumMeasured = 0;
	SBlock::NumPainted = 0;
	Tick();
	EXPECT_EQ(SBlock::NumMeasured, 0) << "nothing has changed";
	EXPECT_EQ(SBlock::NumPainted, 6);
	AddBlock();
	Tick();
	EXPECT_EQ(SBlock::NumMeasured, 1);
}

TEST_F(FScrollBoxTest, GetsTheWheelOverATextThatIsInView)
{
	for (int32 Index = 0; Index < 9; ++Index)
	{
		Box->AddSlot().Padding(3.3f)[SNew(SMultiLineEditableText).IsReadOnly(true).Text(INVTEXT("1\n2\n3"))];
	}
	Tick();
	Tick();
	EXPECT_TRUE(Wheel(FVector2D(10.0, 10.0), -1.0f));
	EXPECT_EQ(Box->GetScrollOffset(), 32.0f);
}

TEST_F(FScrollBoxTest, LearnsTheHeightOfWrappedTextOneFrameLater)
{
	FString LongText;
	for (int32 Index = 0; Index < 200; ++Index)
	{
		LongText += TEXT("word ");
	}
	AddBlocks(6);
	Tick();
	// clang-format off
	Box->AddSlot()
	[
		SNew(SMultiLineEditableText).IsReadOnly(true).AutoWrapText(true).Text(FText::FromString(LongText))
	];
	// clang-format on
	Box->ScrollToEnd();
	Tick();
	Tick();
	EXPECT_GT(Box->GetScrollOffsetOfEnd(), Box->GetScrollOffset() + 50.0f);
	Box->ScrollToEnd();
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), Box->GetScrollOffsetOfEnd());
}

}
