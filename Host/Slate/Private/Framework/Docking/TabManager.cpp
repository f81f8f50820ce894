#include "Framework/Docking/TabManager.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/SDockingArea.h"
#include "Misc/CoreDelegates.h"
#include "Widgets/Docking/SDockTab.h"

const TSharedRef<FGlobalTabmanager>& FGlobalTabmanager::Get()
{
	static const TSharedRef<FGlobalTabmanager> Manager = [] {
		const TSharedRef<FGlobalTabmanager> NewManager = MakeShared<FGlobalTabmanager>();
		// What is in a tab is gone before the module whose code it runs.
		FCoreDelegates::GetOnEnginePreExit().AddSP(NewManager, &FTabManager::CloseAllTabs);
		return NewManager;
	}();
	return Manager;
}

FTabSpawnerEntry& FGlobalTabmanager::RegisterNomadTabSpawner(
	const FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& CanSpawnTab)
{
	return AddSpawner(TabId, OnSpawnTab, CanSpawnTab);
}

FTabSpawnerEntry& FTabManager::AddSpawner(FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& CanSpawnTab)
{
	checkf(!HasTabSpawner(TabId), TEXT("A spawner for the tab '%s' is registered already"), *TabId.ToString());
	const TSharedRef<FTabSpawnerEntry> Entry = MakeShared<FTabSpawnerEntry>(TabId, OnSpawnTab, CanSpawnTab);
	Spawners.Add(TabId, Entry);
	return Entry.Get();
}

TSharedRef<SDockingArea> FTabManager::GetMainArea()
{
	if (!MainArea.IsValid())
	{
		MainArea = SNew(SDockingArea);
	}
	return MainArea.ToSharedRef();
}

void FTabManager::CloseAllTabs()
{
	const TArray<TSharedRef<SDockTab>> Tabs = GetMainArea()->GetTabs();
	for (const TSharedRef<SDockTab>& Tab : Tabs)
	{
		Tab->CloseWithoutAsking();
	}
}

TSharedPtr<SDockTab> FTabManager::TryInvokeTab(const FTabId& TabId, bool bInvokeAsInactive)
{
	const TSharedPtr<FTabSpawnerEntry> Spawner = FindTabSpawnerFor(TabId.TabType);
	if (!Spawner.IsValid())
	{
		return nullptr;
	}
	const TSharedPtr<SDockTab> LiveTab = FindExistingLiveTab(TabId);
	if (!LiveTab.IsValid())
	{
		return SpawnTab(*Spawner, TabId, bInvokeAsInactive);
	}
	if (!bInvokeAsInactive)
	{
		LiveTab->ActivateInParent(ETabActivationCause::SetDirectly);
	}
	return LiveTab;
}

TSharedPtr<SDockTab> FTabManager::SpawnTab(FTabSpawnerEntry& Spawner, const FTabId& TabId, bool bInvokeAsInactive)
{
	const TSharedPtr<SWindow> Window =
		FSlateApplication::IsInitialized() ? FSlateApplication::Get().FindWidgetWindow(GetMainArea()) : nullptr;
	const FSpawnTabArgs Args(Window, TabId);
	if (!Spawner.OnSpawnTab.IsBound() || (Spawner.CanSpawnTab.IsBound() && !Spawner.CanSpawnTab.Execute(Args)))
	{
		return nullptr;
	}
	const TSharedRef<SDockTab> Tab = Spawner.OnSpawnTab.Execute(Args);
	checkf(!Tab->GetParentDockTabStack().IsValid(), TEXT("The spawner of '%s' must make a new tab each time"),
		*TabId.ToString());
	Tab->SetLayoutIdentifier(TabId);
	if (!Tab->HasLabel())
	{
		Tab->SetLabel(Spawner.GetDisplayName());
	}
	Spawner.SpawnedTab = Tab;
	GetMainArea()->AddTab(Tab, !bInvokeAsInactive);
	return Tab;
}

void FTabManager::InsertNewDocumentTab(
	FName PlaceholderId, const FLiveTabSearch& SearchPreference, const TSharedRef<SDockTab>& UnmanagedTab)
{
	UnmanagedTab->SetLayoutIdentifier(PlaceholderId);
	const FName Beside = SearchPreference.SearchForTabId;
	GetMainArea()->AddTabBeside(UnmanagedTab, Beside.IsNone() ? PlaceholderId : Beside, true);
}

TSharedPtr<SDockTab> FTabManager::FindExistingLiveTab(const FTabId& TabId) const
{
	const TSharedPtr<FTabSpawnerEntry> Spawner = Spawners.FindRef(TabId.TabType);
	const TSharedPtr<SDockTab> Tab = Spawner.IsValid() ? Spawner->SpawnedTab.Pin() : nullptr;
	// A closed tab may be held on to by somebody else.
	return Tab.IsValid() && Tab->GetParentDockTabStack().IsValid() ? Tab : nullptr;
}

void FTabManager::RestoreMainArea(const FLayout& Layout)
{
	GetMainArea()->RestoreFrom(*Layout.GetPrimaryArea());
	OpenTabs(*Layout.GetPrimaryArea());
}

void FTabManager::OpenTabs(FLayoutNode& Node)
{
	if (const TSharedPtr<FSplitter> Splitter = Node.AsSplitter())
	{
		for (const TSharedRef<FLayoutNode>& Child : Splitter->GetChildNodes())
		{
			OpenTabs(*Child);
		}
		return;
	}
	const FStack& Stack = *Node.AsStack();
	for (const FTab& Tab : Stack.GetTabs())
	{
		if (Tab.TabState == ETabState::OpenedTab)
		{
			// Null for a tab whose plugin is not here any more.
			TryInvokeTab(Tab.TabId, true);
		}
	}
	if (const TSharedPtr<SDockTab> Foreground = FindExistingLiveTab(Stack.GetForegroundTabId()))
	{
		Foreground->ActivateInParent(ETabActivationCause::SetDirectly);
	}
}

TSharedRef<FTabManager::FLayout> FTabManager::PersistLayout() const
{
	return NewLayout("LevelEditor_Layout")->AddArea(MainArea->Persist());
}
