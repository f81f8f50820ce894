#include "HAL/PlatformApplicationMisc.h"
#include "SlateTestFixture.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace TextEditingTest
{
class FTextEditingTest : public FSlateTest
{
protected:
	void ShowText(const FText& Begin)
	{
		Show(SAssignNew(Text, SMultiLineEditableText).Text(Begin));
		App().SetKeyboardFocus(Text);
	}
	void ShowBox(const SEditableTextBox::FArguments& Arguments)
	{
		TSharedPtr<SEditableTextBox> NewBox = SArgumentNew(Arguments, SEditableTextBox);
		Show(SNew(SVerticalBox) + SVerticalBox::Slot().AutoHeight()[NewBox.ToSharedRef()]);
		Box = NewBox;
		Click(MiddleOf(*Box));
	}
	FString Get() const { return Text->GetPlainText().ToString(); }
	void Undo() { Press(EKeys::Z, Control()); }
	void Redo() { Press(EKeys::Y, Control()); }
	/** Where a character of the first line is. */
	FVector2D At(int32 Offset) const
	{
		// The fixture's renderer measures each character alike.
		return FVector2D(static_cast<double>(Text->GetDesiredSize().X) / Get().Len() * (Offset + 0.4), 3.0);
	}

	TSharedPtr<SMultiLineEditableText> Text;
	TSharedPtr<SEditableTextBox> Box;
};

TEST_F(FTextEditingTest, TakesBackWordsAndWholeChangesAndBringsThemAgain)
{
	ShowText(INVTEXT("owl"));
	Press(EKeys::End);
	Type(TEXT(" at night"));
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("owl at "))) << "the letters of a word are one change";
	Undo();
	Undo();
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("owl")));
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("owl"))) << "nothing is left to undo";
	Redo();
	Redo();
	EXPECT_TRUE(Get().Equals(TEXT("owl at")));
	Type(TEXT("!"));
	Redo();
	EXPECT_TRUE(Get().Equals(TEXT("owl at!"))) << "what was undone is gone after another change";
}

TEST_F(FTextEditingTest, PutsTheSelectionBackThatWasTypedOver)
{
	ShowText(INVTEXT("owl"));
	Press(EKeys::A, Control());
	Type(TEXT("x"));
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("owl")));
	EXPECT_TRUE(Text->GetSelectedText().ToString().Equals(TEXT("owl")));
	Text->SetText(INVTEXT("other"));
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("other"))) << "a text that was set is not the user's change";
}

TEST_F(FTextEditingTest, SelectsAWordWithTwoPressesAndALineWithThree)
{
	ShowText(INVTEXT("int32 Big_Owl = 7;"));
	App().ProcessMouseButtonDoubleClickEvent(nullptr, Pointer(At(8)));
	EXPECT_TRUE(Text->GetSelectedText().ToString().Equals(TEXT("Big_Owl")));
	App().ProcessMouseButtonUpEvent(Pointer(At(8)));
	Click(At(8));
	EXPECT_TRUE(Text->GetSelectedText().ToString().Equals(Get()));
	Tick(10.0);
	Click(At(8));
	EXPECT_FALSE(Text->AnyTextSelected());
}

TEST_F(FTextEditingTest, KeepsALineOfTextInOneLine)
{
	int32 NumCommits = 0;
	ShowBox(SEditableTextBox::FArguments().OnTextCommitted_Lambda(
		[&NumCommits](const FText&, ETextCommit::Type) { ++NumCommits; }));
	FPlatformApplicationMisc::ClipboardCopy(TEXT("a\nb"));
	Press(EKeys::V, Control());
	EXPECT_TRUE(Box->GetText().ToString().Equals(TEXT("a b")));
	Press(EKeys::Enter);
	EXPECT_EQ(NumCommits, 2) << "Enter commits, and so does leaving the box with it";
	EXPECT_TRUE(Box->GetText().ToString().Equals(TEXT("a b")));
}

TEST_F(FTextEditingTest, PutsTheTextBackAtEscape)
{
	ShowBox(SEditableTextBox::FArguments().Text(INVTEXT("old")).RevertTextOnEscape(true));
	Type(TEXT("er"));
	Press(EKeys::Escape);
	EXPECT_TRUE(Box->GetText().ToString().Equals(TEXT("old")));
}

TEST_F(FTextEditingTest, HandsTheFocusOfABoxOnToItsText)
{
	ShowBox(SEditableTextBox::FArguments());
	App().ClearKeyboardFocus();
	EXPECT_FALSE(Box->HasKeyboardFocus());
	EXPECT_TRUE(App().SetKeyboardFocus(Box));
	EXPECT_TRUE(Box->HasKeyboardFocus());
	Type(TEXT("owl"));
	EXPECT_TRUE(Box->GetText().ToString().Equals(TEXT("owl")));
}

TEST_F(FTextEditingTest, TellsNobodyAPassword)
{
	ShowBox(SEditableTextBox::FArguments().Text(INVTEXT("hush")).HintText(INVTEXT("Key")).IsPassword(true));
	FPlatformApplicationMisc::ClipboardCopy(TEXT("before"));
	Press(EKeys::A, Control());
	Press(EKeys::C, Control());
	FString Copied;
	FPlatformApplicationMisc::ClipboardPaste(Copied);
	EXPECT_TRUE(Copied.Equals(TEXT("before")));
	const TSharedRef<IAccessibleWidget> Root =
		FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window.ToSharedRef());
	ASSERT_EQ(Root->GetNumberOfChildren(), 1);
	EXPECT_EQ(Root->GetChildAt(0)->AsText()->GetText().Len(), 4);
	EXPECT_FALSE(Root->GetChildAt(0)->AsText()->GetText().Contains(TEXT("h")));
}
TEST_F(FTextEditingTest, ShowsWhatAnInputMethodComposesUntilItIsTyped)
{
	ShowText(INVTEXT("an owl"));
	Text->GoTo(FTextLocation(0, 3));
	EXPECT_TRUE(App().ProcessTextComposition(TEXT("mor"), 3));
	EXPECT_TRUE(App().ProcessTextComposition(TEXT("moriy"), 2));
	EXPECT_TRUE(Get().Equals(TEXT("an moriyowl")));
	EXPECT_EQ(Text->GetCursorLocation().GetOffset(), 5) << "the input method has its own cursor";
	Tick();
	const FSlateRect Cursor = Text->GetCursorRect();
	EXPECT_GT(Cursor.Left, Text->GetCachedGeometry().GetLayoutBoundingRect().Left) << "choices come up below it";
	EXPECT_GT(Cursor.GetSize().Y, 5.0);
	App().ProcessTextComposition(FString(), 0);
	Type(TEXT("\u68EE"));
	EXPECT_TRUE(Get().Equals(TEXT("an \u68EEowl")));
	Undo();
	EXPECT_TRUE(Get().Equals(TEXT("an owl"))) << "the drafts were never changes";
}

TEST_F(FTextEditingTest, DropsADraftThatTheUserWalksAwayFrom)
{
	const struct
	{
		const char* What;
		TFunction<void()> Do;
		const TCHAR* Expected;
	} Cases[] = {
		{ "a key", [this] { Press(EKeys::Home); }, TEXT("owl") },
		{ "a click", [this] { Click(At(1)); }, TEXT("owl") },
		{ "a letter without an input method", [this] { Type(TEXT("!")); }, TEXT("owl!") },
		{ "the end of the focus", [] { App().ClearKeyboardFocus(); }, TEXT("owl") },
		{ "another text", [this] { Text->SetText(INVTEXT("elk")); }, TEXT("elk") },
	};
	for (const auto& Case : Cases)
	{
		ShowText(INVTEXT("owl"));
		Press(EKeys::End);
		App().ProcessTextComposition(TEXT("draft"), 5);
		Case.Do();
		EXPECT_TRUE(Get().Equals(Case.Expected)) << Case.What << ": " << TCHAR_TO_UTF8(*Get());
		EXPECT_LE(Text->GetCursorLocation().GetOffset(), Get().Len()) << Case.What;
	}
	ShowText(INVTEXT("owl"));
	Text->SetIsReadOnly(true);
	App().ProcessTextComposition(TEXT("draft"), 5);
	EXPECT_TRUE(Get().Equals(TEXT("owl")));
}

}
