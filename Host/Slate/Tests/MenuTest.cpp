#include "SlateTestFixture.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Input/SMenuAnchor.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace MenuTest
{
/** A combo button over a button, with two choices in its menu. */
class FMenuTest : public FSlateTest
{
protected:
	FMenuTest()
	{
		// clang-format off
		Show(
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()
			[
				SAssignNew(Combo, SComboButton)
				.OnGetMenuContent_Lambda([this] { return MakeMenu(); })
				.ButtonContent()[SNew(STextBlock).Text(INVTEXT("Choose"))]
			]
			+ SVerticalBox::Slot().FillHeight(1.0f)
			[
				SAssignNew(Other, SButton)
				.Text(INVTEXT("Other"))
				.ToolTipText(INVTEXT("Something else"))
				.OnClicked_Lambda([this] { ++NumOthers; return FReply::Handled(); })
			]);
		// clang-format on
		App().SetKeyboardFocus(Other);
	}
	virtual ~FMenuTest() override
	{
		Combo.Reset();
		Other.Reset();
	}

	TSharedRef<SWidget> MakeMenu()
	{
		const auto MakeChoice = [this](int32 Number) {
			return SNew(SButton)
				.Text(INVTEXT("Choice"))
				.IsEnabled_Lambda([this, Number] { return Number != Impossible; })
				.OnClicked_Lambda([this, Number] {
					Chosen = Number;
					App().DismissAllMenus();
					return FReply::Handled();
				});
		};
		const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
		Column->AddSlot().AutoHeight()[MakeChoice(1)];
		Column->AddSlot().AutoHeight()[MakeChoice(2)];
		Menu = Column;
		return Column;
	}
	void Open()
	{
		Click(MiddleOf(*Combo));
		Tick();
		ASSERT_TRUE(App().AnyMenusVisible());
	}
	int32 CountTexts(const FString& Text) const
	{
		const TSharedRef<SWidget> Root = Window.ToSharedRef();
		return CountTextsIn(Root, Text);
	}
	static int32 CountTextsIn(const TSharedRef<SWidget>& Widget, const FString& Text)
	{
		const bool bIsText = Widget->GetType() == FName("STextBlock");
		int32 Sum = bIsText && StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString().Equals(Text) ? 1 : 0;
		FChildren& Children = *Widget->GetChildren();
		for (int32 Index = 0; Index < Children.Num(); ++Index)
		{
			Sum += CountTextsIn(Children.GetChildAt(Index), Text);
		}
		return Sum;
	}

	TSharedPtr<SComboButton> Combo;
	TSharedPtr<SButton> Other;
	TWeakPtr<SWidget> Menu;
	int32 Chosen = 0;
	int32 Impossible = 0; // the choice that cannot be made
	int32 NumOthers = 0;
};

TEST_F(FMenuTest, OpensBelowItsAnchorAndGetsClicksBeforeWhatLiesUnderIt)
{
	Open();
	const FSlateRect Anchor = Combo->GetCachedGeometry().GetLayoutBoundingRect();
	const FSlateRect Shown = Menu.Pin()->GetCachedGeometry().GetLayoutBoundingRect();
	EXPECT_EQ(Shown.Top, Anchor.Bottom);
	EXPECT_GE(Shown.GetSize().X, Anchor.GetSize().X);
	Click(FVector2D(Shown.Left + 5.0, Shown.Bottom - 3.0));
	EXPECT_EQ(Chosen, 2);
	EXPECT_EQ(NumOthers, 0);
	EXPECT_FALSE(Combo->IsOpen());
	EXPECT_FALSE(Menu.IsValid());
}

TEST_F(FMenuTest, TheKeyboardPassesOverWhatCannotBeChosen)
{
	Impossible = 1;
	Combo->SetIsOpen(true);
	Press(EKeys::Tab); // before the next frame
	Press(EKeys::Enter);
	EXPECT_EQ(Chosen, 2);
}

TEST_F(FMenuTest, OpensWhereThereIsRoomAtTheEdgesOfTheWindow)
{
	TSharedPtr<SComboButton> Corner;
	// clang-format off
	Show(
		SNew(SBox).HAlign(HAlign_Right).VAlign(VAlign_Bottom)
		[
			SAssignNew(Corner, SComboButton)
			.OnGetMenuContent_Lambda([] {
				return SNew(SBox).WidthOverride(200.0f).HeightOverride(100.0f)[SNew(SBorder)];
			})
			.ButtonContent()[SNew(STextBlock).Text(INVTEXT("v"))]
		]);
	// clang-format on
	Corner->SetIsOpen(true);
	Tick();
	const FSlateRect Anchor = Corner->GetCachedGeometry().GetLayoutBoundingRect();
	const FSlateWidgetPath Path = App().LocateWidgetsUnder(FVector2D(201.0, Anchor.Top - 99.0));
	EXPECT_EQ(Path.Last()->GetType(), FName("SBorder")) << "above the anchor, and 200 from the right edge";
}

TEST_F(FMenuTest, OpensAboveItsAnchorWithoutTheFocusUnlessThereIsMoreRoomBelow)
{
	for (const EVerticalAlignment Alignment : { VAlign_Bottom, VAlign_Top })
	{
		TSharedPtr<SMenuAnchor> Anchor;
		TSharedPtr<SButton> Anchored;
		TSharedPtr<SBox> Content;
		// clang-format off
		Show(
			SNew(SBox).HAlign(HAlign_Left).VAlign(Alignment)
			[
				SAssignNew(Anchor, SMenuAnchor)
				.Placement(MenuPlacement_AboveAnchor)
				.OnGetMenuContent_Lambda([&Content] {
					SAssignNew(Content, SBox).WidthOverride(200.0f).HeightOverride(100.0f)[SNew(SBorder)];
					return Content.ToSharedRef();
				})
				[
					SAssignNew(Anchored, SButton).Text(INVTEXT("v"))
				]
			]);
		// clang-format on
		App().SetKeyboardFocus(Anchored);
		Anchor->SetIsOpen(true, false);
		Tick();
		const FSlateRect Shown = Content->GetCachedGeometry().GetLayoutBoundingRect();
		const FSlateRect Place = Anchor->GetCachedGeometry().GetLayoutBoundingRect();
		EXPECT_EQ(Shown.Left, Place.Left);
		EXPECT_EQ(Alignment == VAlign_Bottom ? Shown.Bottom : Shown.Top,
			Alignment == VAlign_Bottom ? Place.Top : Place.Bottom);
		EXPECT_TRUE(Anchored->HasKeyboardFocus());
		Anchor->SetIsOpen(false);
	}
}

TEST_F(FMenuTest, ClosesAtAClickElsewhereWhichStillCounts)
{
	Open();
	Click(FVector2D(390.0, 290.0));
	EXPECT_FALSE(App().AnyMenusVisible());
	EXPECT_EQ(NumOthers, 1);
	Tick();
	Open();
	Click(MiddleOf(*Combo));
	EXPECT_FALSE(App().AnyMenusVisible()) << "the press that closes it does not open it again";
	Tick();
	Open();
}

TEST_F(FMenuTest, KeepsTheKeyboardToItselfAndGivesTheFocusBack)
{
	Combo->SetIsOpen(true);
	EXPECT_FALSE(Other->HasKeyboardFocus());
	Press(EKeys::Down);
	const TSharedPtr<SWidget> First = App().GetKeyboardFocusedWidget();
	EXPECT_EQ(App().GetKeyboardFocusCause(), EFocusCause::Navigation);
	Press(EKeys::Tab);
	EXPECT_NE(App().GetKeyboardFocusedWidget(), First);
	Press(EKeys::Down);
	EXPECT_EQ(App().GetKeyboardFocusedWidget(), First) << "around, not out";
	Press(EKeys::Escape);
	EXPECT_FALSE(Combo->IsOpen());
	EXPECT_TRUE(Other->HasKeyboardFocus());

	Combo->SetIsOpen(true);
	Press(EKeys::Up);
	Press(EKeys::Enter);
	EXPECT_EQ(Chosen, 2);
	EXPECT_TRUE(Other->HasKeyboardFocus());
}

TEST_F(FMenuTest, ClosesTogetherWithItsAnchor)
{
	Open();
	Combo.Reset();
	Show(SNew(STextBlock));
	EXPECT_FALSE(App().AnyMenusVisible());
	EXPECT_FALSE(Menu.IsValid());
}

TEST_F(FMenuTest, ShowsAToolTipOnceThePointerRestsUntilAPress)
{
	const FString Tip = TEXT("Something else");
	App().ProcessMouseMoveEvent(Pointer(MiddleOf(*Other)));
	Tick();
	EXPECT_EQ(CountTexts(Tip), 0);
	Tick(10.0);
	EXPECT_EQ(CountTexts(Tip), 1);
	Click(MiddleOf(*Other));
	EXPECT_EQ(CountTexts(Tip), 0);
	EXPECT_EQ(NumOthers, 1) << "it is not in the way of the pointer";
	Tick(10.0);
	EXPECT_EQ(CountTexts(Tip), 0) << "the user is at work";
	App().ProcessMouseMoveEvent(Pointer(MiddleOf(*Combo)));
	Tick(10.0);
	App().ProcessMouseMoveEvent(Pointer(MiddleOf(*Other)));
	Tick(10.0);
	Tick(10.0);
	EXPECT_EQ(CountTexts(Tip), 1);
}

TEST_F(FMenuTest, GivesUnhandledKeysToTheHandlerAlsoWithoutAFocus)
{
	int32 NumKeys = 0;
	const FOnKeyEvent Count = FOnKeyEvent::CreateLambda([&NumKeys](const FKeyEvent&) {
		++NumKeys;
		return FReply::Handled();
	});
	App().SetUnhandledKeyDownEventHandler(Count);
	Press(EKeys::Enter);
	EXPECT_EQ(NumKeys, 0) << "the button takes it";
	Press(EKeys::F10);
	App().ClearKeyboardFocus();
	EXPECT_TRUE(Press(EKeys::F10));
	EXPECT_EQ(NumKeys, 2);
}

TEST_F(FMenuTest, TogglesACheckBoxByMouseAndKeyUnlessItsStateIsBound)
{
	ECheckBoxState Wanted = ECheckBoxState::Undetermined;
	TSharedPtr<SCheckBox> Free;
	TSharedPtr<SCheckBox> Bound;
	// clang-format off
	Show(
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SAssignNew(Free, SCheckBox)
			.OnCheckStateChanged_Lambda([&Wanted](ECheckBoxState State) { Wanted = State; })
		]
		+ SVerticalBox::Slot().AutoHeight()
		[
			SAssignNew(Bound, SCheckBox)
			.IsChecked_Lambda([] { return ECheckBoxState::Unchecked; })
			.OnCheckStateChanged_Lambda([&Wanted](ECheckBoxState State) { Wanted = State; })
		]);
	// clang-format on
	Click(MiddleOf(*Free));
	EXPECT_TRUE(Free->IsChecked());
	Press(EKeys::SpaceBar);
	EXPECT_EQ(Wanted, ECheckBoxState::Unchecked);
	Click(MiddleOf(*Bound));
	EXPECT_EQ(Wanted, ECheckBoxState::Checked);
	EXPECT_FALSE(Bound->IsChecked());
}
}
