#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/WorkspaceItem.h"
#include "Misc/Attribute.h"

class FSpawnTabArgs;
class FTabManager;
class SDockingArea;
class SDockTab;
class SWindow;

/** Names a kind of tab. */
struct FTabId
{
	FTabId() = default;
	FTabId(const FName InTabType)
		: TabType(InTabType)
	{
	}

	FName TabType;

	FString ToString() const { return TabType.ToString(); }
	bool operator==(const FTabId& Other) const = default;
};

DECLARE_DELEGATE_RetVal_OneParam(TSharedRef<SDockTab>, FOnSpawnTab, const FSpawnTabArgs&);
DECLARE_DELEGATE_RetVal_OneParam(bool, FCanSpawnTab, const FSpawnTabArgs&);

class FSpawnTabArgs
{
public:
	FSpawnTabArgs(const TSharedPtr<SWindow>& InOwnerWindow, const FTabId& InTabBeingSpawnedId)
		: TabId(InTabBeingSpawnedId)
		, OwnerWindow(InOwnerWindow)
	{
	}

	/** Null while the tabs are not shown in a window. */
	const TSharedPtr<SWindow>& GetOwnerWindow() const { return OwnerWindow; }

private:
	FTabId TabId;
	TSharedPtr<SWindow> OwnerWindow;
};

namespace ETabSpawnerMenuType
{
enum Type : int
{
	Enabled,
	Disabled,
	/** Not listed in a menu; can be invoked all the same. */
	Hidden,
};
}

/** How a kind of tab is made, and how it is listed. The setters chain. */
struct FTabSpawnerEntry : public FWorkspaceItem
{
	FTabSpawnerEntry(const FName& InTabType, const FOnSpawnTab& InSpawnTabMethod, const FCanSpawnTab& InCanSpawnTab)
		: TabType(InTabType)
		, OnSpawnTab(InSpawnTabMethod)
		, CanSpawnTab(InCanSpawnTab)
	{
	}

	FTabSpawnerEntry& SetDisplayName(const FText& InDisplayName)
	{
		DisplayName = InDisplayName;
		return *this;
	}
	FTabSpawnerEntry& SetTooltipText(const FText& InTooltipText)
	{
		TooltipText = InTooltipText;
		return *this;
	}
	FTabSpawnerEntry& SetIcon(const FSlateIcon& InIcon)
	{
		Icon = InIcon;
		return *this;
	}
	FTabSpawnerEntry& SetMenuType(const TAttribute<ETabSpawnerMenuType::Type>& InMenuType)
	{
		MenuType = InMenuType;
		return *this;
	}

private:
	friend class FTabManager;

	const FName TabType;
	const FOnSpawnTab OnSpawnTab;
	const FCanSpawnTab CanSpawnTab;
	TAttribute<ETabSpawnerMenuType::Type> MenuType;
	TWeakPtr<SDockTab> SpawnedTab;
};

/** Where a new tab goes: into the row of a tab that is open. There is one row here. */
struct FLiveTabSearch
{
	explicit FLiveTabSearch(FName InSearchForTabId = NAME_None)
		: SearchForTabId(InSearchForTabId)
	{
	}

	FName SearchForTabId;
};

/** Opens tabs by their ids. */
class FTabManager : public TSharedFromThis<FTabManager>
{
public:
	virtual ~FTabManager() = default;

	/**
	 * Opens a tab, or brings the open one to the front; there is never a second one of the same id.
	 *
	 * @return null when nothing is registered for the id, or when the tab cannot be opened now
	 */
	virtual TSharedPtr<SDockTab> TryInvokeTab(const FTabId& TabId, bool bInvokeAsInactive = false);
	/** Shows a tab that no spawner has made, such as that of a document, in front of the others. */
	void InsertNewDocumentTab(
		FName PlaceholderId, const FLiveTabSearch& SearchPreference, const TSharedRef<SDockTab>& UnmanagedTab);
	/** Null when it is not open. */
	TSharedPtr<SDockTab> FindExistingLiveTab(const FTabId& TabId) const;
	bool HasTabSpawner(FName TabId) const { return Spawners.Contains(TabId); }
	TSharedPtr<FTabSpawnerEntry> FindTabSpawnerFor(FName TabId) { return Spawners.FindRef(TabId); }

	/** Host: where the tabs are. The main window shows it. */
	TSharedRef<SDockingArea> GetMainArea();
	/** Closes all tabs without asking them. */
	void CloseAllTabs();

protected:
	FTabSpawnerEntry& AddSpawner(FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& CanSpawnTab);
	void RemoveSpawner(FName TabId) { Spawners.Remove(TabId); }

private:
	TSharedPtr<SDockTab> SpawnTab(FTabSpawnerEntry& Spawner, const FTabId& TabId, bool bInvokeAsInactive);

	TMap<FName, TSharedPtr<FTabSpawnerEntry>> Spawners;
	TSharedPtr<SDockingArea> MainArea;
};

class FGlobalTabmanager : public FTabManager
{
public:
	static const TSharedRef<FGlobalTabmanager>& Get();

	/** Asserts that nothing is registered for the id. The entry is good until it is unregistered. */
	FTabSpawnerEntry& RegisterNomadTabSpawner(
		const FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& CanSpawnTab = FCanSpawnTab());
	/** Leaves an open tab alone; no effect for an unknown id. */
	void UnregisterNomadTabSpawner(const FName TabId) { RemoveSpawner(TabId); }

	/** The editor's main window; null before there is one. */
	void SetRootWindow(const TSharedRef<SWindow>& InRootWindow) { RootWindow = InRootWindow; }
	TSharedPtr<SWindow> GetRootWindow() const { return RootWindow.Pin(); }

private:
	TWeakPtr<SWindow> RootWindow;
};
