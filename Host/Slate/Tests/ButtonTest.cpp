#include "Widgets/Input/SButton.h"

#include "SlateTestFixture.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace ButtonTest
{

class FClicker
{
public:
	FReply OnClicked() { return FReply::Handled(); }
	void OnClickedWithoutReply() {}
};

template <typename MethodType>
concept CIsClickHandler = requires(SButton::FArguments& Arguments, FClicker* Clicker, MethodType Method)
{
	Arguments.OnClicked_Raw(Clicker, Method);
};
template <typename LambdaType>
concept CIsClickLambda = requires(SButton::FArguments& Arguments, LambdaType Lambda)
{
	Arguments.OnClicked_Lambda(Lambda);
};
template <typename ValueType>
concept CIsBlockText = requires(STextBlock::FArguments& Arguments, ValueType Value)
{
	Arguments.Text(Value);
};

static_assert(CIsClickHandler<decltype(&FClicker::OnClicked)>);
static_assert(!CIsClickHandler<decltype(&FClicker::OnClickedWithoutReply)>);
static_assert(CIsClickLambda<FReply (*)()> && !CIsClickLambda<void (*)()>);
static_assert(CIsBlockText<FText> && !CIsBlockText<FString>);

class FButtonTest : public FSlateTest
{
protected:
	FButtonTest()
	{
		// clang-format off
		Show(SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()
			[
				SAssignNew(Frame, SBox)
				[
					SAssignNew(Button, SButton)
					.Text(INVTEXT("Press me"))
					.ToolTipText(INVTEXT("It counts"))
					.OnClicked_Lambda([this] { ++NumClicks; return FReply::Handled(); })
				]
			]
			+ SVerticalBox::Slot().FillHeight(1.0f)
			[
				SAssignNew(Text, SMultiLineEditableText).HintText(INVTEXT("Write here"))
			]);
		// clang-format on
		Tick();
	}

	TSharedRef<IAccessibleWidget> Accessible(const TSharedPtr<SWidget>& Widget) const
	{
		return FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Widget.ToSharedRef());
	}

	TSharedPtr<SBox> Frame;
	TSharedPtr<SButton> Button;
	TSharedPtr<SMultiLineEditableText> Text;
	int32 NumClicks = 0;
};

TEST_F(FButtonTest, ClicksWhenTheMouseGoesDownAndUpOnIt)
{
	Click(MiddleOf(*Button));
	EXPECT_EQ(NumClicks, 1);
	EXPECT_TRUE(Button->HasKeyboardFocus());

	App().ProcessMouseButtonDownEvent(nullptr, Pointer(MiddleOf(*Button)));
	EXPECT_TRUE(Button->HasMouseCapture());
	App().ProcessMouseButtonUpEvent(Pointer(MiddleOf(*Text)));
	EXPECT_EQ(NumClicks, 1) << "let go beside it";
	EXPECT_FALSE(Button->HasMouseCapture());
}

TEST_F(FButtonTest, DoesNothingWhileItOrAParentIsDisabled)
{
	const FVector2D Middle = MiddleOf(*Button);
	for (const TSharedPtr<SWidget>& Disabled : { TSharedPtr<SWidget>(Button), TSharedPtr<SWidget>(Frame) })
	{
		Disabled->SetEnabled(false);
		Click(Middle);
		Accessible(Button)->AsActivatable()->Activate();
		EXPECT_FALSE(Accessible(Button)->IsEnabled());
		Disabled->SetEnabled(true);
	}
	EXPECT_EQ(NumClicks, 0);
	EXPECT_FALSE(Button->HasKeyboardFocus());
}

TEST_F(FButtonTest, LeavesTheFocusAloneIfItIsNotFocusable)
{
	const TSharedRef<SButton> Plain = SNew(SButton).Text(INVTEXT("Plain")).IsFocusable(false);
	Frame->SetContent(Plain);
	Tick();
	App().SetKeyboardFocus(Text);
	Click(MiddleOf(*Plain));
	EXPECT_TRUE(Text->HasKeyboardFocus());
}

TEST_F(FButtonTest, SpeaksInTheAccessibleTree)
{
	const TSharedRef<IAccessibleWidget> Root = Accessible(Window);
	ASSERT_EQ(Root->GetNumberOfChildren(), 2) << "boxes are not in it, nor is the button's own label";
	const TSharedPtr<IAccessibleWidget> First = Root->GetChildAt(0);
	EXPECT_EQ(First->GetWidgetType(), EAccessibleWidgetType::Button);
	EXPECT_TRUE(First->GetWidgetName().Equals(TEXT("Press me")));
	EXPECT_TRUE(First->GetHelpText().Equals(TEXT("It counts")));
	EXPECT_EQ(First->GetParent()->GetId(), Root->GetId());
	First->AsActivatable()->Activate();
	EXPECT_EQ(NumClicks, 1);

	const TSharedPtr<IAccessibleWidget> Second = Root->GetChildAt(1);
	EXPECT_EQ(Second->GetWidgetType(), EAccessibleWidgetType::TextEdit);
	EXPECT_TRUE(Second->GetWidgetName().Equals(TEXT("Write here")));
	Second->AsProperty()->SetValue(TEXT("old"));
	Second->AsProperty()->SetValue(TEXT("two\n\tlines"));
	EXPECT_TRUE(Text->GetText().ToString().Equals(TEXT("two\n\tlines")));
	EXPECT_TRUE(Second->HasFocus());

	Button->SetVisibility(EVisibility::Collapsed);
	EXPECT_EQ(Root->GetNumberOfChildren(), 1);
	EXPECT_TRUE(First->IsHidden());
	First->AsActivatable()->Activate();
	EXPECT_EQ(NumClicks, 1);
}

}
