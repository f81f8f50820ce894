#include "SlateTestFixture.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/Layout/SSpacer.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"

namespace PointerRoutingTest
{

/** A panel that takes the focus itself. */
class SFocusablePanel : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SFocusablePanel) {}
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { ChildSlot[InArgs._Content.Widget]; }
	virtual bool SupportsKeyboardFocus() const override { return true; }
	void Clear() { ChildSlot.DetachWidget(); }
};

class FPointerRoutingTest : public FSlateTest
{
protected:
	TSharedRef<SBorder> MakeTarget(const TCHAR* Name, bool bHandles)
	{
		return SNew(SBorder).OnMouseButtonDown_Lambda([this, Name, bHandles](const FGeometry&, const FPointerEvent&) {
			Reached.Add(Name);
			return bHandles ? FReply::Handled() : FReply::Unhandled();
		});
	}
	TArray<FString> ClickAndSee()
	{
		Reached.Empty();
		Click(FVector2D(200.0, 150.0));
		return Reached;
	}

	TArray<FString> Reached;
};

TEST_F(FPointerRoutingTest, GoesToTheFrontmostWidgetThatCanBeHit)
{
	const TSharedRef<SBorder> Front = MakeTarget(TEXT("front"), true);
	const TSharedRef<SBorder> Back = MakeTarget(TEXT("back"), true);
	Show(SNew(SOverlay) + SOverlay::Slot()[Back] + SOverlay::Slot()[Front]);
	const struct
	{
		EVisibility Visibility;
		const TCHAR* Expected;
	} Cases[] = {
		{ EVisibility::Visible, TEXT("front") },
		{ EVisibility::HitTestInvisible, TEXT("back") },
		{ EVisibility::SelfHitTestInvisible, TEXT("back") },
		{ EVisibility::Hidden, TEXT("back") },
		{ EVisibility::Collapsed, TEXT("back") },
	};
	for (const auto& Case : Cases)
	{
		Front->SetVisibility(Case.Visibility);
		Tick();
		EXPECT_EQ(ClickAndSee(), TArray<FString>{ Case.Expected }) << TCHAR_TO_UTF8(*Case.Visibility.ToString());
	}
}

TEST_F(FPointerRoutingTest, GoesUpUntilSomebodyHandlesIt)
{
	const TSharedRef<SBorder> Outer = MakeTarget(TEXT("outer"), true);
	const TSharedRef<SBorder> Inner = MakeTarget(TEXT("inner"), false);
	Outer->SetContent(Inner);
	Show(Outer);
	EXPECT_EQ(ClickAndSee(), (TArray<FString>{ TEXT("inner"), TEXT("outer") }));
	Inner->SetEnabled(false);
	EXPECT_EQ(ClickAndSee(), TArray<FString>{ TEXT("outer") }) << "a disabled widget is passed over";
}

TEST_F(FPointerRoutingTest, HandsTheFocusToAParentWhenItsHolderIsRemoved)
{
	TSharedPtr<SButton> Button;
	const TSharedRef<SFocusablePanel> Panel = SNew(SFocusablePanel)[SAssignNew(Button, SButton)];
	Show(Panel);
	ASSERT_TRUE(App().SetKeyboardFocus(Button));
	Panel->Clear();
	Tick();
	EXPECT_TRUE(Panel->HasKeyboardFocus());
}

TEST_F(FPointerRoutingTest, DragsTheThumbOfAScrollBar)
{
	TArray<float> Offsets;
	TSharedPtr<SScrollBar> Bar;
	// clang-format off
	Show(SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().FillWidth(1.0f)[ SNew(SSpacer) ]
		+ SHorizontalBox::Slot().AutoWidth()
		[
			SAssignNew(Bar, SScrollBar).OnUserScrolled_Lambda([&Offsets](float Offset) { Offsets.Add(Offset); })
		]);
	// clang-format on
	Bar->SetState(0.0f, 0.5f);
	const double X = MiddleOf(*Bar).X;
	App().ProcessMouseButtonDownEvent(nullptr, Pointer(FVector2D(X, 30.0)));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(X, 90.0)));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(0.0, 900.0)));
	App().ProcessMouseButtonUpEvent(Pointer(FVector2D(0.0, 900.0)));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(X, 0.0)));
	ASSERT_EQ(Offsets.Num(), 2) << "only between down and up";
	EXPECT_NEAR(Offsets[0], 0.2f, 0.001f);
	EXPECT_NEAR(Offsets[1], 0.5f, 0.001f) << "as far as it goes, wherever the pointer is";
}

}
