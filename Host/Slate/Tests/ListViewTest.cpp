#include "SlateTestFixture.h"
#include "Widgets/Text/STextBlock.h"
#include "Widgets/Views/SListView.h"

namespace ListViewTest
{
using FItem = TSharedPtr<FString>;
using SItemList = SListView<FItem>;

constexpr float RowHeight = 30.0f; // ten rows in the window

class FListViewTest : public FSlateTest
{
protected:
	void ShowItems(int32 NumItems)
	{
		for (int32 Index = 0; Index < NumItems; ++Index)
		{
			Items.Add(MakeShared<FString>(FString::FromInt(Index)));
		}
		// clang-format off
		SAssignNew(List, SItemList)
			.ListItemsSource(&Items)
			.ItemHeight(RowHeight)
			.OnGenerateRow_Lambda([this](FItem Item, const TSharedRef<STableViewBase>& Owner) -> TSharedRef<ITableRow> {
				++NumMade;
				return SNew(STableRow<FItem>, Owner)[SNew(STextBlock).Text(FText::FromString(*Item))];
			})
			.OnSelectionChanged_Lambda([this](FItem Item, ESelectInfo::Type Cause) {
				Said += FString::Printf(TEXT("%s by %d "), Item ? **Item : TEXT("none"), static_cast<int32>(Cause));
			})
			.OnMouseButtonDoubleClick_Lambda([this](FItem Item) { Said += TEXT("opened ") + *Item; });
		// clang-format on
		Show(List.ToSharedRef());
	}
	void DoubleClick(const FVector2D& Place)
	{
		Click(Place);
		App().ProcessMouseButtonDoubleClickEvent(nullptr, Pointer(Place));
		App().ProcessMouseButtonUpEvent(Pointer(Place));
	}
	FString GetSelected() const
	{
		const TArray<FItem> Selected = List->GetSelectedItems();
		return Selected.Num() > 0 ? *Selected[0] : TEXT("none");
	}

	TArray<FItem> Items;
	TSharedPtr<SItemList> List;
	FString Said;
	int32 NumMade = 0;
};

TEST_F(FListViewTest, MakesTheRowsInViewAloneAndKeepsThemWhileTheyAre)
{
	ShowItems(20000);
	const int32 NumInView = NumMade;
	EXPECT_LE(NumInView, 11);
	EXPECT_EQ(List->GetNumGeneratedChildren(), NumInView);
	Tick();
	EXPECT_EQ(NumMade, NumInView) << "nothing has moved";
	Wheel(FVector2D(50.0, 50.0), -5.0f);
	Tick();
	EXPECT_EQ(NumMade, NumInView + 8) << "those that came into view";
	List->ScrollToBottom();
	Tick();
	EXPECT_DOUBLE_EQ(List->GetScrollOffset(), 19990.0);
	Wheel(FVector2D(50.0, 50.0), -5.0f);
	EXPECT_DOUBLE_EQ(List->GetScrollOffset(), 19990.0) << "there is no more";
}

TEST_F(FListViewTest, TheMouseSelectsAndOpens)
{
	ShowItems(100);
	Wheel(FVector2D(50.0, 50.0), -5.0f); // eight rows
	Tick();
	DoubleClick(FVector2D(50.0, RowHeight * 2.5));
	EXPECT_TRUE(Said.Equals(TEXT("10 by 2 opened 10"))) << TCHAR_TO_UTF8(*Said);
	EXPECT_TRUE(List->HasKeyboardFocus());
}

TEST_F(FListViewTest, AClickBelowTheLastItemLeavesTheSelection)
{
	ShowItems(3);
	Click(FVector2D(50.0, RowHeight * 0.5));
	DoubleClick(FVector2D(50.0, RowHeight * 5.5));
	EXPECT_TRUE(Said.Equals(TEXT("0 by 2 "))) << TCHAR_TO_UTF8(*Said);
}

TEST_F(FListViewTest, KeysMoveTheSelectionAndScrollToIt)
{
	ShowItems(100);
	App().SetKeyboardFocus(List, EFocusCause::SetDirectly);
	const struct
	{
		FKey Key;
		const TCHAR* Selected;
	} Steps[] = { { EKeys::Down, TEXT("0") }, { EKeys::Down, TEXT("1") }, { EKeys::PageDown, TEXT("10") },
		{ EKeys::End, TEXT("99") }, { EKeys::Down, TEXT("99") }, { EKeys::Up, TEXT("98") },
		{ EKeys::Home, TEXT("0") } };
	for (const auto& Step : Steps)
	{
		Press(Step.Key);
		Tick();
		EXPECT_TRUE(GetSelected().Equals(Step.Selected)) << TCHAR_TO_UTF8(*GetSelected());
		const double Index = FCString::Atof(Step.Selected);
		EXPECT_LE(List->GetScrollOffset(), Index);
		EXPECT_GE(List->GetScrollOffset(), Index - 9.0);
	}
}

TEST_F(FListViewTest, ShowsOtherItemsAfterARefreshAndKeepsTheSelection)
{
	ShowItems(100);
	List->ScrollToBottom();
	List->SetSelection(Items[3]);
	const FItem Kept = Items[3];
	Items.Empty();
	Items.Add(Kept);
	List->RequestListRefresh();
	Tick();
	EXPECT_EQ(List->GetNumGeneratedChildren(), 1);
	EXPECT_EQ(List->GetScrollOffset(), 0.0);
	EXPECT_TRUE(List->IsItemSelected(Kept));
	Items.Empty();
	List->RequestListRefresh();
	Tick();
	EXPECT_EQ(List->GetNumGeneratedChildren(), 0);
	Press(EKeys::Down);
}
}
