#include "Brushes/SlateColorBrush.h"
#include "RecordingRenderer.h"
#include "SlateTestFixture.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace PaintingTest
{

class FPaintingTest : public testing::Test
{
protected:
	FPaintingTest()
		: Renderer(MakeShared<FRecordingRenderer>())
	{
		FSlateApplication::Create();
		FSlateApplication::Get().InitializeRenderer(Renderer);
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(400.0, 50.0)));
	}
	virtual ~FPaintingTest() override
	{
		Window.Reset();
		FSlateApplication::Shutdown();
	}

	void Show(const TSharedRef<SWidget>& Content)
	{
		Window->SetContent(Content);
		FSlateApplication::Get().Tick();
	}

	const TSharedRef<FRecordingRenderer> Renderer;
	TSharedPtr<SWindow> Window;
};

TEST_F(FPaintingTest, DrawsTheLinesInViewAndNoOthers)
{
	FString Text = TEXT("top");
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		Text += FString::Printf(TEXT("\nline %d"), Index);
	}
	const TSharedRef<SMultiLineEditableText> Editable = SNew(SMultiLineEditableText).Text(FText::FromString(Text));
	Show(Editable);
	ASSERT_EQ(Renderer->Texts.Num(), 4) << "a line is 14.4 high";
	EXPECT_TRUE(Renderer->Texts[0].Text.Equals(TEXT("top")));
	Editable->GoTo(ETextLocation::EndOfDocument);
	FSlateApplication::Get().Tick();
	EXPECT_TRUE(Renderer->Texts.Last().Text.Equals(TEXT("line 999"))) << "the cursor is kept in view";
}

TEST_F(FPaintingTest, AlignsTextAsAsked)
{
	Show(SNew(STextBlock).Text(INVTEXT("ab\nabcd")).Justification(ETextJustify::Right));
	ASSERT_EQ(Renderer->Texts.Num(), 2);
	EXPECT_NEAR(FVector2D(Renderer->Texts[0].Geometry.GetAbsolutePosition()).X, 400.0 - 2.0 * 6.6, 0.01);
}

TEST_F(FPaintingTest, HandsColoursDownTheTree)
{
	const FSlateColorBrush Brush(FLinearColor::White);
	FTextBlockStyle OwnColour;
	OwnColour.SetFont(FCoreStyle::GetDefaultFontStyle("Regular", 9.0f)).SetColorAndOpacity(FLinearColor::Blue);
	// clang-format off
	Show(SNew(SBorder)
		.BorderImage(&Brush)
		.BorderBackgroundColor(FLinearColor::Green)
		.ForegroundColor(FLinearColor::Red)
		.ColorAndOpacity(FLinearColor(1.0f, 1.0f, 1.0f, 0.5f))
		[
			SNew(SOverlay)
			+ SOverlay::Slot()[ SNew(STextBlock).Text(INVTEXT("foreground")) ]
			+ SOverlay::Slot()[ SNew(SMultiLineEditableText).TextStyle(&OwnColour).Text(INVTEXT("own")) ]
			+ SOverlay::Slot()[ SNew(SMultiLineEditableText).HintText(INVTEXT("hint")) ]
		]);
	// clang-format on
	ASSERT_EQ(Renderer->Boxes.Num(), 1);
	EXPECT_EQ(Renderer->Boxes[0].Tint, FLinearColor::Green) << "the content's tint is not the border's";
	ASSERT_EQ(Renderer->Texts.Num(), 3);
	EXPECT_EQ(Renderer->Texts[0].Tint, FLinearColor::Red.CopyWithNewOpacity(0.5f));
	EXPECT_EQ(Renderer->Texts[1].Tint, FLinearColor::Blue.CopyWithNewOpacity(0.5f));
	EXPECT_EQ(Renderer->Texts[2].Tint, FLinearColor::Red.CopyWithNewOpacity(0.25f)) << "a hint is paler";
	EXPECT_GT(Renderer->Texts[1].LayerId, Renderer->Texts[0].LayerId);
	EXPECT_EQ(FVector2D(Renderer->Texts[0].Geometry.GetAbsolutePosition()), FVector2D(2.0, 2.0))
		<< "a border's default padding";
}

TEST_F(FPaintingTest, ClipsWhatASizedTextCannotHold)
{
	// clang-format off
	Show(SNew(SBox).HAlign(HAlign_Left).VAlign(VAlign_Top)
	[
		SNew(SBox).MinDesiredHeight(20.0f).MaxDesiredHeight(30.0f)
		[
			SNew(SMultiLineEditableText).Text(INVTEXT("1\n2\n3\n4"))
		]
	]);
	// clang-format on
	ASSERT_GT(Renderer->Texts.Num(), 0);
	EXPECT_EQ(Renderer->Texts[0].ClippingRect.Bottom, 30.0f);
	EXPECT_LE(Renderer->Texts.Num(), 3);
}

TEST(FontMeasure, FindsThePlaceUnderAPointer)
{
	const FFixedFontMeasure Measure;
	const FSlateFontInfo Font = FCoreStyle::GetDefaultFontStyle("Regular", 7.5f); // cells of 5.5
	EXPECT_EQ(Measure.FindCharacterIndexAtOffset(TEXT("abc"), Font, -3.0f), 0);
	EXPECT_EQ(Measure.FindCharacterIndexAtOffset(TEXT("abc"), Font, 2.0f), 0);
	EXPECT_EQ(Measure.FindCharacterIndexAtOffset(TEXT("abc"), Font, 3.5f), 1) << "from the middle of a character on";
	EXPECT_EQ(Measure.FindCharacterIndexAtOffset(TEXT("abc"), Font, 99.0f), 3);
	EXPECT_EQ(Measure.FindLastWholeCharacterIndexBeforeOffset(TEXT("abc"), Font, 11.5f), 2);
	EXPECT_EQ(Measure.FindLastWholeCharacterIndexBeforeOffset(TEXT("abc"), Font, 1.0f), 1) << "at least one";
}

}
