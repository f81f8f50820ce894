#include "ToolMenus.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Commands/Commands.h"
#include "Framework/Commands/UICommandList.h"
#include "Misc/CoreDelegates.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#include <gtest/gtest.h>
#include <type_traits>

#define LOCTEXT_NAMESPACE "ToolMenusTest"

namespace ToolMenusTest
{

// An owner is named by an address that may be written through, so `this` of a const method is none.
static_assert(std::is_convertible_v<int*, FToolMenuOwner> && !std::is_convertible_v<const int*, FToolMenuOwner>);

class FMenuCommands : public TCommands<FMenuCommands>
{
public:
	FMenuCommands()
		: TCommands<FMenuCommands>("MenuTest", INVTEXT("Menu test"), NAME_None, "MenuTestStyle")
	{
	}
	virtual void RegisterCommands() override
	{
		UI_COMMAND(OpenWindow, "Open", "Opens the window", EUserInterfaceActionType::Button, FInputChord());
	}
	TSharedPtr<FUICommandInfo> OpenWindow;
};

class FToolMenusTest : public testing::Test
{
protected:
	FToolMenusTest()
		: List(MakeShared<FUICommandList>())
	{
		FSlateApplication::Create();
		FMenuCommands::Register();
		List->MapAction(FMenuCommands::Get().OpenWindow, FExecuteAction::CreateLambda([this] { ++NumRuns; }),
			FCanExecuteAction::CreateLambda([this] { return bMayRun; }));
	}
	virtual ~FToolMenusTest() override
	{
		UToolMenus::UnregisterOwner(this);
		UToolMenus::UnregisterOwner(FToolMenuOwner("SomebodyElse"));
		FMenuCommands::Unregister();
		FSlateApplication::Shutdown();
	}

	static FToolMenuSection& Section(const TCHAR* Menu, const TCHAR* Name)
	{
		return UToolMenus::Get()->ExtendMenu(Menu)->FindOrAddSection(Name);
	}

	const TSharedRef<FUICommandList> List;
	int32 NumRuns = 0;
	bool bMayRun = true;
};

TEST_F(FToolMenusTest, EntriesAreAddedFoundAndRemovedByTheirNames)
{
	UToolMenus& Menus = *UToolMenus::Get();
	const FToolMenuOwnerScoped OwnerScoped(this);
	UToolMenu* const Menu = Menus.ExtendMenu("Test.Names");
	const auto Add = [Menu](const TCHAR* Name, const FToolUIActionChoice& Action) {
		return Menu
			->AddMenuEntry("Part",
				FToolMenuEntry::InitMenuEntry(Name, FText::FromString(Name), FText::GetEmpty(), FSlateIcon(), Action))
			.Name;
	};
	EXPECT_EQ(Add(TEXT("Own"), FExecuteAction::CreateLambda([this] { ++NumRuns; })), FName("Own"));
	Add(TEXT("Listed"), FToolUIActionChoice(FMenuCommands::Get().OpenWindow, List));
	Add(TEXT("Dead"), FToolUIActionChoice());
	const FToolMenuSection& Part = Section(TEXT("Test.Names"), TEXT("Part"));
	for (const TCHAR* const Name : { TEXT("Own"), TEXT("Listed") })
	{
		ASSERT_TRUE(Part.FindEntry(Name)) << TCHAR_TO_UTF8(Name);
		ASSERT_TRUE(Part.FindEntry(Name)->GetAction()) << TCHAR_TO_UTF8(Name);
		Part.FindEntry(Name)->GetAction()->ExecuteAction.ExecuteIfBound();
	}
	EXPECT_EQ(NumRuns, 2);
	EXPECT_EQ(Part.FindEntry("Dead")->GetAction(), nullptr);
	Menus.RemoveEntry("Test.Names", "Part", "Own");
	Menus.RemoveEntry("Test.Names", "Part", "Own");
	Menus.RemoveEntry("Test.Names", "NoSuchPart", "Listed");
	Menus.RemoveEntry("Test.NoSuchMenu", "Part", "Listed");
	EXPECT_EQ(Part.FindEntry("Own"), nullptr);
	EXPECT_TRUE(Part.FindEntry("Listed"));
	Menus.RemoveSection("Test.Names", "Part");
	EXPECT_EQ(Menu->FindSection("Part"), nullptr);
}

TEST_F(FToolMenusTest, TakesNameAndTextsFromTheCommandUnlessOverridden)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	Section(TEXT("Test.Window"), TEXT("Layout")).AddMenuEntryWithCommandList(FMenuCommands::Get().OpenWindow, List);
	const FToolMenuEntry* const Plain = Section(TEXT("Test.Window"), TEXT("Layout")).FindEntry("OpenWindow");
	ASSERT_NE(Plain, nullptr);
	EXPECT_TRUE(Plain->Label.Get().ToString().Equals(TEXT("Open")));
	EXPECT_EQ(Plain->Icon.Get().GetStyleName(), FName("MenuTest.OpenWindow"));

	// clang-format off
	FToolMenuEntry& Button = Section(TEXT("Test.ToolBar"), TEXT("Tools")).AddEntry(FToolMenuEntry::InitToolBarButton(
		FMenuCommands::Get().OpenWindow, LOCTEXT("Label", "Go"), LOCTEXT("Tip", "Goes"),
		FSlateIcon("MenuTestStyle", "Icon", "Icon.Large"), NAME_None, FName("ToolBarOpen")));
	// clang-format on
	Button.SetCommandList(List);
	EXPECT_EQ(Section(TEXT("Test.ToolBar"), TEXT("Tools")).FindEntry("OpenWindow"), nullptr);
	EXPECT_TRUE(Section(TEXT("Test.ToolBar"), TEXT("Tools"))
					.FindEntry("ToolBarOpen")
					->Label.Get()
					.ToString()
					.Equals(TEXT("Go")));
}

TEST_F(FToolMenusTest, RemovesOnlyWhatWasAddedUnderALiveOwner)
{
	FToolMenuSection& Shared = Section(TEXT("Test.Owned"), TEXT("Shared"));
	const FToolUIActionChoice Nothing;
	{
		FToolMenuOwnerScoped OwnerScoped(this);
		Shared.AddMenuEntry("Mine", INVTEXT("Mine"), FText(), FSlateIcon(), Nothing);
		{
			FToolMenuOwnerScoped Inner("SomebodyElse");
			Shared.AddMenuEntry("Theirs", INVTEXT("Theirs"), FText(), FSlateIcon(), Nothing);
		}
		Shared.AddMenuEntry("MineToo", INVTEXT("MineToo"), FText(), FSlateIcon(), Nothing);
	}
	Shared.AddMenuEntry("Nobodys", INVTEXT("Nobodys"), FText(), FSlateIcon(), Nothing);
	UToolMenus::UnregisterOwner(this);
	EXPECT_EQ(Shared.FindEntry("Mine"), nullptr);
	EXPECT_EQ(Shared.FindEntry("MineToo"), nullptr);
	EXPECT_NE(Shared.FindEntry("Theirs"), nullptr);
	EXPECT_NE(Shared.FindEntry("Nobodys"), nullptr);
	UToolMenus::UnregisterOwner(FToolMenuOwner());
	EXPECT_NE(Shared.FindEntry("Nobodys"), nullptr);
	UToolMenus::Get()->RemoveSection("Test.Owned", "Shared");
}

TEST_F(FToolMenusTest, ReplacesAnEntryOfTheSameName)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	FToolMenuSection& Tools = Section(TEXT("Test.Replace"), TEXT("Tools"));
	Tools.AddMenuEntry("Same", INVTEXT("First"), FText(), FSlateIcon(), FToolUIActionChoice());
	Tools.AddMenuEntry("Same", INVTEXT("Second"), FText(), FSlateIcon(), FToolUIActionChoice());
	ASSERT_EQ(Tools.Blocks.Num(), 1);
	EXPECT_TRUE(Tools.Blocks[0].Label.Get().ToString().Equals(TEXT("Second")));
}

TEST_F(FToolMenusTest, KeepsWhatExtendedAMenuBeforeItWasRegistered)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	EXPECT_EQ(UToolMenus::Get()->FindMenu("Test.Late"), nullptr);
	Section(TEXT("Test.Late"), TEXT("Tools")).AddSeparator("Line");
	EXPECT_FALSE(UToolMenus::Get()->IsMenuRegistered("Test.Late"));
	UToolMenu* const Menu = UToolMenus::Get()->RegisterMenu("Test.Late", NAME_None, EMultiBoxType::ToolBar);
	EXPECT_TRUE(UToolMenus::Get()->IsMenuRegistered("Test.Late"));
	EXPECT_NE(Menu->FindSection("Tools")->FindEntry("Line"), nullptr);
	EXPECT_EQ(Menu->MenuType, EMultiBoxType::ToolBar);
}

TEST_F(FToolMenusTest, ShowsEntriesAsButtonsThatFollowTheMenu)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	UToolMenus::Get()->RegisterMenu("Test.Shown", NAME_None, EMultiBoxType::Menu, false);
	FToolMenuSection& Tools = Section(TEXT("Test.Shown"), TEXT("Tools"));
	Tools.AddMenuEntryWithCommandList(FMenuCommands::Get().OpenWindow, List);
	Tools.AddMenuEntry(
		FMenuCommands::Get().OpenWindow, INVTEXT("Dead"), FText(), FSlateIcon(), NAME_None, FName("Dead"));
	const TSharedRef<SWindow> Window = FSlateApplication::Get().AddWindow(SNew(SWindow));
	Window->SetContent(UToolMenus::Get()->GenerateWidget("Test.Shown", FToolMenuContext()));
	FSlateApplication::Get().Tick();

	const TSharedRef<IAccessibleWidget> Root = FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window);
	ASSERT_EQ(Root->GetNumberOfChildren(), 2);
	EXPECT_TRUE(Root->GetChildAt(0)->GetWidgetName().Equals(TEXT("Open")));
	EXPECT_TRUE(Root->GetChildAt(0)->GetHelpText().Equals(TEXT("Opens the window")));
	Root->GetChildAt(0)->AsActivatable()->Activate();
	EXPECT_EQ(NumRuns, 1);
	EXPECT_FALSE(Root->GetChildAt(1)->IsEnabled()) << "an entry without a command list is dead";
	bMayRun = false;
	FSlateApplication::Get().Tick();
	EXPECT_FALSE(Root->GetChildAt(0)->IsEnabled());

	UToolMenus::UnregisterOwner(this);
	FSlateApplication::Get().Tick();
	EXPECT_EQ(Root->GetNumberOfChildren(), 0);
}

TEST_F(FToolMenusTest, PutsEntriesWhereTheirPositionsSay)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	FToolMenuSection& Tools = Section(TEXT("Test.Order"), TEXT("Tools"));
	const auto Add = [&Tools](const TCHAR* Name, const FToolMenuInsert& Position) {
		FToolMenuEntry Entry = FToolMenuEntry::InitSeparator(Name);
		Entry.InsertPosition = Position;
		Tools.AddEntry(Entry);
	};
	Add(TEXT("BeforeB"), FToolMenuInsert("B", EToolMenuInsertType::Before));
	Add(TEXT("A"), FToolMenuInsert());
	Add(TEXT("B"), FToolMenuInsert());
	Add(TEXT("Top"), FToolMenuInsert(NAME_None, EToolMenuInsertType::First));
	TArray<FString> Order;
	const TArray<FToolMenuSection> Sections = UToolMenus::Get()->CollectSections("Test.Order");
	for (const FToolMenuEntry& Entry : Sections[0].Blocks)
	{
		Order.Add(Entry.Name.ToString());
	}
	EXPECT_EQ(Order, (TArray<FString>{ TEXT("Top"), TEXT("A"), TEXT("BeforeB"), TEXT("B") }));
}

TEST_F(FToolMenusTest, OpensTheMenusOfAMenuBarByMouseAndByKeys)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	FSlateApplication& App = FSlateApplication::Get();
	UToolMenu* const Bar = UToolMenus::Get()->RegisterMenu("Test.Bar", NAME_None, EMultiBoxType::MenuBar, false);
	Section(TEXT("Test.Bar.View"), TEXT("Early")).AddMenuEntryWithCommandList(FMenuCommands::Get().OpenWindow, List);
	UToolMenu* const Edit = Bar->AddSubMenu(FToolMenuOwner(this), NAME_None, "Edit", INVTEXT("Edit"));
	Bar->AddSubMenu(FToolMenuOwner(this), NAME_None, "View", INVTEXT("View"));
	Edit->FindOrAddSection("Only").AddMenuEntry("Dead", INVTEXT("Dead"), FText(), FSlateIcon(), FToolUIActionChoice());
	const TSharedRef<SWindow> Window = App.AddWindow(SNew(SWindow));
	Window->SetContent(UToolMenus::Get()->GenerateWidget("Test.Bar", FToolMenuContext()));
	App.Tick();
	const TSharedRef<IAccessibleWidget> Root = FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window);
	ASSERT_EQ(Root->GetNumberOfChildren(), 2);

	Root->GetChildAt(1)->AsActivatable()->Activate();
	App.Tick();
	ASSERT_EQ(Root->GetNumberOfChildren(), 3);
	ASSERT_EQ(Root->GetChildAt(2)->GetNumberOfChildren(), 1) << "what was there before the menu was is in it";
	Root->GetChildAt(2)->GetChildAt(0)->AsActivatable()->Activate();
	EXPECT_EQ(NumRuns, 1);
	EXPECT_FALSE(App.AnyMenusVisible()) << "choosing closes the menu";

	const auto Press = [&App](const FKey& Key) {
		App.ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
		App.ProcessKeyUpEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
		App.Tick();
	};
	Root->GetChildAt(0)->SetFocus();
	Press(EKeys::Down);
	EXPECT_TRUE(Root->GetChildAt(2)->GetChildAt(0)->GetWidgetName().Equals(TEXT("Dead")));
	Press(EKeys::Right);
	ASSERT_EQ(Root->GetNumberOfChildren(), 3);
	EXPECT_TRUE(Root->GetChildAt(2)->GetChildAt(0)->HasFocus());
	Press(EKeys::Enter);
	EXPECT_EQ(NumRuns, 2);
	EXPECT_TRUE(Root->GetChildAt(0)->HasFocus()) << "where the focus was before";
}

TEST_F(FToolMenusTest, OpensMenusInMenusAndLeavesThemOneByOne)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	FSlateApplication& App = FSlateApplication::Get();
	UToolMenu* const Bar = UToolMenus::Get()->RegisterMenu("Test.Deep", NAME_None, EMultiBoxType::MenuBar, false);
	UToolMenu* const View = Bar->AddSubMenu(FToolMenuOwner(this), NAME_None, "View", INVTEXT("View"));
	Bar->AddSubMenu(FToolMenuOwner(this), NAME_None, "Help", INVTEXT("Help"));
	UToolMenu* const Zoom = View->AddSubMenu(FToolMenuOwner(this), "Size", "Zoom", INVTEXT("Zoom"));
	UToolMenu* const Fine = Zoom->AddSubMenu(FToolMenuOwner(this), "Steps", "Fine", INVTEXT("Fine"));
	Fine->FindOrAddSection("Only").AddMenuEntryWithCommandList(FMenuCommands::Get().OpenWindow, List);
	const TSharedRef<SWindow> Window = App.AddWindow(SNew(SWindow));
	Window->SetContent(UToolMenus::Get()->GenerateWidget("Test.Deep", FToolMenuContext()));
	App.Tick();
	const TSharedRef<IAccessibleWidget> Root = FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window);
	const auto Press = [&App](const FKey& Key) {
		App.ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
		App.ProcessKeyUpEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
		App.Tick();
	};
	const auto ExpectFocus = [&App](const TCHAR* Name, const char* When) {
		const TSharedPtr<SWidget> Focused = App.GetKeyboardFocusedWidget();
		ASSERT_TRUE(Focused.IsValid()) << When;
		EXPECT_TRUE(Focused->GetAccessibleText().ToString().Equals(Name)) << When;
	};
	Root->GetChildAt(0)->SetFocus();
	Press(EKeys::Down);
	ExpectFocus(TEXT("Zoom"), "in the first menu");
	Press(EKeys::Right);
	ExpectFocus(TEXT("Fine"), "in the menu of the menu");
	Press(EKeys::Right);
	ExpectFocus(TEXT("Open"), "one deeper");
	Press(EKeys::Left);
	ExpectFocus(TEXT("Fine"), "back");
	Press(EKeys::Right);
	Press(EKeys::Escape);
	ExpectFocus(TEXT("Fine"), "Escape leaves one menu");
	Press(EKeys::Right);
	Press(EKeys::Enter);
	EXPECT_EQ(NumRuns, 1);
	EXPECT_FALSE(App.AnyMenusVisible()) << "choosing closes all of them";
	ExpectFocus(TEXT("View"), "where it came from");
}

TEST_F(FToolMenusTest, GivesTheFocusBackWhenItsButtonIsClickedAgain)
{
	FToolMenuOwnerScoped OwnerScoped(this);
	FSlateApplication& App = FSlateApplication::Get();
	UToolMenu* const Bar = UToolMenus::Get()->RegisterMenu("Test.Again", NAME_None, EMultiBoxType::MenuBar, false);
	UToolMenu* const View = Bar->AddSubMenu(FToolMenuOwner(this), NAME_None, "View", INVTEXT("View"));
	View->FindOrAddSection("Only").AddMenuEntryWithCommandList(FMenuCommands::Get().OpenWindow, List);
	TSharedPtr<SMultiLineEditableText> Box;
	const TSharedRef<SWidget> BarWidget = UToolMenus::Get()->GenerateWidget("Test.Again", FToolMenuContext());
	const TSharedRef<SWindow> Window = App.AddWindow(SNew(SWindow));
	// clang-format off
	Window->SetContent(
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()[ BarWidget ]
		+ SVerticalBox::Slot().AutoHeight()[ SAssignNew(Box, SMultiLineEditableText) ]);
	// clang-format on
	App.Tick();
	App.SetKeyboardFocus(Box);
	const TSharedPtr<SWidget> Before = App.GetKeyboardFocusedWidget();
	const auto ClickMenu = [&] {
		const FPointerEvent Event(0, FVector2D(5.0, 5.0), FVector2D(5.0, 5.0), TSet<FKey>(), EKeys::LeftMouseButton,
			0.0f, FModifierKeysState());
		App.ProcessMouseButtonDownEvent(nullptr, Event);
		App.ProcessMouseButtonUpEvent(Event);
		App.Tick();
	};
	ClickMenu();
	EXPECT_TRUE(App.AnyMenusVisible());
	ClickMenu();
	EXPECT_FALSE(App.AnyMenusVisible());
	EXPECT_EQ(App.GetKeyboardFocusedWidget(), Before);
}

// One test in this order: the engine comes up once in a process.
TEST_F(FToolMenusTest, RunsStartupCallbacksOnceWhenTheEditorIsUp)
{
	int32 NumCalls = 0;
	const auto Count = FSimpleDelegate::CreateLambda([&NumCalls] { ++NumCalls; });
	UToolMenus::RegisterStartupCallback(Count);
	const FDelegateHandle TakenBack =
		UToolMenus::RegisterStartupCallback(FSimpleDelegate::CreateLambda([&NumCalls] { NumCalls += 100; }));
	UToolMenus::UnRegisterStartupCallback(TakenBack);
	struct FModule
	{
		void RegisterMenus() { NumCalls += 1000; }
		int32& NumCalls;
	} Gone{ NumCalls };
	UToolMenus::RegisterStartupCallback(FSimpleDelegate::CreateRaw(&Gone, &FModule::RegisterMenus));
	UToolMenus::UnRegisterStartupCallback(&Gone);
	EXPECT_EQ(NumCalls, 0) << "the menus are not up yet";
	FCoreDelegates::GetOnPostEngineInit().Broadcast();
	EXPECT_EQ(NumCalls, 1);
	FCoreDelegates::GetOnPostEngineInit().Broadcast();
	EXPECT_EQ(NumCalls, 1);
	UToolMenus::RegisterStartupCallback(Count);
	EXPECT_EQ(NumCalls, 2) << "now at once";
	FSlateApplication::Shutdown();
	UToolMenus::RegisterStartupCallback(Count);
	EXPECT_EQ(NumCalls, 2) << "never without a user interface";
}

using FToolMenusDeathTest = FToolMenusTest;

TEST_F(FToolMenusDeathTest, RefusesAnEntryWithoutACommand)
{
	EXPECT_DEATH(
		Section(TEXT("Test.Null"), TEXT("Tools")).AddMenuEntryWithCommandList(nullptr, List), "not registered");
}

}

#undef LOCTEXT_NAMESPACE
