#include "SlateTestFixture.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#include <random>

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

TEST_F(FScrollBoxTest, BringsAPartOfALongWidgetIntoView)
{
	AddBlocks(2);
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	TSharedPtr<SBlock> Wanted;
	for (int32 Index = 0; Index < 40; ++Index)
	{
		const TSharedRef<SBlock> Block = SNew(SBlock);
		Column->AddSlot().AutoHeight()[Block];
		Wanted = Index == 15 ? Block.ToSharedPtr() : Wanted;
	}
	Box->AddSlot()[Column];
	Box->ScrollDescendantIntoView(Wanted);
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 18 * 50.0f - 300.0f);
	Tick();
	Box->ScrollDescendantIntoView(Wanted, false, EDescendantScrollDestination::TopOrLeft);
	Tick();
	EXPECT_EQ(Box->GetScrollOffset(), 17 * 50.0f);
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

/** What is kept of the slots has to equal what measuring all of them again would give, whatever has happened. */
TEST_F(FScrollBoxTest, KeepsTheSizesOfItsSlotsThroughAllChanges)
{
	struct FShown
	{
		TSharedRef<SBlock> Block;
		bool bCollapsed = false;
	};
	TArray<FShown> Expected;
	std::mt19937 Dice(1);
	const auto Roll = [&Dice](int32 Count) { return static_cast<int32>(Dice() % static_cast<uint32>(Count)); };
	for (int32 Step = 0; Step < 2000; ++Step)
	{
		const int32 Where = Expected.Num() > 0 ? Roll(Expected.Num()) : 0;
		const int32 What = Expected.Num() > 0 ? Roll(8) : 0;
		if (What <= 2)
		{
			const TSharedRef<SBlock> Block = SNew(SBlock).Height(10.0f + static_cast<float>(Roll(50)));
			const int32 Index = What == 0 ? Expected.Num() : Where;
			Box->InsertSlot(Index)[Block];
			Expected.Insert(FShown{ Block }, Index);
		}
		else if (What <= 4)
		{
			Expected[Where].Block->Height = static_cast<float>(Roll(90));
			Expected[Where].Block->Invalidate(EInvalidateWidgetReason::Layout);
		}
		else if (What <= 6)
		{
			bool& bCollapsed = Expected[Where].bCollapsed;
			bCollapsed = !bCollapsed;
			Expected[Where].Block->SetVisibility(bCollapsed ? EVisibility::Collapsed : EVisibility::Visible);
		}
		else
		{
			Box->RemoveSlot(Expected[Where].Block);
			Expected.RemoveAt(Where);
		}
		if (Roll(3) == 0)
		{
			Box->ScrollToEnd();
			Tick();
			float Length = 0.0f;
			for (const FShown& Each : Expected)
			{
				Length += Each.bCollapsed ? 0.0f : Each.Block->Height;
			}
			ASSERT_EQ(Box->GetScrollOffsetOfEnd(), FMath::Max(Length - 300.0f, 0.0f)) << "after step " << Step;
		}
	}
}

}
