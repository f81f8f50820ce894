#include "Widgets/Text/SMultiLineEditableText.h"

#include "HAL/PlatformApplicationMisc.h"
#include "SlateTestFixture.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Text/STextBlock.h"

namespace EditableTextTest
{

template <typename WidgetType>
concept CHasColorArgument = requires(typename WidgetType::FArguments& Arguments)
{
	Arguments.ColorAndOpacity(FSlateColor(FLinearColor::White));
};
template <typename WidgetType>
concept CHasColorSetter = requires(WidgetType& Widget)
{
	Widget.SetColorAndOpacity(FSlateColor(FLinearColor::White));
};

// The colour of an editable text comes from its style.
static_assert(!CHasColorArgument<SMultiLineEditableText> && !CHasColorSetter<SMultiLineEditableText>);
static_assert(CHasColorArgument<STextBlock> && CHasColorSetter<STextBlock>);

class FEditableTextTest : public FSlateTest
{
protected:
	FEditableTextTest()
	{
		// clang-format off
		SAssignNew(Text, SMultiLineEditableText)
			.OnTextChanged_Lambda([this](const FText& NewText) { Changes.Add(NewText.ToString()); })
			.OnTextCommitted_Lambda([this](const FText&, ETextCommit::Type Reason) { Commits.Add(Reason); });
		// clang-format on
		Show(Text.ToSharedRef());
		App().SetKeyboardFocus(Text);
	}

	FString Shown() const { return Text->GetPlainText().ToString(); }

	TSharedPtr<SMultiLineEditableText> Text;
	TArray<FString> Changes;
	TArray<ETextCommit::Type> Commits;
};

TEST_F(FEditableTextTest, EditsAtTheCursor)
{
	Type(TEXT("abd"));
	Press(EKeys::Left);
	Type(TEXT("c"));
	Press(EKeys::Home);
	Press(EKeys::Delete);
	Press(EKeys::End);
	Press(EKeys::BackSpace);
	EXPECT_TRUE(Shown().Equals(TEXT("bc")));
	Press(EKeys::Enter);
	Type(TEXT("x"));
	Press(EKeys::Up);
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(0, 1));
	Press(EKeys::Delete);
	Press(EKeys::Delete);
	EXPECT_TRUE(Shown().Equals(TEXT("bx"))) << "deleting at the end of a line joins it with the next";
	Press(EKeys::Left);
	Press(EKeys::BackSpace);
	EXPECT_TRUE(Shown().Equals(TEXT("bx"))) << "there is nothing before the beginning";
	EXPECT_TRUE(Changes.Last().Equals(TEXT("bx")));
}

TEST_F(FEditableTextTest, NeverSplitsACharacterOfTwoUnits)
{
	Text->InsertTextAtCursor(FString(u"a\U0001F600b"));
	Press(EKeys::Left);
	Press(EKeys::BackSpace);
	EXPECT_TRUE(Shown().Equals(TEXT("ab")));
}

TEST_F(FEditableTextTest, ReplacesCopiesAndPastesTheSelection)
{
	Text->SetText(FText::FromString(TEXT("one\r\ntwo\rthree")));
	EXPECT_TRUE(Shown().Equals(TEXT("one\ntwo\nthree"))) << "lines are joined by LINE_TERMINATOR";
	Press(EKeys::Up, Shift());
	EXPECT_TRUE(Text->GetSelectedText().ToString().Equals(TEXT("\nthree")));
	Press(EKeys::X, Control());
	EXPECT_TRUE(Shown().Equals(TEXT("one\ntwo")));
	Press(EKeys::Home, Control());
	Press(EKeys::V, Control());
	EXPECT_TRUE(Shown().Equals(TEXT("\nthreeone\ntwo")));
	Press(EKeys::A, Control());
	Type(TEXT("z"));
	EXPECT_TRUE(Shown().Equals(TEXT("z")));
	Press(EKeys::A, Control());
	EXPECT_TRUE(Press(EKeys::Escape));
	EXPECT_FALSE(Text->AnyTextSelected());
}

TEST_F(FEditableTextTest, ReportsOnlyRealChanges)
{
	Text->SetText(INVTEXT("same"));
	Text->SetText(INVTEXT("same"));
	Text->SetText(INVTEXT("SAME"));
	EXPECT_EQ(Changes.Num(), 2);
	App().ClearKeyboardFocus();
	ASSERT_EQ(Commits.Num(), 1);
	EXPECT_EQ(Commits[0], ETextCommit::OnUserMovedFocus);
}

TEST_F(FEditableTextTest, CommitsWithEnterWhenNewLinesNeedAModifier)
{
	// clang-format off
	SAssignNew(Text, SMultiLineEditableText)
		.ModiferKeyForNewLine(EModifierKey::Shift)
		.OnTextCommitted_Lambda([this](const FText&, ETextCommit::Type Reason) { Commits.Add(Reason); });
	// clang-format on
	Show(Text.ToSharedRef());
	Commits.Empty();
	App().SetKeyboardFocus(Text);
	Type(TEXT("a"));
	Press(EKeys::Enter, Shift());
	Type(TEXT("b"));
	EXPECT_TRUE(Shown().Equals(TEXT("a\nb")));

	// A synthetic event's modifiers do not count, only those that are down.
	App().ProcessKeyDownEvent(FKeyEvent(EKeys::Enter, Shift(), 0, false, 0, 0));
	ASSERT_GT(Commits.Num(), 0);
	EXPECT_EQ(Commits[0], ETextCommit::OnEnter);
	EXPECT_FALSE(Text->HasKeyboardFocus());
}

TEST_F(FEditableTextTest, RefusesToChangeWhileReadOnly)
{
	Text->SetText(INVTEXT("fixed"));
	Text->SetIsReadOnly(true);
	Type(TEXT("x"));
	Press(EKeys::BackSpace);
	Press(EKeys::Delete);
	Text->InsertTextAtCursor(INVTEXT("x"));
	Press(EKeys::A, Control());
	Press(EKeys::X, Control());
	EXPECT_TRUE(Shown().Equals(TEXT("fixed")));
	Press(EKeys::C, Control());
	FString Copied;
	FPlatformApplicationMisc::ClipboardPaste(Copied);
	EXPECT_TRUE(Copied.Equals(TEXT("fixed"))) << "reading includes copying";
}

TEST_F(FEditableTextTest, AnswersWithABoundTextWhateverWasTyped)
{
	FString Source = TEXT("bound");
	Text->SetText(TAttribute<FText>::CreateLambda([&Source] { return FText::FromString(Source); }));
	Type(TEXT("!"));
	EXPECT_TRUE(Text->GetText().ToString().Equals(TEXT("bound")));
	EXPECT_TRUE(Shown().Equals(TEXT("bound!")));
	App().ClearKeyboardFocus();
	Source = TEXT("changed");
	Tick();
	EXPECT_TRUE(Shown().Equals(TEXT("changed")));
	Text->SetText(FText::GetEmpty());
}

TEST_F(FEditableTextTest, NeverTakesTheHintForText)
{
	Text->SetHintText(INVTEXT("Enter something"));
	Tick();
	EXPECT_TRUE(Text->GetText().IsEmpty());
	EXPECT_TRUE(Text->GetHintText().ToString().Equals(TEXT("Enter something")));
}

TEST_F(FEditableTextTest, PutsTheCursorWhereTheMouseClicks)
{
	Text->SetText(INVTEXT("first line\nsecond"));
	Tick();
	Click(FVector2D(0.0, 1.0));
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(0, 0));
	Click(FVector2D(390.0, 290.0));
	EXPECT_EQ(Text->GetCursorLocation(), FTextLocation(1, 6));
	App().ProcessMouseButtonDownEvent(nullptr, Pointer(FVector2D(0.0, 1.0)));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(390.0, 1.0)));
	App().ProcessMouseButtonUpEvent(Pointer(FVector2D(390.0, 1.0)));
	EXPECT_TRUE(Text->GetSelectedText().ToString().Equals(TEXT("first line")));
}

TEST_F(FEditableTextTest, GrowsWithItsLinesAndWrapsAtItsWidth)
{
	const double LineHeight = FVector2D(Text->GetDesiredSize()).Y;
	Text->SetText(INVTEXT("1\n2\n3"));
	Tick();
	EXPECT_NEAR(FVector2D(Text->GetDesiredSize()).Y, 3.0 * LineHeight, 0.01);

	FTextBlockStyle Style;
	Style.SetFont(FCoreStyle::GetDefaultFontStyle("Regular", 9.0f));
	TSharedPtr<SMultiLineEditableText> Wrapped;
	// clang-format off
	Show(SNew(SBox).WidthOverride(60.0f).HAlign(HAlign_Left)
	[
		SNew(SBox).WidthOverride(60.0f)
		[
			SAssignNew(Wrapped, SMultiLineEditableText)
			.TextStyle(&Style).AutoWrapText(true).Text(INVTEXT("some words that wrap"))
		]
	]);
	// clang-format on
	Tick();
	// A cell is 6.6 wide, so nine fit: "some ", "words ", "that wrap".
	EXPECT_NEAR(FVector2D(Wrapped->GetDesiredSize()).Y, 3.0 * 9.0 * 96.0 / 72.0 * 1.2, 0.01);
}

TEST(WrappedText, SplitsAtEveryKindOfLineEnd)
{
	EXPECT_EQ(FWrappedText::SplitIntoParagraphs(TEXT("")).Num(), 1);
	EXPECT_EQ(FWrappedText::SplitIntoParagraphs(TEXT("a\r\nb\rc\nd")).Num(), 4);
	EXPECT_EQ(FWrappedText::SplitIntoParagraphs(TEXT("a\n\n")).Num(), 3);
}

}
