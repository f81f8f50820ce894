#pragma once

#include "CoreMinimal.h"
#include "Framework/MultiBox/MultiBoxDefs.h"
#include "ToolMenu.h"
#include "ToolMenuContext.h"
#include "ToolMenuEntry.h"
#include "ToolMenuOwner.h"
#include "ToolMenuSection.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"

#include "ToolMenus.generated.h"

class SWidget;

/** All menus and toolbars by name. It exists while the module "ToolMenus" is loaded. */
UCLASS()
class UToolMenus : public UObject
{
	GENERATED_BODY()

public:
	/** Loads the module if need be. */
	static UToolMenus* Get();
	/** Null while the module is not loaded, as when the editor shuts down. */
	static UToolMenus* TryGet();
	/** Whether menus are shown at all in this process. */
	static bool IsToolMenuUIEnabled();

	/**
	 * Has the delegate run once the editor is up and menus are shown: inside this call if that is already so, otherwise
	 * then. Never where there is no user interface.
	 *
	 * @return the handle to remove it; not valid if the delegate has run
	 */
	static FDelegateHandle RegisterStartupCallback(const FSimpleMulticastDelegate::FDelegate& InDelegate);
	/** Those bound to an object, usually `this`. */
	static void UnRegisterStartupCallback(const void* UserPointer);
	static void UnRegisterStartupCallback(FDelegateHandle InHandle);

	/** Removes what was added under this owner. Does not load the module. */
	static void UnregisterOwner(FToolMenuOwner Owner);

	/** Makes the menu known. One that was extended before keeps what was added to it. */
	UToolMenu* RegisterMenu(const FName Name, const FName InParent = NAME_None,
		EMultiBoxType InType = EMultiBoxType::Menu, bool bWarnIfAlreadyRegistered = true);
	/** Never null: the menu may be registered later. */
	UToolMenu* ExtendMenu(const FName Name);
	/** Null for a menu that was neither registered nor extended. */
	UToolMenu* FindMenu(const FName Name) const;
	bool IsMenuRegistered(const FName Name) const;
	void RemoveSection(const FName MenuName, const FName Section);
	void RemoveEntry(const FName MenuName, const FName Section, const FName Name);

	/** Rebuilds all menu widgets in the next frame. */
	void RefreshAllWidgets() { ++Version; }
	/** "Base.Child" */
	static FName JoinMenuPaths(const FName Base, const FName Child);
	/**
	 * The menu as buttons: a column, or a row for toolbars and menu bars. It follows what is added and removed.
	 *
	 * A menu bar's menus open at a press; while one is open, the pointer and the arrow keys go from one to the next.
	 */
	TSharedRef<SWidget> GenerateWidget(const FName Name, const FToolMenuContext& InMenuContext);

	/** The owner of what is added now: that of the innermost FToolMenuOwnerScoped. */
	FToolMenuOwner CurrentOwner() const;
	void PushOwner(const FToolMenuOwner InOwner) { OwnerStack.Add(InOwner); }
	void PopOwner(const FToolMenuOwner InOwner);

	// For the module and its widgets.
	static void CreateSingleton();
	static void DestroySingleton();
	/** Changes whenever a menu may have changed. */
	uint32 GetVersion() const { return Version; }
	/** The entries of a menu and of those it begins with, in the order in which they are shown. */
	TArray<FToolMenuSection> CollectSections(const FName Name) const;

private:
	static UToolMenus* Singleton;

	UPROPERTY()
	TMap<FName, TObjectPtr<UToolMenu>> Menus;

	TArray<FToolMenuOwner> OwnerStack;
	uint32 Version = 0;
};

/** What is added while it lives belongs to its owner. It needs a name: a temporary ends at once. */
struct [[nodiscard]] FToolMenuOwnerScoped
{
	FToolMenuOwnerScoped(const FToolMenuOwner InOwner)
		: Owner(InOwner)
	{
		UToolMenus::Get()->PushOwner(InOwner);
	}
	~FToolMenuOwnerScoped() { UToolMenus::Get()->PopOwner(Owner); }
	UE_NONCOPYABLE(FToolMenuOwnerScoped)

	FToolMenuOwner GetOwner() const { return Owner; }

private:
	const FToolMenuOwner Owner;
};
