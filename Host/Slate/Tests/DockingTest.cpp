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
	EXPECT_TRUE(Tab->GetParentArea().IsValid()) << "closing it is up to the module";
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

using FDockingDeathTest = FDockingTest;

TEST_F(FDockingDeathTest, RefusesASecondSpawnerOfAnId)
{
	EXPECT_DEATH(Manager->RegisterNomadTabSpawner(TabName, FOnSpawnTab()), "registered already");
}

}
