#include "Framework/Docking/LayoutExtender.h"
#include "Framework/Docking/SDockingArea.h"
#include "Framework/Docking/TabManager.h"
#include "Misc/CoreDelegates.h"
#include "SlateTestFixture.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Text/STextBlock.h"

#include <type_traits>

namespace DockingTest
{

// Only a name is a tab's id: a literal would need two conversions.
static_assert(std::is_convertible_v<FName, FTabId>);
static_assert(!std::is_convertible_v<const char (&)[4], FTabId> && !std::is_convertible_v<const TCHAR (&)[4], FTabId>);
static_assert(!std::is_convertible_v<const char (&)[4], TOptional<FName>>);

static const FName TabName("TestTab");
static const FName OtherTabName("OtherTestTab");

class FDockingTest : public FSlateTest
{
protected:
	FDockingTest()
		: Manager(FGlobalTabmanager::Get())
	{
		Manager
			->RegisterNomadTabSpawner(TabName, FOnSpawnTab::CreateRaw(this, &FDockingTest::SpawnTab),
				FCanSpawnTab::CreateLambda([this](const FSpawnTabArgs&) { return bMaySpawn; }))
			.SetDisplayName(INVTEXT("Test"))
			.SetMenuType(ETabSpawnerMenuType::Hidden);
		Manager->RegisterNomadTabSpawner(OtherTabName, FOnSpawnTab::CreateRaw(this, &FDockingTest::SpawnTab));
		Show(Manager->GetMainArea());
	}
	virtual ~FDockingTest() override
	{
		for (const FName Name : { TabName, OtherTabName })
		{
			const TSharedPtr<SDockTab> Tab = Manager->FindExistingLiveTab(Name);
			if (Tab.IsValid())
			{
				Tab->RequestCloseTab();
			}
			Manager->UnregisterNomadTabSpawner(Name);
		}
		Manager->GetMainArea()->RestoreFrom(*FTabManager::NewPrimaryArea());
		Window->SetContent(SNullWidget::NullWidget);
	}

	TSharedRef<SDockTab> SpawnTab(const FSpawnTabArgs& Args)
	{
		++NumSpawned;
		OwnerWindow = Args.GetOwnerWindow();
		// clang-format off
		return SNew(SDockTab)
			.TabRole(ETabRole::NomadTab)
			.OnTabClosed_Lambda([this](TSharedRef<SDockTab>) { ++NumClosed; })
			[
				SAssignNew(Content, STextBlock).Text(INVTEXT("content"))
			];
		// clang-format on
	}

	const TSharedRef<FGlobalTabmanager> Manager;
	TWeakPtr<SWindow> OwnerWindow;
	TSharedPtr<STextBlock> Content;
	int32 NumSpawned = 0;
	int32 NumClosed = 0;
	bool bMaySpawn = true;
};

TEST_F(FDockingTest, BringsAnOpenTabToTheFrontInsteadOfOpeningASecond)
{
	const TSharedPtr<SDockTab> Tab = Manager->TryInvokeTab(TabName);
	ASSERT_TRUE(Tab.IsValid());
	EXPECT_TRUE(Tab->GetTabLabel().ToString().Equals(TEXT("Test"))) << "the spawner's display name";
	EXPECT_EQ(OwnerWindow.Pin(), Window);
	const TSharedPtr<SDockTab> Other = Manager->TryInvokeTab(OtherTabName);
	EXPECT_FALSE(Tab->IsForeground());
	EXPECT_EQ(Manager->TryInvokeTab(TabName, true), Tab);
	EXPECT_FALSE(Tab->IsForeground());
	EXPECT_EQ(Manager->TryInvokeTab(TabName), Tab);
	EXPECT_TRUE(Tab->IsForeground());
	EXPECT_EQ(NumSpawned, 2);
	Tick();
	Tick();
	Click(MiddleOf(*Other->GetChildren()->GetChildAt(0)->GetChildren()->GetChildAt(0)));
	EXPECT_TRUE(Other->IsForeground()) << "a click on its handle does so too";
}

TEST_F(FDockingTest, LetsGoOfTheContentOfAClosedTab)
{
	const TSharedPtr<SDockTab> Tab = Manager->TryInvokeTab(TabName);
	const TWeakPtr<STextBlock> WeakContent = Content;
	Content.Reset();
	EXPECT_TRUE(Tab->RequestCloseTab());
	EXPECT_EQ(NumClosed, 1);
	EXPECT_FALSE(WeakContent.IsValid());
	EXPECT_FALSE(Manager->FindExistingLiveTab(TabName).IsValid()) << "even while somebody holds the tab";
	EXPECT_TRUE(Manager->TryInvokeTab(TabName).IsValid());
	EXPECT_EQ(NumSpawned, 2);
}

TEST_F(FDockingTest, OpensNothingWithoutASpawnerOrAgainstItsWill)
{
	EXPECT_FALSE(Manager->TryInvokeTab(FName("NoSuchTab")).IsValid());
	bMaySpawn = false;
	EXPECT_FALSE(Manager->TryInvokeTab(TabName).IsValid());
	EXPECT_EQ(NumSpawned, 0);
	Manager->UnregisterNomadTabSpawner(FName("NoSuchTab"));
}

TEST_F(FDockingTest, LeavesAnOpenTabOpenWhenItsSpawnerGoes)
{
	const TSharedPtr<SDockTab> Tab = Manager->TryInvokeTab(TabName);
	Manager->UnregisterNomadTabSpawner(TabName);
	EXPECT_FALSE(Manager->HasTabSpawner(TabName));
	EXPECT_FALSE(Manager->TryInvokeTab(TabName).IsValid());
	EXPECT_TRUE(Tab->GetParentDockTabStack().IsValid()) << "closing it is up to the module";
	EXPECT_EQ(NumClosed, 0);
	EXPECT_TRUE(Tab->RequestCloseTab());
}

TEST_F(FDockingTest, ClosesEveryTabBeforeTheModulesGo)
{
	Manager->TryInvokeTab(TabName);
	const TWeakPtr<STextBlock> WeakContent = Content;
	Content.Reset();
	FCoreDelegates::GetOnEnginePreExit().Broadcast();
	EXPECT_EQ(NumClosed, 1);
	EXPECT_FALSE(WeakContent.IsValid());
}

/** Two tabs in stacks of their own, beside each other in a window of 400 by 300. */
class FDockingLayoutTest : public FDockingTest
{
protected:
	FDockingLayoutTest()
	{
		Manager->RestoreMainArea(*FTabManager::NewLayout("Test")->AddArea(
			FTabManager::NewPrimaryArea()
				->Split(FTabManager::NewStack()->SetSizeCoefficient(0.7f)->AddTab(TabName, ETabState::OpenedTab))
				->Split(FTabManager::NewStack()->SetSizeCoefficient(0.3f)->AddTab("Side", ETabState::ClosedTab))));
		Settle();
	}

	void Settle()
	{
		Tick();
		Tick();
	}

	TSharedRef<SDockTab> Find(FName Name) { return Manager->FindExistingLiveTab(Name).ToSharedRef(); }
	static double LeftOf(const TSharedRef<SDockTab>& Tab) { return RectOf(Tab).Left; }
	static FSlateRect RectOf(const TSharedRef<SDockTab>& Tab)
	{
		return Tab->GetContentHolder()->GetCachedGeometry().GetLayoutBoundingRect();
	}

	/** As with a mouse: pressed on the tab's label, moved in steps, let go. */
	void Drag(const TSharedRef<SDockTab>& Tab, const FVector2D& To)
	{
		const FVector2D From = MiddleOf(*Tab->GetChildren()->GetChildAt(0)->GetChildren()->GetChildAt(0));
		const auto Event = [](const FVector2D& Place) {
			return FPointerEvent(0, Place, Place, TSet<FKey>{ EKeys::LeftMouseButton }, EKeys::LeftMouseButton, 0.0f,
				FModifierKeysState());
		};
		App().ProcessMouseButtonDownEvent(nullptr, Event(From));
		App().ProcessMouseMoveEvent(Event(From + FVector2D(8.0, 0.0)));
		App().ProcessMouseMoveEvent(Event(To));
		Settle();
		App().ProcessMouseButtonUpEvent(Event(To));
		Settle();
	}
};

TEST_F(FDockingLayoutTest, OpensATabWhereTheLayoutHasAPlaceForIt)
{
	EXPECT_NEAR(RectOf(Find(TabName)).GetSize().X, 400.0, 1.0) << "a stack without open tabs takes no room";
	FLayoutExtender Extender;
	Extender.ExtendLayout(FTabId("Side"), ELayoutExtensionPosition::After, { OtherTabName, ETabState::ClosedTab });
	Extender.ExtendLayout(FTabId("Nowhere"), ELayoutExtensionPosition::After, { FName("X"), ETabState::OpenedTab });
	const TSharedRef<FTabManager::FLayout> Layout = Manager->PersistLayout();
	Layout->ProcessExtensions(Extender);
	Layout->ProcessExtensions(Extender);
	EXPECT_EQ(Layout->GetPrimaryArea()->GetChildNodes()[1]->AsStack()->GetTabs().Num(), 2) << "once";
	Manager->CloseAllTabs();
	Manager->RestoreMainArea(*FTabManager::FLayout::NewFromString(Layout->ToString()));
	Manager->TryInvokeTab(OtherTabName);
	Settle();
	EXPECT_NEAR(LeftOf(Find(OtherTabName)), 400.0 * 0.7, 5.0);
	EXPECT_LE(RectOf(Find(TabName)).Right, LeftOf(Find(OtherTabName)));
}

TEST_F(FDockingLayoutTest, DropsADraggedTabBesideOrAmongOthers)
{
	Manager->TryInvokeTab(OtherTabName);
	Settle();
	EXPECT_EQ(Find(OtherTabName)->GetParentDockTabStack(), Find(TabName)->GetParentDockTabStack());
	Drag(Find(OtherTabName), FVector2D(390.0, 200.0));
	EXPECT_GE(LeftOf(Find(OtherTabName)), RectOf(Find(TabName)).Right) << "at the right edge";
	Drag(Find(OtherTabName), FVector2D(100.0, 290.0));
	EXPECT_GE(RectOf(Find(OtherTabName)).Top, RectOf(Find(TabName)).Bottom) << "at the lower edge";
	Drag(Find(OtherTabName), FVector2D(200.0, 100.0));
	EXPECT_EQ(Find(OtherTabName)->GetParentDockTabStack(), Find(TabName)->GetParentDockTabStack()) << "in the middle";
	EXPECT_TRUE(Find(OtherTabName)->IsForeground());
	Drag(Find(OtherTabName), FVector2D(10.0, 150.0));
	EXPECT_LE(RectOf(Find(OtherTabName)).Right, LeftOf(Find(TabName))) << "at the left edge";
	Find(OtherTabName)->RequestCloseTab();
	Settle();
	EXPECT_NEAR(RectOf(Find(TabName)).GetSize().X, 400.0, 1.0);
	Manager->TryInvokeTab(OtherTabName);
	Settle();
	EXPECT_LE(RectOf(Find(OtherTabName)).Right, LeftOf(Find(TabName))) << "where it was closed";
}

TEST_F(FDockingLayoutTest, LeavesATabWhereItIsThatIsDroppedNowhereOrClicked)
{
	Manager->TryInvokeTab(OtherTabName);
	Settle();
	Drag(Find(OtherTabName), FVector2D(-50.0, -50.0));
	EXPECT_EQ(Find(OtherTabName)->GetParentDockTabStack(), Find(TabName)->GetParentDockTabStack());
	EXPECT_FALSE(App().IsDragDropping());
	Find(TabName)->ActivateInParent(ETabActivationCause::SetDirectly);
	Settle();
	Click(MiddleOf(*Find(OtherTabName)->GetChildren()->GetChildAt(0)->GetChildren()->GetChildAt(0)));
	EXPECT_TRUE(Find(OtherTabName)->IsForeground()) << "a press that trembles not is a click";
}

TEST_F(FDockingLayoutTest, ReadsNoLayoutOutOfAnotherText)
{
	for (const TCHAR* Text : { TEXT(""), TEXT("{"), TEXT("[]"), TEXT("{\"Nodes\":[]}") })
	{
		EXPECT_FALSE(FTabManager::FLayout::NewFromString(Text).IsValid());
	}
	FString Deep;
	for (int32 Index = 0; Index < 500; ++Index)
	{
		Deep += TEXT("{\"Type\":\"Splitter\",\"SizeCoefficient\":-1,\"Name\":\"x\",\"Nodes\":[");
	}
	for (int32 Index = 0; Index < 500; ++Index)
	{
		Deep += TEXT("]}");
	}
	FTabManager::FLayout::NewFromString(Deep);
}

using FDockingDeathTest = FDockingTest;

TEST_F(FDockingDeathTest, RefusesASecondSpawnerOfAnId)
{
	EXPECT_DEATH(Manager->RegisterNomadTabSpawner(TabName, FOnSpawnTab()), "registered already");
}

}
