#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/WorkspaceItem.h"
#include "Misc/Attribute.h"
#include "Types/SlateEnums.h"

class FLayoutExtender;
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

namespace ETabState
{
enum Type : int
{
	OpenedTab = 1,
	/** Not there, but this is where it opens. */
	ClosedTab = 2,
};
}

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

/** Where a new tab goes: into the row that has, or would open, the tab of an id. */
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

	class FStack;
	class FSplitter;

	/** A place for a tab. */
	struct FTab
	{
		FTab(const FTabId& InTabId, ETabState::Type InTabState)
			: TabId(InTabId)
			, TabState(InTabState)
		{
		}

		FTabId TabId;
		ETabState::Type TabState;
	};

	/** A stack of tabs, or others beside each other. The setters chain. */
	class FLayoutNode : public TSharedFromThis<FLayoutNode>
	{
	public:
		virtual ~FLayoutNode() = default;

		virtual TSharedPtr<FStack> AsStack() { return nullptr; }
		virtual TSharedPtr<FSplitter> AsSplitter() { return nullptr; }
		float GetSizeCoefficient() const { return SizeCoefficient; }

	protected:
		float SizeCoefficient = 1.0f; // in relation to its siblings
	};

	class FStack : public FLayoutNode
	{
	public:
		TSharedRef<FStack> AddTab(const FName TabType, ETabState::Type InTabState);
		TSharedRef<FStack> AddTab(const FTab& Tab, int32 Index);
		TSharedRef<FStack> SetForegroundTab(const FTabId& TabId);
		TSharedRef<FStack> SetSizeCoefficient(const float InSizeCoefficient);

		const TArray<FTab>& GetTabs() const { return Tabs; }
		const FTabId& GetForegroundTabId() const { return ForegroundTabId; }
		virtual TSharedPtr<FStack> AsStack() override { return StaticCastSharedRef<FStack>(AsShared()); }

	private:
		TArray<FTab> Tabs;
		FTabId ForegroundTabId;
	};

	class FSplitter : public FLayoutNode
	{
	public:
		TSharedRef<FSplitter> SetSizeCoefficient(const float InSizeCoefficient);
		TSharedRef<FSplitter> Split(TSharedRef<FLayoutNode> InNode);
		TSharedRef<FSplitter> SetOrientation(const EOrientation InOrientation);

		EOrientation GetOrientation() const { return Orientation; }
		const TArray<TSharedRef<FLayoutNode>>& GetChildNodes() const { return ChildNodes; }
		void ReplaceChild(int32 Index, const TSharedRef<FLayoutNode>& Node) { ChildNodes[Index] = Node; }
		void InsertChild(int32 Index, const TSharedRef<FLayoutNode>& Node) { ChildNodes.Insert(Node, Index); }
		virtual TSharedPtr<FSplitter> AsSplitter() override { return StaticCastSharedRef<FSplitter>(AsShared()); }

	private:
		EOrientation Orientation = Orient_Horizontal;
		TArray<TSharedRef<FLayoutNode>> ChildNodes;
	};

	/** The whole inside of a window. */
	class FArea : public FSplitter
	{
	public:
		TSharedRef<FArea> Split(TSharedRef<FLayoutNode> InNode);
		TSharedRef<FArea> SetOrientation(const EOrientation InOrientation);
	};

	class FLayout : public TSharedFromThis<FLayout>
	{
	public:
		explicit FLayout(const FName& InLayoutName)
			: LayoutName(InLayoutName)
		{
		}

		TSharedRef<FLayout> AddArea(const TSharedRef<FArea>& InArea);
		/** Null before an area was added. */
		TSharedPtr<FArea> GetPrimaryArea() const { return PrimaryArea; }

		/** Adds the tabs that the layout does not have yet. */
		void ProcessExtensions(const FLayoutExtender& Extender);
		/** As JSON. */
		FString ToString() const;
		/** Null for a text that is not that of a layout. */
		static TSharedPtr<FLayout> NewFromString(const FString& LayoutAsText);

	private:
		FName LayoutName;
		TSharedPtr<FArea> PrimaryArea;
	};

	static TSharedRef<FLayout> NewLayout(const FName LayoutName);
	static TSharedRef<FArea> NewPrimaryArea();
	static TSharedRef<FSplitter> NewSplitter();
	static TSharedRef<FStack> NewStack();

	/** Host: lays the main area out anew and opens the tabs that are to be open. Asserts that none is open yet. */
	void RestoreMainArea(const FLayout& Layout);
	/** What RestoreMainArea needs to make it as it is now. */
	TSharedRef<FLayout> PersistLayout() const;

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

	void OpenTabs(FLayoutNode& Node);

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
