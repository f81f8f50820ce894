#include "SlateTestFixture.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace KeyRoutingTest
{

/** A panel with a prompt, a message that is only read, and a button; it writes down the keys that reach it. */
class SKeyPanel : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKeyPanel)
		: _ForwardsPromptKeys(false)
	{
	}
	SLATE_ARGUMENT(bool, ForwardsPromptKeys)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		bForwardsPromptKeys = InArgs._ForwardsPromptKeys;
		// clang-format off
		ChildSlot
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()
			[
				SAssignNew(Prompt, SMultiLineEditableText).OnKeyDownHandler(this, &SKeyPanel::OnPromptKeyDown)
			]
			+ SVerticalBox::Slot().AutoHeight()
			[
				SAssignNew(Message, SMultiLineEditableText).IsReadOnly(true).Text(INVTEXT("message"))
			]
			+ SVerticalBox::Slot().AutoHeight()
			[
				SAssignNew(Button, SButton).OnClicked_Lambda([this] { ++NumClicks; return FReply::Handled(); })
			]
		];
		// clang-format on
		bFocusedInConstruct = FSlateApplication::Get().SetKeyboardFocus(Prompt);
	}

	FReply OnPromptKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
	{
		return bForwardsPromptKeys ? OnKeyDown(MyGeometry, InKeyEvent) : FReply::Unhandled();
	}
	virtual FReply OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override
	{
		Order.Add(TEXT("preview"));
		return bTakesPreview ? FReply::Handled() : FReply::Unhandled();
	}
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override
	{
		Order.Add(TEXT("panel"));
		if (InKeyEvent.GetKey() == EKeys::Enter && !InKeyEvent.IsShiftDown())
		{
			Sent = Prompt->GetText().ToString();
			Prompt->SetText(FText::GetEmpty());
			return FReply::Handled();
		}
		return SCompoundWidget::OnKeyDown(MyGeometry, InKeyEvent);
	}

	TSharedPtr<SMultiLineEditableText> Prompt;
	TSharedPtr<SMultiLineEditableText> Message;
	TSharedPtr<SButton> Button;
	TArray<FString> Order;
	FString Sent;
	int32 NumClicks = 0;
	bool bForwardsPromptKeys = false;
	bool bTakesPreview = false;
	bool bFocusedInConstruct = true;
};

class FKeyRoutingTest : public FSlateTest
{
protected:
	TSharedRef<SKeyPanel> ShowPanel(bool bForwardsPromptKeys)
	{
		const TSharedRef<SKeyPanel> Panel = SNew(SKeyPanel).ForwardsPromptKeys(bForwardsPromptKeys);
		Show(Panel);
		return Panel;
	}
};

TEST_F(FKeyRoutingTest, KeepsEnterFromTheParentWhileAnEditableTextHasFocus)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	ASSERT_TRUE(App().SetKeyboardFocus(Panel->Prompt));
	Type(TEXT("one"));
	EXPECT_TRUE(Press(EKeys::Enter));
	Type(TEXT("two"));
	EXPECT_TRUE(Press(EKeys::Enter, Shift()));
	EXPECT_TRUE(Panel->Prompt->GetText().ToString().Equals(TEXT("one\ntwo\n")));
	EXPECT_FALSE(Panel->Order.Contains(FString("panel")));
}

TEST_F(FKeyRoutingTest, LetsTheKeyHandlerSendWithEnterAndBreakTheLineWithShift)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(true);
	App().SetKeyboardFocus(Panel->Prompt);
	Type(TEXT("one"));
	Press(EKeys::Enter, Shift());
	Type(TEXT("two"));
	EXPECT_TRUE(Press(EKeys::Enter));
	EXPECT_TRUE(Panel->Sent.Equals(TEXT("one\ntwo")));
	EXPECT_TRUE(Panel->Prompt->GetText().IsEmpty()) << "the character that follows Enter must not break the line";
}

TEST_F(FKeyRoutingTest, LetsEnterPassAReadOnlyText)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	ASSERT_TRUE(App().SetKeyboardFocus(Panel->Message));
	EXPECT_TRUE(Press(EKeys::Enter));
	EXPECT_EQ(Panel->Order, (TArray<FString>{ TEXT("preview"), TEXT("panel") }));
	EXPECT_TRUE(Panel->Message->GetText().ToString().Equals(TEXT("message")));
}

TEST_F(FKeyRoutingTest, ClicksAFocusedButtonWithEnterAndSpace)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	ASSERT_TRUE(App().SetKeyboardFocus(Panel->Button));
	EXPECT_TRUE(Press(EKeys::Enter));
	EXPECT_TRUE(Press(EKeys::SpaceBar));
	EXPECT_EQ(Panel->NumClicks, 2);
	EXPECT_FALSE(Panel->Order.Contains(FString("panel")));
}

TEST_F(FKeyRoutingTest, StopsAtAHandledPreview)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	Panel->bTakesPreview = true;
	App().SetKeyboardFocus(Panel->Prompt);
	EXPECT_TRUE(Press(EKeys::Enter));
	EXPECT_TRUE(Panel->Prompt->GetText().IsEmpty());
}

TEST_F(FKeyRoutingTest, FocusesOnlyWhatIsShownInAWindow)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	EXPECT_FALSE(Panel->bFocusedInConstruct) << "not in a window yet";
	EXPECT_FALSE(App().SetKeyboardFocus(Panel)) << "a compound widget does not take the focus";
	App().SetKeyboardFocus(Panel->Prompt);
	EXPECT_TRUE(Panel->Prompt->HasKeyboardFocus());
	EXPECT_TRUE(Panel->HasFocusedDescendants());
	Panel->Prompt->SetVisibility(EVisibility::Collapsed);
	EXPECT_FALSE(App().SetKeyboardFocus(Panel->Prompt));
	Tick();
	EXPECT_FALSE(App().GetKeyboardFocusedWidget().IsValid()) << "what is no longer shown loses the focus";
	EXPECT_FALSE(Press(EKeys::Enter));
}

TEST_F(FKeyRoutingTest, MovesTheFocusWithTab)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	App().SetKeyboardFocus(Panel->Prompt);
	EXPECT_TRUE(Press(EKeys::Tab));
	EXPECT_TRUE(Panel->Message->HasKeyboardFocus());
	Press(EKeys::Tab);
	Press(EKeys::Tab);
	EXPECT_TRUE(Panel->Prompt->HasKeyboardFocus()) << "round and round";
	Press(EKeys::Tab, Shift());
	EXPECT_TRUE(Panel->Button->HasKeyboardFocus());
}

TEST_F(FKeyRoutingTest, LeavesOutDisabledWidgets)
{
	const TSharedRef<SKeyPanel> Panel = ShowPanel(false);
	App().SetKeyboardFocus(Panel->Button);
	Panel->Button->SetEnabled(false);
	EXPECT_TRUE(Press(EKeys::Enter));
	EXPECT_EQ(Panel->NumClicks, 0);
	EXPECT_TRUE(Panel->Order.Contains(FString("panel")));
}

}
