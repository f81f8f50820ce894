#include "Brushes/SlateColorBrush.h"
#include "Framework/Text/BaseTextLayoutMarshaller.h"
#include "Framework/Text/PlainTextLayoutMarshaller.h"
#include "Framework/Text/SlateTextLayout.h"
#include "Framework/Text/SlateTextRun.h"
#include "Framework/Text/SlateTextUnderlineLineHighlighter.h"
#include "Framework/Text/WrappedText.h"
#include "HAL/PlatformApplicationMisc.h"
#include "RecordingRenderer.h"
#include "SlateTestFixture.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace StyledTextTest
{
// What the fixture's renderer makes of the two sizes.
constexpr double Cell = 6.6;
constexpr double LineHeight = 14.4;
constexpr double BigCell = 2.0 * Cell;
constexpr double BigLineHeight = 2.0 * LineHeight;

/** "*" begins and ends red text, "#" text of twice the size, "_" underlined text, none of which is shown. */
class FMarkMarshaller final : public FBaseTextLayoutMarshaller
{
public:
	virtual void SetText(const FString& SourceString, FTextLayout& TargetTextLayout) override
	{
		EXPECT_EQ(TargetTextLayout.GetLineModels().Num(), 0);
		++NumCalls;
		Source = SourceString;
		TArray<FTextRange> Ranges;
		FTextRange::CalculateLineRangesFromString(SourceString, Ranges);
		for (const FTextRange& Range : Ranges)
		{
			AddLine(SourceString.Mid(Range.BeginIndex, Range.Len()), TargetTextLayout);
		}
	}
	virtual void GetText(FString& TargetString, const FTextLayout& SourceTextLayout) override { TargetString = Source; }
	virtual bool RequiresLiveUpdate() const override { return bIsLive; }

	int32 NumCalls = 0;
	float Size = 9.0f;
	bool bIsLive = false;

private:
	void AddLine(const FString& Marked, FTextLayout& Layout) const
	{
		const TSharedRef<FString> Line = MakeShared<FString>();
		TArray<TSharedRef<IRun>> Runs;
		TArray<FTextRange> Underlined;
		TCHAR Mark = 0;
		int32 Begin = 0;
		const auto EndRun = [&] {
			if (Line->Len() > Begin || (Runs.Num() == 0 && Marked.IsEmpty()))
			{
				FRunInfo Info(TEXT("marked"));
				Info.MetaData.Add(TEXT("by"), FString::Chr(Mark));
				Runs.Add(FSlateTextRun::Create(Info, Line, MakeStyle(Mark), FTextRange(Begin, Line->Len())));
				Underlined.Append(
					Mark == TEXT('_') ? TArray<FTextRange>{ Runs.Last()->GetTextRange() } : TArray<FTextRange>());
			}
			Begin = Line->Len();
		};
		for (const TCHAR Character : Marked)
		{
			if (Character == TEXT('*') || Character == TEXT('#') || Character == TEXT('_'))
			{
				EndRun();
				Mark = Mark == 0 ? Character : TCHAR(0);
			}
			else
			{
				*Line += Character;
			}
		}
		EndRun();
		Layout.AddLine(FTextLayout::FNewLineData(Line, Runs));
		for (const FTextRange& Range : Underlined)
		{
			const FTextBlockStyle Style = MakeStyle(0);
			Layout.AddLineHighlight(FTextLineHighlight(Layout.GetLineModels().Num() - 1, Range,
				FSlateTextUnderlineLineHighlighter::DefaultZIndex,
				FSlateTextUnderlineLineHighlighter::Create(Style.UnderlineBrush, Style.Font, Style.ColorAndOpacity,
					Style.ShadowOffset, Style.ShadowColorAndOpacity)));
		}
	}
	FTextBlockStyle MakeStyle(TCHAR Mark) const
	{
		const bool bIsBig = Mark == TEXT('#');
		FTextBlockStyle Style;
		Style.SetFont(FCoreStyle::GetDefaultFontStyle(bIsBig ? "Bold" : "Regular", bIsBig ? 2.0f * Size : Size));
		Style.SetColorAndOpacity(Mark == TEXT('*') ? FSlateColor(FLinearColor::Red) : FSlateColor(FLinearColor::Green));
		return Style.SetUnderlineBrush(FSlateColorBrush(FLinearColor::White));
	}

	FString Source;
};

class FStyledTextTest : public FSlateTest
{
protected:
	FStyledTextTest()
		: FStyledTextTest(MakeShared<FRecordingRenderer>())
	{
	}
	explicit FStyledTextTest(const TSharedRef<FRecordingRenderer>& InRenderer)
		: FSlateTest(InRenderer)
		, Renderer(InRenderer)
	{
	}

	void ShowText(const FString& Marked)
	{
		// clang-format off
		Show(SAssignNew(Text, SMultiLineEditableText)
			.Marshaller(Marshaller)
			.IsReadOnly(true)
			.OnTextChanged_Lambda([this](const FText&) { ++NumChanges; })
			.OnCursorMoved_Lambda([this](const FTextLocation& Place) { Places.Add(Place); })
			.Text(FText::FromString(Marked)));
		// clang-format on
		App().SetKeyboardFocus(Text);
	}
	FString Selected() const { return Text->GetSelectedText().ToString(); }
	void Drag(const FVector2D& From, const FVector2D& To)
	{
		App().ProcessMouseButtonDownEvent(nullptr, Pointer(From));
		App().ProcessMouseMoveEvent(Pointer(To));
		App().ProcessMouseButtonUpEvent(Pointer(To));
	}
	/** Left, top and width of an element. */
	static TArray<double> PlaceOf(const FSlateDrawElement& Element)
	{
		const FSlateRect Rect = Element.Geometry.GetLayoutBoundingRect();
		return { Rect.Left, Rect.Top, Rect.Right - Rect.Left };
	}
	static void ExpectNear(const TArray<double>& Actual, const TArray<double>& Expected)
	{
		ASSERT_EQ(Actual.Num(), Expected.Num());
		for (int32 Index = 0; Index < Actual.Num(); ++Index)
		{
			EXPECT_NEAR(Actual[Index], Expected[Index], 0.01) << Index;
		}
	}

	const TSharedRef<FRecordingRenderer> Renderer;
	const TSharedRef<FMarkMarshaller> Marshaller = MakeShared<FMarkMarshaller>();
	TSharedPtr<SMultiLineEditableText> Text;
	int32 NumChanges = 0;
	TArray<FTextLocation> Places;
};

TEST(TextLayoutDeathTest, AssertsThatRunsCoverTheirLine)
{
	const struct
	{
		const TCHAR* Line;
		TArray<FTextRange> Ranges;
		const char* Message;
	} Cases[] = {
		{ TEXT("abcd"), {}, "needs a run" },
		{ TEXT(""), {}, "needs a run" },
		{ TEXT("abcd"), { FTextRange(0, 2), FTextRange(3, 4) }, "does not begin where" },
		{ TEXT("abcd"), { FTextRange(0, 3), FTextRange(2, 4) }, "does not begin where" },
		{ TEXT("abcd"), { FTextRange(1, 4) }, "does not begin where" },
		{ TEXT("abcd"), { FTextRange(0, 3) }, "do not end where" },
		{ TEXT("abcd"), { FTextRange(0, 5) }, "do not end where" },
		{ TEXT("abcd"), { FTextRange(0, 4), FTextRange(4, 4) }, "is empty" },
		{ TEXT("ab\ncd"), { FTextRange(0, 5) }, "line break" },
	};
	const TSharedRef<FSlateTextLayout> Layout = FSlateTextLayout::Create(nullptr, FTextBlockStyle());
	for (const auto& Case : Cases)
	{
		const TSharedRef<FString> Line = MakeShared<FString>(Case.Line);
		TArray<TSharedRef<IRun>> Runs;
		for (const FTextRange& Range : Case.Ranges)
		{
			Runs.Add(FSlateTextRun::Create(FRunInfo(), Line, FTextBlockStyle(), Range));
		}
		EXPECT_DEATH(Layout->AddLine(FTextLayout::FNewLineData(Line, Runs)), Case.Message);
	}
	const TSharedRef<FString> Line = MakeShared<FString>(TEXT("same"));
	const TSharedRef<FString> Copy = MakeShared<FString>(TEXT("same"));
	EXPECT_DEATH(Layout->AddLine(
					 FTextLayout::FNewLineData(Line, { FSlateTextRun::Create(FRunInfo(), Copy, FTextBlockStyle()) })),
		"own string");
	FPlainTextLayoutMarshaller::Create()->SetText(TEXT("a\r\n\nb"), *Layout);
	FString Shown;
	Layout->GetAsText(Shown);
	EXPECT_TRUE(Shown.Equals(TEXT("a\n\nb"))) << "an empty line has a run too";
	const TSharedRef<ILineHighlighter> Mark = FSlateTextStrikeLineHighlighter::Create(
		FSlateNoResource(), FSlateFontInfo(), FLinearColor::White, FVector2D(0.0, 0.0), FLinearColor::Black);
	EXPECT_DEATH(Layout->AddLineHighlight(FTextLineHighlight(3, FTextRange(0, 1), 0, Mark)), "not there");
	EXPECT_DEATH(Layout->AddLineHighlight(FTextLineHighlight(0, FTextRange(0, 2), 0, Mark)), "not within");
}

TEST_F(FStyledTextTest, BreaksLinesThroughTheRuns)
{
	constexpr ETextWrappingPolicy Keep = ETextWrappingPolicy::DefaultWrapping;
	constexpr ETextWrappingPolicy Break = ETextWrappingPolicy::AllowPerCharacterWrapping;
	const struct
	{
		const TCHAR* Marked;
		ETextWrappingPolicy Policy;
		const TCHAR* Expected; // a bar between lines
	} Cases[] = {
		// Ten characters fit, or five big ones.
		{ TEXT("one *two* three"), Keep, TEXT("one two |three") },
		{ TEXT("one #two# three"), Keep, TEXT("one two |three") },
		{ TEXT("a wo*rd* in two"), Keep, TEXT("a word in |two") },
		{ TEXT("in two*words* run"), Keep, TEXT("in |twowords |run") },
		{ TEXT("#big# and small"), Keep, TEXT("big and |small") },
		{ TEXT("0123456789*abcdef* g"), Keep, TEXT("0123456789abcdef |g") },
		{ TEXT("0123456789*abcdef* g"), Break, TEXT("0123456789|abcdef g") },
		{ TEXT("a 012345*6789abcdef*"), Break, TEXT("a |0123456789|abcdef") },
		{ TEXT("0123456789abcdef g"), Keep, TEXT("0123456789abcdef |g") },
		{ TEXT("0123456789abcdef"), Keep, TEXT("0123456789abcdef") },
		{ TEXT("0123456789abcdef g"), Break, TEXT("0123456789|abcdef g") },
		{ TEXT("#\U0001F426\U0001F426\U0001F426#x"), Break, TEXT("\U0001F426\U0001F426|\U0001F426x") },
		{ TEXT("*word*       spaces"), Keep, TEXT("word       |spaces") },
		{ TEXT("first\n\n*second* line"), Keep, TEXT("first||second |line") },
	};
	for (const auto& Case : Cases)
	{
		const TSharedRef<FSlateTextLayout> Runs = FSlateTextLayout::Create(nullptr, FTextBlockStyle());
		Marshaller->SetText(Case.Marked, *Runs);
		FString AsText;
		Runs->GetAsText(AsText);
		const TArray<FString> Paragraphs = FWrappedText::SplitIntoParagraphs(AsText);
		FWrappedText::FSource Source;
		Source.Paragraphs = &Paragraphs;
		Source.Runs = &*Runs;
		Source.WrapWidth = static_cast<float>(10.0 * Cell + 0.1);
		Source.WrappingPolicy = Case.Policy;
		FWrappedText Wrapped;
		Wrapped.Update(Source);
		TArray<FString> Lines;
		for (const FWrappedText::FLine& Line : Wrapped.GetLines())
		{
			Lines.Add(FString(Wrapped.GetText(Line)));
		}
		const FString Actual = FString::Join(Lines, TEXT("|"));
		EXPECT_TRUE(Actual.Equals(Case.Expected)) << TCHAR_TO_UTF8(*Actual);
	}
}

TEST_F(FStyledTextTest, PutsLettersOfAllSizesOnOneLine)
{
	ShowText(TEXT("ab#CD#*e*\nsmall"));
	ASSERT_EQ(Renderer->Texts.Num(), 4);
	// A descent is a quarter of the em, which is 12 and 24 units.
	constexpr double AscentDifference = (BigLineHeight - 6.0) - (LineHeight - 3.0);
	ExpectNear(PlaceOf(Renderer->Texts[0]), { 0.0, AscentDifference, 2.0 * Cell });
	ExpectNear(PlaceOf(Renderer->Texts[1]), { 2.0 * Cell, 0.0, 2.0 * BigCell });
	ExpectNear(PlaceOf(Renderer->Texts[2]), { 2.0 * Cell + 2.0 * BigCell, AscentDifference, Cell });
	ExpectNear(PlaceOf(Renderer->Texts[3]), { 0.0, BigLineHeight, 5.0 * Cell });
	EXPECT_NEAR(FVector2D(Text->GetDesiredSize()).Y, BigLineHeight + LineHeight, 0.01);
	EXPECT_EQ(Renderer->Texts[1].Font.TypefaceFontName, FName("Bold"));

	// clang-format off
	Show(SAssignNew(Text, SMultiLineEditableText)
		.Marshaller(Marshaller)
		.LineHeightPercentage(1.5f)
		.Text(INVTEXT("a\nb")));
	// clang-format on
	EXPECT_NEAR(PlaceOf(Renderer->Texts[1])[1], 1.5 * LineHeight, 0.01);
	EXPECT_NEAR(FVector2D(Text->GetDesiredSize()).Y, 3.0 * LineHeight, 0.01);
}

TEST_F(FStyledTextTest, DrawsEachRunInItsColour)
{
	ShowText(TEXT("ab*cd*_ef_"));
	ASSERT_EQ(Renderer->Texts.Num(), 3);
	EXPECT_TRUE(Renderer->Texts[1].Text.Equals(TEXT("cd")));
	EXPECT_EQ(Renderer->Texts[0].Tint, FLinearColor::Green);
	EXPECT_EQ(Renderer->Texts[1].Tint, FLinearColor::Red);
	EXPECT_EQ(Renderer->Texts[2].Tint, FLinearColor::Green);
	ASSERT_EQ(Renderer->Boxes.Num(), 1) << "a style's brush is not drawn for its run, only for a highlight";
	EXPECT_EQ(Renderer->Boxes[0].Tint, FLinearColor::Green);
	const TArray<double> Underline = PlaceOf(Renderer->Boxes[0]);
	ExpectNear({ Underline[0], Underline[2] }, { 4.0 * Cell, 2.0 * Cell });
	EXPECT_GT(Underline[1], LineHeight - 3.0) << "below the baseline";
	EXPECT_LT(Underline[1], LineHeight);
}

TEST_F(FStyledTextTest, SelectsThroughRunsWhatTheMousePassesOver)
{
	ShowText(TEXT("ab#CD#*ef*\nlast"));
	const struct
	{
		const char* What;
		FVector2D From;
		FVector2D To;
		const TCHAR* Expected;
	} Cases[] = {
		{ "from within a run into another", { 1.1 * Cell, 20.0 }, { 2.0 * Cell + 1.1 * BigCell, 20.0 }, TEXT("bC") },
		{ "nothing within half a letter", { 2.0 * Cell, 5.0 }, { 2.0 * Cell + 0.4 * BigCell, 5.0 }, TEXT("") },
		{ "a letter from its middle on", { 2.0 * Cell, 5.0 }, { 2.0 * Cell + 0.6 * BigCell, 5.0 }, TEXT("C") },
		{ "the small letters behind big ones", { 2.0 * Cell + 2.0 * BigCell, 5.0 }, { 399.0, 5.0 }, TEXT("ef") },
		{ "down to the line that is lower than its number says", { 0.0, 5.0 }, { 2.1 * Cell, BigLineHeight + 1.0 },
			TEXT("abCDef\nla") },
		{ "up to the end of the high line", { 0.0, 5.0 }, { 399.0, BigLineHeight - 1.0 }, TEXT("abCDef") },
	};
	for (const auto& Case : Cases)
	{
		Drag(Case.From, Case.To);
		EXPECT_TRUE(Selected().Equals(Case.Expected)) << Case.What << ": " << TCHAR_TO_UTF8(*Selected());
	}
	Drag(FVector2D(1.0 * Cell, 5.0), FVector2D(2.0 * Cell + BigCell, 5.0));
	Tick();
	ASSERT_EQ(Renderer->Boxes.Num(), 2) << "one for each run";
	ExpectNear(PlaceOf(Renderer->Boxes[0]), { Cell, 0.0, Cell });
	ExpectNear(PlaceOf(Renderer->Boxes[1]), { 2.0 * Cell, 0.0, BigCell });
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(0, 3));
	EXPECT_EQ(Places.Last(), FTextLocation(0, 3));
	Press(EKeys::Down);
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(1, 4)) << "the place below, as the line ends before it";
}

TEST_F(FStyledTextTest, GivesWhatIsShownAndKeepsWhatWasSet)
{
	ShowText(TEXT("a *red* one\n#big#"));
	Press(EKeys::A, Control());
	Press(EKeys::C, Control());
	FString Copied;
	FPlatformApplicationMisc::ClipboardPaste(Copied);
	EXPECT_TRUE(Copied.Equals(TEXT("a red one\nbig")));
	EXPECT_TRUE(Text->GetPlainText().ToString().Equals(Copied));
	EXPECT_TRUE(Text->CreateAccessibleWidget()->AsText()->GetText().Equals(Copied));
	EXPECT_TRUE(Text->GetText().ToString().Equals(TEXT("a *red* one\n#big#")));
	const TSharedRef<FSlateTextLayout> Layout = FSlateTextLayout::Create(nullptr, FTextBlockStyle());
	Marshaller->SetText(TEXT("a *red* one"), *Layout);
	const TSharedRef<IRun> Red = Layout->GetLineModels()[0].Runs[1].GetRun();
	EXPECT_TRUE(Red->GetRunInfo().MetaData.FindRef(TEXT("by")).Equals(TEXT("*")));
	FString Part;
	Red->AppendTextTo(Part, FTextRange(3, 5));
	EXPECT_TRUE(Part.Equals(TEXT("ed")));

	ShowText(TEXT(""));
	EXPECT_TRUE(Text->GetPlainText().IsEmpty());
	EXPECT_NEAR(FVector2D(Text->GetDesiredSize()).Y, LineHeight, 0.01) << "an empty text has a line";
}

TEST_F(FStyledTextTest, MarshalsOnceAndAgainAtTheTickAfterItWasAskedTo)
{
	ShowText(TEXT("*some* text"));
	EXPECT_EQ(Marshaller->NumCalls, 1);
	Text->SetText(INVTEXT("*some* text"));
	Tick();
	EXPECT_EQ(Marshaller->NumCalls, 1) << "the text is the same";
	Text->SetText(INVTEXT("*some* TEXT"));
	EXPECT_EQ(Marshaller->NumCalls, 2);
	EXPECT_EQ(NumChanges, 1);

	Press(EKeys::Home);
	Press(EKeys::Right, Shift());
	Marshaller->Size = 18.0f;
	Marshaller->MakeDirty();
	Text->Refresh();
	EXPECT_EQ(Marshaller->NumCalls, 2);
	Tick();
	EXPECT_EQ(Marshaller->NumCalls, 3);
	EXPECT_FALSE(Marshaller->IsDirty());
	EXPECT_EQ(NumChanges, 1);
	EXPECT_TRUE(Selected().Equals(TEXT("s"))) << "what was selected stays so";
	Tick();
	EXPECT_EQ(Marshaller->NumCalls, 3);
	EXPECT_NEAR(FVector2D(Text->GetDesiredSize()).Y, BigLineHeight, 0.01);
	Text->SetTextStyle(nullptr);
	Tick();
	EXPECT_EQ(Marshaller->NumCalls, 4) << "runs may have been made of the widget's style";
}

TEST_F(FStyledTextTest, MarshalsAgainWhatTheUserChanges)
{
	ShowText(TEXT("*ab*c"));
	Text->SetIsReadOnly(false);
	Press(EKeys::End);
	EXPECT_DEATH(Type(TEXT("d")), "does not ask for it");
	Marshaller->bIsLive = true;
	Type(TEXT("#d"));
	EXPECT_TRUE(Text->GetPlainText().ToString().Equals(TEXT("abcd"))) << "marks are gone as soon as they are typed";
	Press(EKeys::Z, Control());
	Tick();
	EXPECT_TRUE(Text->GetPlainText().ToString().Equals(TEXT("abc")));
	ASSERT_EQ(Renderer->Texts.Num(), 1);
	EXPECT_EQ(Renderer->Texts[0].Tint, FLinearColor::Green);
}

TEST_F(FStyledTextTest, DrawsOfALongTextWhatIsInView)
{
	FString Long;
	constexpr int32 NumLines = 20000;
	for (int32 Index = 0; Index < NumLines; ++Index)
	{
		Long += FString::Printf(
			TEXT("%s%05d *some red words* and #a big one# in every line"), Index > 0 ? TEXT("\n") : TEXT(""), Index);
	}
	ASSERT_GT(Long.Len(), 1000 * 1000);
	ShowText(Long);
	constexpr int32 LinesInView = 11; // 300 units of 28.8
	constexpr int32 RunsInALine = 5;
	EXPECT_EQ(Renderer->Texts.Num(), LinesInView * RunsInALine);
	Text->GoTo(ETextLocation::EndOfDocument);
	Tick();
	EXPECT_LE(Renderer->Texts.Num(), (LinesInView + 1) * RunsInALine);
	EXPECT_NEAR(PlaceOf(Renderer->Texts.Last())[1] + LineHeight + 3.0, 300.0, 0.1);
	Click(FVector2D(0.0, 299.0));
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(NumLines - 1, 0));
}

}
